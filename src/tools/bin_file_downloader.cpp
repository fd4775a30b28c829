#include "tools/bin_file_downloader.h"

#include "app/settings/settings_access.h"
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/link_owner.h"
#include "consult/link_writes.h"
#include "consult/read_plans.h"
#include "consult/session_log.h"
#include "consult/session_outputs.h"
#include "rom/rom_image.h"
#include "ui/regular_file.h"

#include <QTime>
#include <QTimer>

using namespace vexorin::tools;
using namespace vexorin::consult;

namespace {
// The design colours of the progress bar, 0x00BBGGRR, in BarColor order.
constexpr std::array<quint32, 4> kDesignBarColors{0x00002800, 0x00008000, 0x0080FF80, 0x00C0FFC0};
const std::array<QLatin1StringView, 4> kBarColorKeys{Settings::BackColorKey, Settings::BarStartColorKey,
                                                     Settings::BarEndColorKey, Settings::TextColorKey};

QString ecuAddressText(int offset)
{
    return QString::number(vexorin::rom::ecuAddressOfFileOffset(offset), 16).toUpper();
}
}  // namespace

BinFileDownloader::BinFileDownloader(ConsultSession& session, SettingsStore& store, QObject* parent)
    : QObject(parent), session_(session), store_(store), barColors_(kDesignBarColors)
{
    DownLoadBinFileTimer.setInterval(kDelayItems[0].intervalMs);
    DumpBinTimer.setInterval(kDumpBinMs);
    VerifyTimer.setInterval(kDelayItems[0].intervalMs);
    connect(&DownLoadBinFileTimer, &QTimer::timeout, this, &BinFileDownloader::DownLoadBinFileTimerTick);
    connect(&DumpBinTimer, &QTimer::timeout, this, &BinFileDownloader::ReadNextBurst);
    connect(&VerifyTimer, &QTimer::timeout, this, &BinFileDownloader::VerifyTimerTick);
    resetTexts();
    labels_.Retries = QStringLiteral("Retries : 0");
    loadSettings();
}

BinFileDownloader::~BinFileDownloader()
{
    if (binFile_)
        binFile_->flush();
}

QString BinFileDownloader::timeOfDay()
{
    return QTime::currentTime().toString(QStringLiteral("h:mm:ss AP"));
}

void BinFileDownloader::resetTexts()
{
    labels_.StartTimeLabel = QStringLiteral("Start Time: ");
    labels_.CurrentTimeLabel = QStringLiteral("Current Time: ");
    labels_.CompletedTimeLabel = QStringLiteral("Completed Time: ");
    labels_.EstimatedTimeLabel = QStringLiteral("Estimated Time: ");
    labels_.DataByte = QStringLiteral("Data Byte (hex) :");
    labels_.DataReceivedStatus = QStringLiteral("Data Received Status :");
    labels_.Checksum = QStringLiteral("Checksum :");
    labels_.DataBytesReceived = QStringLiteral("Data Bytes Received :");
    labels_.CurrentDataByte = QStringLiteral("Current Data Byte :");
    labels_.CurrentDataRegister = QStringLiteral("Current Data Register :");
}

void BinFileDownloader::loadSettings()
{
    const QString theme = readSetting(store_, Settings::MatrixTheme);
    if (theme == QLatin1String("True"))
        matrixTheme_ = true;
    else if (theme == QLatin1String("False"))
        matrixTheme_ = false;
    const QString section(Settings::DownloadBarSection);
    for (std::size_t i = 0; i < kBarColorKeys.size(); ++i) {
        bool ok = false;
        const quint32 v = store_.ReadSetting(section, QString(kBarColorKeys[i])).toUInt(&ok);
        if (ok)
            barColors_[i] = v;
    }
}

bool BinFileDownloader::verifyEnabled() const
{
    return completed_ && !DownLoadBinFileTimer.isActive() && !VerifyTimer.isActive()
        && session_.ConnectedLabel() == QLatin1String("Connected");
}

bool BinFileDownloader::refused()
{
    QString why;
    if (session_.owner().mayUse(LinkOwner::Connected | LinkOwner::MonitoringOff, &why))
        return false;
    emit message(why);
    return true;
}

