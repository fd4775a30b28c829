// The BIN File Downloader against the simulated ECU: a whole ROM, Retry and
// what follows it, Start, Cancel, Exit, the delay items, theme, colours,
// pictures, the completion announce, a silent ECU, and Verify.
#include "app/settings/settings_access.h"
#include "fifo.h"
#include "link_wait.h"
#include "tools/bin_file_downloader.h"
#include "tools_rig.h"

#include <QSignalSpy>

namespace {
struct DownloaderRig : ToolsRig {
    DownloaderRig() : downloader(session, *settings.store)
    {
        QObject::connect(&downloader, &BinFileDownloader::message, [this](const QString& m) { messages.append(m); });
        QObject::connect(&downloader, &BinFileDownloader::beep, [this] { ++beeps; });
        path = dir.filePath(QStringLiteral("ecu.bin"));
        downloader.setFileChooser([this] { return path; });
    }
    // Ticks until the download ends or `limit` ticks have run; the ticks run.
    int run(int limit = 5000)
    {
        int ticks = 0;
        while (downloader.DownLoadBinFileTimer.isActive() && ticks < limit) {
            downloader.DownLoadBinFileTimerTick();
            ++ticks;
        }
        return ticks;
    }
    const BinFileDownloader::Labels& l() const { return downloader.labels(); }

    BinFileDownloader downloader;
    QString path;
    int beeps = 0;
};
}  // namespace

class BinFileDownloaderTest : public QObject {
    Q_OBJECT
private slots:
    void opensIdleWithItsDesignTexts();
    void startNeedsTheLinkAndNoMonitor();
    void declinedDialogEmptiesTheSaveToBox();
    void unwritableTargetIsRefusedBeforeAnythingIsSent();
    void pipeAsTargetIsRefused();
    void wholeRomWithoutRetry();
    void longerTargetFileKeepsItsTail();
    void retryGoesBackOneAddressAndLosesSeven();
    void afterARetryTheBurstsRunPastTheEndOfThePage();
    void startDuringADownloadRestartsIntoANewFile();
    void delayItemsAndTheSwitchLabelAsymmetry();
    void cancelWithNoDownloadChangesNothing();
    void cancelDeletesThePartialFile();
    void exitSendsTheStopByteOnlyAfterThe250MsDelay();
    void silentEcuStopsTheDownloadAndTheWindowStaysUsable();
    void completionAnnounceOptions();
    void verifyComparesTheFileWithTheEcu();
    void themeAndBarColoursAreSaved();
    void pictureSpinnerStopsAtBothEnds();
};

void BinFileDownloaderTest::opensIdleWithItsDesignTexts()
{
    DownloaderRig r;
    QCOMPARE(r.downloader.DownLoadBinFileTimer.interval(), 10);
    QVERIFY(!r.downloader.DownLoadBinFileTimer.isActive());
    QCOMPARE(r.downloader.DumpBinTimer.interval(), 250);
    QVERIFY(!r.downloader.DumpBinTimer.isActive());
    QCOMPARE(r.downloader.walk().DownloadRegister, 128);
    QCOMPARE(r.downloader.walk().DownloadByte, -1);
    QCOMPARE(r.downloader.ImageIndex, 1);
    QCOMPARE(r.downloader.checkedDelay(), 0);
    QCOMPARE(r.l().DataReceivedStatus, QStringLiteral("Data Received Status :"));
    QCOMPARE(r.l().StartTimeLabel, QStringLiteral("Start Time: "));
    QVERIFY(r.downloader.matrixTheme());
    QVERIFY(r.downloader.announce() == BinFileDownloader::Announce::Voice);
    QVERIFY(!r.downloader.verifyEnabled());
}

