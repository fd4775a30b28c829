#include "consult/recording_transport.h"
#include "consult/simulator_transport.h"
#include "session_harness.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {
// Runs connect, handshake and both identity reads on a link.
void identify(ConsultSession& session)
{
    session.ConnectDisconnect();
    QTRY_COMPARE(session.KeepInitializationTimerOffSwitch, QStringLiteral("Off"));
    session.GetSerialNumberKValueTick();
    session.GetSerialNumberKValueTick();
}

using Rig = SessionRig;

QString readFile(const QString& path)
{
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    return QString::fromLatin1(f.readAll());
}
}  // namespace

class RecordingTest : public QObject {
    Q_OBJECT
private slots:
    void parsesLines();
    void recordsAndReplaysASession();
    void replaysTheCheckedInFixture();
    void replayReportsUnexpectedWrites();
};

void RecordingTest::parsesLines()
{
    const auto e = parseRecording(QStringLiteral("# comment\nW ffffef\nR 10\nX 00\nR 1\nR zz\nW 5a 0b\n"));
    QCOMPARE(e.size(), 3);
    QCOMPARE(e[0].direction, RecordedExchange::Write);
    QCOMPARE(e[0].bytes, QByteArray::fromHex("ffffef"));
    QCOMPARE(e[1].direction, RecordedExchange::Read);
    QCOMPARE(e[1].bytes, QByteArray::fromHex("10"));
    QCOMPARE(e[2].bytes, QByteArray::fromHex("5a0b"));
}

void RecordingTest::recordsAndReplaysASession()
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("session.txt"));
    Rig live([&file](int, QString*) {
        auto log = std::make_unique<QFile>(file);
        log->open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text);
        return new RecordingTransport(new SimulatorTransport, std::move(log));
    });
    identify(live.session);
    QCOMPARE(live.session.ConnectedLabel(), QStringLiteral("Connected"));
    live.session.ConnectDisconnect();

    const QString text = readFile(file);
    QVERIFY(text.contains(QStringLiteral("W ffffef\nR 10\n")));
    // Bytes are written down as they arrive: each echo before the next request byte goes out.
    QVERIFY(text.contains(QStringLiteral("W d0\nR 2f\nW f0\nR ff16")));
    QVERIFY(text.contains(QStringLiteral("W c9ff2b\nR 36ff2b\nW c9ff2c\nR 36ff2c\nW f0\nR ff02")));
    QVERIFY(text.trimmed().endsWith(QStringLiteral("W 30\n# close")));

    Rig replay([&text](int, QString*) { return FakeTransport::fromRecording(text); });
    identify(replay.session);
    QCOMPARE(replay.session.ConnectedLabel(), QStringLiteral("Connected"));
    QCOMPARE(replay.session.EcuPartNumberLabel(), live.session.EcuPartNumberLabel());
    QCOMPARE(replay.session.KValueLabel(), live.session.KValueLabel());
    auto* fake = qobject_cast<FakeTransport*>(replay.link.transport());
    QVERIFY(fake);
    QCOMPARE(fake->mismatches(), QStringList());
}

void RecordingTest::replaysTheCheckedInFixture()
{
    const QString text = readFile(QStringLiteral(VEXORIN_SOURCE_DIR "/tests/fixtures/identity_session.txt"));
    QVERIFY(!text.isEmpty());
    Rig replay([&text](int, QString*) { return FakeTransport::fromRecording(text); });
    identify(replay.session);
    QCOMPARE(replay.session.ConnectedLabel(), QStringLiteral("Connected"));
    QCOMPARE(replay.session.EcuPartNumberLabel(), QStringLiteral("23710 - 30P00"));
    QCOMPARE(replay.session.KValueLabel(), QStringLiteral("4660"));
    QCOMPARE(qobject_cast<FakeTransport*>(replay.link.transport())->mismatches(), QStringList());
}

void RecordingTest::replayReportsUnexpectedWrites()
{
    FakeTransport* t = FakeTransport::fromRecording(QStringLiteral("W ffffef\nR 10\n"));
    QVERIFY(t->open(nullptr));
    t->write(QByteArray::fromHex("ff"));
    t->write(QByteArray::fromHex("00"));
    QCOMPARE(t->mismatches().size(), 1);
    delete t;
}

QTEST_GUILESS_MAIN(RecordingTest)
#include "recording_test.moc"
