// End to end: a recorded session through the real serial port behaves as an
// unrecorded one, against the simulator at the real line rate.
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/recording_transport.h"
#include "consult/session_log.h"
#include "pty_rig.h"
#include "sensors/sensor_stream.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {
// Frames a second while monitoring runs on its own timer for `ms`.
double monitoredRate(AppCore& core, int ms)
{
    core.stream().MonitorOnOff();
    QTest::qWait(300);  // the first tick and its reply
    const qint64 before = core.stream().framesDecoded();
    QElapsedTimer clock;
    clock.start();
    // The window runs at least `ms`, and on a machine too busy to bring a frame in that time, until
    // the first frame or ten seconds: monitoring that never streams still reads 0.
    while (clock.elapsed() < ms || (core.stream().framesDecoded() == before && clock.elapsed() < 10000))
        QTest::qWait(20);
    const double rate = double(core.stream().framesDecoded() - before) * 1000.0 / double(clock.elapsed());
    core.stream().MonitorOnOff();
    QTest::qWait(200);
    return rate;
}
}  // namespace

class PtyRecordingTest : public QObject {
    Q_OBJECT
private slots:
    void recordingChangesNothingOnTheLine();
};

void PtyRecordingTest::recordingChangesNothingOnTheLine()
{
    PtyRig r({QStringLiteral("--pace")});
    QVERIFY(r.start());
    AppCore& core = *r.core;

    // Without recording: the identity and the rate to compare with.
    QVERIFY(connectAndSettle(core.session()));
    const QString part = core.session().EcuPartNumberLabel();
    const QString kValue = core.session().KValueLabel();
    QCOMPARE(kValue, QStringLiteral("4660"));
    // Rates are the benchmarks' business (a busy machine moves them); here
    // monitoring only has to run, with and without the recorder.
    const double plain = monitoredRate(core, 2000);
    core.session().ConnectDisconnect();
    QVERIFY2(plain > 0.0, qPrintable(QString::number(plain)));

    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("session.txt"));
    r.settings.store->WriteSetting(QStringLiteral("RecordConsult"), QStringLiteral("File"), file);
    for (int connection = 0; connection < 4; ++connection) {
        QVERIFY(connectAndSettle(core.session()));
        QVERIFY(qobject_cast<RecordingTransport*>(core.link().transport()));
        QCOMPARE(core.session().EcuPartNumberLabel(), part);
        QCOMPARE(core.session().KValueLabel(), kValue);
        if (connection == 0) {
            const double recorded = monitoredRate(core, 2000);
            QVERIFY2(recorded > 0.0, qPrintable(QStringLiteral("%1 against %2").arg(recorded).arg(plain)));
        }
        core.session().ConnectDisconnect();
    }
    QVERIFY(!core.log().messages().join(QLatin1Char('\n')).contains(QStringLiteral("No reply")));

    // The recording holds the exchanges, and no wait timed out.
    QFile f(file);
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QString text = QString::fromLatin1(f.readAll());
    QVERIFY(text.contains(QStringLiteral("W ffffef")));
    QVERIFY(!text.contains(QStringLiteral("timed out")));
    QVERIFY(parseRecording(text).size() > 40);
}

QTEST_MAIN(PtyRecordingTest)
#include "pty_recording_test.moc"
