#include "app/screen_tour.h"

#include "app/app_core.h"
#include "app/color_frame.h"
#include "app/credits_scroll.h"
#include "app/ecu_tools_window.h"
#include "app/main_window.h"
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/simulator_transport.h"
#include "consult/wire.h"
#include "external/channel_scale.h"
#include "external/external_sensors.h"
#include "external/channel_scale_window.h"
#include "external/external_sensors_window.h"
#include "graph/graph_feed.h"
#include "logging/log_chart.h"
#include "logging/log_chart_window.h"
#include "logging/log_format.h"
#include "logging/log_player.h"
#include "logging/log_player_window.h"
#include "rom/bin_compare_view.h"
#include "rom/bin_compare_window.h"
#include "rom/bin_viewer_window.h"
#include "rom/block_preview_window.h"
#include "rom/map_surface_window.h"
#include "rom/map_viewer.h"
#include "rom/map_viewer_window.h"
#include "tools/active_test_window.h"
#include "tools/bin_file_downloader_window.h"
#include "tools/fuel_correction.h"
#include "tools/fuel_correction_window.h"
#include "tools/simulated_run.h"
#include "tools/register_viewer_window.h"
#include "sensors/sensor_catalog.h"
#include "sensors/sensor_stream.h"
#include "sim/ecu_simulator.h"
#include "sim/simulated_car.h"
#include "ui/binary_files.h"
#include "ui/common_dialog.h"
#include "ui/message_box.h"
#include "voice/alerts.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QTabWidget>
#include <QTimer>
#include <vector>

using vexorin::rom::BlockOp;

namespace {
QAbstractButton* buttonIn(QWidget* w, const QString& caption)
{
    if (w)
        for (auto* b : w->findChildren<QAbstractButton*>())
            if (b->text() == caption && b->isVisible())
                return b;
    return nullptr;
}

void click(QWidget* w, const QString& caption)
{
    if (QAbstractButton* b = buttonIn(w, caption))
        b->click();
}
}  // namespace

struct ScreenTour::Stop {
    const char* picture;          // empty: a step with nothing new to look at
    int settleMs;                 // how long the window runs before it is looked at
    std::function<QWidget*()> act;  // the step; returns the window to look at
};

ScreenTour::ScreenTour(AppCore& core, MainWindow& window) : core_(core), window_(window)
{
    romPath_ = files_.filePath(QStringLiteral("simulator.bin"));
    const auto rom = vexorin::sim::makeSyntheticRom();
    vexorin::files::WriteBytes(romPath_.toStdString(), std::vector<std::uint8_t>(rom.begin(), rom.end()), nullptr);
    // A tune: leaner at part load, richer at full load, a higher rev limit, two RPM headings moved.
    std::vector<std::uint8_t> tuned(rom.begin(), rom.end());
    for (int row = 6; row < 9; ++row)
        for (int column = 4; column < 8; ++column)
            tuned[std::size_t(0x7D00 + row * 16 + column)] -= 2;
    for (int column = 12; column < 16; ++column)
        tuned[std::size_t(0x7D00 + 14 * 16 + column)] += 6;
    tuned[0x7FB4] += 8;
    tuned[0x7B0E] += 2;
    tuned[0x7B0F] += 4;
    tuned[0x7F00 + 0x40] ^= 0x55;  // outside every named region
    tuned[0x4805] ^= 0xFF;          // bank 200
    tunedPath_ = files_.filePath(QStringLiteral("tuned.bin"));
    vexorin::files::WriteBytes(tunedPath_.toStdString(), tuned, nullptr);
    // No box waits for a click, and every file dialog answers with the tour's files.
    MessageBoxes::setPresenter([](const QString&, const QString&, bool) {});
    mCommonDialog::setAnswerer([this](const mCommonDialog::DialogRequest& r, bool save) {
        if (r.filter.startsWith(QLatin1String("LOG")))
            return files_.filePath(QStringLiteral("drive.log"));
        if (!save)
            return romPath_;
        return files_.filePath(QStringLiteral("download") + r.defaultExtension);
    });
}

ScreenTour::~ScreenTour()
{
    MessageBoxes::setPresenter({});
    mCommonDialog::setAnswerer({});
}

