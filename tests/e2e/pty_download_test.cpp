// End to end: the ROM download from the simulator paced at the line rate,
// through the real serial port, while the program itself stops now and then
// (a busy machine, a slow repaint): no reply may be cut short by it.
#include "consult/consult_session.h"
#include "pty_rig.h"
#include "tools/bin_file_downloader.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>

class PtyDownloadTest : public QObject {
    Q_OBJECT
private slots:
    void stallsOfTheProgramCauseNoRetry();
};

void PtyDownloadTest::stallsOfTheProgramCauseNoRetry()
{
    PtyRig r({QStringLiteral("--pace")});
    QVERIFY(r.startConnected());
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("ecu.bin"));
    BinFileDownloader downloader(r.core->session(), r.core->store());
    downloader.setAnnounce(BinFileDownloader::Announce::None);
    downloader.setFileChooser([&path] { return path; });

    // Every 300 ms the event loop stops for 40 to 100 ms: longer than a
    // reply's quiet time, at every point of a burst in turn.
    int stalls = 0;
    QTimer stall;
    stall.setInterval(300);
    QObject::connect(&stall, &QTimer::timeout, [&stalls] { QThread::msleep(40 + (stalls++ * 7) % 61); });
    stall.start();
    downloader.DownloadBinFile();
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 8000)
        QTest::qWait(20);
    stall.stop();
    const int bytes = downloader.progress();
    downloader.CancelDownload();
    QVERIFY2(stalls > 20, qPrintable(QString::number(stalls)));
    QCOMPARE(downloader.retries(), 0);
    QVERIFY2(bytes > 200, qPrintable(QString::number(bytes)));  // about 1,500 in 8 s on an idle machine
}

QTEST_MAIN(PtyDownloadTest)
#include "pty_download_test.moc"
