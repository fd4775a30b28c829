#include "fifo.h"
#include "logging/log_player.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {
// A log of `frames` frames whose speed line of frame k reads " k " and date line "D k".
QByteArray makeLog(int frames, int extraLines = 0)
{
    QByteArray out;
    for (int k = 1; k <= frames; ++k) {
        out += "D " + QByteArray::number(k) + "\r\n";
        out += " " + QByteArray::number(k) + " \r\n";
        for (int i = 3; i <= 14; ++i)
            out += " " + QByteArray::number(i * 10 + k % 7) + " \r\n";
    }
    for (int i = 0; i < extraLines; ++i)
        out += "X" + QByteArray::number(i) + "\r\n";
    return out;
}

struct PlayerRig {
    PlayerRig() { QLocale::setDefault(QLocale::c()); }
    QString write(const QByteArray& bytes, const QString& name = QStringLiteral("drive.log"))
    {
        const QString p = dir.filePath(name);
        QFile f(p);
        f.open(QIODevice::WriteOnly);
        f.write(bytes);
        return p;
    }
    int frameShown() const { return player.label(27).mid(2).toInt(); }
    QTemporaryDir dir;
    LogPlayer player;
    QStringList messages;
    PlayerRig(const PlayerRig&) = delete;
};
}  // namespace

class LogPlayerTest : public QObject {
    Q_OBJECT
private slots:
    void noFileEverythingInert();
    void emptyFile();
    void oneFrameEndsAtOnce();
    void stepBackRightAfterLoad();
    void stepBackWalksAsDesigned();
    void forwardAfterStepBack();
    void pauseStartsForwardAtTheLastInterval();
    void timersOfTheButtons();
    void ticksStopAtTheEnds();
    void shortLastFrameRepeatsTheLastLine();
    void textToBars();
    void longLogsBeyondSixteenBits();
    void garbageAndHugeLines();
    void fileDeletedWhileOpen();
    void reloadStartsOver();
    void closingUnloadsToTheDesignState();
    void pipeIsRefusedWithoutWaiting();
};

#define RIG(name)                                                                                                      \
    PlayerRig name;                                                                                                    \
    QObject::connect(&name.player, &LogPlayer::message, [&name](const QString& m) { name.messages << m; })

void LogPlayerTest::noFileEverythingInert()
{
    RIG(r);
    r.player.ReadNext();
    r.player.ReadPrevious();
    r.player.Play();
    r.player.Pause();
    r.player.FastForward();
    r.player.FastReverse();
    r.player.Reload();
    r.player.PlayLogTimerTick();
    r.player.FastReverseTimerTick();
    r.player.ReadWholeFile(r.dir.path());
    QVERIFY(r.messages.isEmpty());
    QVERIFY(!r.player.PlayLogTimer.isActive() && !r.player.FastReverseTimer.isActive());
    QCOMPARE(r.player.pathBox(), QStringLiteral("C:\\"));
    QCOMPARE(r.player.positionBox(), QStringLiteral("Text14"));
}

void LogPlayerTest::emptyFile()
{
    RIG(r);
    r.player.loadChosen(r.write(QByteArray()));
    QCOMPARE(r.messages, QStringList{QStringLiteral("End of file.")});
    QVERIFY(!r.player.PlayLogTimer.isActive() && !r.player.FastReverseTimer.isActive());
}

void LogPlayerTest::oneFrameEndsAtOnce()
{
    RIG(r);
    r.player.loadChosen(r.write(makeLog(1)));
    QCOMPARE(r.player.label(27), QStringLiteral("D 1"));
    QCOMPARE(r.player.label(14), QStringLiteral(" 1 "));
    r.player.ReadNext();
    QCOMPARE(r.messages, QStringList{QStringLiteral("End of log file.        ")});
    QCOMPARE(r.player.label(27), QStringLiteral("D 1"));
    QCOMPARE(r.player.positionBox(), QStringLiteral("Text14"));
}

void LogPlayerTest::stepBackRightAfterLoad()
{
    RIG(r);
    r.player.loadChosen(r.write(makeLog(5)));
    QCOMPARE(r.player.linePosition(), 14);
    r.player.ReadPrevious();
    QCOMPARE(r.frameShown(), 2);
    QCOMPARE(r.player.positionBox(), QStringLiteral("0"));
    QCOMPARE(r.player.counterBox(), QStringLiteral("14"));
    QVERIFY(r.messages.isEmpty());
    r.player.ReadPrevious();
    QCOMPARE(r.messages, QStringList{QStringLiteral("Beginning of log file.    ")});
    QCOMPARE(r.frameShown(), 2);
}

