#include "logging/log_player_window.h"

#include "logging/csv_export_window.h"
#include "logging/log_player.h"
#include "ui/common_dialog.h"
#include "ui/gradient_bar_widget.h"
#include "ui/message_box.h"
#include "ui/owned_dialogs.h"
#include "ui/plain_text.h"
#include "ui/twips.h"
#include "ui/window_capture.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr const char* kCaptions[14] = {"Speed", "RPM", "TPS", "MAF", "O2 (L)", "O2 (R)", "Injector",
                                       "Timing", "IACV", "Water", "Fuel", "Battery", "A/F", "Date / Time"};
constexpr const char* kBarNames[13] = {"SPEEDbar", "RPMbar", "TPSbar", "MAFbar", "LO2bar", "RO2bar", "INJECTORbar",
                                       "TIMINGbar", "IACVbar", "WATERbar", "FUELbar", "BATTERYbar", "AFbar"};
const QString kLogFilter = QStringLiteral("LOG Files (*.LOG)|*.log");
}  // namespace

LogPlayerWindow::LogPlayerWindow(QWidget* parent)
    : QWidget(parent, Qt::Window), player_(new LogPlayer(this))
{
    setObjectName(QStringLiteral("LogPlayer"));
    setWindowTitle(QStringLiteral("Vexorin Log Player"));
    auto* v = new QVBoxLayout(this);
    auto* menu = new QMenuBar(this);
    QMenu* file = menu->addMenu(tr("&File"));
    QAction* open = file->addAction(QStringLiteral("Open Log File"));
    open->setObjectName(QStringLiteral("OpenLogFile"));
    connect(open, &QAction::triggered, this, &LogPlayerWindow::openLogFileMenu);
    QAction* exit = file->addAction(QStringLiteral("Exit"));
    exit->setObjectName(QStringLiteral("Exit"));
    connect(exit, &QAction::triggered, this, &QWidget::close);
    v->setMenuBar(menu);

    auto* top = new QHBoxLayout;
    path_ = new QLineEdit(this);
    path_->setObjectName(QStringLiteral("FilePath"));
    path_->setReadOnly(true);
    path_->setPlaceholderText(tr("No log file loaded"));
    path_->setAccessibleName(tr("Log file"));
    top->addWidget(path_, 1);
    v->addLayout(top);

    auto* values = new QGroupBox(tr("Frame"), this);
    auto* grid = new QGridLayout(values);
    grid->setVerticalSpacing(3);
    for (int i = 0; i < 14; ++i) {
        const int index = i == 13 ? 27 : 14 + i;
        auto* caption = new QLabel(QString::fromLatin1(kCaptions[i]), values);
        auto* value = new QLabel(values);
        value->setObjectName(QStringLiteral("Label%1").arg(index));
        value->setMinimumWidth(90);
        value->setFrameShape(QFrame::StyledPanel);
        QFont bold = value->font();
        bold.setBold(true);
        value->setFont(bold);
        caption->setBuddy(value);
        grid->addWidget(caption, i, 0);
        if (i == 13)
            grid->addWidget(value, i, 1, 1, 2);  // the date and time line needs the width
        else
            grid->addWidget(value, i, 1);
        labels_[std::size_t(index - 14)] = value;
        if (i < 13) {
            auto* bar = new GradientBar(values);
            bar->setObjectName(QLatin1String(kBarNames[i]));
            bar->setMaximum(LogPlayer::barMaximum(i));
            bar->setBackColor(QColor(0x80, 0x80, 0xFF));
            bar->setStartColor(Qt::blue);
            bar->setEndColor(Qt::blue);
            bar->setMinimumHeight(16);
            bar->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
            grid->addWidget(bar, i, 2);
            bars_[std::size_t(i)] = bar;
        }
    }
    grid->setColumnStretch(2, 1);
    v->addWidget(values, 1);  // the frame's rows take the window's height

    auto* boxes = new QHBoxLayout;
    position_ = new QLineEdit(this);
    position_->setObjectName(QStringLiteral("PositionBox"));
    position_->setReadOnly(true);
    position_->setAccessibleName(tr("Line position"));
    counter_ = new QLineEdit(this);
    counter_->setObjectName(QStringLiteral("CounterBox"));
    counter_->setReadOnly(true);
    counter_->setAccessibleName(tr("Lines read"));
    boxes->addWidget(new QLabel(tr("Position"), this));
    boxes->addWidget(position_);
    boxes->addWidget(new QLabel(tr("Lines"), this));
    boxes->addWidget(counter_);
    v->addLayout(boxes);

    LogPlayer& p = *player_;
    const std::pair<const char*, std::function<void()>> buttons[] = {
        {"Load File", [this] { loadFile(); }},
        {"Reload", [&p] { p.Reload(); }},
        {"Play", [&p] { p.Play(); }},
        {"Pause", [&p] { p.Pause(); }},
        {"Read previous", [&p] { p.ReadPrevious(); }},
        {"Read next", [&p] { p.ReadNext(); }},
        {"Fast Reverse", [&p] { p.FastReverse(); }},
        {"Fast Forward", [&p] { p.FastForward(); }},
        {"Snapshot", [this] { snapshot(); }},
        {"Export CSV", [this] { exportCsv(); }},
        {"Chart", [this] { emit chartRequested(loadedPath()); }},
    };
    auto* buttonGrid = new QGridLayout;
    int n = 0;
    for (const auto& [caption, action] : buttons) {
        auto* b = new QPushButton(QString::fromLatin1(caption), this);
        connect(b, &QPushButton::clicked, this, action);
        buttonGrid->addWidget(b, n / 2, n % 2);
        ++n;
    }
    auto* warning = new QPushButton(QStringLiteral("Warning! Reads out whole file into a message box."), this);
    connect(warning, &QPushButton::clicked, this,
            [&p] { p.ReadWholeFile(QCoreApplication::applicationDirPath()); });
    buttonGrid->addWidget(warning, (n + 1) / 2, 0, 1, 2);
    v->addLayout(buttonGrid);

    picture_ = new QLabel(this);
    picture_->setObjectName(QStringLiteral("SnapshotPicture"));
    picture_->hide();

    logButtons_ = {button(QStringLiteral("Export CSV")), button(QStringLiteral("Chart"))};
    connect(&p, &LogPlayer::changed, this, &LogPlayerWindow::refresh);
    connect(&p, &LogPlayer::message, this, [this](const QString& t) { MessageBoxes::information(this, t); });
    resize(vexorin::ui::px(kWidthTwips), vexorin::ui::px(kHeightTwips));
    refresh();
    vexorin::ui::keepTextPlain(this);
}

