// End to end: Fast Logging on the standalone simulator through the real
// serial port, with the stream's own timer running: frames at the line's pace
// and every one of them in the log file, an ECU that falls silent asked again
// until it answers, and a cable pulled while the stream runs.
#include "app/options_menu.h"
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/link_owner.h"
#include "consult/link_writes.h"
#include "consult/session_log.h"
#include "logging/log_capture.h"
#include "pty_rig.h"
#include "sensors/sensor_stream.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {
// Connected with the identity reads done, Fast Logging on, monitoring on.
bool startFastLogging(PtyRig& r)
{
    if (!r.start() || !connectAndSettle(r.core->session()))
        return false;
    r.core->options().ToggleFastLogging();
    r.core->stream().MonitorOnOff();
    return r.core->session().MonitorSensorsOnLabel() == QLatin1String("ON");
}
}  // namespace

class PtyFastLoggingTest : public QObject {
    Q_OBJECT
private slots:
    void framesAtTheLinesPaceAndEveryOneLogged();
    void silentEcuIsAskedAgainUntilItAnswers();
    void pulledCableEndsTheStreamAndMonitoring();
};

void PtyFastLoggingTest::framesAtTheLinesPaceAndEveryOneLogged()
{
    PtyRig r({QStringLiteral("--pace")});
    QVERIFY(r.start());
    QVERIFY(connectAndSettle(r.core->session()));
    AppCore& core = *r.core;
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("fast.log"));
    core.capture().CapturetologfileClicked([&](const QString&) { return path; });
    QVERIFY(core.capture().fileOpen());
    core.options().ToggleFastLogging();
    SensorStream& stream = core.stream();
    const qint64 before = stream.framesDecoded();
    stream.MonitorOnOff();
    QTRY_VERIFY_WITH_TIMEOUT(stream.framesDecoded() > before, 2000);
    const qint64 first = stream.framesDecoded();
    QTest::qWait(2000);
    const qint64 frames = stream.framesDecoded() - first;
    // The line carries 53 a second, the reads of every tick ten at most.
    QVERIFY2(frames > 40, qPrintable(QString::number(frames)));
    QVERIFY(stream.fastStreaming());
    stream.MonitorOnOff();
    QVERIFY(!core.session().owner().busy());
    const qint64 decoded = stream.framesDecoded() - before;
    core.capture().close();
    QFile log(path);
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QByteArray text = log.readAll();
    QCOMPARE(qint64(text.count("\r\n")), 14 * decoded);
    QCOMPARE(stream.fastFrames().dropped(), std::size_t(0));
}

void PtyFastLoggingTest::silentEcuIsAskedAgainUntilItAnswers()
{
    PtyRig r;
    QVERIFY(startFastLogging(r));
    AppCore& core = *r.core;
    SensorStream& stream = core.stream();
    QTRY_VERIFY_WITH_TIMEOUT(stream.framesDecoded() > 3, 3000);
    r.sim.command("silent on");
    const QString timeout = vexorin::consult::timeoutMessage();
    QTRY_COMPARE_WITH_TIMEOUT(core.log().messages().count(timeout), 1, 4000);
    QTest::qWait(1000);  // a few probes go unanswered, without more lines
    QCOMPARE(core.log().messages().count(timeout), 1);
    const qint64 silent = stream.framesDecoded();
    r.sim.command("silent off");
    QTRY_VERIFY_WITH_TIMEOUT(stream.framesDecoded() > silent + 10, 4000);
    QVERIFY(stream.fastStreaming());
    QCOMPARE(core.log().messages().count(timeout), 1);
    stream.MonitorOnOff();
}

void PtyFastLoggingTest::pulledCableEndsTheStreamAndMonitoring()
{
    PtyRig r;
    QVERIFY(startFastLogging(r));
    AppCore& core = *r.core;
    QTRY_VERIFY_WITH_TIMEOUT(core.stream().framesDecoded() > 3, 3000);
    QVERIFY(core.stream().fastStreaming());
    r.sim.stop();
    QTRY_COMPARE_WITH_TIMEOUT(core.session().ConnectedLabel(), QStringLiteral("Disconnected"), 5000);
    QCOMPARE(core.session().MonitorSensorsOnLabel(), QStringLiteral("OFF"));
    QVERIFY(!core.session().GetAllSensorDataTimer.isActive());
    QVERIFY(!core.stream().fastStreaming());
    QVERIFY(!core.session().owner().busy());
    QVERIFY(!core.link().PortOpen());
    bool lostLine = false;
    for (const QString& m : core.log().messages())
        lostLine = lostLine || m.startsWith(QStringLiteral(": Consult port lost ("));
    QVERIFY2(lostLine, qPrintable(core.log().messages().join(QLatin1Char('|'))));
}

QTEST_MAIN(PtyFastLoggingTest)
#include "pty_fast_logging_test.moc"