void LogPlayerTest::stepBackWalksAsDesigned()
{
    RIG(r);
    r.player.loadChosen(r.write(makeLog(10)));
    for (int i = 0; i < 4; ++i)
        r.player.ReadNext();
    QCOMPARE(r.frameShown(), 5);
    QCOMPARE(r.player.linePosition(), 70);
    // From frame k at 14k: frame k + 1 at 14(k - 1), then frame k at 14(k - 2), ...
    const std::pair<int, int> walk[] = {{6, 56}, {5, 42}, {4, 28}, {3, 14}, {2, 0}};
    for (const auto& [frame, position] : walk) {
        r.player.ReadPrevious();
        QCOMPARE(r.frameShown(), frame);
        QCOMPARE(r.player.linePosition(), qint64(position));
        QCOMPARE(r.player.positionBox(), QString::number(position));
    }
    r.player.ReadPrevious();
    QCOMPARE(r.messages.last(), QStringLiteral("Beginning of log file.    "));
}

void LogPlayerTest::forwardAfterStepBack()
{
    RIG(r);
    r.player.loadChosen(r.write(makeLog(10)));
    r.player.ReadNext();
    r.player.ReadNext();  // frame 3 at 42
    r.player.ReadPrevious();  // frame 4 at 28
    QCOMPARE(r.frameShown(), 4);
    r.player.ReadNext();  // the next lines of the file: frame 5
    QCOMPARE(r.frameShown(), 5);
    QCOMPARE(r.player.linePosition(), 42);
}

void LogPlayerTest::pauseStartsForwardAtTheLastInterval()
{
    RIG(r);
    r.player.loadChosen(r.write(makeLog(3)));
    r.player.Pause();
    QVERIFY(r.player.PlayLogTimer.isActive());
    QCOMPARE(r.player.PlayLogTimer.interval(), 225);
    r.player.FastForward();
    r.player.Pause();
    QVERIFY(!r.player.PlayLogTimer.isActive());
    r.player.FastReverse();
    r.player.Pause();  // stops the reverse
    r.player.Pause();  // resumes forward, at the fast interval
    QVERIFY(r.player.PlayLogTimer.isActive());
    QVERIFY(!r.player.FastReverseTimer.isActive());
    QCOMPARE(r.player.PlayLogTimer.interval(), 10);
}

void LogPlayerTest::timersOfTheButtons()
{
    RIG(r);
    r.player.loadChosen(r.write(makeLog(3)));
    r.player.Play();
    QCOMPARE(r.player.PlayLogTimer.interval(), 225);
    QVERIFY(r.player.PlayLogTimer.isActive() && !r.player.FastReverseTimer.isActive());
    r.player.FastReverse();
    QCOMPARE(r.player.FastReverseTimer.interval(), 10);
    QVERIFY(!r.player.PlayLogTimer.isActive() && r.player.FastReverseTimer.isActive());
    r.player.ReadNext();  // a manual step stops both
    QVERIFY(!r.player.PlayLogTimer.isActive() && !r.player.FastReverseTimer.isActive());
}

void LogPlayerTest::ticksStopAtTheEnds()
{
    RIG(r);
    r.player.loadChosen(r.write(makeLog(3)));
    r.player.Play();
    r.player.PlayLogTimerTick();
    QVERIFY(r.player.PlayLogTimer.isActive());
    r.player.PlayLogTimerTick();  // reads frame 3, the last
    QVERIFY(!r.player.PlayLogTimer.isActive());
    QCOMPARE(r.messages, QStringList{QStringLiteral("End of log file.        ")});
    r.player.FastReverse();
    for (int i = 0; i < 5 && r.player.FastReverseTimer.isActive(); ++i)
        r.player.FastReverseTimerTick();
    QVERIFY(!r.player.FastReverseTimer.isActive());
    QCOMPARE(r.messages.last(), QStringLiteral("Beginning of log file.    "));
}

void LogPlayerTest::shortLastFrameRepeatsTheLastLine()
{
    RIG(r);
    r.player.loadChosen(r.write(makeLog(1, 3)));  // 17 lines
    r.player.ReadNext();
    QCOMPARE(r.player.label(27), QStringLiteral("X0"));
    QCOMPARE(r.player.label(14), QStringLiteral("X1"));
    QCOMPARE(r.player.label(15), QStringLiteral("X2"));
    QCOMPARE(r.player.label(16), QStringLiteral("X2"));
    QCOMPARE(r.player.label(26), QStringLiteral("X2"));
    QCOMPARE(r.messages, QStringList{QStringLiteral("End of log file.        ")});
}

void LogPlayerTest::textToBars()
{
    RIG(r);
    QByteArray frame = "D 1\r\n 62 \r\n 1012.5 \r\n2.34\r\n1.01\r\n0.45\r\n0.46\r\n 3 \r\nabc\r\n 30.5 \r\n-58 \r\n"
                       " 104 \r\n12.00\r\n 100 \r\n";
    r.player.loadChosen(r.write(frame + frame));
    QCOMPARE(r.player.bar(0), 62);
    QCOMPARE(r.player.bar(1), 1012);  // halves to the even neighbour
    QCOMPARE(r.player.bar(2), 2);
    QCOMPARE(r.player.bar(7), 0);     // "abc" leaves the bar as it was
    QCOMPARE(r.player.bar(8), 30);
    QCOMPARE(r.player.bar(9), -58);
    QCOMPARE(r.player.bar(11), 12);
    QCOMPARE(LogPlayer::barMaximum(2), 10);  // TPS runs to 10 here
    QCOMPARE(LogPlayer::barMaximum(8), 100);
}

