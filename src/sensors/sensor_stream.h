// The all-sensor stream: "Monitor On/Off", and every 100 ms one request
// cycle that reads all thirteen sensors in one frame and writes them to the
// labels, bars, Dash, Byte Viewer, large view and log. With Fast Logging on,
// the request goes out once and the ECU streams until monitoring stops; each
// of its frames takes the same way to the labels and the log.
#pragma once

#include "sensors/fast_logging_frames.h"
#include "sensors/sensor_catalog.h"

#include "rom/rules/vq_table.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <array>
#include <functional>
#include <optional>

class ByteViewerCells;
class ConsultSession;
class SensorDisplays;
class SensorLogSink;
class SensorSelection;

class SensorStream : public QObject {
    Q_OBJECT
public:
    // While the ECU stays silent, a probe waits this long for its frame, so
    // that the stream sees the ECU again soon after it answers.
    static constexpr int kProbeTimeoutMs = 300;

    SensorStream(ConsultSession& session, SensorDisplays& displays, ByteViewerCells& cells,
                 SensorSelection& selection, QObject* parent = nullptr);

    void MonitorOnOff();
    void GetAllSensorDataTimerTick();
    void GetAllSensorData();
    void ReadAllSensors();

    // The log writer; null while there is none.
    void setLogSink(SensorLogSink* sink) { logSink_ = sink; }
    // The Active Test window's RPMLabel.
    void setActiveTestRpmHook(std::function<void(const QString&)> hook) { activeTestRpm_ = std::move(hook); }
    // Stops the Graph Test window's point timer and closes it.
    void setGraphTestStopHook(std::function<void()> hook) { graphTestStop_ = std::move(hook); }
    // Decimal and grouping symbols of the displayed numbers.
    void setNumberSymbols(const vexorin::sensors::NumberSymbols& s) { symbols_ = s; }
    const vexorin::sensors::NumberSymbols& numberSymbols() const { return symbols_; }

    // Decodes one 50-byte reply as a frame (true when position 33 held the frame start).
    bool decodeFrame(const std::vector<std::uint8_t>& reply);
    // The Active Test's read of the same reply: each high byte is taken two
    // places earlier, and nothing goes to the log.
    bool decodeActiveTestFrame(const std::vector<std::uint8_t>& reply);
    // Frames decoded since the program started.
    qint64 framesDecoded() const { return framesDecoded_; }

    // Fast Logging. On: a tick that finds the link free starts the stream, and
    // a tick while it runs only watches for silence. Off: a running stream
    // ends (its stop pair) and the next tick reads as always.
    void setFastLogging(bool on);
    bool fastLogging() const { return fastLogging_; }
    // The stream of Fast Logging runs now.
    bool fastStreaming() const { return fastStreaming_; }
    // Its frames as read since it last started.
    const vexorin::sensors::FastLoggingFrames& fastFrames() const { return fastFrames_; }
    // The clock of the silence watch, in milliseconds (tests step it).
    void setClock(std::function<qint64()> now) { now_ = std::move(now); }

    // The air quantity and the speed and throttle classes of the last frame.
    const vexorin::rom::VqTable& vqTable() const { return vq_; }

signals:
    // A frame of the stream went to the labels (not one of the Active Test's).
    void frameShown();

private:
    void monitorOnOffNow();
    void showReply(const std::optional<std::vector<std::uint8_t>>& reply);
    void fastTick();
    void startFastStream();
    void takeFastBytes(const std::vector<std::uint8_t>& bytes);
    void watchSilence();
    bool decode(const std::vector<std::uint8_t>& reply, int highByteDistance, bool log);
    void showSensor(vexorin::sensors::SensorId id, int hi, int lo, bool capturing);

    ConsultSession& session_;
    SensorDisplays& displays_;
    ByteViewerCells& cells_;
    SensorSelection& selection_;
    SensorLogSink* logSink_ = nullptr;
    std::function<void(const QString&)> activeTestRpm_;
    std::function<void()> graphTestStop_;
    vexorin::sensors::NumberSymbols symbols_;
    bool lastCycleTimedOut_ = false;
    bool tickMissed_ = false;
    qint64 framesDecoded_ = 0;
    bool fastLogging_ = false;
    bool fastStreaming_ = false;
    vexorin::sensors::FastLoggingFrames fastFrames_;
    qint64 lastFastFrameMs_ = 0;
    QElapsedTimer clock_;
    std::function<qint64()> now_;
    vexorin::rom::VqTable vq_;
};