void BinFileDownloader::DownloadBinFile()
{
    session_.owner().whenFree(this, [this] { startDownload(); });
}

void BinFileDownloader::startDownload()
{
    if (refused())
        return;
    const QString path = chooser_ ? chooser_() : QString();
    if (path.isEmpty()) {
        labels_.SaveTo.clear();
        emit labelsChanged();
        return;
    }
    // Opened for writing without truncation: a longer file keeps its tail.
    auto file = std::make_unique<QFile>(path);
    QString problem;
    if (!vexorin::files::openRegular(*file, QIODevice::ReadWrite, &problem)) {
        labels_.SaveTo.clear();
        labels_.Notice = QStringLiteral("The file %1 cannot be written (%2). Nothing has been sent to the ECU.")
                             .arg(path, problem);
        emit labelsChanged();
        emit message(labels_.Notice);
        return;
    }
    VerifyTimer.stop();
    if (binFile_) {
        binFile_->flush();
        keptFiles_.push_back(std::move(binFile_));
    }
    binFile_ = std::move(file);
    binFile_->seek(0);
    BinFilePath = path;
    labels_.SaveTo = path;

    progress_ = 0;
    labels_.DataReceivedStatus = QStringLiteral("Data Received Status : Good");
    walk_.restart();
    DownLoadBinFileTimer.start();
    // Only the first six items give an estimate, and only the 250 ms item sets SwitchLabel.
    if (const char* estimate = kDelayItems[std::size_t(checkedDelay_)].estimate)
        labels_.EstimatedTimeLabel = QString::fromLatin1(estimate);
    if (checkedDelay_ == kSwitchingDelay)
        SwitchLabel = QStringLiteral("1");
    labels_.CompletedTimeLabel = QStringLiteral("Completed Time : ");
    labels_.StartTimeLabel = QStringLiteral("Start Time : ") + timeOfDay();
    DataBytesCount = 0;

    retries_ = 0;
    stalled_ = false;
    completed_ = false;
    labels_.Retries = QStringLiteral("Retries : 0");
    labels_.RetryWarning.clear();
    labels_.Notice.clear();
    labels_.VerifyReport.clear();
    emit progressChanged(progress_);
    emit labelsChanged();
    emit stateChanged();
}

void BinFileDownloader::DownLoadBinFileTimerTick()
{
    if (session_.owner().busy()) {
        tickMissed_ = true;
        return;
    }
    labels_.CurrentTimeLabel = QStringLiteral("Current Time: ") + timeOfDay();
    ReadNextBurst();
}

void BinFileDownloader::ReadNextBurst()
{
    chainLeft_ = kBurstsPerTick;
    continueBursts();
}

// Bursts follow each other at once while a Retry or a bare request asks for
// it, up to kBurstsPerTick a tick; a burst whose reply is still on the line
// picks the chain up when it ends.
void BinFileDownloader::continueBursts()
{
    inChain_ = true;
    while (chainLeft_ > 0 && !session_.owner().busy()) {
        --chainLeft_;
        nextAtOnce_ = false;
        burst();
        if (!nextAtOnce_)
            break;
    }
    inChain_ = false;
    if (binFile_)
        binFile_->flush();
    emit progressChanged(progress_);
    emit labelsChanged();
}

void BinFileDownloader::burst()
{
    const RomStep step = walk_.next();
    if (step.kind == RomStep::Kind::Complete) {
        completion();
        return;
    }
    if (step.shownByte >= 0) {
        labels_.CurrentDataByte = QStringLiteral("Current Data Byte : ") + QString::number(step.shownByte);
        labels_.CurrentDataRegister = QStringLiteral("Current Data Register : ") + QString::number(step.shownRegister);
    }
    if (step.kind == RomStep::Kind::SendOnly) {
        // A byte above 255 cannot be sent: its write fails and the request goes out without it.
        ConsultLink& link = session_.link();
        link.setInBufferCount(0);
        sendBytes(link, sendable(step.request));
        nextAtOnce_ = true;
        return;
    }
    session_.owner().run(burstCycle(step.request, true), this, [this](const LinkOwner::Reply& reply) {
        runMissedTick();
        if (!reply) {
            stall();
            return;
        }
        if (!burstArrived(*reply)) {
            nextAtOnce_ = true;
            if (!inChain_) {
                // Unless Cancel or Exit, waiting for this burst, stop the download first.
                QTimer::singleShot(0, this, [this] {
                    chainLeft_ = kBurstsPerTick;
                    if (DownLoadBinFileTimer.isActive())
                        continueBursts();
                });
            }
        }
        if (!inChain_) {
            if (binFile_)
                binFile_->flush();
            emit progressChanged(progress_);
            emit labelsChanged();
        }
    });
}