void LogPlayerTest::longLogsBeyondSixteenBits()
{
    RIG(r);
    r.player.loadChosen(r.write(makeLog(3000)));  // 42,000 lines
    for (int i = 0; i < 2999; ++i)
        r.player.ReadNext();
    QCOMPARE(r.frameShown(), 3000);
    QCOMPARE(r.player.linePosition(), qint64(42000));
    r.player.ReadPrevious();
    QCOMPARE(r.player.linePosition(), qint64(41986));
    QCOMPARE(r.player.counterBox(), QStringLiteral("42000"));
    QCOMPARE(r.messages, QStringList{QStringLiteral("End of log file.        ")});
}

void LogPlayerTest::garbageAndHugeLines()
{
    RIG(r);
    QByteArray junk;
    for (int i = 0; i < 5000; ++i)
        junk.append(char((i * 131 + 7) & 0xFF));
    junk += QByteArray(3 * 1024 * 1024, 'z') + "\n" + QByteArray(1, '\0') + "\r\r\n";
    r.player.loadChosen(r.write(junk));
    for (int i = 0; i < 5; ++i)
        r.player.ReadNext();
    r.player.ReadPrevious();
    for (int i = 14; i <= 27; ++i)
        QVERIFY(r.player.label(i).size() <= 4096);
    QVERIFY(!r.messages.isEmpty());
}

void LogPlayerTest::fileDeletedWhileOpen()
{
    RIG(r);
    const QString path = r.write(makeLog(4));
    r.player.loadChosen(path);
    QFile::remove(path);
    r.player.ReadNext();  // the open handle still reads
    QCOMPARE(r.frameShown(), 2);
    r.player.ReadPrevious();  // reopening fails: a message, the display stays
    QVERIFY(r.messages.last().startsWith(QStringLiteral("The log file could not be opened again")));
    QCOMPARE(r.frameShown(), 2);
}

void LogPlayerTest::reloadStartsOver()
{
    RIG(r);
    r.player.loadChosen(r.write(makeLog(4)));
    r.player.ReadNext();
    r.player.ReadNext();
    r.player.Play();
    r.player.Reload();
    QVERIFY(!r.player.PlayLogTimer.isActive());
    QCOMPARE(r.frameShown(), 1);
    QCOMPARE(r.player.linePosition(), 14);
    QCOMPARE(r.player.positionBox(), QStringLiteral("42"));  // the box keeps its last text
}

void LogPlayerTest::closingUnloadsToTheDesignState()
{
    RIG(r);
    r.player.loadChosen(r.write(makeLog(3)));
    r.player.ReadNext();
    r.player.Play();
    QVERIFY(r.player.positionBox() != QStringLiteral("Text14"));
    QSignalSpy changed(&r.player, &LogPlayer::changed);
    r.player.closing();
    QVERIFY(!changed.isEmpty());
    QVERIFY(!r.player.PlayLogTimer.isActive() && !r.player.FastReverseTimer.isActive());
    QCOMPARE(r.player.pathBox(), QStringLiteral("C:\\"));
    QCOMPARE(r.player.positionBox(), QStringLiteral("Text14"));
    QCOMPARE(r.player.counterBox(), QString());
    for (int i = 14; i <= 27; ++i)
        QCOMPARE(r.player.label(i), QString());
    for (int i = 0; i < LogPlayer::kBarCount; ++i)
        QCOMPARE(r.player.bar(i), 0);
    // Every button is inert again, without a message.
    r.messages.clear();
    r.player.ReadNext();
    r.player.Play();
    r.player.PlayLogTimerTick();
    r.player.ReadPrevious();
    r.player.Reload();
    QVERIFY(r.messages.isEmpty());
    QVERIFY(!r.player.PlayLogTimer.isActive());
}

void LogPlayerTest::pipeIsRefusedWithoutWaiting()
{
    RIG(r);
    const QString pipe = r.dir.filePath(QStringLiteral("drive.log"));
    QVERIFY(makeFifo(pipe.toStdString()));
    r.player.loadChosen(pipe);  // an open of the pipe would wait for a writer for ever
    QCOMPARE(r.messages, QStringList{QStringLiteral("The log file could not be opened: drive.log is not a regular file.")});
    r.player.ReadNext();
    r.player.ReadPrevious();
    r.player.Reload();
    QVERIFY(!r.player.PlayLogTimer.isActive());
    // log1.txt as a pipe is passed over too.
    r.player.closing();
    QVERIFY(makeFifo(r.dir.filePath(QStringLiteral("log1.txt")).toStdString()));
    r.player.loadChosen(r.write(makeLog(1), QStringLiteral("other.log")));
    r.player.stopAndClose();
    r.player.ReadWholeFile(r.dir.path());
}

QTEST_GUILESS_MAIN(LogPlayerTest)
#include "log_player_test.moc"