void BinFileDownloaderTest::startNeedsTheLinkAndNoMonitor()
{
    DownloaderRig r;
    int asked = 0;
    r.downloader.setFileChooser([&] {
        ++asked;
        return r.path;
    });
    r.downloader.DownloadBinFile();
    QCOMPARE(r.messages, QStringList{QStringLiteral("Consult port not connected.")});
    r.connect();
    r.session.setMonitorSensorsOnLabel(QStringLiteral("ON"));
    r.downloader.DownloadBinFile();
    QCOMPARE(r.messages.last(), QStringLiteral("Sensor monitoring must be off."));
    QCOMPARE(asked, 0);
    QVERIFY(!QFile::exists(r.path));
    QVERIFY(r.sim->written.isEmpty());
}

void BinFileDownloaderTest::declinedDialogEmptiesTheSaveToBox()
{
    DownloaderRig r;
    r.connect();
    r.downloader.DownloadBinFile();
    QCOMPARE(r.l().SaveTo, r.path);
    r.downloader.CancelDownload();
    r.downloader.setFileChooser([] { return QString(); });
    r.downloader.DownloadBinFile();
    QCOMPARE(r.l().SaveTo, QString());
    QVERIFY(!r.downloader.DownLoadBinFileTimer.isActive());
}

void BinFileDownloaderTest::pipeAsTargetIsRefused()
{
    DownloaderRig r;
    r.connect();
    r.path = r.dir.filePath(QStringLiteral("ecu.bin"));
    QVERIFY(makeFifo(r.path.toStdString()));
    r.downloader.DownloadBinFile();
    QVERIFY(!r.downloader.DownLoadBinFileTimer.isActive());
    QVERIFY(r.l().Notice.contains(QStringLiteral("ecu.bin is not a regular file.")));
    QVERIFY(r.sim->written.isEmpty());
}

void BinFileDownloaderTest::unwritableTargetIsRefusedBeforeAnythingIsSent()
{
    DownloaderRig r;
    r.connect();
    r.path = r.dir.filePath(QStringLiteral("no such folder/ecu.bin"));
    r.downloader.DownloadBinFile();
    QVERIFY(!r.downloader.DownLoadBinFileTimer.isActive());
    QVERIFY(r.l().Notice.contains(QStringLiteral("cannot be written")));
    QVERIFY(r.l().Notice.contains(QStringLiteral("Nothing has been sent to the ECU.")));
    QCOMPARE(r.messages.last(), r.l().Notice);
    QCOMPARE(r.l().SaveTo, QString());
    QVERIFY(r.sim->written.isEmpty());
}

