// The link owner against a scripted port: a reply that comes, one that comes
// late, one that never comes, a click before, during and after a reply, a
// tick while a cycle runs, a pulled cable, and the rule of who may use the link.
#include "consult/consult_link.h"
#include "consult/fake_transport.h"
#include "consult/link_owner.h"
#include "consult/read_plans.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTest>

using namespace vexorin::consult;

namespace {
QByteArray bytesOf(const Bytes& b)
{
    return QByteArray(reinterpret_cast<const char*>(b.data()), qsizetype(b.size()));
}

const QByteArray kStopPair = QByteArray::fromHex("3030");
const QByteArray kClick = QByteArray::fromHex("aa");

struct OwnerRig {
    OwnerRig()
        : link([this](int, QString*) {
              port = new FakeTransport;
              return port;
          }),
          owner(link)
    {
        link.setPortOpen(true);
        port->clearWritten();
    }
    // Runs the all-sensor cycle and keeps what its done step got.
    bool runStream(int timeoutMs = kReplyTimeoutMs)
    {
        return owner.run(allSensorsCycle(timeoutMs), &owner, [this](const LinkOwner::Reply& r) {
            ++ends;
            reply = r;
            endedAt = clock.elapsed();
        });
    }
    // A click that touches the link: one byte of its own on the wire.
    void click()
    {
        owner.whenFree(&link, [this] {
            clickedAt = clock.elapsed();
            link.Output(kClick);
        });
    }
    QByteArray frame() const { return QByteArray(kAllSensorsReplyLength, char(0x11)); }
    // Runs a settling burst from 0x8000, kept as runStream() keeps its reply.
    bool runBurst()
    {
        return owner.run(burstCycle(burstRequest(0x80, 0), true), &owner, [this](const LinkOwner::Reply& r) {
            ++ends;
            reply = r;
        });
    }
    // A burst's first 34 bytes: its echoes and first frame of data ones.
    static QByteArray burstStart() { return QByteArray(24, char(0x36)) + QByteArray::fromHex("ff08") + QByteArray(8, char(0x01)); }
    // The next frame of data twos and the ECU's stop reply.
    static QByteArray burstEnd() { return QByteArray::fromHex("ff08") + QByteArray(8, char(0x02)) + QByteArray::fromHex("cf"); }

    QPointer<FakeTransport> port;
    ConsultLink link;
    LinkOwner owner;
    QElapsedTimer clock;
    int ends = 0;
    LinkOwner::Reply reply;
    qint64 endedAt = -1;
    qint64 clickedAt = -1;
};

const QByteArray kStreamRequest = bytesOf(registerStreamRequest(kAllSensorRegisters));
}  // namespace

class LinkOwnerTest : public QObject {
    Q_OBJECT
private slots:
    void replyCompletesTheCycleAndTheStopBytesFollow();
    void replyThatNeverComesEndsAtTheTimeOut();
    void tickWhileACycleRunsDoesNothing();
    void clickBeforeACycleRunsAtOnce();
    void clickDuringACycleWaitsForAWorkingEcu();
    void clickDuringACycleAbandonsASilentEcuAtItsNormalTime();
    void clickAfterTheReplyRunsAtOnce();
    void clickThatStartsACycleHoldsTheNextClickBack();
    void lateBytesOfAnAbandonedCycleAreDiscarded();
    void pulledCableEndsTheCycle();
    void burstSettlesToTheEcusStopReply();
    void quietTimeReadsThePortBeforeTheBurstEnds();
    void timeOutReadsThePortBeforeGivingUp();
    void cycleOfAGoneCallerEndsWithoutIt();
    void normalTimeIsTheBytesAt960ASecondPlusTheMargin();
    void whoMayUseTheLink();
    void streamHandsOverEveryByteUntilItIsEnded();
    void clickEndsAStreamAtOnceAndThenRuns();
    void cyclesWaitWhileAStreamRuns();
    void pulledCableEndsTheStream();
};

void LinkOwnerTest::replyCompletesTheCycleAndTheStopBytesFollow()
{
    OwnerRig r;
    r.clock.start();
    QVERIFY(r.runStream());
    QVERIFY(r.owner.busy());
    QCOMPARE(r.port->written(), kStreamRequest);
    // One byte a write.
    QCOMPARE(r.port->writes().size(), kStreamRequest.size());
    r.port->arrive(r.frame().left(20));
    QTest::qWait(10);
    QCOMPARE(r.ends, 0);
    r.port->arrive(r.frame().mid(20));
    QTRY_COMPARE(r.ends, 1);
    QVERIFY(r.reply.has_value());
    QCOMPARE(int(r.reply->size()), kAllSensorsReplyLength);
    QCOMPARE(r.port->written(), kStreamRequest + kStopPair);
    QVERIFY(!r.owner.busy());
}