// A tick that fell due while a burst was on the line runs as soon as it ends,
// as it did when the burst held the window: the bursts follow each other at
// the line's own pace.
void BinFileDownloader::runMissedTick()
{
    if (!tickMissed_)
        return;
    tickMissed_ = false;
    QTimer::singleShot(0, this, [this] {
        if (DownLoadBinFileTimer.isActive())
            DownLoadBinFileTimerTick();
        else if (VerifyTimer.isActive())
            VerifyTimerTick();
    });
}

bool BinFileDownloader::burstArrived(const std::vector<std::uint8_t>& reply)
{
    for (int index = 0; index < kBurstReplyLength; ++index) {
        const int b = reply[std::size_t(index)];
        labels_.DataByte = QStringLiteral("Data Byte (hex) : ") + QString::number(b, 16).toUpper();
        labels_.DataReceivedStatus = QStringLiteral("Data Received Status : Good");
        if (index == 0) {
            if (!walk_.accept(reply)) {
                labels_.DataReceivedStatus = QStringLiteral("Data Received Status : Retry");
                ++retries_;
                labels_.Retries = QStringLiteral("Retries : %1").arg(retries_);
                // From here on the download cannot finish by itself: say so now.
                labels_.RetryWarning = QString::fromLatin1(kRetryRunningWarning);
                return false;
            }
            labels_.Checksum = QStringLiteral("Checksum : ") + QString::number(b, 16).toUpper();
            labels_.ByteList = QString::number(b);
        } else {
            labels_.ByteList += QStringLiteral(", ") + QString::number(b);
        }
        if (index >= kBurstFirstData)
            writeDataByte(b);
        labels_.BinaryBox = QString::fromStdString(DecimalToBinary(b));
    }
    return true;
}

void BinFileDownloader::writeDataByte(int value)
{
    if (binFile_) {
        const char c = char(value);
        binFile_->write(&c, 1);
    }
    // The bar refuses a value past its maximum, and the count stops at 32767.
    if (progress_ < kProgressMaximum)
        ++progress_;
    DataBytesCount = addInt16(DataBytesCount, 1);
    labels_.DataBytesReceived = QStringLiteral("Data Bytes Received : ") + QString::number(DataBytesCount);
}

void BinFileDownloader::completion()
{
    DownLoadBinFileTimer.stop();
    labels_.DataReceivedStatus = QStringLiteral("Data Received Status : Complete");
    labels_.CompletedTimeLabel = QStringLiteral("Completed Time: ") + timeOfDay();
    labels_.DataBytesReceived = QStringLiteral("Data Bytes Received : 32768");
    if (retries_ == 0) {
        labels_.RetryWarning = QStringLiteral("No Retries: every burst arrived whole.");
    } else {
        labels_.RetryWarning =
            QStringLiteral("%1 %2: each one leaves the file seven bytes short, so this file lacks %3 bytes "
                           "and is not a true image of the ECU. Do not flash it.")
                .arg(retries_)
                .arg(retries_ == 1 ? QStringLiteral("Retry") : QStringLiteral("Retries"))
                .arg(7L * retries_);
    }
    if (announce_ == Announce::Voice)
        session_.outputs().say(QStringLiteral("Bin file download complete."));
    else if (announce_ == Announce::Beep)
        emit beep();
    if (binFile_) {
        binFile_->close();
        binFile_.reset();
    }
    completed_ = true;
    emit labelsChanged();
    emit stateChanged();
}

