// "Check For Updates" against a small web server of the test's own: the page
// with and without "2.5", a missing page and no server at all.
#include "app/update_check.h"
#include "app_rig.h"
#include "temp_settings.h"
#include "ui/message_box.h"

#include <QAction>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

namespace {
// A web server on the loopback that answers each request (once its head has
// arrived) as the subclass says.
class TestServer : public QTcpServer {
public:
    TestServer()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* s = nextPendingConnection()) {
                connect(s, &QTcpSocket::readyRead, s, [this, s] {
                    if (s->readAll().contains("\r\n\r\n"))
                        answer(s);
                });
            }
        });
    }
    QString url() const { return QStringLiteral("http://127.0.0.1:%1/softwareversion.html").arg(serverPort()); }

protected:
    virtual void answer(QTcpSocket* s) = 0;
};

// Answers every request with one fixed HTTP response.
class PageServer : public TestServer {
public:
    PageServer(QByteArray status, QByteArray body) : status_(std::move(status)), body_(std::move(body)) {}
    int requests = 0;

private:
    void answer(QTcpSocket* s) override
    {
        ++requests;
        s->write("HTTP/1.1 " + status_ + "\r\nContent-Type: text/html\r\nContent-Length: " +
                 QByteArray::number(body_.size()) + "\r\nConnection: close\r\n\r\n" + body_);
        s->disconnectFromHost();
    }
    QByteArray status_;
    QByteArray body_;
};

// Sends the head of a page, then one byte every `everyMs`, for ever.
class DripServer : public TestServer {
public:
    explicit DripServer(int everyMs) : everyMs_(everyMs) {}

private:
    void answer(QTcpSocket* s) override
    {
        s->write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 1000\r\n\r\n2.5");
        auto* drip = new QTimer(s);
        connect(drip, &QTimer::timeout, s, [s] { s->write("x"); });
        drip->start(everyMs_);
    }
    int everyMs_;
};

// Streams a page of `megabytes` that holds "2.5", as fast as the reader takes it.
class HugePageServer : public TestServer {
public:
    explicit HugePageServer(int megabytes) : total_(qint64(megabytes) * 1024 * 1024) {}
    qint64 sent = 0;

private:
    void answer(QTcpSocket* s) override
    {
        s->write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: " + QByteArray::number(total_) +
                 "\r\n\r\n");
        auto more = [this, s] {
            while (sent < total_ && s->bytesToWrite() < 256 * 1024) {
                const QByteArray chunk(int(qMin<qint64>(total_ - sent, 64 * 1024)), '5');
                s->write("2." + chunk.mid(2));
                sent += chunk.size();
            }
        };
        connect(s, &QTcpSocket::bytesWritten, s, more);
        more();
    }
    qint64 total_;
};

struct Outcome {
    QStringList texts;
    QStringList titles;
    bool finished = false;
};

Outcome check(const QString& address, int timeLimitMs = UpdateCheck::kTimeoutMs)
{
    TempSettings settings;
    settings.store->WriteSetting(QStringLiteral("CheckForUpdates"), QStringLiteral("Address"), address);
    UpdateCheck u(*settings.store);
    u.setTimeLimitMs(timeLimitMs);
    Outcome o;
    QObject::connect(&u, &UpdateCheck::message, [&](const QString& t, const QString& title) {
        o.texts << t;
        o.titles << title;
    });
    QObject::connect(&u, &UpdateCheck::finished, [&] { o.finished = true; });
    QElapsedTimer clock;
    clock.start();
    u.CheckForUpdates();
    // The check runs in the background: the call returns at once.
    if (clock.elapsed() > 200 || !u.busy())
        o.texts << QStringLiteral("blocked");
    QElapsedTimer waited;
    waited.start();
    while (!o.finished && waited.elapsed() < 20000)
        QTest::qWait(10);
    return o;
}
}  // namespace

class UpdateCheckTest : public QObject {
    Q_OBJECT
private slots:
    void pageWithTheVersionSaysCurrent();
    void pageWithoutItSaysThereIsAnUpdate();
    void missingPageSaysNothing();
    void unreachableServerSaysNothing();
    void defaultAddressIsTheWebSitesPage();
    void menuItemShowsTheMessage();
    void drippingServerIsCutOffAtTheTimeLimit();
    void pagePast64KbIsAbandoned();
    void laterClickStartsAFreshCheck();
};