void LinkOwnerTest::replyThatNeverComesEndsAtTheTimeOut()
{
    OwnerRig r;
    r.clock.start();
    QVERIFY(r.runStream(150));
    QTest::qWait(80);
    QCOMPARE(r.ends, 0);
    QTRY_COMPARE(r.ends, 1);
    QVERIFY(!r.reply.has_value());
    QVERIFY(r.endedAt >= 148);
    QCOMPARE(r.port->written(), kStreamRequest + kStopPair);
    QCOMPARE(r.port->timeouts(), 1);
    QCOMPARE(r.owner.timeouts(), 1);
}

void LinkOwnerTest::tickWhileACycleRunsDoesNothing()
{
    OwnerRig r;
    QVERIFY(r.runStream());
    const QByteArray before = r.port->written();
    r.port->arrive(QByteArray(10, char(0x22)));
    QTest::qWait(5);
    QVERIFY(!r.runStream());
    QVERIFY(!r.owner.run(partNumberCycle(), &r.owner, [](const LinkOwner::Reply&) {}));
    QCOMPARE(r.port->written(), before);
    // Nothing was cleared from under the running cycle either.
    QCOMPARE(r.link.InBufferCount(), 10);
}

void LinkOwnerTest::clickBeforeACycleRunsAtOnce()
{
    OwnerRig r;
    r.clock.start();
    r.click();
    QCOMPARE(r.port->written(), kClick);
    QVERIFY(r.runStream());
    QCOMPARE(r.port->written(), kClick + kStreamRequest);
}

void LinkOwnerTest::clickDuringACycleWaitsForAWorkingEcu()
{
    OwnerRig r;
    r.clock.start();
    QVERIFY(r.runStream());
    r.click();
    QCOMPARE(r.port->written(), kStreamRequest);  // held back
    QTest::qWait(30);
    r.port->arrive(r.frame());                    // within the cycle's normal time
    QTRY_VERIFY(r.clickedAt >= 0);
    QVERIFY(r.reply.has_value());
    // The wire is as it always was: the request, its stop pair, then the click.
    QCOMPARE(r.port->written(), kStreamRequest + kStopPair + kClick);
    QVERIFY(r.clickedAt >= r.endedAt);
}

void LinkOwnerTest::clickDuringACycleAbandonsASilentEcuAtItsNormalTime()
{
    OwnerRig r;
    r.clock.start();
    QVERIFY(r.runStream());
    r.click();
    QTRY_VERIFY_WITH_TIMEOUT(r.clickedAt >= 0, 1000);
    const int normal = normalTimeMs(allSensorsCycle());
    QVERIFY2(r.clickedAt >= normal - 5 && r.clickedAt < normal + 100, qPrintable(QString::number(r.clickedAt)));
    QVERIFY(!r.reply.has_value());  // abandoned as a time-out
    QCOMPARE(r.port->written(), kStreamRequest + kStopPair + kClick);
    QVERIFY(!r.owner.busy());
}

void LinkOwnerTest::clickAfterTheReplyRunsAtOnce()
{
    OwnerRig r;
    r.clock.start();
    QVERIFY(r.runStream());
    r.port->arrive(r.frame());
    QTRY_COMPARE(r.ends, 1);
    r.click();
    QCOMPARE(r.port->written(), kStreamRequest + kStopPair + kClick);
}

void LinkOwnerTest::clickThatStartsACycleHoldsTheNextClickBack()
{
    OwnerRig r;
    r.clock.start();
    QVERIFY(r.runStream());
    r.owner.whenFree(&r.link, [&r] { r.runStream(); });
    r.click();
    r.port->arrive(r.frame());
    QTRY_COMPARE(r.ends, 1);
    // The first click started a second cycle: the second click waits for it.
    QCOMPARE(r.port->written(), kStreamRequest + kStopPair + kStreamRequest);
    r.port->arrive(r.frame());
    QTRY_COMPARE(r.ends, 2);
    QTRY_COMPARE(r.port->written(), kStreamRequest + kStopPair + kStreamRequest + kStopPair + kClick);
}

void LinkOwnerTest::lateBytesOfAnAbandonedCycleAreDiscarded()
{
    OwnerRig r;
    r.clock.start();
    QVERIFY(r.runStream(100));
    QTRY_COMPARE(r.ends, 1);
    r.port->arrive(QByteArray(30, char(0x44)));  // the late rest of the old reply
    QTest::qWait(5);
    QVERIFY(r.runStream());
    r.port->arrive(r.frame());
    QTRY_COMPARE(r.ends, 2);
    QVERIFY(r.reply.has_value());
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(r.reply->data()), qsizetype(r.reply->size())), r.frame());
}