void BinFileDownloader::stall()
{
    DownLoadBinFileTimer.stop();
    DumpBinTimer.stop();
    stalled_ = true;
    if (binFile_)
        binFile_->flush();
    labels_.Notice = QStringLiteral("No reply from the ECU within %1 seconds: the download has stopped after %2 bytes. "
                                    "Cancel deletes the partial file; Exit keeps it.")
                         .arg(kReplyTimeoutMs / 1000)
                         .arg(progress_);
    session_.log().AddLogMessage(vexorin::consult::timeoutMessage());
    emit labelsChanged();
    emit stateChanged();
}

void BinFileDownloader::CancelDownload()
{
    session_.owner().whenFree(this, [this] { cancelNow(); });
}

void BinFileDownloader::cancelNow()
{
    if (!DownLoadBinFileTimer.isActive() && !stalled_)
        return;
    DownLoadBinFileTimer.stop();
    session_.link().Output({kCmdStop});
    progress_ = 0;
    resetTexts();
    DataBytesCount = 0;
    SwitchLabel = QStringLiteral("0");
    if (binFile_) {
        binFile_->close();
        binFile_.reset();
    }
    QFile::remove(BinFilePath);
    stalled_ = false;
    labels_.Notice = QStringLiteral("Download cancelled: the partial file %1 has been deleted.").arg(BinFilePath);
    labels_.RetryWarning.clear();
    emit progressChanged(progress_);
    emit labelsChanged();
    emit stateChanged();
}

void BinFileDownloader::Exit()
{
    session_.owner().whenFree(this, [this] { exitNow(); });
}

void BinFileDownloader::exitNow()
{
    DownLoadBinFileTimer.stop();
    VerifyTimer.stop();
    if (SwitchLabel == QLatin1String("1")) {
        session_.link().Output({kCmdStop});
        progress_ = 0;
        labels_.StartTimeLabel = QStringLiteral("Start Time: ");
        labels_.CurrentTimeLabel = QStringLiteral("Current Time: ");
        labels_.CompletedTimeLabel = QStringLiteral("Completed Time: ");
        labels_.EstimatedTimeLabel = QStringLiteral("Estimated Time: ");
        SwitchLabel = QStringLiteral("0");
        emit progressChanged(progress_);
        emit labelsChanged();
    }
    // What was written stays on disk.
    if (binFile_)
        binFile_->flush();
    emit stateChanged();
    emit closeRequested();
}

void BinFileDownloader::chooseDelay(int item)
{
    if (item < 0 || item >= kDelayCount)
        return;
    const DelayItem& d = kDelayItems[std::size_t(item)];
    checkedDelay_ = item;
    DownLoadBinFileTimer.setInterval(d.intervalMs);
    VerifyTimer.setInterval(d.intervalMs);
    if (d.estimate)
        labels_.EstimatedTimeLabel = QString::fromLatin1(d.estimate);
    emit labelsChanged();
    emit stateChanged();
}

void BinFileDownloader::toggleMatrixTheme()
{
    matrixTheme_ = !matrixTheme_;
    writeSetting(store_, Settings::MatrixTheme, matrixTheme_ ? QStringLiteral("True") : QStringLiteral("False"));
    emit themeChanged(matrixTheme_);
}

void BinFileDownloader::openBarColorPicker(BarColor which)
{
    BarColorSwitch = QString::number(int(which));
    emit pickerRequested();
}

void BinFileDownloader::pickBarColor(quint32 bgr)
{
    const int which = BarColorSwitch.toInt();
    if (which < 1 || which > 4)
        return;
    barColors_[std::size_t(which - 1)] = bgr;
    store_.WriteSetting(QString(Settings::DownloadBarSection), QString(kBarColorKeys[std::size_t(which - 1)]),
                        QString::number(bgr));
    emit barColorsChanged();
}

void BinFileDownloader::stepImage(bool up)
{
    const int next = ImageIndex + (up ? 1 : -1);
    if (next < 1 || next > kPictures)
        return;
    ImageIndex = next;
    emit imageChanged(ImageIndex);
}