void UpdateCheckTest::pageWithTheVersionSaysCurrent()
{
    PageServer server("200 OK", "<html><body>Vexorin 2.5.1</body></html>");
    const Outcome o = check(server.url());
    QVERIFY(o.finished);
    QCOMPARE(o.texts, QStringList{QStringLiteral("The current version is  2.0")});
    QCOMPARE(o.titles, QStringList{QStringLiteral("Vexorin\n")});
    QCOMPARE(server.requests, 1);
}

void UpdateCheckTest::pageWithoutItSaysThereIsAnUpdate()
{
    PageServer server("200 OK", "<html><body>Vexorin 2.6.0</body></html>");
    const Outcome o = check(server.url());
    QCOMPARE(o.texts.size(), 1);
    QVERIFY(o.texts[0].startsWith(QStringLiteral("There appears to be a new update! Please check\n\n")));
    QVERIFY(o.texts[0].contains(QStringLiteral("vexorin")));
}

void UpdateCheckTest::missingPageSaysNothing()
{
    PageServer server("404 Not Found", "2.5");
    const Outcome o = check(server.url());
    QVERIFY(o.texts.isEmpty());
}

void UpdateCheckTest::unreachableServerSaysNothing()
{
    quint16 port = 0;
    {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost);
        port = probe.serverPort();
    }
    const Outcome o = check(QStringLiteral("http://127.0.0.1:%1/softwareversion.html").arg(port));
    QVERIFY(o.texts.isEmpty());
    QVERIFY(o.finished);
}

void UpdateCheckTest::defaultAddressIsTheWebSitesPage()
{
    TempSettings settings;
    UpdateCheck u(*settings.store);
    QVERIFY(u.address().endsWith(QStringLiteral("/softwareversion.html")));
}

void UpdateCheckTest::menuItemShowsTheMessage()
{
    PageServer server("200 OK", "2.5");
    QStringList boxes;
    MessageBoxes::setPresenter([&](const QString& t, const QString& title, bool) { boxes << title + "|" + t; });
    AppRig app;
    app.settings.store->WriteSetting(QStringLiteral("CheckForUpdates"), QStringLiteral("Address"), server.url());
    app.open();
    app.window->action(QStringLiteral("CheckForUpdates"))->trigger();
    QTRY_COMPARE(boxes, QStringList{QStringLiteral("Vexorin\n|The current version is  2.0")});
    MessageBoxes::setPresenter({});
}

void UpdateCheckTest::drippingServerIsCutOffAtTheTimeLimit()
{
    DripServer server(200);  // each byte comes well within the transfer time-out
    QElapsedTimer clock;
    clock.start();
    const Outcome o = check(server.url(), 1500);
    QVERIFY(o.finished);
    QVERIFY(o.texts.isEmpty());
    QVERIFY2(clock.elapsed() < 6000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(UpdateCheck::kTimeoutMs, 15000);
}

void UpdateCheckTest::pagePast64KbIsAbandoned()
{
    HugePageServer server(64);
    const Outcome o = check(server.url());
    QVERIFY(o.finished);
    QVERIFY(o.texts.isEmpty());  // the page holds "2.5" but is never read through
    QVERIFY2(server.sent < 16 * 1024 * 1024, qPrintable(QString::number(server.sent)));
    // A page of 64 KB exactly is still read.
    PageServer small("200 OK", QByteArray(UpdateCheck::kMaxPageBytes - 3, ' ') + "2.5");
    QCOMPARE(check(small.url()).texts, QStringList{QStringLiteral("The current version is  2.0")});
}

void UpdateCheckTest::laterClickStartsAFreshCheck()
{
    DripServer stuck(200);
    PageServer good("200 OK", "2.5");
    TempSettings settings;
    settings.store->WriteSetting(QStringLiteral("CheckForUpdates"), QStringLiteral("Address"), stuck.url());
    UpdateCheck u(*settings.store);
    QStringList texts;
    int finished = 0;
    QObject::connect(&u, &UpdateCheck::message, [&](const QString& t, const QString&) { texts << t; });
    QObject::connect(&u, &UpdateCheck::finished, [&] { ++finished; });
    u.CheckForUpdates();
    QTest::qWait(300);
    QVERIFY(u.busy());
    settings.store->WriteSetting(QStringLiteral("CheckForUpdates"), QStringLiteral("Address"), good.url());
    u.CheckForUpdates();  // not ignored: the stuck transfer is dropped
    QTRY_COMPARE_WITH_TIMEOUT(texts, QStringList{QStringLiteral("The current version is  2.0")}, 5000);
    QCOMPARE(good.requests, 1);
    QCOMPARE(finished, 1);
    QVERIFY(!u.busy());
}

QTEST_MAIN(UpdateCheckTest)
#include "update_check_test.moc"