void LinkOwnerTest::pulledCableEndsTheCycle()
{
    OwnerRig r;
    r.clock.start();
    QVERIFY(r.runStream());
    r.click();
    r.port->unplug();
    QTRY_COMPARE(r.ends, 1);
    QVERIFY(!r.reply.has_value());
    QVERIFY(!r.owner.busy());
    QVERIFY(!r.link.PortOpen());
    QVERIFY(r.clickedAt >= 0);  // the waiting click ran, on a closed port
}

void LinkOwnerTest::burstSettlesToTheEcusStopReply()
{
    OwnerRig r;
    QVERIFY(r.runBurst());
    r.port->arrive(OwnerRig::burstStart());
    QTest::qWait(10);
    // The 34 bytes are in: the stop byte has gone out, the rest of the stream is awaited.
    QVERIFY(r.port->written().endsWith(QByteArray::fromHex("f030")));
    QCOMPARE(r.ends, 0);
    r.port->arrive(OwnerRig::burstEnd());
    QTRY_COMPARE(r.ends, 1);
    QVERIFY(r.reply.has_value());
    QCOMPARE(int(r.reply->size()), 34 + 11);
    QVERIFY(burstStreamEnded(*r.reply));
    QCOMPARE(burstData(*r.reply)[0], 1);
}

void LinkOwnerTest::quietTimeReadsThePortBeforeTheBurstEnds()
{
    OwnerRig r;
    QVERIFY(r.runBurst());
    r.port->arrive(OwnerRig::burstStart());
    QTest::qWait(10);
    QCOMPARE(r.ends, 0);  // settling
    // The rest of the stream came while the program was held up past the
    // quiet time: the timer fires before the bytes are announced.
    r.port->arriveUnannounced(OwnerRig::burstEnd());
    QTRY_COMPARE(r.ends, 1);
    QVERIFY(r.reply.has_value());
    QCOMPARE(int(r.reply->size()), 34 + 11);  // all of it, not the 34 bytes of before
    QVERIFY(burstStreamEnded(*r.reply));
}

void LinkOwnerTest::timeOutReadsThePortBeforeGivingUp()
{
    OwnerRig r;
    QVERIFY(r.runStream(100));
    r.port->arriveUnannounced(r.frame());
    QTRY_COMPARE(r.ends, 1);
    QVERIFY(r.reply.has_value());
    QCOMPARE(r.owner.timeouts(), 0);
    QVERIFY(r.port->written().endsWith(QByteArray(1, char(0x30))));
}

void LinkOwnerTest::cycleOfAGoneCallerEndsWithoutIt()
{
    OwnerRig r;
    int calls = 0;
    auto caller = std::make_unique<QObject>();
    QVERIFY(r.owner.run(allSensorsCycle(100), caller.get(), [&calls](const LinkOwner::Reply&) { ++calls; }));
    caller.reset();  // a window closed while its read was on the line
    r.port->arrive(r.frame());
    QTRY_VERIFY(!r.owner.busy());
    QCOMPARE(calls, 0);
    QVERIFY(r.port->written().endsWith(QByteArray(1, char(0x30))));  // the cycle ended on the wire all the same
}

void LinkOwnerTest::normalTimeIsTheBytesAt960ASecondPlusTheMargin()
{
    // 35 bytes out (the stream request of 33 and its stop pair), 50 in: 88.5 ms on the line.
    QCOMPARE(normalTimeMs(allSensorsCycle()), 89 + kReplyMarginMs);
    Cycle paused = partNumberCycle();
    paused.pauseMs = 50;
    QCOMPARE(normalTimeMs(paused), normalTimeMs(partNumberCycle()) + 50);
}

