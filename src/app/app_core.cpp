#include "app/app_core.h"

#include "app/color_frame.h"
#include "app/options_menu.h"
#include "app/port_selection.h"
#include "app/session_views.h"
#include "app/settings/settings_access.h"
#include "app/splash.h"
#include "app/update_check.h"
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/fault_codes.h"
#include "consult/session_log.h"
#include "external/external_ports.h"
#include "external/external_sensors.h"
#include "graph/graph_control.h"
#include "graph/graph_feed.h"
#include "logging/log_capture.h"
#include "sensors/byte_viewer_cells.h"
#include "sensors/monitor_views.h"
#include "sensors/sensor_displays.h"
#include "sensors/sensor_selection.h"
#include "sensors/sensor_stream.h"
#include "ui/regular_file.h"
#include "ui/status_panels.h"
#include "voice/alerts.h"
#include "voice/speech_recognition.h"
#include "voice/voice_gate.h"
#include "voice/voice_monitor.h"

#include <QFile>
#include <QLocale>
#include <functional>

namespace {
// The simulator rows' car as the settings describe it: a fuel error in percent
// ('.' as the decimal mark; anything else reads as 0) and a ROM file.
SimulatorConfig simulatorConfig(const SettingsStore& store, SessionLog& log)
{
    SimulatorConfig c;
    bool ok = false;
    const double error = readSettingOrDefault(store, Settings::SimulatorFuelError).trimmed().toDouble(&ok);
    c.fuelError = ok ? error : 0.0;
    c.romFile = readSetting(store, Settings::SimulatorRomFile).trimmed();
    c.note = [&log](const QString& line) { log.AddLogMessage(line); };
    return c;
}

// A session recording: a setting may name anything, but only a regular file (or a new one) is written.
std::unique_ptr<QIODevice> openRecordingFile(const QString& path, QString* error)
{
    auto file = std::make_unique<QFile>(path);
    if (!vexorin::files::openRegular(*file, QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text, error))
        return nullptr;
    return file;
}
}  // namespace

AppCore::AppCore(SettingsStore& store, SpeechOut& speech, QObject* parent)
    : QObject(parent),
      store_(store),
      catalog_(store, openRecordingFile),
      log_(std::make_unique<SessionLog>()),
      panels_(std::make_unique<StatusPanels>()),
      cells_(std::make_unique<ByteViewerCells>()),
      voice_(std::make_unique<VoiceGate>(speech))
{
    catalog_.setSimulatorConfig([this] { return simulatorConfig(store_, *log_); });
    link_ = std::make_unique<ConsultLink>(
        [this](int port, QString* error) { return catalog_.makeTransport(port, error); });
    outputs_ = std::make_unique<SessionViews>(*panels_, *cells_, *voice_);
    session_ = std::make_unique<ConsultSession>(*link_, *log_, *outputs_);
    portSelection_ = std::make_unique<PortSelection>(*session_, store_, catalog_.source());
    displays_ = std::make_unique<SensorDisplays>();
    selection_ = std::make_unique<SensorSelection>(*displays_, *log_, *outputs_);
    stream_ = std::make_unique<SensorStream>(*session_, *displays_, *cells_, *selection_);
    views_ = std::make_unique<MonitorViews>(*displays_, *session_);
    options_ = std::make_unique<OptionsMenu>(store_);
    connect(options_.get(), &OptionsMenu::changed, stream_.get(),
            [this] { stream_->setFastLogging(options_->fastLogging()); });
    voiceMonitor_ = std::make_unique<VoiceMonitor>(*session_, *voice_, *displays_, *options_, store_);
    faultCodes_ = std::make_unique<FaultCodes>(*session_);
    frameSpot_ = std::make_unique<FrameSpot>();
    alerts_[0] = std::make_unique<Alert>(kAlerts[0], FrameSpot::SpeedAlert, *displays_, *voice_, store_, *frameSpot_);
    alerts_[1] = std::make_unique<Alert>(kAlerts[1], FrameSpot::WaterAlert, *displays_, *voice_, store_, *frameSpot_);
    recognition_ = std::make_unique<SpeechRecognition>();
    graph_ = std::make_unique<GraphControl>(vexorin::graph::GraphSettings::mainWindow());
    graphFeed_ = std::make_unique<GraphFeed>(*graph_, *displays_, *session_);
    selection_->setGraphMaximumHook([this](int max) { graphFeed_->setGraphMaximum(max); });
    stream_->setGraphTestStopHook([this] { graphFeed_->stopGraphTest(); });
    capture_ = std::make_unique<LogCapture>(store_, *log_);
    stream_->setLogSink(capture_.get());
    colorFrame_ = std::make_unique<ColorFrame>(store_, *displays_, *frameSpot_);
    splash_ = std::make_unique<Splash>();
    updateCheck_ = std::make_unique<UpdateCheck>(store_);

    const QLocale locale;
    stream_->setNumberSymbols({locale.decimalPoint().toStdString(), locale.groupSeparator().toStdString()});
}

