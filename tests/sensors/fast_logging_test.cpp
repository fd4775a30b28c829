// Fast Logging on a scripted ECU: the one request and the frames behind it,
// each decoded to the labels and logged whole, the frames around a lost byte
// dropped, and the stream's one stop pair when monitoring stops, at a
// disconnect, a pulled cable, the switch going off or a user action; a silent
// ECU asked again with one log line per outage; with the switch off, the
// reads of every tick as they are.
#include "consult/link_writes.h"
#include "link_wait.h"
#include "monitor_rig.h"

#include <QTest>

using vexorin::sensors::SensorId;

namespace {
// One streamed frame: frame start, length, the sixteen values.
QByteArray streamFrame(const FrameData& d)
{
    return allSensorsReply(d).mid(32);
}

QByteArray fastRequest()
{
    return allSensorsRequestKey() + char(0xF0);
}

// A frame whose speed byte tells it apart.
FrameData frameWithSpeed(std::uint8_t speed)
{
    FrameData d = typicalFrame();
    d[0] = speed;
    return d;
}

// The speed lines of the frames logged (line 2 of each).
QStringList loggedSpeeds(const RecordingLogSink& sink)
{
    QStringList speeds;
    for (qsizetype i = 0; i + 1 < sink.lines.size(); i += 14)
        speeds << sink.lines.at(i + 1);
    return speeds;
}

struct FastRig : MonitorRig {
    // Connected, Fast Logging on, monitoring on with the ticks run by hand.
    FastRig()
    {
        connect();
        setFrame(typicalFrame());
        stream.setFastLogging(true);
        stream.MonitorOnOff();
        session.GetAllSensorDataTimer.setInterval(60000);
        stream.setClock([this] { return now; });
    }
    // A tick that starts the stream; the ECU's echoes and first frame follow.
    void startStreaming()
    {
        transport->clearWritten();
        stream.GetAllSensorDataTimerTick();
        settle();
    }
    void arriveFrames(const QList<FrameData>& frames)
    {
        QByteArray bytes;
        for (const FrameData& f : frames)
            bytes += streamFrame(f);
        transport->arrive(bytes);
        settle();
    }
    qint64 now = 1000;
};
}  // namespace

class FastLoggingTest : public QObject {
    Q_OBJECT
private slots:
    void oneRequestThenFramesAndNothingMoreOnTheLine();
    void framesGoToTheLabelsCellsAndViews();
    void everyFrameIsLoggedWhole();
    void aLostByteIsPassedOverToTheNextFrameStart();
    void monitorOffSendsTheStopPairOnce();
    void monitorOffBeforeTheStreamStartedSendsThePairOnce();
    void disconnectEndsTheStream();
    void pulledCableEndsTheStream();
    void switchedOffWhileMonitoringTheTicksReadAgain();
    void aUserActionEndsTheStreamAndTheNextTickResumes();
    void silentEcuIsAskedAgainWithOneLogLinePerOutage();
    void switchedOffTheTicksReadAsAlways();
};

void FastLoggingTest::oneRequestThenFramesAndNothingMoreOnTheLine()
{
    FastRig r;
    r.startStreaming();
    QCOMPARE(r.transport->written(), fastRequest());
    QCOMPARE(r.transport->writes().size(), 33);  // one byte a write
    QVERIFY(r.stream.fastStreaming());
    QVERIFY(r.session.owner().streaming());
    const int requests = r.ecu->requests;
    r.arriveFrames({frameWithSpeed(1), frameWithSpeed(2), frameWithSpeed(3), frameWithSpeed(4)});
    // The ECU's first frame and three of these; the fourth waits for the next frame start.
    QTRY_COMPARE(r.stream.framesDecoded(), qint64(4));
    for (int i = 0; i < 5; ++i) {
        r.stream.GetAllSensorDataTimerTick();
        r.arriveFrames({frameWithSpeed(std::uint8_t(10 + i))});
    }
    QCOMPARE(r.stream.framesDecoded(), qint64(9));
    QCOMPARE(r.transport->written(), fastRequest());
    QCOMPARE(r.ecu->requests, requests);
}

