#include "tools/bin_file_downloader_window.h"

#include "consult/consult_session.h"
#include "rom/rom_image.h"
#include "tools/tool_pictures.h"
#include "ui/color_picker_widget.h"
#include "ui/common_dialog.h"
#include "ui/gradient_bar_widget.h"
#include "ui/message_box.h"
#include "ui/owned_dialogs.h"
#include "ui/plain_text.h"
#include "ui/twips.h"
#include "ui/vb_color.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <QVBoxLayout>

using namespace vexorin::tools;

namespace {
const QString kMatrixStyle = QStringLiteral(
    "QLabel, QRadioButton, QLineEdit, QGroupBox { background-color: rgb(0,64,0); color: rgb(192,255,192); }"
    "QGroupBox { border: 1px solid rgb(0,140,40); margin-top: 8px; padding-top: 6px; }"
    "QGroupBox::title { subcontrol-origin: margin; left: 8px; padding: 0 3px; }"
    "QPushButton { background-color: rgb(0,64,0); color: rgb(192,255,192); border: 1px solid rgb(0,160,60);"
    " padding: 4px 12px; }"
    "QPushButton:disabled { color: rgb(70,120,70); }"
    // Unticked options keep a visible ring on the dark green.
    "QRadioButton::indicator { width: 12px; height: 12px; border-radius: 7px; border: 1px solid rgb(192,255,192);"
    " background: rgb(0,40,0); }"
    "QRadioButton::indicator:checked { background: qradialgradient(cx:0.5, cy:0.5, radius:0.5, fx:0.5, fy:0.5,"
    " stop:0 rgb(192,255,192), stop:0.5 rgb(192,255,192), stop:0.6 rgb(0,40,0), stop:1 rgb(0,40,0)); }"
    "QLabel#Heading { background: transparent; color: rgb(0,255,90); }");

// The client area: the background picture behind everything in the matrix look.
class Backdrop : public QWidget {
public:
    using QWidget::QWidget;
    bool matrix = true;

protected:
    void paintEvent(QPaintEvent*) override
    {
        if (!matrix)
            return;
        QPainter p(this);
        if (cache_.size() != size())
            cache_ = downloaderBackground(width(), height());
        p.drawImage(0, 0, cache_);
    }

private:
    QImage cache_;
};

QLabel* newLabel(const QString& name, QWidget* parent)
{
    auto* l = new QLabel(parent);
    l->setObjectName(name);
    l->setMinimumWidth(230);
    return l;
}
}  // namespace

BinFileDownloaderWindow::BinFileDownloaderWindow(ConsultSession& session, SettingsStore& store, QWidget* parent)
    : QMainWindow(parent), downloader_(session, store), session_(session)
{
    setObjectName(QStringLiteral("BinFileDownloaderWindow"));
    setWindowTitle(QStringLiteral("Vexorin BIN File Downloader"));
    setAttribute(Qt::WA_DeleteOnClose);
    buildMenus();
    setCentralWidget(buildClientArea());
    resize(9600 / vexorin::ui::kTwipsPerPixel, 7200 / vexorin::ui::kTwipsPerPixel);

    downloader_.setFileChooser([this] {
        return mCommonDialog::saveFileName(this, QString::fromLatin1(vexorin::rom::kBinExtension),
                                           QString::fromLatin1(vexorin::rom::kBinFilter));
    });
    connect(&downloader_, &BinFileDownloader::labelsChanged, this, &BinFileDownloaderWindow::refreshLabels);
    connect(&downloader_, &BinFileDownloader::stateChanged, this, &BinFileDownloaderWindow::refreshState);
    connect(&downloader_, &BinFileDownloader::progressChanged, bar_, &GradientBar::setValue);
    connect(&downloader_, &BinFileDownloader::themeChanged, this, &BinFileDownloaderWindow::applyTheme);
    connect(&downloader_, &BinFileDownloader::barColorsChanged, this, &BinFileDownloaderWindow::applyBarColors);
    connect(&downloader_, &BinFileDownloader::imageChanged, this, &BinFileDownloaderWindow::showPicture);
    connect(&downloader_, &BinFileDownloader::message, this, [this](const QString& t) { MessageBoxes::information(this, t); });
    connect(&downloader_, &BinFileDownloader::beep, this, [] { QApplication::beep(); });
    connect(&downloader_, &BinFileDownloader::closeRequested, this, [this] {
        exiting_ = true;
        close();
    });
    connect(&downloader_, &BinFileDownloader::pickerRequested, this, [this] {
        picker_->show();
        picker_->showMenu();
    });
    connect(picker_, &ColorPicker::colorPicked, this, [this](quint32 bgr) {
        picker_->hide();
        downloader_.pickBarColor(bgr);
    });
    connect(&session_, &ConsultSession::labelsChanged, this, &BinFileDownloaderWindow::refreshState);

    applyTheme(downloader_.matrixTheme());
    applyBarColors();
    showPicture(downloader_.ImageIndex);
    refreshLabels();
    refreshState();
    vexorin::ui::keepTextPlain(this);
}

