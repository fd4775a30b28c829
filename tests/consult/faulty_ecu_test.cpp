// The session against a misbehaving ECU: replies cut short, corrupted echoes,
// garbage on the line. Every case ends in the stated behaviour or a time-out
// line in the session log, never a hang.
#include "consult/link_writes.h"
#include "consult/read_plans.h"
#include "consult/simulator_transport.h"
#include "link_wait.h"
#include "session_harness.h"

#include <QElapsedTimer>
#include <QTest>

namespace {
struct SimRig : SessionRig {
    SimRig()
        : SessionRig([this](int, QString*) {
              sim = new SimulatorTransport;
              sim->ecu().setPartNumber("30P00");
              return sim;
          })
    {
    }
    void connect()
    {
        session.ConnectDisconnect();
        QTRY_COMPARE(session.KeepInitializationTimerOffSwitch, QStringLiteral("Off"));
    }
    QPointer<SimulatorTransport> sim;
};
}  // namespace

class FaultyEcuTest : public QObject {
    Q_OBJECT
private slots:
    void corruptedEchoesAreNeverChecked();
    void replyThatStopsHalfwayTimesOut();
    void silentEcuLeavesSessionAwaitingReply();
    void garbageBeforeTheHandshakeByteStillCounts();
    void garbageReplyShowsAsItComes();
};

void FaultyEcuTest::corruptedEchoesAreNeverChecked()
{
    SimRig r;
    r.connect();
    QCOMPARE(r.session.ConnectedLabel(), QStringLiteral("Connected"));
    r.sim->ecu().setFaults({false, false, true});
    r.session.GetSerialNumberKValueTick();
    r.session.GetSerialNumberKValueTick();
    QCOMPARE(r.session.EcuPartNumberLabel(), QStringLiteral("23710 - 30P00"));
    QCOMPARE(r.session.KValueLabel(), QStringLiteral("4660"));
    QCOMPARE(r.cells.cell(1), QStringLiteral("201"));  // the echo 0x36 came back as 0xC9
}

void FaultyEcuTest::replyThatStopsHalfwayTimesOut()
{
    SimRig r;
    r.connect();
    r.sim->ecu().setFaults({false, true, false});
    r.session.GetSerialNumberKValue.setInterval(60000);  // the test ticks by hand
    QElapsedTimer clock;
    clock.start();
    r.session.GetSerialNumberKValueTick();
    QVERIFY(waitForIdleLink(r.session.owner()));
    QVERIFY(clock.elapsed() < vexorin::consult::kReplyTimeoutMs + 500);
    QCOMPARE(r.session.EcuPartNumberLabel(), QStringLiteral("23710-xxxxx"));
    QCOMPARE(r.log.messages().last(), vexorin::consult::timeoutMessage());
    r.session.GetSerialNumberKValueTick();
    QVERIFY(waitForIdleLink(r.session.owner()));
    QCOMPARE(r.session.KValueLabel(), QStringLiteral("000"));
    QVERIFY(!r.session.GetSerialNumberKValue.isActive());

    // Once the ECU behaves again the next read works.
    r.sim->ecu().setFaults({});
    r.session.PollingSwitch = QStringLiteral("1");
    r.session.ReadECUSerialNumber();
    QCOMPARE(r.session.EcuPartNumberLabel(), QStringLiteral("23710 - 30P00"));
}

void FaultyEcuTest::silentEcuLeavesSessionAwaitingReply()
{
    SimRig r;
    r.session.ConnectDisconnect();
    r.sim->ecu().setFaults({true, false, false});
    QTest::qWait(50);
    QVERIFY(!r.session.InitializationTimer.isActive());
    QCOMPARE(r.session.KeepInitializationTimerOffSwitch, QStringLiteral("On"));
    QCOMPARE(r.session.ConnectedLabel(), QStringLiteral("Disconnected"));
    QCOMPARE(r.panels.text(1), QStringLiteral("Consult Port Connected"));
    QVERIFY(r.log.messages().isEmpty());
    r.session.ConnectDisconnect();
    QVERIFY(!r.link.PortOpen());
}

void FaultyEcuTest::garbageBeforeTheHandshakeByteStillCounts()
{
    SessionHarness h;
    h.handshakeReply = QByteArray::fromHex("00ff13a710");
    h.connectAndHandshake();
    QCOMPARE(h.session.ConnectedLabel(), QStringLiteral("Connected"));
}

void FaultyEcuTest::garbageReplyShowsAsItComes()
{
    SessionHarness h;
    QByteArray junk;
    for (int i = 0; i < 40; ++i)
        junk.append(char((i * 37 + 11) & 0xFF));
    h.replies[QByteArray::fromHex("d0")] = junk;
    h.replies[QByteArray::fromHex("c9ff2bc9ff2c")] = junk;
    h.connectAndHandshake();
    h.session.GetSerialNumberKValueTick();
    h.session.GetSerialNumberKValueTick();
    QVERIFY(h.session.EcuPartNumberLabel().startsWith(QStringLiteral("23710 - ")));
    QCOMPARE(h.session.EcuPartNumberLabel().size(), 13);
    // Positions 9 and 10 of the junk are 0x33 and 0x58: text 3358, read again as hexadecimal.
    QCOMPARE(h.session.KValueLabel(), QString::number(0x3358));
    QVERIFY(!h.session.GetSerialNumberKValue.isActive());
}

QTEST_GUILESS_MAIN(FaultyEcuTest)
#include "faulty_ecu_test.moc"