// ---- Verify -----------------------------------------------------------------

void BinFileDownloader::Verify()
{
    session_.owner().whenFree(this, [this] { startVerify(); });
}

void BinFileDownloader::startVerify()
{
    if (refused())
        return;
    if (!verifyEnabled())
        return;
    std::string error;
    if (!vexorin::rom::readImage(BinFilePath.toStdString(), verifyImage_, &error)) {
        labels_.VerifyReport = QStringLiteral("Verify : the file cannot be read (%1).").arg(QString::fromStdString(error));
        emit labelsChanged();
        return;
    }
    verifyOffset_ = 0;
    verifyFailures_ = 0;
    differing_ = 0;
    firstDifferences_.clear();
    labels_.VerifyReport = QStringLiteral("Verify : reading the ECU again ...");
    VerifyTimer.start();
    emit labelsChanged();
    emit stateChanged();
}

void BinFileDownloader::VerifyTimerTick()
{
    if (session_.owner().busy()) {
        tickMissed_ = true;
        return;
    }
    if (verifyOffset_ >= kProgressMaximum) {
        finishVerify(verifyReport());
        return;
    }
    const int address = vexorin::rom::ecuAddressOfFileOffset(verifyOffset_);
    const Cycle cycle = burstCycle(burstRequest(address >> 8, address & 0xFF), true);
    session_.owner().run(cycle, this, [this](const LinkOwner::Reply& reply) { verifyBurst(reply); });
}

void BinFileDownloader::verifyBurst(const std::optional<std::vector<std::uint8_t>>& reply)
{
    runMissedTick();
    if (!reply) {
        session_.log().AddLogMessage(vexorin::consult::timeoutMessage());
        finishVerify(QStringLiteral("Verify stopped at %1: no reply from the ECU within %2 seconds.")
                         .arg(ecuAddressText(verifyOffset_))
                         .arg(kReplyTimeoutMs / 1000));
        return;
    }
    if (!echoOk((*reply)[0])) {
        // The same eight addresses are read again at the next tick.
        if (++verifyFailures_ >= kVerifyTries)
            finishVerify(QStringLiteral("Verify stopped at %1: the ECU's replies kept arriving damaged.")
                             .arg(ecuAddressText(verifyOffset_)));
        return;
    }
    verifyFailures_ = 0;
    const auto data = burstData(*reply);
    for (int i = 0; i < kBurstAddresses; ++i) {
        const int offset = verifyOffset_ + i;
        const int fromEcu = data[std::size_t(i)];
        const bool inFile = offset < int(verifyImage_.size());
        if (inFile && verifyImage_[std::size_t(offset)] == fromEcu)
            continue;
        ++differing_;
        if (firstDifferences_.size() < kVerifyAddressesShown)
            firstDifferences_.append(ecuAddressText(offset));
    }
    verifyOffset_ += kBurstAddresses;
    labels_.VerifyReport = QStringLiteral("Verify : %1 of %2 bytes compared").arg(verifyOffset_).arg(kProgressMaximum);
    if (verifyOffset_ >= kProgressMaximum)
        finishVerify(verifyReport());
    else
        emit labelsChanged();
}

QString BinFileDownloader::verifyReport() const
{
    const int size = int(verifyImage_.size());
    if (differing_ == 0 && size == kProgressMaximum)
        return QStringLiteral("Verify : the file equals the ECU's ROM byte for byte.");
    QString report = QStringLiteral("Verify : %1 of %2 bytes of the file differ from the ECU.")
                         .arg(differing_)
                         .arg(kProgressMaximum);
    if (!firstDifferences_.isEmpty())
        report += QStringLiteral(" First at ") + firstDifferences_.join(QStringLiteral(", ")) + QLatin1Char('.');
    if (size != kProgressMaximum)
        report += QStringLiteral(" The file holds %1 bytes, not %2.").arg(size).arg(kProgressMaximum);
    return report;
}

void BinFileDownloader::finishVerify(const QString& report)
{
    VerifyTimer.stop();
    labels_.VerifyReport = report;
    emit labelsChanged();
    emit stateChanged();
}
