// ExternalLink: the polling round of the DLP-IO8-G, ticked by hand against a
// test double, and what it does with short, late, empty and garbled replies.
#include "consult/fake_transport.h"
#include "external/external_link.h"

#include <QPointer>
#include <QTest>

namespace {
// A link on a double that answers each letter through `answer`.
struct Link {
    Link()
        : link([this](int, QString*) -> SerialTransport* {
              transport = new FakeTransport;
              transport->setResponder([this](FakeTransport& t, const QByteArray& b) { t.arrive(answer(b.at(0))); });
              return transport;
          })
    {
    }
    void open()
    {
        QVERIFY(link.setPortOpen(true));
        for (int n = 1; n <= 8; ++n)
            link.setChecked(n, true);
    }
    void tick()
    {
        link.ChannelRequestTimerTick();
        link.ChannelReplyTimerTick();
    }
    QStringList readings() const
    {
        QStringList r;
        for (int n = 1; n <= 8; ++n)
            r << link.reading(n);
        return r;
    }
    ExternalLink link;
    QPointer<FakeTransport> transport;
    std::function<QByteArray(char)> answer = [](char letter) {
        return QByteArray::number(double(QByteArrayView("ZXCVBNM,").indexOf(letter) + 1) * 0.5, 'f', 2) + 'V';
    };
};
const QString kIdle = QStringLiteral("0.00V");
}  // namespace

class ExternalLinkTest : public QObject {
    Q_OBJECT
private slots:
    void startsClosedAtChannelOne();
    void timersHandOverToEachOther();
    void allBoxesClearStillPollsAtThePace();
    void checkedBoxesShowTheReplyAndMoveTheBar();
    void emptyReplyEmptiesACheckedBoxAndKeepsTheBar();
    void lateReplyLandsInTheNextChannel();
    void garbageIsShownAsReceived();
    void stopResetsAndKeepsTheChannelInTurn();
    void pulledOutDeviceGivesEmptyReadings();
    void portNumberIsRefusedWhileOpen();
};

void ExternalLinkTest::startsClosedAtChannelOne()
{
    Link l;
    QCOMPARE(l.link.tracker(), 1);
    QVERIFY(!l.link.PortOpen());
    QVERIFY(!l.link.ChannelRequestTimer.isActive() && !l.link.ChannelReplyTimer.isActive());
    QCOMPARE(l.link.ChannelRequestTimer.interval(), 50);
    QCOMPARE(l.link.ChannelReplyTimer.interval(), 50);
    QCOMPARE(l.link.Settings(), QStringLiteral("115200,N,8,1"));
    QCOMPARE(l.readings(), QStringList(8, kIdle));
}

void ExternalLinkTest::timersHandOverToEachOther()
{
    Link l;
    l.open();
    l.link.Start();
    QVERIFY(l.link.ChannelRequestTimer.isActive() && !l.link.ChannelReplyTimer.isActive());
    l.link.ChannelRequestTimerTick();
    QVERIFY(!l.link.ChannelRequestTimer.isActive() && l.link.ChannelReplyTimer.isActive());
    l.link.ChannelReplyTimerTick();
    QVERIFY(l.link.ChannelRequestTimer.isActive() && !l.link.ChannelReplyTimer.isActive());
    QCOMPARE(l.link.tracker(), 2);
}

void ExternalLinkTest::allBoxesClearStillPollsAtThePace()
{
    Link l;
    QVERIFY(l.link.setPortOpen(true));
    l.link.Start();
    for (int i = 0; i < 16; ++i)
        l.tick();
    // One request letter a tick pair: each channel twice in two rounds of 800 ms.
    QCOMPARE(l.transport->writes().size(), 16);
    QCOMPARE(l.transport->written(), QByteArray("ZXCVBNM,ZXCVBNM,"));
    QCOMPARE(l.readings(), QStringList(8, kIdle));
    for (int n = 1; n <= 8; ++n)
        QCOMPARE(l.link.bar(n), 0);
}

void ExternalLinkTest::checkedBoxesShowTheReplyAndMoveTheBar()
{
    Link l;
    l.open();
    l.link.setChecked(3, false);
    for (int i = 0; i < 8; ++i)
        l.tick();
    QCOMPARE(l.readings(), (QStringList{"0.50V", "1.00V", kIdle, "2.00V", "2.50V", "3.00V", "3.50V", "4.00V"}));
    const int bars[8] = {0, 1, 0, 2, 2, 3, 4, 4};  // 0.5 and 2.5 go to even, 3.5 to 4
    for (int n = 1; n <= 8; ++n)
        QCOMPARE(l.link.bar(n), bars[n - 1]);
}

