// The main window's other windows: each made on first use and reused, shown
// and raised, and unloaded in a fixed order when the main window goes.
#include "app/main_window.h"

#include "app/app_core.h"
#include "app/credits_window.h"
#include "app/ecu_tools_window.h"
#include "app/fault_codes_window.h"
#include "app/interface_check_window.h"
#include "app/splash.h"
#include "app/splash_window.h"
#include "consult/consult_session.h"
#include "consult/fault_codes.h"
#include "consult/link_owner.h"
#include "external/external_sensors.h"
#include "external/external_sensors_window.h"
#include "graph/graph_feed.h"
#include "graph/graph_test_window.h"
#include "logging/log_chart.h"
#include "logging/log_chart_window.h"
#include "logging/log_player.h"
#include "logging/log_player_window.h"
#include "rom/bin_compare_window.h"
#include "rom/bin_viewer_window.h"
#include "rom/hex_chart_window.h"
#include "rom/map_viewer.h"
#include "rom/map_viewer_window.h"
#include "sensors/byte_viewer_window.h"
#include "sensors/dash_window.h"
#include "tools/active_test_window.h"
#include "tools/bin_file_downloader_window.h"
#include "tools/fuel_correction_window.h"
#include "tools/register_viewer_window.h"
#include "ui/message_box.h"
#include "ui/owned_dialogs.h"
#include "ui/regular_file.h"
#include "voice/speech_engines_window.h"
#include "voice/startup_announce_window.h"
#include "voice/voice_gate.h"

#include "app/settings/settings_access.h"
#include "rom/map_viewer.h"

#include <QCloseEvent>
#include <QTabWidget>

using Kind = WindowRegistry::Kind;

// How each window is made on first use. Windows the registry does not make
// (the Register Viewer's and the BIN viewers' Hex Chart, further viewers, the
// sensor name dialog) join it when they appear.
void MainWindow::registerWindowMakers()
{
    const auto window = [](QWidget* w, bool deleteOnClose = false) {
        if (deleteOnClose)
            w->setAttribute(Qt::WA_DeleteOnClose);
        return w;
    };
    const std::pair<Kind, std::function<QWidget*()>> makers[] = {
        {Kind::Credits, [=] { return window(new CreditsWindow(this), true); }},
        {Kind::HexChart, [this] { return new HexChartWindow(this); }},
        {Kind::MapViewer, [this] {
             auto* w = new MapViewerWindow(core_.session(), 0, this);
             w->viewer().trace().setScaleSource([this] {
                 bool ok = false;
                 const double s = readSettingOrDefault(core_.store(), Settings::LiveTraceScale).toDouble(&ok);
                 return ok ? s : 0.0;  // the trace keeps its default for anything but a number above 0
             });
             connect(w, &MapViewerWindow::viewerOpened, this,
                     [this](MapViewerWindow* more) { registry_.add(Kind::MapViewer, more); });
             return w;
         }},
        {Kind::StartupAnnounce, [this] { return new StartupAnnounceWindow(core_.store(), core_.voice().out(), this); }},
        {Kind::ByteViewer, [this] { return new ByteViewerWindow(core_.byteViewer(), this); }},
        {Kind::GraphTest, [this] { return new GraphTestWindow(core_.graphFeed(), this); }},
        {Kind::BinViewer, [this] {
             auto* w = new BinViewerWindow(1, this);
             w->setHexChartSource([this] { return registry_.make<HexChartWindow>(Kind::HexChart); });
             connect(w, &BinViewerWindow::viewerOpened, this,
                     [this](BinViewerWindow* more) { registry_.add(Kind::BinViewer, more); });
             return w;
         }},
        {Kind::BinCompare, [this] {
             auto* w = new BinCompareWindow(this);
             // Queued: the Map Viewer's load runs the event loop, not from inside the list's double-click.
             connect(w, &BinCompareWindow::mapRequested, this, &MainWindow::openMapCompare, Qt::QueuedConnection);
             return w;
         }},
        {Kind::LogPlayer, [this] {
             auto* w = new LogPlayerWindow(this);
             connect(w, &LogPlayerWindow::chartRequested, this, &MainWindow::openLogChart);
             return w;
         }},
        {Kind::InterfaceCheck, [this] {
             auto* w = new InterfaceCheckWindow(core_.ports().source(), this);
             connect(w, &InterfaceCheckWindow::errorBox, this,
                     [this](const QString& t, const QString& title) { MessageBoxes::critical(this, t, title); });
             return w;
         }},
        {Kind::FaultCodes, [this] { return new FaultCodesWindow(this); }},
        {Kind::Dash, [this] { return new DashWindow(core_.displays(), this); }},
        // Goes with its port when it is closed, and is made afresh (settings read again) at the next opening.
        {Kind::ExternalSensors, [=] {
             auto* w = new ExternalSensorsWindow(core_.makeExternalSensors(), this);
             connect(w, &ExternalSensorsWindow::interfaceCheckRequested, this, &MainWindow::showInterfaceCheck);
             return window(w, true);
         }},
        {Kind::FuelCorrection, [this] {
             return new FuelCorrectionWindow(core_.store(), core_.session(), core_.stream(), core_.displays(), [this] {
                 ExternalSensorsWindow* gauges = externalSensorsWindow();
                 return gauges ? &gauges->sensors() : nullptr;
             }, this);
         }},
        {Kind::SpeechEngines, [this] { return new SpeechEnginesWindow(this); }},
        {Kind::Splash, [=] { return window(new SplashWindow(core_.splash(), this), true); }},
    };
    for (const auto& [kind, make] : makers)
        registry_.setMaker(kind, make);
    // The link's rule asks whether a Map Viewer is showing.
    core_.session().owner().setToolShowing(LinkOwner::Tool::MapViewer,
                                           [this] { return registry_.showing(Kind::MapViewer); });
}