QAction* BinFileDownloaderWindow::action(const QString& objectName) const
{
    return findChild<QAction*>(objectName);
}

void BinFileDownloaderWindow::buildMenus()
{
    auto add = [this](QMenu* menu, const char* name, const QString& caption, auto slot) {
        QAction* a = menu->addAction(caption);
        a->setObjectName(QString::fromLatin1(name));
        connect(a, &QAction::triggered, this, slot);
        return a;
    };
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    add(file, "DownloadBINFile2", QStringLiteral("Download BIN File"), [this] { downloader_.DownloadBinFile(); });
    add(file, "CancelBinFileDownload", QStringLiteral("Cancel Bin File Download"), [this] { downloader_.CancelDownload(); });
    file->addSeparator();
    add(file, "Exit", QStringLiteral("Exit"), [this] { downloader_.Exit(); });

    QMenu* options = menuBar()->addMenu(QStringLiteral("&Options"));
    matrixTheme_ = add(options, "MatrixTheme", QStringLiteral("Matrix Theme"), [this] { downloader_.toggleMatrixTheme(); });
    matrixTheme_->setCheckable(true);
    using BC = BinFileDownloader::BarColor;
    const std::array<std::tuple<const char*, const char*, BC>, 4> colours{{
        {"ProgressbarBackcolor", "Progressbar Backcolor", BC::BackColor},
        {"ProgressbarStartColor", "Progressbar Start Color", BC::StartColor},
        {"ProgressbarEndColor", "Progressbar End Color", BC::EndColor},
        {"ProgressbarTextColor", "Progressbar Text Color", BC::TextColor},
    }};
    for (const auto& [name, caption, which] : colours)
        add(options, name, QLatin1String(caption), [this, w = which] { downloader_.openBarColorPicker(w); });
    QMenu* delay = options->addMenu(QStringLiteral("Delay"));
    delay->setObjectName(QStringLiteral("Delay"));
    auto* group = new QActionGroup(this);
    for (int i = 0; i < kDelayCount; ++i) {
        const DelayItem& d = kDelayItems[std::size_t(i)];
        QAction* a = add(delay, d.name, QLatin1String(d.caption), [this, i] { downloader_.chooseDelay(i); });
        a->setCheckable(true);
        group->addAction(a);
        delays_[std::size_t(i)] = a;
    }
}