void BinFileDownloaderTest::wholeRomWithoutRetry()
{
    DownloaderRig r;
    r.connect();
    QSignalSpy progress(&r.downloader, &BinFileDownloader::progressChanged);
    r.downloader.DownloadBinFile();
    QVERIFY(r.downloader.DownLoadBinFileTimer.isActive());
    QCOMPARE(r.l().DataReceivedStatus, QStringLiteral("Data Received Status : Good"));
    QVERIFY(r.l().StartTimeLabel.startsWith(QStringLiteral("Start Time : ")));
    QCOMPARE(r.l().CompletedTimeLabel, QStringLiteral("Completed Time : "));
    QCOMPARE(r.l().EstimatedTimeLabel, QStringLiteral("Estimated Time : 5 min 38 sec"));

    // The first burst: eight reads in one run, CmdGo, one CmdStop.
    r.downloader.DownLoadBinFileTimerTick();
    QCOMPARE(r.sim->written, burstRequest(0x80, 0) + QByteArray(1, char(0x30)));
    QVERIFY(r.l().CurrentTimeLabel.startsWith(QStringLiteral("Current Time: ")));
    QCOMPARE(r.l().CurrentDataByte, QStringLiteral("Current Data Byte : 7"));
    QCOMPARE(r.l().CurrentDataRegister, QStringLiteral("Current Data Register : 128"));
    QCOMPARE(r.l().Checksum, QStringLiteral("Checksum : 36"));
    QVERIFY(r.l().ByteList.startsWith(QStringLiteral("54, 128, 0, 54, 128, 1")));
    QCOMPARE(r.l().ByteList.count(QStringLiteral(", ")), 33);
    QCOMPARE(r.l().BinaryBox, QString::fromStdString(vexorin::tools::DecimalToBinary(r.rom[7])));
    QCOMPARE(r.l().DataByte, QStringLiteral("Data Byte (hex) : ") + QString::number(r.rom[7], 16).toUpper());
    QCOMPARE(r.l().DataBytesReceived, QStringLiteral("Data Bytes Received : 8"));

    // The other 4,095 bursts; the count label stops at 32767 until the final text.
    int bursts = 1;
    while (r.downloader.walk().DownloadRegister != 255 || r.downloader.walk().DownloadByte != 255) {
        r.downloader.DownLoadBinFileTimerTick();
        ++bursts;
        QVERIFY(bursts <= 4096);
    }
    QCOMPARE(bursts, 4096);
    QCOMPARE(r.l().DataBytesReceived, QStringLiteral("Data Bytes Received : 32767"));
    QCOMPARE(r.downloader.DataBytesCount, 32767);
    QCOMPARE(r.downloader.progress(), 32768);
    QVERIFY(r.downloader.DownLoadBinFileTimer.isActive());
    QCOMPARE(r.sim->written.size(), 4096 * 26);

    // Completion comes at the next tick.
    r.downloader.DownLoadBinFileTimerTick();
    QVERIFY(!r.downloader.DownLoadBinFileTimer.isActive());
    QCOMPARE(r.l().DataReceivedStatus, QStringLiteral("Data Received Status : Complete"));
    QCOMPARE(r.l().DataBytesReceived, QStringLiteral("Data Bytes Received : 32768"));
    QVERIFY(r.l().CompletedTimeLabel.startsWith(QStringLiteral("Completed Time: ")));
    QCOMPARE(r.speech.spoken(), QStringList{QStringLiteral("Bin file download complete.")});
    QCOMPARE(r.l().RetryWarning, QStringLiteral("No Retries: every burst arrived whole."));
    QCOMPARE(r.downloader.retries(), 0);
    const QByteArray file = r.fileBytes(r.path);
    QCOMPARE(file.size(), 32768);
    QVERIFY(file == r.romBytes(0, 32768));
    QCOMPARE(progress.last().first().toInt(), 32768);
    QVERIFY(r.downloader.verifyEnabled());
}

void BinFileDownloaderTest::longerTargetFileKeepsItsTail()
{
    DownloaderRig r;
    r.connect();
    {
        QFile f(r.path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(40000, char(0x5A)));
    }
    r.downloader.DownloadBinFile();
    r.run();
    QCOMPARE(r.l().DataReceivedStatus, QStringLiteral("Data Received Status : Complete"));
    const QByteArray file = r.fileBytes(r.path);
    QCOMPARE(file.size(), 40000);
    QVERIFY(file.left(32768) == r.romBytes(0, 32768));
    QVERIFY(file.mid(32768) == QByteArray(40000 - 32768, char(0x5A)));
}

void BinFileDownloaderTest::retryGoesBackOneAddressAndLosesSeven()
{
    DownloaderRig r;
    r.connect();
    r.downloader.DownloadBinFile();
    r.downloader.DownLoadBinFileTimerTick();
    r.downloader.DownLoadBinFileTimerTick();
    QCOMPARE(r.downloader.walk().DownloadByte, 15);
    r.sim->written.clear();
    QSignalSpy labels(&r.downloader, &BinFileDownloader::labelsChanged);
    QVERIFY(r.l().RetryWarning.isEmpty());

    // The echo of the next request comes back damaged: index 0 is not 54.
    r.corruptNextEcho();
    r.downloader.DownLoadBinFileTimerTick();
    // The failed burst, then at once, in the same tick, a burst from its last address.
    QCOMPARE(r.sim->written, burstRequest(0x80, 16) + QByteArray(1, char(0x30)) + burstRequest(0x80, 23)
                                 + QByteArray(1, char(0x30)));
    QCOMPARE(r.downloader.walk().DownloadByte, 30);
    QCOMPARE(r.downloader.retries(), 1);
    QCOMPARE(r.l().Retries, QStringLiteral("Retries : 1"));
    // The window says at once that this download cannot come out whole.
    QCOMPARE(r.l().RetryWarning, QStringLiteral("Retry: the file will be 7 bytes short; Cancel and start again"));
    // Nothing of the failed burst was written; addresses 0x8010..0x8016 are never asked for again.
    const QByteArray file = r.fileBytes(r.path);
    QCOMPARE(file.size(), 24);
    QVERIFY(file.left(16) == r.romBytes(0, 16));
    QVERIFY(file.mid(16) == r.romBytes(23, 8));
    QCOMPARE(r.downloader.progress(), 24);
}

