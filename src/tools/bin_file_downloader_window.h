// The window "Vexorin BIN File Downloader": the labels of the download, the
// progress bar, the delay, theme and colour menus, the picture spinner, the
// completion announce options, and Verify.
#pragma once

#include "tools/bin_file_downloader.h"

#include <QMainWindow>
#include <array>

class ColorPicker;
class GradientBar;
class QAction;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QToolButton;
class ConsultSession;
class SettingsStore;

class BinFileDownloaderWindow : public QMainWindow {
    Q_OBJECT
public:
    BinFileDownloaderWindow(ConsultSession& session, SettingsStore& store, QWidget* parent = nullptr);

    BinFileDownloader& downloader() { return downloader_; }
    QAction* action(const QString& objectName) const;
    GradientBar* progressBar() const { return bar_; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* buildClientArea();
    void buildMenus();
    void refreshLabels();
    void refreshState();
    void applyTheme(bool matrix);
    void applyBarColors();
    void showPicture(int index);

    BinFileDownloader downloader_;
    ConsultSession& session_;
    bool exiting_ = false;

    QLabel* heading_ = nullptr;
    QLabel* DataReceivedStatus_ = nullptr;
    QLabel* DataBytesReceived_ = nullptr;
    QLabel* DataByte_ = nullptr;
    QLabel* Checksum_ = nullptr;
    QLabel* CurrentDataRegister_ = nullptr;
    QLabel* CurrentDataByte_ = nullptr;
    QLabel* StartTimeLabel_ = nullptr;
    QLabel* CurrentTimeLabel_ = nullptr;
    QLabel* EstimatedTimeLabel_ = nullptr;
    QLabel* CompletedTimeLabel_ = nullptr;
    QLabel* retries_ = nullptr;
    QLabel* retryWarning_ = nullptr;
    QLabel* notice_ = nullptr;
    QLabel* verifyReport_ = nullptr;
    QLineEdit* saveTo_ = nullptr;
    QLineEdit* binaryBox_ = nullptr;
    QLabel* byteList_ = nullptr;
    GradientBar* bar_ = nullptr;
    QLabel* picture_ = nullptr;
    QWidget* spinner_ = nullptr;
    QPushButton* download_ = nullptr;
    QPushButton* cancel_ = nullptr;
    QPushButton* verify_ = nullptr;
    std::array<QRadioButton*, 3> announce_{};
    ColorPicker* picker_ = nullptr;
    QAction* matrixTheme_ = nullptr;
    std::array<QAction*, vexorin::tools::kDelayCount> delays_{};
};