void ScreenTour::writeDemoLog(const QString& path, int frames)
{
    using namespace vexorin::sensors;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return;
    vexorin::sim::EcuSimulator ecu;
    QDateTime when(QDate(2026, 11, 22), QTime(19, 28, 0));
    const vexorin::consult::Bytes& registers = vexorin::consult::kAllSensorRegisters;
    for (int f = 0; f < frames; ++f) {
        ecu.advance(100);
        // The frame as the all-sensor read lays it out: values from position 35.
        std::array<int, 51> at{};
        for (std::size_t i = 0; i < registers.size(); ++i) {
            std::uint8_t v = 0;
            ecu.registerValue(registers[i], v);
            at[35 + i] = v;
        }
        QByteArray lines = vexorin::logging::dateTimeLine(when.addMSecs(100LL * f)).toLocal8Bit() +
                           vexorin::logging::kLineEnd;
        for (const SensorSpec& s : kSensors) {
            const int hi = s.twoBytes ? at[std::size_t(s.position - 1)] : 0;
            const SensorReading r = highByteUsable(hi) ? convert(s.id, hi, at[std::size_t(s.position)])
                                                        : lowByteReading(at[std::size_t(s.position)]);
            const QString value = QString::fromStdString(r.value);
            lines += (r.numeric ? vexorin::logging::numberLine(value) : value).toLocal8Bit() +
                     vexorin::logging::kLineEnd;
        }
        file.write(lines);
    }
}

void ScreenTour::settle(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

QWidget* ScreenTour::topLevel(const QString& objectName) const
{
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == objectName && w->isVisible())
            return w;
    return nullptr;
}

void ScreenTour::trigger(const QString& action)
{
    if (QAction* a = window_.action(action))
        a->trigger();
}

// The built-in simulator's engine revving, or back to its own cycle.
void ScreenTour::forceEngine(bool rev)
{
    if (auto* sim = qobject_cast<SimulatorTransport*>(core_.session().link().transport())) {
        if (rev)
            sim->ecu().forcePhase(vexorin::sim::EnginePhase::Rev);
        else
            sim->ecu().releasePhase();
    }
}

bool ScreenTour::connectAndMonitor()
{
    for (QAction* a : window_.portMenu()->actions())
        if (a->text().startsWith(QStringLiteral("Vexorin ECU Simulator")))
            a->trigger();
    ConsultSession& s = core_.session();
    s.ConnectDisconnect();
    QElapsedTimer wait;
    wait.start();
    while ((s.ConnectedLabel() != QLatin1String("Connected") || s.GetSerialNumberKValue.isActive()) &&
           wait.elapsed() < 5000)
        settle(20);
    if (s.ConnectedLabel() != QLatin1String("Connected")) {
        error_ = QStringLiteral("the built-in simulator did not answer");
        return false;
    }
    core_.stream().MonitorOnOff();
    return true;
}