void FastLoggingTest::framesGoToTheLabelsCellsAndViews()
{
    FastRig r;
    QStringList activeTestRpm;
    r.stream.setActiveTestRpmHook([&](const QString& t) { activeTestRpm << t; });
    r.selection.SelectSensor(SensorId::RPM);
    r.selection.DisplaySensorValues.stop();  // it would copy the label over the large view
    r.startStreaming();
    FrameData d = typicalFrame();
    d[0] = 40;  // speed 49.6
    r.arriveFrames({d, typicalFrame()});
    QCOMPARE(r.stream.framesDecoded(), qint64(2));
    QCOMPARE(r.displays.label(SensorId::Speed), QStringLiteral("49.6"));
    QCOMPARE(r.displays.label(SensorId::RPM), QStringLiteral("1012"));
    QCOMPARE(r.displays.label(SensorId::Battery), QStringLiteral("12.00"));
    QCOMPARE(r.displays.bar(SensorId::Water), 176);
    QCOMPARE(r.displays.dash(SensorId::RPM), QStringLiteral("1012"));
    QCOMPARE(r.displays.largeValue(), QStringLiteral("1012.5"));
    QCOMPARE(r.cells.cell(1), QStringLiteral("40"));
    QCOMPARE(r.cells.cell(33), QStringLiteral("100"));
    QCOMPARE(activeTestRpm, (QStringList{QStringLiteral("1012"), QStringLiteral("1012")}));
    QCOMPARE(r.stream.vqTable().airQuantity(), 73);
}

void FastLoggingTest::everyFrameIsLoggedWhole()
{
    FastRig r;
    r.sink.on = true;
    r.startStreaming();
    r.arriveFrames({typicalFrame(), typicalFrame(), typicalFrame()});
    QCOMPARE(r.stream.framesDecoded(), qint64(3));
    const QStringList frame{QStringLiteral("<date>"), "37.2", "1012.5", "T:0.46", "T:1.01", "T:0.45", "T:0.46",
                            "3", "14", "30.5", "176", "104", "T:12.00", "100"};
    QCOMPARE(r.sink.lines, frame + frame + frame);
}

void FastLoggingTest::aLostByteIsPassedOverToTheNextFrameStart()
{
    FastRig r;
    r.sink.on = true;
    r.startStreaming();
    QByteArray line = streamFrame(frameWithSpeed(10));
    QByteArray lost = streamFrame(frameWithSpeed(20));
    lost.remove(9, 1);  // its O2 (R) byte never came
    line += lost;
    for (std::uint8_t s : {30, 40, 50})
        line += streamFrame(frameWithSpeed(s));
    line += QByteArray(1, char(0xFF));
    r.transport->arrive(line);
    r.settle();
    // The frame that lost a byte and the one whose start it took are not
    // decoded shifted: the log goes on with the next whole frame.
    QCOMPARE(loggedSpeeds(r.sink), (QStringList{"37.2", "12.4", "49.6", "62"}));
    QCOMPARE(r.sink.lines.size(), 4 * 14);
    QCOMPARE(r.stream.fastFrames().dropped(), std::size_t(1));
    QCOMPARE(r.displays.label(SensorId::Speed), QStringLiteral("62"));
    // An extra byte is passed over the same way.
    QByteArray extra = streamFrame(frameWithSpeed(60));
    extra.insert(4, char(0x77));
    r.transport->arrive(extra.mid(1) + streamFrame(frameWithSpeed(70)) + streamFrame(frameWithSpeed(80)));
    r.settle();
    QCOMPARE(loggedSpeeds(r.sink).mid(4), QStringList{"86.8"});
    QCOMPARE(r.stream.fastFrames().dropped(), std::size_t(2));
}