QWidget* BinFileDownloaderWindow::buildClientArea()
{
    auto* area = new Backdrop(this);
    auto* outer = new QVBoxLayout(area);
    outer->setContentsMargins(12, 8, 12, 8);
    outer->setSpacing(8);

    // Heading, with the picture spinner at its right.
    auto* top = new QHBoxLayout;
    heading_ = new QLabel(QStringLiteral("BIN File Downloader"), area);
    heading_->setObjectName(QStringLiteral("Heading"));
    QFont hf = heading_->font();
    hf.setPointSizeF(hf.pointSizeF() * 1.8);
    hf.setBold(true);
    heading_->setFont(hf);
    top->addWidget(heading_, 1);
    spinner_ = new QWidget(area);
    auto* spin = new QHBoxLayout(spinner_);
    spin->setContentsMargins(0, 0, 0, 0);
    picture_ = new QLabel(spinner_);
    picture_->setObjectName(QStringLiteral("Picture"));
    picture_->setFixedSize(72, 72);
    spin->addWidget(picture_);
    auto* arrows = new QVBoxLayout;
    for (bool up : {true, false}) {
        auto* b = new QToolButton(spinner_);
        b->setArrowType(up ? Qt::UpArrow : Qt::DownArrow);
        b->setAccessibleName(up ? QStringLiteral("Next picture") : QStringLiteral("Previous picture"));
        connect(b, &QToolButton::clicked, this, [this, up] { downloader_.stepImage(up); });
        arrows->addWidget(b);
    }
    spin->addLayout(arrows);
    top->addWidget(spinner_);
    outer->addLayout(top);

    // The two groups side by side, the announce options under the time.
    auto* groups = new QHBoxLayout;
    auto* info = new QGroupBox(QStringLiteral("Data Information"), area);
    auto* infoLayout = new QVBoxLayout(info);
    DataReceivedStatus_ = newLabel(QStringLiteral("DataReceivedStatus"), info);
    DataBytesReceived_ = newLabel(QStringLiteral("DataBytesReceived"), info);
    DataByte_ = newLabel(QStringLiteral("DataByte"), info);
    Checksum_ = newLabel(QStringLiteral("Checksum"), info);
    CurrentDataRegister_ = newLabel(QStringLiteral("CurrentDataRegister"), info);
    CurrentDataByte_ = newLabel(QStringLiteral("CurrentDataByte"), info);
    retries_ = newLabel(QStringLiteral("RetryCount"), info);
    for (QLabel* l : {DataReceivedStatus_, DataBytesReceived_, DataByte_, Checksum_, CurrentDataRegister_,
                      CurrentDataByte_, retries_})
        infoLayout->addWidget(l);
    binaryBox_ = new QLineEdit(info);
    binaryBox_->setObjectName(QStringLiteral("BinaryBox"));
    binaryBox_->setReadOnly(true);
    binaryBox_->setAccessibleName(QStringLiteral("Current byte in binary"));
    binaryBox_->setMaximumWidth(110);
    infoLayout->addWidget(binaryBox_);
    groups->addWidget(info, 1);

    auto* right = new QVBoxLayout;
    auto* time = new QGroupBox(QStringLiteral("Time"), area);
    auto* timeLayout = new QVBoxLayout(time);
    StartTimeLabel_ = newLabel(QStringLiteral("StartTimeLabel"), time);
    CurrentTimeLabel_ = newLabel(QStringLiteral("CurrentTimeLabel"), time);
    EstimatedTimeLabel_ = newLabel(QStringLiteral("EstimatedTimeLabel"), time);
    CompletedTimeLabel_ = newLabel(QStringLiteral("CompletedTimeLabel"), time);
    for (QLabel* l : {StartTimeLabel_, CurrentTimeLabel_, EstimatedTimeLabel_, CompletedTimeLabel_})
        timeLayout->addWidget(l);
    right->addWidget(time);
    auto* announce = new QGroupBox(QStringLiteral("Completion Announce"), area);
    auto* announceLayout = new QHBoxLayout(announce);
    const std::array<const char*, 3> announceCaptions{"Voice", "Beep", "None"};
    for (std::size_t i = 0; i < announce_.size(); ++i) {
        announce_[i] = new QRadioButton(QLatin1String(announceCaptions[i]), announce);
        announce_[i]->setObjectName(QLatin1String(announceCaptions[i]));
        connect(announce_[i], &QRadioButton::toggled, this, [this, i](bool on) {
            if (on)
                downloader_.setAnnounce(BinFileDownloader::Announce(i));
        });
        announceLayout->addWidget(announce_[i]);
    }
    announce_[0]->setChecked(true);
    right->addWidget(announce);
    right->addStretch(1);
    groups->addLayout(right, 1);
    outer->addLayout(groups);

    // Progress, target file and the buttons.
    auto* form = new QGridLayout;
    auto* progressCaption = new QLabel(QStringLiteral("Progress :"), area);
    progressCaption->setMinimumWidth(0);
    form->addWidget(progressCaption, 0, 0);
    bar_ = new GradientBar(area);
    bar_->setObjectName(QStringLiteral("ProgressBar"));
    bar_->setMaximum(BinFileDownloader::kProgressMaximum);
    bar_->setTextVisible(true);
    bar_->setTextBefore(QStringLiteral("Received "));
    bar_->setTextAfter(QStringLiteral(" % BIN Data"));
    bar_->setMinimumHeight(22);
    bar_->setAccessibleName(QStringLiteral("Progress :"));
    form->addWidget(bar_, 0, 1);
    auto* saveCaption = new QLabel(QStringLiteral("Save To : "), area);
    form->addWidget(saveCaption, 1, 0);
    saveTo_ = new QLineEdit(area);
    saveTo_->setObjectName(QStringLiteral("SaveTo"));
    saveTo_->setReadOnly(true);
    saveTo_->setAccessibleName(QStringLiteral("Save To : "));
    form->addWidget(saveTo_, 1, 1);
    outer->addLayout(form);

    auto* buttons = new QHBoxLayout;
    download_ = new QPushButton(QStringLiteral("Download BIN File"), area);
    download_->setObjectName(QStringLiteral("DownloadBinFileOne"));
    cancel_ = new QPushButton(QStringLiteral("Cancel"), area);
    cancel_->setObjectName(QStringLiteral("CancelDownload"));
    verify_ = new QPushButton(QStringLiteral("Verify"), area);
    verify_->setObjectName(QStringLiteral("Verify"));
    verify_->setToolTip(QStringLiteral("Reads the ECU again and compares it with the file"));
    connect(download_, &QPushButton::clicked, &downloader_, &BinFileDownloader::DownloadBinFile);
    connect(cancel_, &QPushButton::clicked, &downloader_, &BinFileDownloader::CancelDownload);
    connect(verify_, &QPushButton::clicked, &downloader_, &BinFileDownloader::Verify);
    buttons->addWidget(download_);
    buttons->addWidget(cancel_);
    buttons->addStretch(1);
    buttons->addWidget(verify_);
    outer->addLayout(buttons);

    // Beside the original labels: what Retries did, time-outs, and Verify's report.
    retryWarning_ = newLabel(QStringLiteral("RetryWarning"), area);
    notice_ = newLabel(QStringLiteral("Notice"), area);
    verifyReport_ = newLabel(QStringLiteral("VerifyReport"), area);
    for (QLabel* l : {retryWarning_, notice_, verifyReport_}) {
        l->setWordWrap(true);
        outer->addWidget(l);
    }

    // The last burst's bytes, wrapped onto as many lines as the window's width needs.
    byteList_ = new QLabel(area);
    byteList_->setObjectName(QStringLiteral("ByteList"));
    byteList_->setAccessibleName(QStringLiteral("Bytes of the last burst"));
    byteList_->setFrameShape(QFrame::StyledPanel);
    byteList_->setWordWrap(true);
    byteList_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    byteList_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    byteList_->setMinimumHeight(4 * byteList_->fontMetrics().lineSpacing() + 2 * byteList_->frameWidth() + 4);
    outer->addStretch(1);
    outer->addWidget(byteList_);
    // The bytes of a burst are one long line; the box shows as much as fits.
    byteList_->setWordWrap(false);

    picker_ = new ColorPicker(QStringLiteral("Progress Bar Color"), area);
    picker_->setObjectName(QStringLiteral("ColorPicker"));
    picker_->hide();
    buttons->insertWidget(2, picker_);
    return area;
}

