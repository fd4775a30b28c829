// The BIN File Downloader's logic: the whole ROM of the ECU, eight addresses
// a burst, one burst a timer tick, written to a BIN file in address order;
// its labels, delay items, theme and progress bar colours; and, beside it,
// the Retry count and a Verify pass that reads the ECU again and compares.
#pragma once

#include "tools/ecu_tool_tables.h"
#include "tools/rom_walk.h"

#include <QFile>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class ConsultSession;
class SettingsStore;

// Shown from the first Retry while the download still runs.
inline constexpr const char* kRetryRunningWarning = "Retry: the file will be 7 bytes short; Cancel and start again";

class BinFileDownloader : public QObject {
    Q_OBJECT
public:
    static constexpr int kProgressMaximum = 32768;
    static constexpr int kPictures = 23;
    static constexpr int kDumpBinMs = 250;
    // Bursts one tick may run when Retries follow each other, so that the
    // window gets its turn between them.
    static constexpr int kBurstsPerTick = 16;
    // Verify: how many addresses a report names, and how often one burst is tried.
    static constexpr int kVerifyAddressesShown = 5;
    static constexpr int kVerifyTries = 3;

    enum class Announce { Voice, Beep, None };
    enum BarColor { BackColor = 1, StartColor, EndColor, TextColor };

    // The texts the window shows.
    struct Labels {
        QString DataReceivedStatus;
        QString DataBytesReceived;
        QString DataByte;
        QString Checksum;
        QString CurrentDataRegister;
        QString CurrentDataByte;
        QString StartTimeLabel;
        QString CurrentTimeLabel;
        QString EstimatedTimeLabel;
        QString CompletedTimeLabel;
        QString SaveTo;
        QString ByteList;
        QString BinaryBox;
        QString Retries;        // the Retry count
        QString RetryWarning;   // what the Retries did to the file, at Completion
        QString Notice;         // a time-out, a file that cannot be written
        QString VerifyReport;
    };

    BinFileDownloader(ConsultSession& session, SettingsStore& store, QObject* parent = nullptr);
    ~BinFileDownloader() override;

    QTimer DownLoadBinFileTimer;
    QTimer DumpBinTimer;
    QTimer VerifyTimer;

    // State of the download.
    int DataBytesCount = 0;
    QString BinFilePath;
    QString SwitchLabel = QStringLiteral("0");
    QString BarColorSwitch = QStringLiteral("1");
    int ImageIndex = 1;

    const Labels& labels() const { return labels_; }
    // Where the download stands in the ROM.
    const vexorin::tools::RomWalk& walk() const { return walk_; }
    int progress() const { return progress_; }
    int retries() const { return retries_; }
    bool stalled() const { return stalled_; }
    bool completed() const { return completed_; }
    bool verifying() const { return VerifyTimer.isActive(); }
    // Verify needs a finished download, the link up and nothing else running.
    bool verifyEnabled() const;
    int checkedDelay() const { return checkedDelay_; }
    Announce announce() const { return announce_; }
    void setAnnounce(Announce a) { announce_ = a; }
    bool matrixTheme() const { return matrixTheme_; }
    // The bar colours (0x00BBGGRR), by BarColor.
    quint32 barColor(BarColor which) const { return barColors_[std::size_t(which - 1)]; }

    // The save dialog: the chosen path, or empty when the user declines.
    void setFileChooser(std::function<QString()> chooser) { chooser_ = std::move(chooser); }

    // "Download BIN File", button and menu item.
    void DownloadBinFile();
    void DownLoadBinFileTimerTick();
    void ReadNextBurst();
    // "Cancel", button and menu item.
    void CancelDownload();
    // File, Exit: the window closes after it.
    void Exit();
    void chooseDelay(int item);
    void toggleMatrixTheme();
    // An Options item opens the picker for one bar colour; the pick applies it.
    void openBarColorPicker(BarColor which);
    void pickBarColor(quint32 bgr);
    void stepImage(bool up);

    // "Verify", and one of its bursts.
    void Verify();
    void VerifyTimerTick();

signals:
    void labelsChanged();
    void progressChanged(int value);
    void stateChanged();
    void barColorsChanged();
    void themeChanged(bool matrix);
    void imageChanged(int index);
    void pickerRequested();
    void message(const QString& text);
    void beep();
    void closeRequested();

private:
    // The link down or the monitor running: said, and true.
    bool refused();
    void startDownload();
    void cancelNow();
    void exitNow();
    void startVerify();
    void continueBursts();
    // One step of the walk: a burst, a bare request or the completion.
    void burst();
    // A burst's reply; false for a Retry.
    bool burstArrived(const std::vector<std::uint8_t>& reply);
    void verifyBurst(const std::optional<std::vector<std::uint8_t>>& reply);
    void runMissedTick();
    void completion();
    void stall();
    void resetTexts();
    void setTimeLabel(QString Labels::*label, const QString& prefix);
    void writeDataByte(int value);
    void loadSettings();
    void finishVerify(const QString& report);
    QString verifyReport() const;
    static QString timeOfDay();

    ConsultSession& session_;
    SettingsStore& store_;
    Labels labels_;
    int progress_ = 0;
    int retries_ = 0;
    bool stalled_ = false;
    bool completed_ = false;
    int checkedDelay_ = 0;
    Announce announce_ = Announce::Voice;
    bool matrixTheme_ = true;
    std::array<quint32, 4> barColors_;
    std::function<QString()> chooser_;
    vexorin::tools::RomWalk walk_;
    int chainLeft_ = 0;       // bursts the running tick may still chain
    bool inChain_ = false;
    bool nextAtOnce_ = false; // a Retry or a bare request wants the next burst now
    bool tickMissed_ = false; // a tick fell due while a burst was on the line
    std::unique_ptr<QFile> binFile_;
    // Files of earlier Starts: kept open, as they were left.
    std::vector<std::unique_ptr<QFile>> keptFiles_;

    // Verify.
    std::vector<std::uint8_t> verifyImage_;
    int verifyOffset_ = 0;
    int verifyFailures_ = 0;
    int differing_ = 0;
    QStringList firstDifferences_;
};