void FastLoggingTest::monitorOffSendsTheStopPairOnce()
{
    FastRig r;
    r.startStreaming();
    r.arriveFrames({typicalFrame()});
    r.transport->clearWritten();
    r.speech.clear();
    r.stream.MonitorOnOff();
    QCOMPARE(r.transport->written(), QByteArray::fromHex("3030"));
    QCOMPARE(r.transport->writes().size(), 2);
    QVERIFY(!r.stream.fastStreaming());
    QVERIFY(!r.session.owner().busy());
    QCOMPARE(r.session.MonitorSensorsOnLabel(), QStringLiteral("OFF"));
    QCOMPARE(r.session.PollingSwitch, QStringLiteral("1"));
    QCOMPARE(r.speech.spoken(), QStringList{QStringLiteral(": Sensor and voice Monitor off.")});
    QVERIFY(r.session.SensorOffTimer.isActive());
    // Whatever the ECU still sends is not decoded, and a late tick sends nothing.
    const qint64 frames = r.stream.framesDecoded();
    r.arriveFrames({typicalFrame(), typicalFrame()});
    r.stream.GetAllSensorDataTimerTick();
    QCOMPARE(r.stream.framesDecoded(), frames);
    QCOMPARE(r.transport->written(), QByteArray::fromHex("3030"));
    // On again: the next tick asks once more.
    r.stream.MonitorOnOff();
    r.stream.GetAllSensorDataTimerTick();
    QCOMPARE(r.transport->written(), QByteArray::fromHex("3030") + fastRequest());
    QVERIFY(r.stream.fastStreaming());
}

void FastLoggingTest::monitorOffBeforeTheStreamStartedSendsThePairOnce()
{
    FastRig r;
    r.transport->clearWritten();
    r.stream.MonitorOnOff();
    QCOMPARE(r.transport->written(), QByteArray::fromHex("3030"));
    QCOMPARE(r.session.MonitorSensorsOnLabel(), QStringLiteral("OFF"));
}

void FastLoggingTest::disconnectEndsTheStream()
{
    FastRig r;
    r.startStreaming();
    r.transport->clearWritten();
    QPointer<FakeTransport> port = r.transport;
    r.session.ConnectDisconnect();
    // The stream's stop pair, then the disconnect's own, as after a read in flight.
    QCOMPARE(port->written(), QByteArray::fromHex("30303030"));
    QVERIFY(!r.stream.fastStreaming());
    QVERIFY(!r.session.owner().busy());
    QCOMPARE(r.session.ConnectedLabel(), QStringLiteral("Disconnected"));
    QCOMPARE(r.session.MonitorSensorsOnLabel(), QStringLiteral("OFF"));
    QVERIFY(!r.session.GetAllSensorDataTimer.isActive());
    r.stream.GetAllSensorDataTimerTick();
    QVERIFY(!r.session.owner().busy());
}

void FastLoggingTest::pulledCableEndsTheStream()
{
    FastRig r;
    r.startStreaming();
    r.arriveFrames({typicalFrame()});
    r.transport->unplug(QStringLiteral("Device removed"));
    r.settle();
    QVERIFY(!r.stream.fastStreaming());
    QVERIFY(!r.session.owner().busy());
    QCOMPARE(r.session.MonitorSensorsOnLabel(), QStringLiteral("OFF"));
    QCOMPARE(r.session.PollingSwitch, QStringLiteral("1"));
    QVERIFY(r.log.messages().contains(QStringLiteral(": Consult port lost (Device removed).")));
    // A tick that was already due starts nothing.
    r.stream.GetAllSensorDataTimerTick();
    QVERIFY(!r.session.owner().busy());
    QVERIFY(!r.stream.fastStreaming());
}

void FastLoggingTest::switchedOffWhileMonitoringTheTicksReadAgain()
{
    FastRig r;
    r.startStreaming();
    r.transport->clearWritten();
    r.stream.setFastLogging(false);
    QCOMPARE(r.transport->written(), QByteArray::fromHex("3030"));
    QVERIFY(!r.stream.fastStreaming());
    QCOMPARE(r.session.MonitorSensorsOnLabel(), QStringLiteral("ON"));
    r.transport->clearWritten();
    r.stream.GetAllSensorDataTimerTick();
    QVERIFY(waitForIdleLink(r.session.owner()));
    QCOMPARE(r.transport->written(), fastRequest() + QByteArray::fromHex("3030"));
    // On again: the next tick starts the stream.
    r.stream.setFastLogging(true);
    r.transport->clearWritten();
    r.stream.GetAllSensorDataTimerTick();
    QCOMPARE(r.transport->written(), fastRequest());
    QVERIFY(r.stream.fastStreaming());
}

