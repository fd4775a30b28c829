// End to end: monitoring the standalone simulator through the real serial
// port, with the stream's own timer running.
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/session_log.h"
#include "link_wait.h"
#include "pty_rig.h"
#include "sensors/sensor_displays.h"
#include "sensors/sensor_stream.h"

#include <QSet>
#include <QTest>

using vexorin::sensors::SensorId;

class PtyMonitorTest : public QObject {
    Q_OBJECT
private slots:
    void valuesMoveWhileMonitoring();
    void streamRecoversAfterTheEcuWasSilent();
};

void PtyMonitorTest::valuesMoveWhileMonitoring()
{
    PtyRig r;
    QVERIFY(r.start());
    AppCore& core = *r.core;
    r.sim.command("phase rev");
    core.session().ConnectDisconnect();
    QTRY_COMPARE_WITH_TIMEOUT(core.session().ConnectedLabel(), QStringLiteral("Connected"), 5000);
    QTRY_VERIFY_WITH_TIMEOUT(!core.session().GetSerialNumberKValue.isActive(), 5000);

    core.stream().MonitorOnOff();
    QSet<QString> rpm, o2;
    const qint64 before = core.stream().framesDecoded();
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 2000) {
        QTest::qWait(50);  // the stream's 100 ms timer does the reading
        rpm.insert(core.displays().label(SensorId::RPM));
        o2.insert(core.displays().label(SensorId::O2L));
    }
    const qint64 frames = core.stream().framesDecoded() - before;
    QVERIFY2(frames >= 5, qPrintable(QString::number(frames)));  // about 20 on an idle machine
    QVERIFY2(rpm.size() >= 2, qPrintable(QStringList(rpm.values()).join(QLatin1Char(' '))));
    QVERIFY(o2.size() >= 2);
    QVERIFY(core.displays().label(SensorId::RPM).toInt() > 500);
    QVERIFY(core.displays().dash(SensorId::Water) == core.displays().label(SensorId::Water));

    core.stream().MonitorOnOff();  // takes effect once the frame on its way is in
    QTRY_COMPARE_WITH_TIMEOUT(core.session().MonitorSensorsOnLabel(), QStringLiteral("OFF"), 1000);
    QTRY_COMPARE_WITH_TIMEOUT(core.displays().label(SensorId::RPM), QStringLiteral("0"), 3000);
    // Identity reads start over once monitoring ends, if the timer still runs; the session stays usable.
    core.session().ConnectDisconnect();
    QTRY_COMPARE_WITH_TIMEOUT(core.session().ConnectedLabel(), QStringLiteral("Disconnected"), 1000);
}

void PtyMonitorTest::streamRecoversAfterTheEcuWasSilent()
{
    PtyRig r;
    QVERIFY(r.start());
    AppCore& core = *r.core;
    core.session().ConnectDisconnect();
    QTRY_COMPARE_WITH_TIMEOUT(core.session().ConnectedLabel(), QStringLiteral("Connected"), 5000);
    QTRY_VERIFY_WITH_TIMEOUT(!core.session().GetSerialNumberKValue.isActive(), 5000);
    core.stream().MonitorOnOff();
    core.session().GetAllSensorDataTimer.stop();  // ticks by hand from here

    core.stream().GetAllSensorDataTimerTick();
    QVERIFY(waitForIdleLink(core.session().owner()));
    const qint64 good = core.stream().framesDecoded();
    QVERIFY(good >= 1);
    r.sim.command("silent on");
    QTest::qWait(100);
    core.stream().GetAllSensorDataTimerTick();  // the time-out runs out while the window goes on
    QVERIFY(waitForIdleLink(core.session().owner()));
    QCOMPARE(core.stream().framesDecoded(), good);
    QVERIFY(core.log().messages().contains(QStringLiteral(": No reply from the ECU within 2 seconds; request abandoned.")));
    r.sim.command("silent off");
    // The stream recovers by itself within a few ticks once the ECU answers again.
    for (int i = 0; i < 20 && core.stream().framesDecoded() == good; ++i) {
        QTest::qWait(50);
        core.stream().GetAllSensorDataTimerTick();
        QVERIFY(waitForIdleLink(core.session().owner()));
    }
    QVERIFY2(core.stream().framesDecoded() > good, qPrintable(core.log().messages().join(QLatin1Char('|'))));
}

QTEST_MAIN(PtyMonitorTest)
#include "pty_monitor_test.moc"