void BinFileDownloaderTest::afterARetryTheBurstsRunPastTheEndOfThePage()
{
    DownloaderRig r;
    r.connect();
    r.downloader.DownloadBinFile();
    r.corruptNextEcho();
    r.downloader.DownLoadBinFileTimerTick();
    QCOMPARE(r.downloader.walk().DownloadByte, 14);
    // The bursts no longer end on 7, 15, 23 …: 22, 30, …, 254.
    while (r.downloader.walk().DownloadByte < 254)
        r.downloader.DownLoadBinFileTimerTick();
    QCOMPARE(r.downloader.walk().DownloadByte, 254);
    r.sim->written.clear();
    r.downloader.DownLoadBinFileTimerTick();
    // 255 goes out alone without CmdGo; 256 ends the sends and step 1 does not roll over;
    // 257 … 264 cannot be sent, so each request goes out as 201, 128.
    QByteArray expected = QByteArray::fromHex("c980ff");
    for (int i = 0; i < 8; ++i)
        expected += QByteArray::fromHex("c980");
    QVERIFY(r.sim->written.startsWith(expected + QByteArray::fromHex("f0")));
    QCOMPARE(r.downloader.walk().DownloadRegister, 128);
    QVERIFY(r.downloader.walk().DownloadByte > 256);
    for (int i = 0; i < 20 && r.downloader.DownLoadBinFileTimer.isActive(); ++i)
        r.downloader.DownLoadBinFileTimerTick();
    // The register never advances and Completion never comes by itself.
    QCOMPARE(r.downloader.walk().DownloadRegister, 128);
    QVERIFY(r.l().DataReceivedStatus != QStringLiteral("Data Received Status : Complete"));
    // All the while the window has said what to do.
    QCOMPARE(r.l().RetryWarning, QStringLiteral("Retry: the file will be 7 bytes short; Cancel and start again"));
    // Cancel between bursts still works, and the advice goes with the file.
    r.downloader.CancelDownload();
    QVERIFY(!QFile::exists(r.path));
    QVERIFY(r.l().RetryWarning.isEmpty());
}

void BinFileDownloaderTest::startDuringADownloadRestartsIntoANewFile()
{
    DownloaderRig r;
    r.connect();
    const QString first = r.path;
    r.downloader.DownloadBinFile();
    for (int i = 0; i < 3; ++i)
        r.downloader.DownLoadBinFileTimerTick();
    r.path = r.dir.filePath(QStringLiteral("second.bin"));
    r.downloader.DownloadBinFile();
    QCOMPARE(r.downloader.walk().DownloadRegister, 128);
    QCOMPARE(r.downloader.walk().DownloadByte, -1);
    QCOMPARE(r.l().SaveTo, r.path);
    r.downloader.DownLoadBinFileTimerTick();
    // The earlier file is kept as it was.
    QVERIFY(r.fileBytes(first) == r.romBytes(0, 24));
    QVERIFY(r.fileBytes(r.path) == r.romBytes(0, 8));
}