bool ScreenTour::run(const Visitor& visit)
{
    QWidget* main = &window_;
    if (!connectAndMonitor())
        return false;
    const auto stopMonitor = [this] {
        if (core_.session().MonitorSensorsOnLabel() == QLatin1String("ON"))
            core_.stream().MonitorOnOff();
    };
    const Stop stops[] = {
        {"main-window-monitoring", 2500, [=] {
             trigger(QStringLiteral("Capturetologfile"));  // a log for the Log Player, written while monitoring
             return main;
         }},
        {"main-window-large-view", 400, [=] {
             trigger(QStringLiteral("LargeSensorViewer"));
             return main;
         }},
        {"", 0, [=] {
             trigger(QStringLiteral("ViewAllSensors"));
             return main;
         }},
        {"speed-alert", 100, [=] {
             trigger(QStringLiteral("Speed"));
             return main;
         }},
        {"water-alert", 100, [=] {
             trigger(QStringLiteral("WaterTempAlert"));
             return main;
         }},
        {"colour-frame", 100, [=] {
             core_.alert(1).Cancel();
             trigger(QStringLiteral("AllSensorColors"));
             return main;
         }},
        {"night-mode", 300, [=] {
             core_.colorFrame().Cancel();
             trigger(QStringLiteral("NightMode"));
             return main;
         }},
        {"dash-night", 300, [=] {
             trigger(QStringLiteral("Dash"));
             return topLevel(QStringLiteral("Dash"));
         }},
        {"dash", 600, [=] {
             trigger(QStringLiteral("NightMode"));
             QWidget* dash = topLevel(QStringLiteral("Dash"));
             if (dash) {
                 dash->showFullScreen();
                 // A display without a window manager leaves the size to the program.
                 if (QScreen* screen = dash->screen())
                     dash->setGeometry(screen->geometry());
             }
             return dash;
         }},
        {"byte-viewer", 300, [=] {
             if (QWidget* dash = topLevel(QStringLiteral("Dash")))
                 dash->close();
             trigger(QStringLiteral("ByteViewer"));
             return topLevel(QStringLiteral("ByteViewer"));
         }},
        {"log-player", 300, [=] {
             if (QWidget* w = topLevel(QStringLiteral("ByteViewer")))
                 w->close();
             stopMonitor();
             trigger(QStringLiteral("Capturetologfile"));  // capture ends
             trigger(QStringLiteral("LogPlayer"));
             QWidget* w = topLevel(QStringLiteral("LogPlayer"));
             click(w, QStringLiteral("Load File"));
             for (int frame = 0; frame < 12; ++frame)
                 click(w, QStringLiteral("Read next"));
             return w;
         }},
        {"log-chart", 500, [=] {
             // Six minutes of the simulator's engine, idling, revving and driving.
             const QString demo = files_.filePath(QStringLiteral("six-minutes.log"));
             writeDemoLog(demo, 3600);
             auto* player = qobject_cast<LogPlayerWindow*>(topLevel(QStringLiteral("LogPlayer")));
             if (!player)
                 return static_cast<QWidget*>(nullptr);
             player->player().loadChosen(demo);
             player->player().goToLine(14 * 1240);
             click(player, QStringLiteral("Chart"));
             LogChartWindow* chart = window_.logChartWindow();
             if (chart) {
                 chart->checkBox(int(vexorin::sensors::SensorId::Speed))->setChecked(true);
                 chart->chart().zoom(0.5, 1240);
                 chart->chart().setProbe(1320);
             }
             return static_cast<QWidget*>(chart);
         }},
        {"log-export", 200, [=] {
             if (QWidget* chart = window_.logChartWindow())
                 chart->close();
             // The File menu, open on its new item.
             QMenu* file = window_.menuBar()->actions().value(0) ? window_.menuBar()->actions()[0]->menu() : nullptr;
             if (!file)
                 return static_cast<QWidget*>(nullptr);
             file->popup(window_.mapToGlobal(QPoint(8, window_.menuBar()->height())));
             file->setActiveAction(window_.action(QStringLiteral("ExportLogAsCsv")));
             return static_cast<QWidget*>(file);
         }},
        {"graph-preset-2", 1500, [=] {
             if (QMenu* file = window_.menuBar()->actions().value(0) ? window_.menuBar()->actions()[0]->menu() : nullptr)
                 file->close();
             core_.graphFeed().GraphPreset(2);
             return main;
         }},
        {"graph-test", 100, [=] {
             core_.graphFeed().GraphPreset(1);
             trigger(QStringLiteral("GraphTest"));
             return topLevel(QStringLiteral("GraphTest"));
         }},
        {"external-gauge-monitor", 2000, [=] {
             trigger(QStringLiteral("UseExternalSensors"));
             QWidget* w = topLevel(QStringLiteral("ExternalSensors"));
             // The built-in DLP-IO8-G simulator's row, connected and polled.
             if (w)
                 for (QAction* a : w->findChildren<QAction*>())
                     if (a->text().startsWith(QStringLiteral("Vexorin DLP-IO8-G Simulator")))
                         a->trigger();
             click(w, QStringLiteral("Connect/Disconnect"));
             for (int channel = 1; channel <= 8; ++channel)
                 click(w, QString::number(channel));  // every channel read
             click(w, QStringLiteral("Start"));
             // The wideband sender on channel 4, shown as an air/fuel ratio.
             if (auto* gauges = qobject_cast<ExternalSensorsWindow*>(w))
                 gauges->sensors().setScale(4, vexorin::external::kScalePresets[0].scale());
             return w;
         }},
        {"channel-scale", 200, [=] {
             auto* gauges = qobject_cast<ExternalSensorsWindow*>(topLevel(QStringLiteral("ExternalSensors")));
             if (!gauges)
                 return static_cast<QWidget*>(nullptr);
             gauges->editScale(2);
             if (QWidget* dialog = gauges->channelScaleWindow())
                 click(dialog, QStringLiteral("Pressure 0.5-4.5 V"));
             return static_cast<QWidget*>(gauges->channelScaleWindow());
         }},
        {"fuel-correction", 300, [=] {
             // Three minutes of the simulated car, 8 % lean on its own ROM, recorded and analysed.
             vexorin::sim::SimulatedCar car;
             car.setFuelError(8);
             const auto& rom = car.ecu().rom();
             const QString bin = files_.filePath(QStringLiteral("simulator.bin"));
             const QString run = files_.filePath(QStringLiteral("run-simulator.csv"));
             vexorin::files::WriteBytes(bin.toStdString(), std::vector<std::uint8_t>(rom.begin(), rom.end()), nullptr);
             const std::string text = vexorin::tools::recordSimulatedRun(car, 180);
             vexorin::files::WriteBytes(run.toStdString(), std::vector<std::uint8_t>(text.begin(), text.end()), nullptr);
             trigger(QStringLiteral("FuelCorrection"));
             FuelCorrectionWindow* w = window_.fuelCorrectionWindow();
             if (w) {
                 w->correction().openBin(bin);
                 w->correction().openRuns({run});
             }
             return static_cast<QWidget*>(w);
         }},
        {"sensor-name", 100, [=] {
             if (auto* gauges = qobject_cast<ExternalSensorsWindow*>(topLevel(QStringLiteral("ExternalSensors"))))
                 if (QWidget* dialog = gauges->channelScaleWindow())
                     click(dialog, QStringLiteral("OK"));  // the boost sender scaled in psi
             if (auto* gauges = qobject_cast<ExternalSensorsWindow*>(topLevel(QStringLiteral("ExternalSensors"))))
                 gauges->rename(2);
             return topLevel(QStringLiteral("SensorName"));
         }},
        {"startup-announce", 100, [=] {
             if (QWidget* w = topLevel(QStringLiteral("SensorName")))
                 w->close();
             trigger(QStringLiteral("StartupAnnounce"));
             return topLevel(QStringLiteral("StartupAnnounce"));
         }},
        {"speech-engines", 100, [=] {
             trigger(QStringLiteral("SpeechEngines"));
             return topLevel(QStringLiteral("SpeechEngines"));
         }},
        {"fault-codes", 100, [=] {
             trigger(QStringLiteral("FaultCodes"));
             return topLevel(QStringLiteral("FaultCodes"));
         }},
        {"interface-check", 300, [=] {
             trigger(QStringLiteral("CheckAvailableInterfaces"));
             return topLevel(QStringLiteral("InterfaceCheck"));
         }},
        {"credits", 100, [=] {
             trigger(QStringLiteral("Credits"));
             QWidget* w = topLevel(QStringLiteral("Credits"));
             // Nine seconds of scrolling at once: the lines stand in the middle of the window.
             if (auto* scroll = w ? w->findChild<CreditsScroll*>() : nullptr)
                 for (int tick = 0; tick < 9000 / CreditsScroll::kTickMs; ++tick)
                     scroll->ScrollTimerTick();
             return w;
         }},
        {"splash", 100, [=] {
             trigger(QStringLiteral("About"));
             return topLevel(QStringLiteral("Splash"));
         }},
        {"map-viewer-fuel", 300, [=] {
             for (const char* name : {"LogPlayer", "GraphTest", "ExternalSensors", "StartupAnnounce", "SpeechEngines",
                                      "FaultCodes", "InterfaceCheck", "Credits", "Splash", "SensorName"}) {
                 if (QWidget* w = name == QLatin1String("ExternalSensors") ? topLevel(QLatin1String(name)) : nullptr)
                     click(w, QStringLiteral("Stop"));
                 if (QWidget* w = topLevel(QLatin1String(name)))
                     w->close();
             }
             window_.showMapViewer();
             if (MapViewerWindow* w = window_.mapViewerWindow())
                 w->loadBinFile(false);
             return static_cast<QWidget*>(window_.mapViewerWindow());
         }},
        {"map-viewer-timing", 100, [=] {
             MapViewerWindow* w = window_.mapViewerWindow();
             if (w)
                 w->tabs()->setCurrentIndex(4);
             return static_cast<QWidget*>(w);
         }},
        {"map-viewer-edit-mode", 300, [=] {
             MapViewerWindow* w = window_.mapViewerWindow();
             if (w)
                 w->tabs()->setCurrentIndex(0);
             if (auto* edit = w ? w->findChild<QCheckBox*>(QStringLiteral("EditMode1")) : nullptr)
                 edit->click();
             return static_cast<QWidget*>(w);
         }},
        {"map-viewer-block-preview", 300, [=] {
             // A block of the fuel map made richer by half a ratio: the preview first.
             MapViewerWindow* w = window_.mapViewerWindow();
             if (!w)
                 return static_cast<QWidget*>(nullptr);
             w->viewer().selectCell(0, 6, 7);
             w->viewer().extendSelection(0, 11, 12);
             auto* preview = w->blockPreview(0, BlockOp::Add, w->viewer().planBlock(0, BlockOp::Add, -0.5));
             preview->setAttribute(Qt::WA_DeleteOnClose);
             preview->show();
             return static_cast<QWidget*>(preview);
         }},
        {"map-viewer-edit-session", 300, [=] {
             MapViewerWindow* w = window_.mapViewerWindow();
             if (auto* preview = topLevel(QStringLiteral("BlockPreview")))
                 preview->close();
             if (w)
                 w->viewer().applyBlock(0, w->viewer().planBlock(0, BlockOp::Add, -0.5));
             return static_cast<QWidget*>(w);
         }},
        {"map-viewer-live-trace", 1800, [=] {
             stopMonitor();
             MapViewerWindow* w = window_.mapViewerWindow();
             if (w)
                 w->viewer().undo();  // the file as it was, for the pictures that follow
             if (auto* edit = w ? w->findChild<QCheckBox*>(QStringLiteral("EditMode1")) : nullptr)
                 if (edit->isChecked())
                     edit->click();
             forceEngine(true);
             click(w, QStringLiteral("Live Trace"));
             return static_cast<QWidget*>(w);
         }},
        {"map-viewer-compare", 300, [=] {
             MapViewerWindow* w = window_.mapViewerWindow();
             if (w) {
                 w->viewer().setLiveTrace(false);
                 w->viewer().compareWith(tunedPath_);
             }
             forceEngine(false);
             return static_cast<QWidget*>(w);
         }},
        {"map-3d", 1200, [=] {
             MapViewerWindow* w = window_.mapViewerWindow();
             if (w)
                 w->viewer().clearCompare();
             return static_cast<QWidget*>(w ? w->show3dView(0) : nullptr);
         }},
        {"bin-editor", 300, [=] {
             if (MapViewerWindow* w = window_.mapViewerWindow())
                 w->close();
             window_.showBinViewer();
             if (BinViewerWindow* w = window_.binViewerWindow())
                 w->openBinFile();
             return static_cast<QWidget*>(window_.binViewerWindow());
         }},
        {"hex-chart", 300, [=] {
             if (BinViewerWindow* w = window_.binViewerWindow())
                 if (auto* chart = w->findChild<QAction*>(QStringLiteral("HexChart")))
                     chart->trigger();
             return topLevel(QStringLiteral("HexChart"));
         }},
        {"bin-compare", 300, [=] {
             if (QWidget* chart = topLevel(QStringLiteral("HexChart")))
                 chart->close();
             if (BinViewerWindow* w = window_.binViewerWindow())
                 w->close();
             trigger(QStringLiteral("CompareBinFiles"));
             BinCompareWindow* w = window_.binCompareWindow();
             if (w) {
                 w->view().openA(romPath_);
                 w->view().openB(tunedPath_);
             }
             return static_cast<QWidget*>(w);
         }},
        {"bin-file-downloader", 1500, [=] {
             if (QWidget* compare = topLevel(QStringLiteral("BinCompare")))
                 compare->close();
             window_.ecuTools()->showBinFileDownloader();
             QWidget* w = window_.ecuTools()->binFileDownloader();
             click(w, QStringLiteral("Download BIN File"));
             return w;
         }},
        {"bin-file-downloader-plain", 300, [=] {
             QWidget* w = window_.ecuTools()->binFileDownloader();
             if (auto* theme = w ? w->findChild<QAction*>(QStringLiteral("MatrixTheme")) : nullptr)
                 theme->trigger();
             return w;
         }},
        {"register-viewer", 1500, [=] {
             QWidget* downloader = window_.ecuTools()->binFileDownloader();
             if (auto* theme = downloader ? downloader->findChild<QAction*>(QStringLiteral("MatrixTheme")) : nullptr)
                 theme->trigger();
             click(downloader, QStringLiteral("Cancel"));
             if (downloader)
                 downloader->close();
             window_.ecuTools()->showRegisterViewer();
             QWidget* w = window_.ecuTools()->registerViewer();
             click(w, QStringLiteral("Download Register Bank"));
             return w;
         }},
        {"active-test", 300, [=] {
             QWidget* viewer = window_.ecuTools()->registerViewer();
             click(viewer, QStringLiteral("Stop Data Flow"));
             if (viewer)
                 viewer->close();
             window_.ecuTools()->showActiveTest();
             return static_cast<QWidget*>(window_.ecuTools()->activeTest());
         }},
    };
    for (const Stop& stop : stops) {
        QWidget* shown = stop.act();
        settle(stop.settleMs);
        if (!*stop.picture)
            continue;
        if (!shown) {
            error_ = QStringLiteral("no window to look at for %1").arg(QLatin1String(stop.picture));
            return false;
        }
        visit(QLatin1String(stop.picture), shown);
    }
    return true;
}