AppCore::~AppCore()
{
    shutdown();
}

void AppCore::start()
{
    ConsultSession& s = *session_;
    const std::function<void()> steps[] = {
        // The graph's first point: the hidden test scroll bar's value.
        [this] { graphFeed_->addFirstPoint(0); },
        // The bar colours (the window geometry is the window's own step).
        [this] { colorFrame_->restore(); },
        // Graph colours: a missing setting reads as colour 0.
        [this] { graph_->setPointColor(readSetting(store_, Settings::Graph1PointColor).toUInt()); },
        [this] { graph_->setBarColor(readSetting(store_, Settings::Graph1BarColor).toUInt()); },
        [this] { alerts_[0]->restore(); },
        [this] { alerts_[1]->restore(); },
        // Stay on top, Fast Logging, MPH/KPH, Windows 7/XP.
        [this] { options_->restore(); },
        // Use ConZult Interface and Notify When Selecting Ports.
        [this] { portSelection_->restoreChecks(); },
        [this] { voiceMonitor_->restoreInterval(); },
        [this] { voiceMonitor_->restoreVoiceType(); },
        [this] { voiceMonitor_->restoreVoiceOn(); },
        [this, &s] {
            splash_->SplashSwitch = QStringLiteral("0");
            s.PortAvailableSwitch = QStringLiteral("0");
            s.PollingSwitch = QStringLiteral("1");
            s.InitializedSwitch = QStringLiteral("No");
            voiceMonitor_->VoiceSwitch = QStringLiteral("Voice On");
            s.KeepInitializationTimerOffSwitch = QStringLiteral("Off");
            UnloadSwitch.clear();
            startupFactor = 0.15f;
            log_->clear();
            s.setFaultCodeList(QString());
            panels_->setText(1, QStringLiteral("Consult Port Disconnected"));
        },
        [this] { portSelection_->RefreshPortList(); },
        [this] { voiceMonitor_->announceStartup(); },
        [this] {
            if (!store_.problem().isEmpty())
                log_->AddLogMessage(QStringLiteral(": ") + store_.problem());
        },
    };
    for (const auto& step : steps) {
        try {
            step();
        } catch (...) {
            // A failed step leaves its part as it was; the start goes on.
        }
    }
    splash_->SplashTimer.start();
    emit started();
}

void AppCore::shutdown()
{
    if (capture_)
        capture_->close();  // the log first: capture ends with the program
    if (link_ && link_->PortOpen()) {
        // Closing does not wait: a read in flight ends as a time-out would end it.
        session_->owner().abandon();
        session_->ConnectDisconnect();
    }
}

ExternalSensors* AppCore::makeExternalSensors()
{
    PortCatalog& catalog = catalog_;
    auto* sensors =
        new ExternalSensors(store_, *panels_, *voice_, ExternalPorts::deviceSource(catalog),
                            [&catalog](int n, QString* error) { return ExternalPorts::makeTransport(catalog, n, error); });
    SessionLog& log = session_->log();
    QObject::connect(sensors, &ExternalSensors::logLine, sensors, [&log](const QString& line) { log.AddLogMessage(line); });
    return sensors;
}
