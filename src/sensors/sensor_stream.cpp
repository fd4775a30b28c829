#include "sensors/sensor_stream.h"

#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/link_writes.h"
#include "consult/read_plans.h"
#include "consult/session_log.h"
#include "consult/session_outputs.h"
#include "consult/wire.h"
#include "sensors/byte_viewer_cells.h"
#include "sensors/sensor_displays.h"
#include "sensors/sensor_log_sink.h"
#include "sensors/sensor_selection.h"

using namespace vexorin::sensors;
using namespace vexorin::consult;

namespace {
// The word the stream compares with LargeSensorWord, per sensor in frame
// order. The oxygen sensors' words are never what their buttons set, so the
// large view does not follow them here.
constexpr const char* kStreamWords[kSensorCount] = {
    "Speed", "RPM", "TPS", "MAF", "L (O2)", "R (O2)", "INJ", "Timing", "IACV", "Water", "Fuel", "Battery", "A/F"};

constexpr int kFrameStartPosition = 33;
}  // namespace

SensorStream::SensorStream(ConsultSession& session, SensorDisplays& displays, ByteViewerCells& cells,
                           SensorSelection& selection, QObject* parent)
    : QObject(parent), session_(session), displays_(displays), cells_(cells), selection_(selection)
{
    clock_.start();
    now_ = [this] { return clock_.elapsed(); };
    connect(&session_.GetAllSensorDataTimer, &QTimer::timeout, this, &SensorStream::GetAllSensorDataTimerTick);
}

void SensorStream::MonitorOnOff()
{
    // Waiting for the link would end the fast stream, and its stop pair would
    // go out before the switch's own: the switch ends it instead.
    if (fastStreaming_) {
        monitorOnOffNow();
        return;
    }
    session_.owner().whenFree(this, [this] { monitorOnOffNow(); });
}

void SensorStream::monitorOnOffNow()
{
    if (session_.refuses(LinkOwner::Connected | LinkOwner::ToolsClosed))
        return;
    if (graphTestStop_)
        graphTestStop_();

    SessionLog& log = session_.log();
    SessionOutputs& out = session_.outputs();
    if (session_.MonitorSensorsOnLabel() == QLatin1String("OFF")) {
        selection_.DisplaySensorValues.start();
        session_.PollingSwitch = QStringLiteral("2");
        session_.GetAllSensorDataTimer.start();
        session_.setMonitorSensorsOnLabel(QStringLiteral("ON"));
        out.status(3, QStringLiteral("Monitoring Sensors"));
        out.say(QStringLiteral("Sensor Monitor on."));
        log.AddLogMessage(QStringLiteral(": Sensor Monitor on."));
        lastCycleTimedOut_ = false;
        return;
    }

    selection_.DisplaySensorValues.stop();
    session_.GetAllSensorDataTimer.stop();
    session_.PollingSwitch = QStringLiteral("1");
    session_.VoiceMonitorTimer.stop();
    session_.setVoiceMonitorOnLabel(QStringLiteral("OFF"));
    session_.setVoiceMonitorChecked(false);
    session_.setMonitorSensorsOnLabel(QStringLiteral("OFF"));
    out.status(3, QStringLiteral("Standby"));
    out.say(QStringLiteral(": Sensor and voice Monitor off."));
    log.AddLogMessage(QStringLiteral("Sensor and voice Monitor off."));
    ConsultLink& link = session_.link();
    if (!link.PortOpen())
        link.setPortOpen(true);
    if (fastStreaming_) {
        session_.owner().endStream();  // its stop is the pair
    } else {
        link.Output({CmdStop});
        link.Output({CmdStop});
    }
    link.setInBufferCount(0);
    session_.SensorOffTimer.start();
}

void SensorStream::GetAllSensorDataTimerTick()
{
    if (fastLogging_) {
        fastTick();
        return;
    }
    if (session_.owner().busy()) {
        tickMissed_ = true;
        return;
    }
    GetAllSensorData();
}

void SensorStream::GetAllSensorData()
{
    if (session_.PollingSwitch.toInt() != 2) {
        session_.link().setInBufferCount(0);
        return;
    }
    ReadAllSensors();
}

void SensorStream::ReadAllSensors()
{
    const int timeoutMs = lastCycleTimedOut_ ? kProbeTimeoutMs : kReplyTimeoutMs;
    session_.owner().run(allSensorsCycle(timeoutMs), this, [this](const LinkOwner::Reply& reply) { showReply(reply); });
}