void BinFileDownloaderWindow::refreshLabels()
{
    const BinFileDownloader::Labels& l = downloader_.labels();
    const std::pair<QLabel*, QString> texts[] = {
        {DataReceivedStatus_, l.DataReceivedStatus}, {DataBytesReceived_, l.DataBytesReceived},
        {DataByte_, l.DataByte},                     {Checksum_, l.Checksum},
        {CurrentDataRegister_, l.CurrentDataRegister}, {CurrentDataByte_, l.CurrentDataByte},
        {StartTimeLabel_, l.StartTimeLabel},         {CurrentTimeLabel_, l.CurrentTimeLabel},
        {EstimatedTimeLabel_, l.EstimatedTimeLabel}, {CompletedTimeLabel_, l.CompletedTimeLabel},
        {retries_, l.Retries},                       {retryWarning_, l.RetryWarning},
        {notice_, l.Notice},                         {verifyReport_, l.VerifyReport},
    };
    for (const auto& [label, text] : texts)
        label->setText(text);
    retryWarning_->setVisible(!l.RetryWarning.isEmpty());
    notice_->setVisible(!l.Notice.isEmpty());
    verifyReport_->setVisible(!l.VerifyReport.isEmpty());
    if (downloader_.retries() > 0)
        retryWarning_->setStyleSheet(QStringLiteral("QLabel { color: rgb(255,90,90); font-weight: bold; }"));
    else
        retryWarning_->setStyleSheet(QString());
    saveTo_->setText(l.SaveTo);
    binaryBox_->setText(l.BinaryBox);
    byteList_->setText(l.ByteList);
}