ExternalSensorsWindow* MainWindow::externalSensorsWindow() const { return registry_.existing<ExternalSensorsWindow>(Kind::ExternalSensors); }
InterfaceCheckWindow* MainWindow::interfaceCheckWindow() const { return registry_.existing<InterfaceCheckWindow>(Kind::InterfaceCheck); }
DashWindow* MainWindow::dashWindow() const { return registry_.existing<DashWindow>(Kind::Dash); }
ByteViewerWindow* MainWindow::byteViewerWindow() const { return registry_.existing<ByteViewerWindow>(Kind::ByteViewer); }
StartupAnnounceWindow* MainWindow::startupAnnounceWindow() const { return registry_.existing<StartupAnnounceWindow>(Kind::StartupAnnounce); }
FaultCodesWindow* MainWindow::faultCodesWindow() const { return registry_.existing<FaultCodesWindow>(Kind::FaultCodes); }
SpeechEnginesWindow* MainWindow::speechEnginesWindow() const { return registry_.existing<SpeechEnginesWindow>(Kind::SpeechEngines); }
GraphTestWindow* MainWindow::graphTestWindow() const { return registry_.existing<GraphTestWindow>(Kind::GraphTest); }
LogPlayerWindow* MainWindow::logPlayerWindow() const { return registry_.existing<LogPlayerWindow>(Kind::LogPlayer); }
FuelCorrectionWindow* MainWindow::fuelCorrectionWindow() const { return registry_.existing<FuelCorrectionWindow>(Kind::FuelCorrection); }
LogChartWindow* MainWindow::logChartWindow() const { return registry_.existing<LogChartWindow>(Kind::LogChart); }
MapViewerWindow* MainWindow::mapViewerWindow() const { return registry_.existing<MapViewerWindow>(Kind::MapViewer); }
BinViewerWindow* MainWindow::binViewerWindow() const { return registry_.existing<BinViewerWindow>(Kind::BinViewer); }
BinCompareWindow* MainWindow::binCompareWindow() const { return registry_.existing<BinCompareWindow>(Kind::BinCompare); }
SplashWindow* MainWindow::splashWindow() const { return registry_.existing<SplashWindow>(Kind::Splash); }
CreditsWindow* MainWindow::creditsWindow() const { return registry_.existing<CreditsWindow>(Kind::Credits); }

void MainWindow::showGraphTest()
{
    registry_.make(Kind::GraphTest);
    core_.graphFeed().showGraphTest();
    registry_.show(Kind::GraphTest);
}

