// The lasting objects of the main window, without any widget: the settings,
// the Consult link and session, the port choice, the speech output and the
// models the windows show. Tests build one with their own store, speech
// recorder and device list.
#pragma once

#include "consult/port_catalog.h"

#include <QObject>
#include <array>
#include <memory>

class SettingsStore;
class SpeechOut;
class ConsultLink;
class SessionViews;
class ConsultSession;
class PortSelection;
class SessionLog;
class StatusPanels;
class ByteViewerCells;
class VoiceGate;
class SensorDisplays;
class SensorSelection;
class SensorStream;
class MonitorViews;
class OptionsMenu;
class VoiceMonitor;
class FaultCodes;
class FrameSpot;
class Alert;
class SpeechRecognition;
class GraphControl;
class GraphFeed;
class LogCapture;
class ColorFrame;
class Splash;
class UpdateCheck;
class ExternalSensors;

class AppCore : public QObject {
    Q_OBJECT
public:
    AppCore(SettingsStore& store, SpeechOut& speech, QObject* parent = nullptr);
    ~AppCore() override;

    // The start-up: each step restores what it reads, in the fixed order, and
    // a step that fails leaves its part as it was while the next one runs.
    void start();
    // The common part of closing: the log file, then the port the way a
    // disconnect closes it, if it is open.
    void shutdown();

    // Flags of the main window that other parts compare as texts.
    QString UnloadSwitch;
    float startupFactor = 0.0f;

    SettingsStore& store() { return store_; }
    PortCatalog& ports() { return catalog_; }
    ConsultLink& link() { return *link_; }
    ConsultSession& session() { return *session_; }
    PortSelection& portSelection() { return *portSelection_; }
    SessionLog& log() { return *log_; }
    StatusPanels& panels() { return *panels_; }
    ByteViewerCells& byteViewer() { return *cells_; }
    VoiceGate& voice() { return *voice_; }
    SensorDisplays& displays() { return *displays_; }
    SensorSelection& selection() { return *selection_; }
    SensorStream& stream() { return *stream_; }
    MonitorViews& views() { return *views_; }
    OptionsMenu& options() { return *options_; }
    VoiceMonitor& voiceMonitor() { return *voiceMonitor_; }
    FaultCodes& faultCodes() { return *faultCodes_; }
    FrameSpot& frameSpot() { return *frameSpot_; }
    // 0: speed, 1: water temperature.
    Alert& alert(int i) { return *alerts_[std::size_t(i)]; }
    SpeechRecognition& recognition() { return *recognition_; }
    // Graph1 of the main window and its feed.
    GraphControl& graph() { return *graph_; }
    GraphFeed& graphFeed() { return *graphFeed_; }
    LogCapture& capture() { return *capture_; }
    ColorFrame& colorFrame() { return *colorFrame_; }
    Splash& splash() { return *splash_; }
    UpdateCheck& updateCheck() { return *updateCheck_; }
    // The External Gauge Monitor's model on this application's ports, store, panels and voice.
    ExternalSensors* makeExternalSensors();

signals:
    // The start-up has run: the window applies its stored geometry.
    void started();

private:
    SettingsStore& store_;
    PortCatalog catalog_;
    std::unique_ptr<SessionLog> log_;
    std::unique_ptr<StatusPanels> panels_;
    std::unique_ptr<ByteViewerCells> cells_;
    std::unique_ptr<VoiceGate> voice_;
    std::unique_ptr<SessionViews> outputs_;
    std::unique_ptr<ConsultLink> link_;
    std::unique_ptr<ConsultSession> session_;
    std::unique_ptr<PortSelection> portSelection_;
    std::unique_ptr<SensorDisplays> displays_;
    std::unique_ptr<SensorSelection> selection_;
    std::unique_ptr<SensorStream> stream_;
    std::unique_ptr<MonitorViews> views_;
    std::unique_ptr<OptionsMenu> options_;
    std::unique_ptr<VoiceMonitor> voiceMonitor_;
    std::unique_ptr<FaultCodes> faultCodes_;
    std::unique_ptr<FrameSpot> frameSpot_;
    std::array<std::unique_ptr<Alert>, 2> alerts_;
    std::unique_ptr<SpeechRecognition> recognition_;
    std::unique_ptr<GraphControl> graph_;
    std::unique_ptr<GraphFeed> graphFeed_;
    std::unique_ptr<LogCapture> capture_;
    std::unique_ptr<ColorFrame> colorFrame_;
    std::unique_ptr<Splash> splash_;
    std::unique_ptr<UpdateCheck> updateCheck_;
};