void BinFileDownloaderTest::delayItemsAndTheSwitchLabelAsymmetry()
{
    DownloaderRig r;
    r.connect();
    r.downloader.chooseDelay(1);
    QCOMPARE(r.downloader.DownLoadBinFileTimer.interval(), 50);
    QCOMPARE(r.l().EstimatedTimeLabel, QStringLiteral("Estimated Time : 8 min 38 sec"));
    // 300 ms and above leave the estimate as it was, at the choice and at Start.
    r.downloader.chooseDelay(6);
    QCOMPARE(r.downloader.DownLoadBinFileTimer.interval(), 300);
    QCOMPARE(r.l().EstimatedTimeLabel, QStringLiteral("Estimated Time : 8 min 38 sec"));
    r.downloader.DownloadBinFile();
    QCOMPARE(r.l().EstimatedTimeLabel, QStringLiteral("Estimated Time : 8 min 38 sec"));
    QCOMPARE(r.downloader.SwitchLabel, QStringLiteral("0"));
    r.downloader.chooseDelay(11);
    QCOMPARE(r.downloader.DownLoadBinFileTimer.interval(), 1000);
    // Only the 250 ms item sets SwitchLabel at Start.
    r.downloader.chooseDelay(4);
    r.downloader.DownloadBinFile();
    QCOMPARE(r.downloader.SwitchLabel, QStringLiteral("0"));
    r.downloader.chooseDelay(5);
    QCOMPARE(r.l().EstimatedTimeLabel, QStringLiteral("Estimated Time : 21 min 46 sec"));
    QCOMPARE(r.downloader.SwitchLabel, QStringLiteral("0"));
    r.downloader.DownloadBinFile();
    QCOMPARE(r.downloader.SwitchLabel, QStringLiteral("1"));
    QCOMPARE(r.downloader.checkedDelay(), 5);
}

void BinFileDownloaderTest::cancelWithNoDownloadChangesNothing()
{
    DownloaderRig r;
    r.connect();
    const BinFileDownloader::Labels before = r.downloader.labels();
    QSignalSpy changed(&r.downloader, &BinFileDownloader::labelsChanged);
    r.downloader.CancelDownload();
    QCOMPARE(changed.count(), 0);
    QCOMPARE(r.l().DataReceivedStatus, before.DataReceivedStatus);
    QVERIFY(r.sim->written.isEmpty());
}

void BinFileDownloaderTest::cancelDeletesThePartialFile()
{
    DownloaderRig r;
    r.connect();
    r.downloader.chooseDelay(5);
    r.downloader.DownloadBinFile();
    for (int i = 0; i < 3; ++i)
        r.downloader.DownLoadBinFileTimerTick();
    QVERIFY(QFile::exists(r.path));
    r.sim->written.clear();
    r.downloader.CancelDownload();
    QCOMPARE(r.sim->written, QByteArray(1, char(0x30)));
    QVERIFY(!QFile::exists(r.path));
    QVERIFY(!r.downloader.DownLoadBinFileTimer.isActive());
    QCOMPARE(r.downloader.progress(), 0);
    QCOMPARE(r.downloader.DataBytesCount, 0);
    QCOMPARE(r.downloader.SwitchLabel, QStringLiteral("0"));
    const QStringList texts{r.l().StartTimeLabel, r.l().CurrentTimeLabel, r.l().CompletedTimeLabel,
                            r.l().EstimatedTimeLabel, r.l().DataByte, r.l().DataReceivedStatus, r.l().Checksum,
                            r.l().DataBytesReceived, r.l().CurrentDataByte, r.l().CurrentDataRegister};
    QCOMPARE(texts, (QStringList{"Start Time: ", "Current Time: ", "Completed Time: ", "Estimated Time: ",
                                 "Data Byte (hex) :", "Data Received Status :", "Checksum :", "Data Bytes Received :",
                                 "Current Data Byte :", "Current Data Register :"}));
}

