// The main window's menu bar: every menu and item with its object name, what
// it runs, and the check marks that follow the models.
#include "app/main_window.h"

#include "app/app_core.h"
#include "app/color_frame.h"
#include "app/ecu_tools_window.h"
#include "app/options_menu.h"
#include "app/platform_tools.h"
#include "app/port_selection.h"
#include "app/splash.h"
#include "app/update_check.h"
#include "consult/consult_session.h"
#include "consult/fault_codes.h"
#include "external/external_sensors.h"
#include "graph/graph_feed.h"
#include "logging/csv_export_window.h"
#include "logging/log_capture.h"
#include "rom/bin_viewer_window.h"
#include "rom/hex_chart_window.h"
#include "sensors/monitor_views.h"
#include "ui/common_dialog.h"
#include "ui/message_box.h"
#include "ui/night_palette.h"
#include "ui/window_keys.h"
#include "voice/alerts.h"
#include "voice/speech_recognition.h"
#include "voice/voice_gate.h"
#include "voice/voice_monitor.h"
#include "voice/voice_types.h"

#include <QActionGroup>
#include <QApplication>
#include <QMenuBar>




void MainWindow::buildMenus()
{
    auto add = [this](QMenu* menu, const char* name, const QString& caption, auto slot) {
        QAction* a = menu->addAction(caption);
        a->setObjectName(QString::fromLatin1(name));
        connect(a, &QAction::triggered, this, slot);
        return a;
    };
    ConsultSession& s = core_.session();
    PortSelection& ps = core_.portSelection();

    QMenu* file = menuBar()->addMenu(tr("&File"));
    captureAction_ = add(file, "Capturetologfile", QStringLiteral("Capture to log file"), [this] {
        core_.capture().CapturetologfileClicked([this](const QString& initial) {
            return mCommonDialog::saveFileName(this, QStringLiteral(".log"), QStringLiteral("LOG Files (*.log)|*.log"),
                                               initial);
        });
    });
    add(file, "ExportLogAsCsv", QStringLiteral("Export Log as CSV..."), [this] {
        vexorin::logging::exportLogAsCsv(
            this, mCommonDialog::openFileName(this, QStringLiteral(".log"), vexorin::logging::kLogOpenFilter));
    });
    captureAction_->setCheckable(true);
    connect(&core_.capture(), &LogCapture::checkedChanged, captureAction_, &QAction::setChecked);
    connect(captureAction_, &QAction::triggered, this,
            [this] { captureAction_->setChecked(core_.capture().checked()); });
    file->addSeparator();
    add(file, "Exit", tr("Exit"), [this] { exitFromMenu(); })->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    captureAction_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_L));

    consultMenu_ = menuBar()->addMenu(tr("&Consult"));
    consultMenu_->setObjectName(QStringLiteral("ConsultMenu"));
    connectAction_ = add(consultMenu_, "ConnectDisconnect", QStringLiteral("Connect/Disconnect"),
                         [&s] { s.ConnectDisconnect(); });
    connectAction_->setCheckable(true);
    connectAction_->setShortcut(QKeySequence(Qt::Key_F2));
    portRowsStart_ = consultMenu_->addSeparator();
    portRowsEnd_ = consultMenu_->addSeparator();
    add(consultMenu_, "UpdatePortInfo", QStringLiteral("Update Port Information"),
        [&ps] { ps.UpdatePortInformation(); });
    add(consultMenu_, "CheckAvailableInterfaces", QStringLiteral("Check for Connected Interfaces and Conflicts"),
        [this] { showInterfaceCheck(); });
    PortCatalog& catalog = core_.ports();
    QAction* usb = add(consultMenu_, "ChangeUSBPortSettings",
                       QStringLiteral("Change USB Port and Latency Settings or Remove Device"), [this, &catalog] {
                           MessageBoxes::information(this, catalog.latencyReport(),
                                                     QStringLiteral("USB Port and Latency Settings"));
                       });
    usb->setStatusTip(tr("Shows the latency timer of each USB serial adapter"));
    QAction* devmgr = add(consultMenu_, "LaunchDeviceManager",
                          QStringLiteral("Launch Microsoft Windows Device Manager"), [] {});
    devmgr->setEnabled(false);
    devmgr->setStatusTip(tr("Available on Windows only"));

    QMenu* view = menuBar()->addMenu(tr("&View"));
    MonitorViews& mv = core_.views();
    viewAllAction_ = add(view, "ViewAllSensors", QStringLiteral("View All Sensors"), [&mv] { mv.ViewAllSensors(); });
    viewAllAction_->setCheckable(true);
    largeViewAction_ = add(view, "LargeSensorViewer", QStringLiteral("Large Sensor View"), [&mv] { mv.LargeSensorView(); });
    largeViewAction_->setCheckable(true);
    add(view, "Dash", QStringLiteral("Dash"), [this] { showDash(); });
    add(view, "ByteViewer", QStringLiteral("Byte Viewer"), [this] { showByteViewer(); });
    QAction* night = add(view, "NightMode", QStringLiteral("Night Mode"), [this] { core_.options().ToggleNightMode(); });
    night->setCheckable(true);
    optionChecks_.append({night, &OptionsMenu::nightMode});
    connect(&core_.options(), &OptionsMenu::changed, this, [this] {
        if (core_.options().nightMode() == nightShown_)
            return;
        nightShown_ = core_.options().nightMode();
        if (nightShown_)
            dayPalette_ = QApplication::palette();  // the desktop's own, for the way back
        QApplication::setPalette(nightShown_ ? vexorin::ui::nightPalette() : dayPalette_);
        refreshLabels();
    });
    vexorin::ui::addFullScreenKey(this);
    view->addSeparator();
    add(view, "UseExternalSensors", QStringLiteral("External Sensors"), [this] { showExternalSensors(); });
    // The colour frame's targets; the A/F bar (switch 7) comes last in the menu.
    QMenu* colors = view->addMenu(QStringLiteral("Sensor Colors"));
    colors->menuAction()->setObjectName(QStringLiteral("SensorColors"));
    ColorFrame& cf = core_.colorFrame();
    for (int i : {0, 1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 12, 13, 14, 7}) {
        const ColorFrame::Target& t = ColorFrame::kTargetTable[std::size_t(i)];
        add(colors, t.menuItem, QLatin1String(t.caption), [&cf, i] { cf.ShowFrame(i); });
        if (i == 0)
            colors->addSeparator();
    }

    QMenu* voice = menuBar()->addMenu(tr("V&oice"));
    VoiceMonitor& vm = core_.voiceMonitor();
    QAction* voiceOn = add(voice, "VoiceOn", QStringLiteral("Voice On"), [&vm] { vm.ToggleVoiceOn(); });
    voiceOn->setCheckable(true);
    voiceOn->setChecked(core_.voice().voiceOnChecked());
    connect(&core_.voice(), &VoiceGate::voiceOnChanged, voiceOn, &QAction::setChecked);
    voiceMonitorAction_ = add(voice, "VoiceMonitor", QStringLiteral("Voice Monitor"), [&vm] { vm.VoiceMonitorSwitch(); });
    voiceMonitorAction_->setCheckable(true);
    QMenu* intervals = voice->addMenu(tr("Voice Monitor Interval"));
    for (int row = 0; row < int(VoiceMonitor::kIntervals.size()); ++row) {
        const IntervalItem& it = VoiceMonitor::kIntervals[std::size_t(row)];
        QAction* a = add(intervals, it.item, QLatin1String(it.caption), [&vm, row] { vm.ChooseInterval(row); });
        a->setCheckable(true);
        intervalActions_.append(a);
    }
    QMenu* types = voice->addMenu(tr("Voice Type"));
    for (int row = 0; row < int(kVoiceTypes.size()); ++row) {
        const VoiceType& t = kVoiceTypes[std::size_t(row)];
        QAction* a = add(types, t.item, QLatin1String(t.caption), [&vm, row] { vm.ChooseVoiceType(row); });
        a->setCheckable(true);
        voiceTypeActions_.append(a);
    }
    voice->addSeparator();
    add(voice, "StartupAnnounce", QStringLiteral("Startup Announce"), [this] { showStartupAnnounce(); });
    connect(&vm, &VoiceMonitor::checksChanged, this, &MainWindow::refreshChecks);

    QMenu* graph = menuBar()->addMenu(tr("&Graph"));
    GraphFeed& gf = core_.graphFeed();
    showLinesAction_ = add(graph, "ShowLines", QStringLiteral("Show Lines"), [&gf] { gf.ToggleShowLines(); });
    showLinesAction_->setCheckable(true);
    threeDAction_ = add(graph, "ThreeD", QStringLiteral("3 D"), [&gf] { gf.ToggleThreeD(); });
    threeDAction_->setCheckable(true);
    QMenu* sensorGraph = graph->addMenu(QStringLiteral("Sensor Graph"));
    sensorGraph->menuAction()->setObjectName(QStringLiteral("SensorGraph"));
    add(sensorGraph, "BarStyle", QStringLiteral("Bar Style"), [] {});
    add(sensorGraph, "LineStyle", QStringLiteral("Line Style"), [] {});
    graph->addSeparator();
    add(graph, "GraphTest", QStringLiteral("Graph Test"), [this] { showGraphTest(); });

    QMenu* tools = menuBar()->addMenu(tr("&Tools"));
    add(tools, "LogPlayer", QStringLiteral("Log Player"), [this] { showLogPlayer(); });
    add(tools, "LogChart", QStringLiteral("Log Chart"), [this] {
        openLogChart(mCommonDialog::openFileName(this, QStringLiteral(".log"), vexorin::logging::kLogOpenFilter));
    });
    add(tools, "MapViewer", QStringLiteral("Map Viewer/Editor"), [this] { showMapViewer(); });
    add(tools, "BinFileViewer", QStringLiteral("BIN File Viewer/Editor"), [this] { showBinViewer(); });
    add(tools, "CompareBinFiles", QStringLiteral("Compare BIN Files"), [this] { showBinCompare(); });
    add(tools, "FuelCorrection", QStringLiteral("Fuel Correction"), [this] { showFuelCorrection(); });

    // The ECU tools: BIN File Downloader, E.C.U. Register Viewer, Active Test.
    ecuTools_ = new EcuToolWindows(core_, registry_, tools, this);
    connect(ecuTools_, &EcuToolWindows::hexChartRequested, this,
            [this] { registry_.show(WindowRegistry::Kind::HexChart); });

    QMenu* alerts = menuBar()->addMenu(tr("&Alerts"));
    for (int i = 0; i < 2; ++i) {
        Alert& alert = core_.alert(i);
        add(alerts, alert.spec().menuItem, QLatin1String(alert.spec().menuCaption), [&alert] { alert.ShowFrame(); });
    }

    QMenu* options = menuBar()->addMenu(tr("&Options"));
    OptionsMenu& om = core_.options();
    stayOnTopAction_ = add(options, "StayOnTop", QStringLiteral("Stay on top"), [&om] { om.ToggleStayOnTop(); });
    stayOnTopAction_->setCheckable(true);
    connect(&om, &OptionsMenu::changed, this, [this] {
        const bool on = core_.options().stayOnTop();
        if (stayOnTopAction_->isChecked() != on || bool(windowFlags() & Qt::WindowStaysOnTopHint) != on) {
            stayOnTopAction_->setChecked(on);
            const bool shown = isVisible();
            setWindowFlag(Qt::WindowStaysOnTopHint, on);  // no move, no size change
            if (shown)
                show();
        }
    });
    add(options, "SetWindowSize", QStringLiteral("Set Window Size and Position"), [this] {
        const QRect g = frameGeometry();
        core_.options().SetWindowSize({MainWindow::twips(g.height()), MainWindow::twips(g.width()), MainWindow::twips(g.y()), MainWindow::twips(g.x())});
    });
    options->addSeparator();
    const struct {
        const char* name;
        const char* caption;
        void (OptionsMenu::*choose)();
        bool (OptionsMenu::*checked)() const;
    } choices[] = {
        {"MPH", "MPH", &OptionsMenu::ChooseMph, &OptionsMenu::mph},
        {"KPH", "KPH", &OptionsMenu::ChooseKph, &OptionsMenu::kph},
        {"WindowsSeven", "Windows 7", &OptionsMenu::ChooseWindowsSeven, &OptionsMenu::windowsSeven},
        {"WindowsXP", "Windows XP/Windows Vista", &OptionsMenu::ChooseWindowsXP, &OptionsMenu::windowsXP},
    };
    for (const auto& c : choices) {
        QAction* a = add(options, c.name, QLatin1String(c.caption), [&om, f = c.choose] { (om.*f)(); });
        a->setCheckable(true);
        optionChecks_.append({a, c.checked});
    }
    connect(&om, &OptionsMenu::changed, this, &MainWindow::refreshChecks);
    options->addSeparator();
    useConZultAction_ = add(options, "UseConZultInterface", QStringLiteral("Use ConZult Interface"),
                            [&ps] { ps.ToggleUseConZultInterface(); });
    useConZultAction_->setCheckable(true);
    notifyPortsAction_ = add(options, "NotifyPorts", QStringLiteral("Notify When Selecting Ports"),
                             [&ps] { ps.ToggleNotifyPorts(); });
    notifyPortsAction_->setCheckable(true);
    // The all-sensor stream left running while monitoring: its check mark follows the model.
    options->addSeparator();
    QAction* fastLogging = add(options, "FastLogging", QStringLiteral("Fast Logging"), [&om] { om.ToggleFastLogging(); });
    fastLogging->setCheckable(true);
    optionChecks_.append({fastLogging, &OptionsMenu::fastLogging});

    QMenu* extra = menuBar()->addMenu(tr("E&xtra Utilities"));
    extra->setToolTipsVisible(true);
    const PlatformTools desktop;
    const struct {
        const char* name;
        const char* caption;
        PlatformTool tool;
    } desktopTools[] = {{"Search", "Search For Files or Folders", desktop.search()},
                        {"PerformanceMonitor", "Performance Monitor", desktop.performanceMonitor()}};
    for (const auto& d : desktopTools) {
        QAction* a = add(extra, d.name, QLatin1String(d.caption), [this, tool = d.tool] {
            if (!PlatformTools::launch(tool))
                MessageBoxes::information(this, tr("The program %1 could not be started.").arg(tool.program));
        });
        a->setEnabled(!d.tool.program.isEmpty());
        a->setToolTip(d.tool.program.isEmpty() ? d.tool.missingTip : d.tool.program);
    }
    extra->addSeparator();
    QAction* recognition = add(extra, "StartVoiceRecognition", QStringLiteral("Start Microsoft Speech Recognition"),
                               [this] { core_.recognition().StartVoiceRecognition(); });
    recognition->setEnabled(false);
    recognition->setToolTip(tr("Windows speech recognition is available on Windows only"));
    add(extra, "SpeechEngines", QStringLiteral("Check or Tweak Installed Speech Engines"),
        [this] { showSpeechEngines(); });

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    add(help, "About", QStringLiteral("About"), [this] { showSplash(); });
    add(help, "Credits", QStringLiteral("Credits"), [this] { showCredits(); });
    add(help, "FaultCodes", QStringLiteral("Fault Codes"), [this] { showFaultCodes(); });
    add(help, "CheckForUpdates", QStringLiteral("Check For Updates"), [this] { core_.updateCheck().CheckForUpdates(); });

}