void BinFileDownloaderWindow::refreshState()
{
    verify_->setEnabled(downloader_.verifyEnabled());
    matrixTheme_->setChecked(downloader_.matrixTheme());
    delays_[std::size_t(downloader_.checkedDelay())]->setChecked(true);
}

void BinFileDownloaderWindow::applyTheme(bool matrix)
{
    matrixTheme_->setChecked(matrix);
    auto* area = static_cast<Backdrop*>(centralWidget());
    area->matrix = matrix;
    area->setStyleSheet(matrix ? kMatrixStyle : QString());
    for (QWidget* w : {static_cast<QWidget*>(spinner_), static_cast<QWidget*>(binaryBox_)})
        w->setVisible(matrix);
    area->update();
}

void BinFileDownloaderWindow::applyBarColors()
{
    using BC = BinFileDownloader::BarColor;
    bar_->setBackColor(fromBgr(downloader_.barColor(BC::BackColor)));
    bar_->setStartColor(fromBgr(downloader_.barColor(BC::StartColor)));
    bar_->setEndColor(fromBgr(downloader_.barColor(BC::EndColor)));
    bar_->setTextColor(fromBgr(downloader_.barColor(BC::TextColor)));
}

void BinFileDownloaderWindow::showPicture(int index)
{
    picture_->setPixmap(QPixmap::fromImage(downloaderPicture(index, picture_->width())));
    picture_->setAccessibleName(QStringLiteral("Picture %1 of %2").arg(index).arg(kDownloaderPictures));
}

void BinFileDownloaderWindow::closeEvent(QCloseEvent* event)
{
    if (vexorin::ui::endDialogsOf(this))
        vexorin::ui::deleteWhenDialogsEnd(this);
    // The close box runs File, Exit.
    if (!exiting_) {
        exiting_ = true;
        downloader_.Exit();
    }
    event->accept();
}