void BinFileDownloaderTest::exitSendsTheStopByteOnlyAfterThe250MsDelay()
{
    {
        DownloaderRig r;
        r.connect();
        QSignalSpy close(&r.downloader, &BinFileDownloader::closeRequested);
        r.downloader.DownloadBinFile();
        r.downloader.DownLoadBinFileTimerTick();
        r.sim->written.clear();
        r.downloader.Exit();
        // The ECU is left streaming; the file keeps what was written.
        QVERIFY(r.sim->written.isEmpty());
        QVERIFY(!r.downloader.DownLoadBinFileTimer.isActive());
        QCOMPARE(close.count(), 1);
        QVERIFY(r.fileBytes(r.path) == r.romBytes(0, 8));
        QVERIFY(r.l().StartTimeLabel.startsWith(QStringLiteral("Start Time : ")));
    }
    {
        DownloaderRig r;
        r.connect();
        r.downloader.chooseDelay(5);
        r.downloader.DownloadBinFile();
        r.downloader.DownLoadBinFileTimerTick();
        r.sim->written.clear();
        r.downloader.Exit();
        QCOMPARE(r.sim->written, QByteArray(1, char(0x30)));
        QCOMPARE(r.downloader.SwitchLabel, QStringLiteral("0"));
        QCOMPARE(r.downloader.progress(), 0);
        QCOMPARE(r.l().StartTimeLabel, QStringLiteral("Start Time: "));
        QCOMPARE(r.l().EstimatedTimeLabel, QStringLiteral("Estimated Time: "));
        QVERIFY(r.fileBytes(r.path) == r.romBytes(0, 8));
    }
}

void BinFileDownloaderTest::silentEcuStopsTheDownloadAndTheWindowStaysUsable()
{
    DownloaderRig r;
    r.connect();
    r.downloader.DownloadBinFile();
    r.downloader.DownLoadBinFileTimerTick();
    r.setFaults(true);
    r.downloader.DownLoadBinFileTimerTick();
    QVERIFY(waitForIdleLink(r.session.owner()));
    QVERIFY(!r.downloader.DownLoadBinFileTimer.isActive());
    QVERIFY(r.downloader.stalled());
    QVERIFY(r.l().Notice.startsWith(QStringLiteral("No reply from the ECU within 2 seconds")));
    QVERIFY(r.l().Notice.contains(QStringLiteral("Cancel deletes the partial file; Exit keeps it.")));
    QVERIFY(r.log.text().contains(QStringLiteral("No reply from the ECU")));
    QVERIFY(r.fileBytes(r.path) == r.romBytes(0, 8));
    // Cancel still applies to the stopped download and removes the file.
    r.downloader.CancelDownload();
    QVERIFY(!QFile::exists(r.path));
    QVERIFY(!r.downloader.stalled());
}

void BinFileDownloaderTest::completionAnnounceOptions()
{
    for (auto a : {BinFileDownloader::Announce::Beep, BinFileDownloader::Announce::None}) {
        DownloaderRig r;
        r.connect();
        r.downloader.setAnnounce(a);
        r.downloader.DownloadBinFile();
        r.run();
        QCOMPARE(r.l().DataReceivedStatus, QStringLiteral("Data Received Status : Complete"));
        QVERIFY(r.speech.spoken().isEmpty());
        QCOMPARE(r.beeps, a == BinFileDownloader::Announce::Beep ? 1 : 0);
    }
}