void LinkOwnerTest::whoMayUseTheLink()
{
    OwnerRig r;
    bool connected = false;
    bool monitoring = false;
    bool mapViewer = false;
    bool activeTest = false;
    r.owner.setFlags([&] { return connected; }, [&] { return monitoring; });
    r.owner.setToolShowing(LinkOwner::Tool::MapViewer, [&] { return mapViewer; });
    r.owner.setToolShowing(LinkOwner::Tool::ActiveTest, [&] { return activeTest; });
    QString why;
    QVERIFY(r.owner.mayUse(0, &why));
    QVERIFY(!r.owner.mayUse(LinkOwner::Connected | LinkOwner::MonitoringOff, &why));
    QCOMPARE(why, QStringLiteral("Consult port not connected."));
    connected = true;
    monitoring = true;
    QVERIFY(!r.owner.mayUse(LinkOwner::Connected | LinkOwner::MonitoringOff, &why));
    QCOMPARE(why, QStringLiteral("Sensor monitoring must be off."));
    QVERIFY(r.owner.mayUse(LinkOwner::Connected | LinkOwner::MonitoringOn, &why));
    QVERIFY(why.isEmpty());
    monitoring = false;
    QVERIFY(!r.owner.mayUse(LinkOwner::MonitoringOn, &why));
    QCOMPARE(why, QStringLiteral("Sensor monitoring must be on."));
    activeTest = true;
    mapViewer = true;
    QVERIFY(!r.owner.mayUse(LinkOwner::Connected | LinkOwner::ToolsClosed, &why));
    QCOMPARE(why, QStringLiteral("Please close the Map Viewer first."));
    mapViewer = false;
    QVERIFY(!r.owner.mayUse(LinkOwner::ToolsClosed, &why));
    QCOMPARE(why, QStringLiteral("Please close the Active Test first."));
    r.owner.setToolShowing(LinkOwner::Tool::ActiveTest, {});
    QVERIFY(r.owner.mayUse(LinkOwner::ToolsClosed, &why));
}

namespace {
struct StreamWatch {
    QByteArray bytes;
    int ended = 0;
    bool start(LinkOwner& owner, QObject* context)
    {
        return owner.startStream(
            registerStreamPlan({0x00, 0x01}), context,
            [this](const Bytes& b) { bytes.append(reinterpret_cast<const char*>(b.data()), qsizetype(b.size())); },
            [this] { ++ended; });
    }
};
}  // namespace

void LinkOwnerTest::streamHandsOverEveryByteUntilItIsEnded()
{
    OwnerRig r;
    StreamWatch w;
    r.port->arriveUnannounced(QByteArray::fromHex("eeee"));  // stale bytes are discarded first
    QVERIFY(w.start(r.owner, &r.owner));
    QCOMPARE(r.port->written(), QByteArray::fromHex("5a005a01f0"));
    QVERIFY(r.owner.streaming());
    QVERIFY(r.owner.busy());
    r.port->arrive(QByteArray::fromHex("a500a501ff02"));
    QTRY_COMPARE(w.bytes, QByteArray::fromHex("a500a501ff02"));
    r.port->arrive(QByteArray::fromHex("0a0bff020a0c"));
    QTRY_COMPARE(w.bytes.size(), 12);
    // Still streaming long after any cycle's time-out.
    QTest::qWait(50);
    QVERIFY(r.owner.streaming());
    QCOMPARE(r.owner.timeouts(), 0);
    r.owner.endStream();
    QCOMPARE(r.port->written(), QByteArray::fromHex("5a005a01f030"));
    QCOMPARE(w.ended, 1);
    QVERIFY(!r.owner.busy());
    // Bytes after the end go to nobody.
    r.port->arrive(QByteArray::fromHex("ff02"));
    QTest::qWait(20);
    QCOMPARE(w.bytes.size(), 12);
    r.owner.endStream();
    QCOMPARE(w.ended, 1);
}

void LinkOwnerTest::clickEndsAStreamAtOnceAndThenRuns()
{
    OwnerRig r;
    StreamWatch w;
    QVERIFY(w.start(r.owner, &r.owner));
    r.port->clearWritten();
    r.clock.start();
    r.click();
    // The stop byte, then the click's own byte, with no wait.
    QCOMPARE(r.port->written(), QByteArray::fromHex("30") + kClick);
    QCOMPARE(w.ended, 1);
    QVERIFY(r.clickedAt >= 0);
    QVERIFY(!r.owner.streaming());
}

void LinkOwnerTest::cyclesWaitWhileAStreamRuns()
{
    OwnerRig r;
    StreamWatch w;
    QVERIFY(w.start(r.owner, &r.owner));
    QVERIFY(!r.runStream());
    QVERIFY(!w.start(r.owner, &r.owner));
    r.owner.abandon();
    QCOMPARE(w.ended, 1);
    QVERIFY(r.runStream());
    QVERIFY(!w.start(r.owner, &r.owner));
    r.owner.abandon();
}

void LinkOwnerTest::pulledCableEndsTheStream()
{
    OwnerRig r;
    StreamWatch w;
    QVERIFY(w.start(r.owner, &r.owner));
    r.port->unplug();
    QTRY_COMPARE(w.ended, 1);
    QVERIFY(!r.owner.busy());
    QVERIFY(!r.link.PortOpen());
}

QTEST_MAIN(LinkOwnerTest)
#include "link_owner_test.moc"