LogPlayerWindow::~LogPlayerWindow() = default;

QPushButton* LogPlayerWindow::button(const QString& caption) const
{
    for (auto* b : findChildren<QPushButton*>())
        if (b->text() == caption)
            return b;
    return nullptr;
}

void LogPlayerWindow::refresh()
{
    const LogPlayer& p = *player_;
    path_->setText(p.pathBox() == LogPlayer::kNoFile ? QString() : p.pathBox());
    position_->setText(p.positionBox());
    counter_->setText(p.counterBox());
    for (int i = 14; i <= 27; ++i)
        labels_[std::size_t(i - 14)]->setText(p.label(i));
    for (int i = 0; i < 13; ++i)
        bars_[std::size_t(i)]->setValue(p.bar(i));
    for (QPushButton* b : logButtons_)
        b->setEnabled(!loadedPath().isEmpty());
}

QString LogPlayerWindow::loadedPath() const
{
    return player_->pathBox() == LogPlayer::kNoFile ? QString() : player_->pathBox();
}

void LogPlayerWindow::exportCsv()
{
    vexorin::logging::exportLogAsCsv(this, loadedPath());
}

void LogPlayerWindow::loadFile()
{
    const QString path = mCommonDialog::openFileName(this, QStringLiteral(".log"), kLogFilter);
    player_->loadChosen(path);
}

void LogPlayerWindow::openLogFileMenu()
{
    player_->stopAndClose();
    const QString path = mCommonDialog::openFileName(this, QStringLiteral(".log"), kLogFilter);
    player_->loadChosen(path);
}

void LogPlayerWindow::snapshot()
{
    QImage image;
    saveWindowSnapshot(this, &image);
    picture_->setPixmap(QPixmap::fromImage(image));
}

void LogPlayerWindow::closeEvent(QCloseEvent* e)
{
    vexorin::ui::endDialogsOf(this);
    player_->closing();
    QWidget::closeEvent(e);
}