void ExternalLinkTest::emptyReplyEmptiesACheckedBoxAndKeepsTheBar()
{
    Link l;
    l.open();
    l.answer = [](char) { return QByteArray("4.87V"); };
    l.tick();
    QCOMPARE(l.link.reading(1), QStringLiteral("4.87V"));
    QCOMPARE(l.link.bar(1), 5);
    l.answer = [](char) { return QByteArray(); };
    for (int i = 0; i < 8; ++i)
        l.tick();
    QCOMPARE(l.link.reading(1), QString());
    QCOMPARE(l.link.bar(1), 5);
}

void ExternalLinkTest::lateReplyLandsInTheNextChannel()
{
    Link l;
    l.open();
    // The first answer is cut short; its rest arrives only after the next request.
    int calls = 0;
    l.answer = [&calls](char) { return ++calls == 1 ? QByteArray("1.") : QByteArray("2.00V"); };
    l.tick();
    QCOMPARE(l.link.reading(1), QStringLiteral("1."));
    QCOMPARE(l.link.bar(1), 1);
    l.link.ChannelRequestTimerTick();
    l.transport->arrive("23V");  // the rest of the first answer, late
    l.link.ChannelReplyTimerTick();
    QCOMPARE(l.link.reading(2), QStringLiteral("2.00V23V"));
    // No clearing before a request: whatever waits goes with the next read.
    l.transport->arrive("9");
    l.tick();
    QCOMPARE(l.link.reading(3), QStringLiteral("92.00V"));
    QCOMPARE(l.link.bar(3), 0);  // 92 lies beyond the bar, which keeps its value
}

void ExternalLinkTest::garbageIsShownAsReceived()
{
    Link l;
    l.open();
    l.answer = [](char) { return QByteArray("\x01\xff?V", 4); };
    l.tick();
    QCOMPARE(l.link.reading(1), QString::fromLatin1("\x01\xff?V", 4));
    QCOMPARE(l.link.bar(1), 0);
}

void ExternalLinkTest::stopResetsAndKeepsTheChannelInTurn()
{
    Link l;
    l.open();
    l.link.Start();
    for (int i = 0; i < 3; ++i)
        l.tick();
    l.link.ChannelRequestTimerTick();  // waiting for channel 4's reply
    QVERIFY(l.link.ChannelReplyTimer.isActive());
    l.link.Stop();
    QVERIFY(!l.link.ChannelRequestTimer.isActive() && !l.link.ChannelReplyTimer.isActive());
    QCOMPARE(l.readings(), QStringList(8, kIdle));
    for (int n = 1; n <= 8; ++n)
        QCOMPARE(l.link.bar(n), 0);
    QCOMPARE(l.link.tracker(), 4);
    l.transport->readAll();
    l.transport->clearWritten();
    l.link.Start();
    l.tick();
    QCOMPARE(l.transport->written(), QByteArray("V"));
    QCOMPARE(l.link.reading(4), QStringLiteral("2.00V"));
}

void ExternalLinkTest::pulledOutDeviceGivesEmptyReadings()
{
    Link l;
    l.open();
    l.link.Start();
    l.tick();
    QCOMPARE(l.link.reading(1), QStringLiteral("0.50V"));
    l.link.ChannelRequestTimerTick();
    l.transport->unplug();
    QTRY_VERIFY(!l.link.PortOpen());
    l.link.ChannelReplyTimerTick();
    for (int i = 0; i < 8; ++i)
        l.tick();
    // The round goes on, every checked box empty, and no message.
    QVERIFY(l.link.ChannelRequestTimer.isActive());
    QCOMPARE(l.readings(), QStringList(8, QString()));
    QCOMPARE(l.link.bar(1), 0);
}

void ExternalLinkTest::portNumberIsRefusedWhileOpen()
{
    Link l;
    l.link.setCommPort(5);
    QVERIFY(l.link.setPortOpen(true));
    l.link.setCommPort(7);
    QCOMPARE(l.link.CommPort(), 5);
    QVERIFY(l.link.setPortOpen(false));
    l.link.setCommPort(7);
    QCOMPARE(l.link.CommPort(), 7);
}

QTEST_MAIN(ExternalLinkTest)
#include "external_link_test.moc"