void BinFileDownloaderTest::verifyComparesTheFileWithTheEcu()
{
    DownloaderRig r;
    r.connect();
    r.downloader.DownloadBinFile();
    r.run();
    QVERIFY(r.downloader.verifyEnabled());
    const QByteArray before = r.fileBytes(r.path);
    auto verify = [&r] {
        r.downloader.Verify();
        QVERIFY(r.downloader.verifying());
        for (int i = 0; i < 5000 && r.downloader.VerifyTimer.isActive(); ++i)
            r.downloader.VerifyTimerTick();
    };
    verify();
    QCOMPARE(r.l().VerifyReport, QStringLiteral("Verify : the file equals the ECU's ROM byte for byte."));
    QVERIFY(r.fileBytes(r.path) == before);

    // Two damaged bytes in the file are found and named.
    QByteArray damaged = before;
    damaged[5] = char(~damaged[5]);
    damaged[0x7F2B] = char(~damaged[0x7F2B]);
    {
        QFile f(r.path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(damaged);
    }
    verify();
    QCOMPARE(r.l().VerifyReport,
             QStringLiteral("Verify : 2 of 32768 bytes of the file differ from the ECU. First at 8005, FF2B."));
    QVERIFY(r.fileBytes(r.path) == damaged);

    // A file short by seven bytes a Retry is reported so.
    {
        QFile f(r.path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(before.left(32768 - 7));
    }
    verify();
    QVERIFY(r.l().VerifyReport.startsWith(QStringLiteral("Verify : 7 of 32768 bytes")));
    QVERIFY(r.l().VerifyReport.endsWith(QStringLiteral("The file holds 32761 bytes, not 32768.")));

    // A silent ECU ends Verify with a word.
    r.setFaults(true);
    r.downloader.Verify();
    r.downloader.VerifyTimerTick();
    QVERIFY(waitForIdleLink(r.session.owner()));
    QVERIFY(!r.downloader.verifying());
    QVERIFY(r.l().VerifyReport.startsWith(QStringLiteral("Verify stopped at 8000: no reply from the ECU")));
}

void BinFileDownloaderTest::themeAndBarColoursAreSaved()
{
    TempSettings s;
    writeSetting(*s.store, Settings::MatrixTheme, QStringLiteral("False"));
    s.store->WriteSetting(QStringLiteral("bindownloadbar"), QStringLiteral("TextColor"), QStringLiteral("255"));
    s.store->WriteSetting(QStringLiteral("bindownloadbar"), QStringLiteral("BackColor"), QStringLiteral("green"));
    DownloaderRig r;
    BinFileDownloader d(r.session, *s.store);
    QVERIFY(!d.matrixTheme());
    QCOMPARE(d.barColor(BinFileDownloader::TextColor), 255u);
    // A failed conversion leaves the design colour.
    QCOMPARE(d.barColor(BinFileDownloader::BackColor), r.downloader.barColor(BinFileDownloader::BackColor));
    QSignalSpy theme(&d, &BinFileDownloader::themeChanged);
    d.toggleMatrixTheme();
    QVERIFY(d.matrixTheme());
    QCOMPARE(readSetting(*s.store, Settings::MatrixTheme), QStringLiteral("True"));
    QCOMPARE(theme.count(), 1);

    QSignalSpy picker(&d, &BinFileDownloader::pickerRequested);
    d.openBarColorPicker(BinFileDownloader::StartColor);
    QCOMPARE(d.BarColorSwitch, QStringLiteral("2"));
    QCOMPARE(picker.count(), 1);
    d.pickBarColor(0x00123456);
    QCOMPARE(d.barColor(BinFileDownloader::StartColor), 0x00123456u);
    QCOMPARE(s.store->ReadSetting(QStringLiteral("bindownloadbar"), QStringLiteral("BarStartColor")),
             QString::number(0x00123456));
    BinFileDownloader again(r.session, *s.store);
    QCOMPARE(again.barColor(BinFileDownloader::StartColor), 0x00123456u);
    // With no value at all the design look stays: the matrix look.
    QVERIFY(r.downloader.matrixTheme());
}

void BinFileDownloaderTest::pictureSpinnerStopsAtBothEnds()
{
    DownloaderRig r;
    r.downloader.stepImage(false);
    QCOMPARE(r.downloader.ImageIndex, 1);
    for (int i = 0; i < 30; ++i)
        r.downloader.stepImage(true);
    QCOMPARE(r.downloader.ImageIndex, 23);
    r.downloader.stepImage(false);
    QCOMPARE(r.downloader.ImageIndex, 22);
}

QTEST_GUILESS_MAIN(BinFileDownloaderTest)
#include "bin_file_downloader_test.moc"