void SensorStream::showReply(const LinkOwner::Reply& reply)
{
    if (!reply) {
        // One line per outage, not one per probe.
        if (!lastCycleTimedOut_)
            session_.log().AddLogMessage(timeoutMessage());
        lastCycleTimedOut_ = true;
    } else {
        lastCycleTimedOut_ = false;
        decodeFrame(*reply);
    }
    session_.link().setInBufferCount(0);
    // A tick that fell due while the frame was on the line runs now, as it
    // did when the read held the window: a slow line costs a little, not half the rate.
    if (tickMissed_) {
        tickMissed_ = false;
        QTimer::singleShot(0, this, [this] {
            if (session_.GetAllSensorDataTimer.isActive())
                GetAllSensorDataTimerTick();
        });
    }
}

void SensorStream::setFastLogging(bool on)
{
    fastLogging_ = on;
    if (!on && fastStreaming_)
        session_.owner().endStream();
}

void SensorStream::fastTick()
{
    if (fastStreaming_) {
        watchSilence();
        return;
    }
    if (session_.owner().busy())
        return;  // a read of someone else's: a later tick starts the stream
    if (session_.PollingSwitch.toInt() != 2) {
        session_.link().setInBufferCount(0);
        return;
    }
    startFastStream();
}

void SensorStream::startFastStream()
{
    fastFrames_ = FastLoggingFrames();
    lastFastFrameMs_ = now_();
    fastStreaming_ = true;
    // However the stream ends (monitoring off, the switch, a user action that
    // takes the link, a disconnect, a pulled cable, the silence watch), the
    // flag falls with it; while monitoring goes on, the next tick asks again.
    const bool started = session_.owner().startStream(
        fastLoggingPlan(), this, [this](const Bytes& bytes) { takeFastBytes(bytes); },
        [this] { fastStreaming_ = false; });
    if (!started)
        fastStreaming_ = false;
}

void SensorStream::takeFastBytes(const Bytes& bytes)
{
    for (const Bytes& reply : fastFrames_.feed(bytes)) {
        lastCycleTimedOut_ = false;
        lastFastFrameMs_ = now_();
        decodeFrame(reply);
    }
}

// An ECU that stops sending (or never started) is asked again, as the reads
// ask each tick: after the read's time-out, then at the pace of the probes.
// One log line per outage.
void SensorStream::watchSilence()
{
    const int limitMs = lastCycleTimedOut_ ? kProbeTimeoutMs : kReplyTimeoutMs;
    if (now_() - lastFastFrameMs_ < limitMs)
        return;
    if (!lastCycleTimedOut_)
        session_.log().AddLogMessage(timeoutMessage());
    lastCycleTimedOut_ = true;
    session_.owner().endStream();
}

bool SensorStream::decodeFrame(const std::vector<std::uint8_t>& reply)
{
    return decode(reply, 1, true);
}

bool SensorStream::decodeActiveTestFrame(const std::vector<std::uint8_t>& reply)
{
    return decode(reply, 3, false);
}

bool SensorStream::decode(const std::vector<std::uint8_t>& reply, int highByteDistance, bool log)
{
    const ReplyBuffer frame(reply, kAllSensorsReplyLength);
    if (frame(kFrameStartPosition) != FrameStart)
        return false;
    const bool capturing = log && logSink_ && logSink_->capturing();
    if (capturing)
        logSink_->writeDateTimeLine();
    for (const SensorSpec& s : kSensors) {
        const int lo = frame(s.position);
        const int hi = s.twoBytes ? frame(s.position - highByteDistance) : 0;
        showSensor(s.id, hi, lo, capturing);
    }
    ++framesDecoded_;
    if (log)
        emit frameShown();
    return true;
}

void SensorStream::showSensor(SensorId id, int hi, int lo, bool capturing)
{
    const SensorSpec& s = spec(id);
    if (s.twoBytes)
        cells_.setCell(byteViewerCellOf(s.position - 1), QString::number(hi));
    cells_.setCell(byteViewerCellOf(s.position), QString::number(lo));

    SensorReading r;
    if (s.twoBytes && !highByteUsable(hi)) {
        r = lowByteReading(lo);
    } else {
        r = convert(id, hi, lo, symbols_);
        const QString text = QString::fromStdString(r.text);
        displays_.setBar(id, r.barPosition);
        displays_.setLabel(id, text);
        if (id == SensorId::RPM && activeTestRpm_)
            activeTestRpm_(text);
        if (id == SensorId::MAF)
            vq_.VQTable(vexorin::rom::vqArgument(hi * 256 + lo), displays_.label(SensorId::RPM).toStdString());
        displays_.setDash(id, text);
    }
    const QString value = QString::fromStdString(r.value);
    if (displays_.largeSensorWord() == QLatin1String(kStreamWords[int(id)])) {
        displays_.setLargeValue(value);
        displays_.setLargeBar(int(r.number.roundHalfEven()));
    }
    if (capturing)
        logSink_->writeValue(value, r.numeric);
}
