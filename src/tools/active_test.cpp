#include "tools/active_test.h"

#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/link_writes.h"
#include "consult/read_plans.h"
#include "consult/session_log.h"
#include "consult/wire.h"
#include "sensors/sensor_catalog.h"
#include "sensors/sensor_stream.h"

#include <cmath>

using namespace vexorin::tools;
using namespace vexorin::consult;
using vexorin::sensors::SensorId;

ActiveTest::ActiveTest(ConsultSession& session, SensorStream* stream, QObject* parent)
    : QObject(parent), session_(session), stream_(stream)
{
    SparkTimer.setInterval(kSparkMs);
    SelfLearnTimer.setInterval(kSelfLearnMs);
    connect(&SparkTimer, &QTimer::timeout, this, &ActiveTest::SparkTimerTick);
    connect(&SelfLearnTimer, &QTimer::timeout, this, &ActiveTest::SelfLearnTimerTick);
    for (std::size_t i = 0; i < kOnOffs.size(); ++i)
        onOffLabels[i] = kOnOffs[i].dashAtOpen ? QStringLiteral("-") : QStringLiteral("ON");
    for (std::size_t t = 0; t < trims_.size(); ++t)
        trimLabels_[t] = QString::fromStdString(vexorin::tools::trimLabel(Trim(t), trims_[t]));
    SparkTimer.start();
}

void ActiveTest::send(int code, int value)
{
    // The three bytes go out in one write, with no CmdGo after them; a
    // Check Actual on the line goes first.
    const char bytes[3] = {char(CmdActiveTest), char(code), char(value)};
    const QByteArray request(bytes, 3);
    session_.owner().whenFree(this, [this, request] { session_.link().Output(request); });
}

void ActiveTest::setWaterTempPosition(int degreesF)
{
    if (degreesF < 0 || degreesF > kWaterTempMax || degreesF == waterTemp_)
        return;
    waterTemp_ = degreesF;
    WaterTempLabel = QString::number(degreesF);
    send(kWaterTempCode, waterTempByte(degreesF));
    emit changed();
}

void ActiveTest::setTrimPosition(Trim trim, int position)
{
    const std::size_t t = std::size_t(trim);
    if (position < 0 || position >= kTrimPositions || position == trims_[t])
        return;
    trims_[t] = position;
    trimLabels_[t] = QString::fromStdString(vexorin::tools::trimLabel(trim, position));
    send(kTrims[t].code, trimByte(trim, position));
    emit changed();
}

void ActiveTest::CheckActual()
{
    waterTempEnabled_ = true;
    emit changed();
    session_.owner().whenFree(this, [this] { GetSensorInfo(); });
}

void ActiveTest::GetSensorInfo()
{
    session_.owner().run(allSensorsCycle(), this, [this](const LinkOwner::Reply& reply) {
        if (!reply) {
            session_.log().AddLogMessage(timeoutMessage());
            return;
        }
        showActual(*reply);
    });
}

void ActiveTest::showActual(const Bytes& bytes)
{
    const ReplyBuffer reply(bytes, kAllSensorsReplyLength);
    if (reply(33) != FrameStart)
        return;
    if (stream_)
        stream_->decodeActiveTestFrame(bytes);

    // The high bytes stand two places earlier than in the stream's frame.
    const auto twoByte = [&reply](SensorId id, int hiPosition, int loPosition, QString& label) {
        const int hi = reply(hiPosition);
        if (vexorin::sensors::highByteUsable(hi))
            label = QString::fromStdString(vexorin::sensors::convert(id, hi, reply(loPosition)).text);
    };
    twoByte(SensorId::RPM, 34, 37, RPMLabel);
    twoByte(SensorId::MAF, 37, 40, MAFLabel);
    TPSLabel = QString::fromStdString(vexorin::sensors::convert(SensorId::TPS, 0, reply(38)).text);
    WaterTempLabel = QString::fromStdString(vexorin::sensors::convert(SensorId::Water, 0, reply(47)).text);
    emit changed();
    // The scroll follows the measured temperature, and its change sends it as the substitute.
    bool ok = false;
    const double degrees = WaterTempLabel.toDouble(&ok);
    if (ok)
        setWaterTempPosition(int(std::floor(degrees)));
}

void ActiveTest::pressOnOff(int index)
{
    if (index < 0 || index >= kOnOffCount)
        return;
    QString& label = onOffLabels[std::size_t(index)];
    const auto step = vexorin::tools::pressOnOff(label.toStdString());
    if (!step)
        return;
    label = QString::fromStdString(step->label);
    send(kOnOffs[std::size_t(index)].code, step->value);
    emit changed();
}

void ActiveTest::ClearSelfLearn()
{
    send(kSelfLearnCode, 0);
    if (SelfLearnLabel == QLatin1String("Full")) {
        SelfLearnLabel = QStringLiteral("Clear");
        SelfLearnTimer.start();
    }
    emit changed();
}

void ActiveTest::SelfLearnTimerTick()
{
    SelfLearnLabel = QStringLiteral("Full");
    SelfLearnTimer.stop();
    emit changed();
}

void ActiveTest::selectCylinder(int index)
{
    if (index < 0 || index >= kCylinders)
        return;
    cylinder_ = index;
    // A new choice brings every cylinder back; the cut waits for CylinderOnOff.
    if (!SparkTimer.isActive()) {
        SparkTimer.start();
        OnOffLabel = QStringLiteral("ON");
        send(kCylinderCode, 0);
    }
    emit changed();
}

void ActiveTest::CylinderOnOff()
{
    if (!SparkTimer.isActive()) {
        SparkTimer.start();
        OnOffLabel = QStringLiteral("ON");
        send(kCylinderCode, 0);
        emit changed();
        return;
    }
    SparkTimer.stop();
    firstSpark_ = true;
    secondSpark_ = false;
    if (cylinder_ >= 0 && cylinder_ < kCylinders) {
        // A cut is always preceded by the all-on request.
        send(kCylinderCode, 0);
        send(kCylinderCode, cylinder_ + 1);
        OnOffLabel = QStringLiteral("OFF");
    }
    emit changed();
}

void ActiveTest::SparkTimerTick()
{
    if (firstSpark_) {
        firstSpark_ = false;
        secondSpark_ = true;
    } else if (secondSpark_) {
        secondSpark_ = false;
        firstSpark_ = true;
    }
    emit changed();
}

void ActiveTest::chooseTestOption(int index)
{
    if (index < 0 || index >= int(kTestOptions.size()))
        return;
    session_.owner().whenFree(this, [this] { session_.link().Output({CmdGo}); });
}

void ActiveTest::closing()
{
    SparkTimer.stop();
    SelfLearnTimer.stop();
    // The window may be gone by the time a read in flight has ended.
    ConsultLink& link = session_.link();
    session_.owner().whenFree(&session_, [&link] { link.Output({CmdGo}); });
}

void ActiveTest::setRpmText(const QString& text)
{
    RPMLabel = text;
    emit changed();
}