void MainWindow::showInterfaceCheck()
{
    registry_.make<InterfaceCheckWindow>(Kind::InterfaceCheck)->reload();
    registry_.show(Kind::InterfaceCheck);
}

void MainWindow::showDash() { registry_.show(Kind::Dash); }
void MainWindow::showByteViewer() { registry_.show(Kind::ByteViewer); }
void MainWindow::showMapViewer() { registry_.show(Kind::MapViewer); }
void MainWindow::showBinViewer() { registry_.show(Kind::BinViewer); }
void MainWindow::showBinCompare() { registry_.show(Kind::BinCompare); }
void MainWindow::showLogPlayer() { registry_.show(Kind::LogPlayer); }
LogChartWindow* MainWindow::openLogChart(const QString& logPath)
{
    if (logPath.isEmpty())
        return nullptr;
    for (QWidget* w : registry_.all(Kind::LogChart)) {
        auto* chart = static_cast<LogChartWindow*>(w);
        if (vexorin::files::identity(chart->chart().path()) == vexorin::files::identity(logPath)) {
            if (!chart->load(logPath))  // read again: the log may have grown
                return nullptr;
            chart->show();
            chart->raise();
            chart->activateWindow();
            return chart;
        }
    }
    auto* w = new LogChartWindow(this);
    w->setAttribute(Qt::WA_DeleteOnClose);
    if (!w->load(logPath)) {
        delete w;
        return nullptr;
    }
    registry_.add(Kind::LogChart, w);
    w->chart().followPlayer(&registry_.make<LogPlayerWindow>(Kind::LogPlayer)->player());
    connect(&w->chart(), &LogChart::frameChosen, this, &MainWindow::playLogFrom);
    w->show();
    w->raise();
    return w;
}

void MainWindow::playLogFrom(const QString& logPath, qint64 firstLine)
{
    auto* w = registry_.make<LogPlayerWindow>(Kind::LogPlayer);
    LogPlayer& player = w->player();
    if (player.pathBox() == LogPlayer::kNoFile || vexorin::files::identity(player.pathBox()) != vexorin::files::identity(logPath))
        player.loadChosen(logPath);
    player.goToLine(firstLine);
    if (!w->isVisible())
        w->show();  // beside the chart, which keeps the focus
}

void MainWindow::showFaultCodes() { registry_.show(Kind::FaultCodes); }
void MainWindow::showSplash() { registry_.show(Kind::Splash); }
void MainWindow::showCredits() { registry_.show(Kind::Credits); }
void MainWindow::showExternalSensors() { registry_.show(Kind::ExternalSensors); }
void MainWindow::showFuelCorrection() { registry_.show(Kind::FuelCorrection); }

// A map's row of the BIN Compare: the Map Viewer, as Tools, Map Viewer/Editor shows it.
void MainWindow::openMapCompare(int tab, const QString& a, const QString& b)
{
    showMapViewer();
    MapViewerWindow* w = mapViewerWindow();
    if (!w)
        return;
    MapViewer& viewer = w->viewer();
    if (!viewer.LoadBinFile(a))
        return;
    viewer.setCurrentTab(tab);
    w->tabs()->setCurrentIndex(tab);
    viewer.compareWith(b);
}

void MainWindow::showStartupAnnounce()
{
    registry_.make<StartupAnnounceWindow>(Kind::StartupAnnounce)->open();
}

void MainWindow::showSpeechEngines()
{
    registry_.make<SpeechEnginesWindow>(Kind::SpeechEngines)->reload();
    registry_.show(Kind::SpeechEngines);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    core_.shutdown();
    core_.UnloadSwitch.clear();
    unloadWindows();
    event->accept();
}

void MainWindow::exitFromMenu()
{
    core_.UnloadSwitch.clear();
    unloadWindows();
    close();
}

void MainWindow::unloadWindows()
{
    // The sensor name dialog is made by the External Gauge Monitor's window.
    if (QWidget* names = findChild<QWidget*>(QStringLiteral("SensorName"), Qt::FindDirectChildrenOnly))
        registry_.add(Kind::SensorName, names);
    registry_.unloadAll([this](QWidget* w) { emit windowUnloading(w->objectName()); });
}