void FastLoggingTest::aUserActionEndsTheStreamAndTheNextTickResumes()
{
    FastRig r;
    r.startStreaming();
    r.arriveFrames({typicalFrame()});
    QCOMPARE(r.cells.cell(1), QStringLiteral("30"));
    r.transport->clearWritten();
    r.session.ClearBuffer();  // a service button waits for the link
    QCOMPARE(r.transport->written(), QByteArray::fromHex("3030"));
    QVERIFY(!r.stream.fastStreaming());
    QCOMPARE(r.cells.cell(1), QString());
    r.stream.GetAllSensorDataTimerTick();
    QCOMPARE(r.transport->written(), QByteArray::fromHex("3030") + fastRequest());
    QVERIFY(r.stream.fastStreaming());
    r.settle();
    r.arriveFrames({typicalFrame()});
    QCOMPARE(r.displays.label(SensorId::Speed), QStringLiteral("37.2"));
}

void FastLoggingTest::silentEcuIsAskedAgainWithOneLogLinePerOutage()
{
    FastRig r;
    r.ecu->silent = true;
    const QString timeout = vexorin::consult::timeoutMessage();
    r.startStreaming();
    r.now += vexorin::consult::kReplyTimeoutMs - 1;
    r.stream.GetAllSensorDataTimerTick();
    QVERIFY(r.stream.fastStreaming());
    QCOMPARE(r.log.messages().count(timeout), 0);
    r.now += 1;
    r.transport->clearWritten();
    r.stream.GetAllSensorDataTimerTick();
    QCOMPARE(r.transport->written(), QByteArray::fromHex("3030"));
    QVERIFY(!r.stream.fastStreaming());
    QCOMPARE(r.log.messages().count(timeout), 1);
    // Probes from then on, at their shorter pace, and no more log lines.
    for (int i = 0; i < 3; ++i) {
        r.transport->clearWritten();
        r.stream.GetAllSensorDataTimerTick();
        QCOMPARE(r.transport->written(), fastRequest());
        r.now += SensorStream::kProbeTimeoutMs;
        r.stream.GetAllSensorDataTimerTick();
        QVERIFY(!r.stream.fastStreaming());
    }
    QCOMPARE(r.log.messages().count(timeout), 1);
    // The ECU answers the next probe and the frames flow again.
    r.ecu->silent = false;
    r.startStreaming();
    r.arriveFrames({frameWithSpeed(40)});
    QCOMPARE(r.displays.label(SensorId::Speed), QStringLiteral("37.2"));
    r.now += SensorStream::kProbeTimeoutMs;
    r.stream.GetAllSensorDataTimerTick();
    QVERIFY(r.stream.fastStreaming());  // a frame came within the probe's time: the read's time-out again
    // A new outage gets its own line.
    r.now += vexorin::consult::kReplyTimeoutMs;
    r.stream.GetAllSensorDataTimerTick();
    QVERIFY(!r.stream.fastStreaming());
    QCOMPARE(r.log.messages().count(timeout), 2);
}

void FastLoggingTest::switchedOffTheTicksReadAsAlways()
{
    MonitorRig r;
    r.connect();
    r.setFrame(typicalFrame());
    r.stream.setFastLogging(true);
    r.stream.setFastLogging(false);
    r.stream.MonitorOnOff();
    r.session.GetAllSensorDataTimer.setInterval(60000);
    QByteArray expected;
    r.transport->clearWritten();
    for (int i = 0; i < 3; ++i) {
        r.stream.GetAllSensorDataTimerTick();
        QVERIFY(waitForIdleLink(r.session.owner()));
        expected += fastRequest() + QByteArray::fromHex("3030");
    }
    QCOMPARE(r.transport->written(), expected);
    QCOMPARE(r.transport->writes().size(), 3 * 35);
    QVERIFY(!r.stream.fastStreaming());
    QCOMPARE(r.stream.framesDecoded(), qint64(3));
}

QTEST_GUILESS_MAIN(FastLoggingTest)
#include "fast_logging_test.moc"
