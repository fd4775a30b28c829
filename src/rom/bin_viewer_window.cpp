#include "rom/bin_viewer_window.h"

#include "rom/bin_viewer.h"
#include "rom/journal_menu_window.h"
#include "rom/hex_chart_window.h"
#include "rom/map_grid_widget.h"
#include "rom/rom_image.h"
#include "ui/color_picker_widget.h"
#include "ui/common_dialog.h"
#include "ui/event_loop_yield.h"
#include "ui/message_box.h"
#include "ui/owned_dialogs.h"
#include "ui/plain_text.h"
#include "ui/twips.h"
#include "ui/user_input.h"
#include "ui/vb_color.h"
#include "ui/window_capture.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QCursor>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {
constexpr int kHeadingWidthTwips = 1075;
constexpr int kEnter = 13;
constexpr int kBackspace = 8;

}  // namespace

BinViewerWindow::BinViewerWindow(int formCount, QWidget* parent)
    : QWidget(parent, Qt::Window), viewer_(new BinViewer(formCount, this))
{
    family_ = std::make_shared<Family>();
    family_->viewers.append(this);
    setObjectName(QStringLiteral("BINViewer"));
    setWindowTitle(BinViewer::kCaption);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(6, 0, 6, 6);
    buildMenus();
    auto* body = new QHBoxLayout;
    outer->addLayout(body, 1);

    // Left: the bank, its file, and notes for the snapshot.
    auto* left = new QVBoxLayout;
    grid_ = new MapGridWidget(this);
    grid_->setObjectName(QStringLiteral("BINGrid"));
    grid_->configure(kHeadingWidthTwips, QStringLiteral("7FF0 - 7FFF"), Qt::AlignLeft, Qt::AlignCenter,
                     Qt::AlignRight, QStringLiteral("FF"));
    grid_->setFixedSize(grid_->sizeHint());
    grid_->setMouseTracking(true);
    grid_->setFocusPolicy(Qt::ClickFocus);
    grid_->installEventFilter(this);
    left->addWidget(grid_);
    auto* lower = new QHBoxLayout;
    auto* location = new QGroupBox(QStringLiteral("BIN File Location"), this);
    auto* locationLayout = new QVBoxLayout(location);
    path_ = new QLineEdit(location);
    path_->setObjectName(QStringLiteral("FilePath"));
    path_->setReadOnly(true);
    path_->setPlaceholderText(tr("No BIN file opened"));
    locationLayout->addWidget(path_);
    editMode_ = new QCheckBox(QStringLiteral("Edit Mode"), location);
    editMode_->setObjectName(QStringLiteral("EditMode"));
    locationLayout->addWidget(editMode_);
    lower->addWidget(location, 3);
    auto* notesFrame = new QGroupBox(QStringLiteral("Snapshot Notes"), this);
    auto* notesLayout = new QVBoxLayout(notesFrame);
    notes_ = new QPlainTextEdit(notesFrame);
    notes_->setObjectName(QStringLiteral("SnapshotNotes"));
    notesLayout->addWidget(notes_);
    lower->addWidget(notesFrame, 2);
    left->addLayout(lower);
    body->addLayout(left);

    // Right: the bank selector, the register list, colour and conversion, buttons.
    auto* right = new QVBoxLayout;
    auto* top = new QHBoxLayout;
    auto* bankFrame = new QGroupBox(QStringLiteral("Select Register Bank"), this);
    auto* bankLayout = new QHBoxLayout(bankFrame);
    auto* bankLabel = new QLabel(QStringLiteral("Register Bank"), bankFrame);
    banks_ = new QComboBox(bankFrame);
    banks_->setObjectName(QStringLiteral("RegisterBank"));
    banks_->addItems(BinViewer::bankItems());
    banks_->setMaxVisibleItems(16);
    banks_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    bankLabel->setBuddy(banks_);
    bankLayout->addWidget(bankLabel);
    bankLayout->addWidget(banks_);
    top->addWidget(bankFrame);
    picker_ = new ColorPicker(QStringLiteral("Cell Color"), this);
    picker_->setObjectName(QStringLiteral("ColorPicker"));
    const vexorin::rom::Rgb start = viewer_->cellColor();
    picker_->setColor(toBgr(QColor(start.r, start.g, start.b)));
    top->addWidget(picker_, 0, Qt::AlignBottom);
    right->addLayout(top);

    auto* listLabel = new QLabel(QStringLiteral("Register Reference"), this);
    right->addWidget(listLabel);
    regions_ = new QListWidget(this);
    regions_->setObjectName(QStringLiteral("RegisterReference"));
    regions_->addItems(BinViewer::registerList());
    // Wide enough for its longest row, in a slightly smaller print so that the window keeps its design width.
    QFont listFont = regions_->font();
    listFont.setPointSizeF(listFont.pointSizeF() * 0.92);
    regions_->setFont(listFont);
    int widest = 0;
    for (const QString& row : BinViewer::registerList())
        widest = qMax(widest, regions_->fontMetrics().horizontalAdvance(row));
    regions_->setMinimumWidth(widest + 2 * regions_->frameWidth() + regions_->style()->pixelMetric(QStyle::PM_ScrollBarExtent) + 8);
    regions_->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Expanding);
    listLabel->setBuddy(regions_);
    right->addWidget(regions_, 1);
    converted_ = new QLabel(this);
    converted_->setObjectName(QStringLiteral("ConvertedLabel"));
    QFont big = converted_->font();
    big.setBold(true);
    converted_->setFont(big);
    right->addWidget(converted_);
    auto* buttons = new QGridLayout;
    const struct {
        const char* caption;
        void (BinViewerWindow::*run)();
        int row, column;
    } kButtons[] = {{"Reload Last", nullptr, 0, 0},
                    {"Clear Matrix", nullptr, 0, 1},
                    {"Open BIN File", &BinViewerWindow::openBinFile, 1, 0},
                    {"Save Snapshot", &BinViewerWindow::saveSnapshot, 1, 1}};
    for (const auto& b : kButtons) {
        auto* button = new QPushButton(QLatin1String(b.caption), this);
        buttons->addWidget(button, b.row, b.column);
        if (b.run)
            connect(button, &QPushButton::clicked, this, b.run);
        else if (b.column == 0)
            connect(button, &QPushButton::clicked, this, [this] { viewer_->ReloadLast(); });
        else
            connect(button, &QPushButton::clicked, this, [this] { viewer_->ClearMatrix(); });
    }
    right->addLayout(buttons);
    body->addLayout(right, 1);

    // The in-place edit box.
    editBox_ = new QLineEdit(grid_->viewport());
    editBox_->setObjectName(QStringLiteral("GridToEdit"));
    editBox_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    editBox_->setFrame(false);
    editBox_->setStyleSheet(QStringLiteral("background: #fffbe0; color: black; border: 1px solid #c00000;"));
    editBox_->installEventFilter(this);
    editBox_->hide();

    BinViewer& v = *viewer_;
    connect(banks_, qOverload<int>(&QComboBox::activated), this, [this](int i) { viewer_->selectBank(i); });
    vexorin::ui::onRowOpened(regions_, this, [this](int row) { viewer_->doubleClickRegion(row); });
    connect(picker_, &ColorPicker::colorPicked, this, [this](quint32 bgr) {
        const QColor c = fromBgr(bgr);
        viewer_->setCellColor({std::uint8_t(c.red()), std::uint8_t(c.green()), std::uint8_t(c.blue())});
    });
    vexorin::ui::onUserToggle(editMode_, this, [this](bool on) { viewer_->setEditMode(on); });
    connect(grid_, &QTableWidget::cellClicked, this, [this](int r, int c) { viewer_->clickCell(r, c); });
    connect(grid_, &QTableWidget::cellDoubleClicked, this, [this](int r, int c) {
        viewer_->doubleClickCell(r, c);
        if (viewer_->editBoxVisible())
            editBox_->setFocus();
    });
    connect(&v, &BinViewer::gridReset, this, [this] { grid_->showGrid(viewer_->grid()); });
    connect(&v, &BinViewer::cellChanged, this, [this](int r, int c) { grid_->showCell(viewer_->grid(), r, c); });
    connect(&v, &BinViewer::changed, this, &BinViewerWindow::refresh);
    connect(&v, &BinViewer::journalChanged, this, &BinViewerWindow::refresh);
    connect(&v, &BinViewer::beep, this, [] { QApplication::beep(); });
    connect(&v, &BinViewer::message, this, [this](const QString& text, bool exclamation) {
        if (exclamation)
            MessageBoxes::exclamation(this, text);
        else
            MessageBoxes::information(this, text);
    });
    v.setYield(throttledEventLoop());
    resize(kWidthTwips / vexorin::ui::kTwipsPerPixel, kHeightTwips / vexorin::ui::kTwipsPerPixel);
    grid_->showGrid(v.grid());
    refresh();
    vexorin::ui::keepTextPlain(this);
}

BinViewerWindow::~BinViewerWindow()
{
    viewer_->abortLoad();
    family_->viewers.removeAll(this);
}

QList<BinViewerWindow*> BinViewerWindow::family() const
{
    QList<BinViewerWindow*> out;
    for (const QPointer<BinViewerWindow>& w : family_->viewers)
        if (w)
            out.append(w);
    return out;
}

void BinViewerWindow::setHexChartSource(std::function<HexChartWindow*()> source)
{
    family_->chartSource = std::move(source);
}

HexChartWindow* BinViewerWindow::hexChart()
{
    if (!family_->chart)
        family_->chart = family_->chartSource ? family_->chartSource() : new HexChartWindow(parentWidget());
    return family_->chart;
}

HexChartWindow* BinViewerWindow::existingHexChart() const
{
    return family_->chart;
}

QAction* BinViewerWindow::action(const QString& objectName) const
{
    return findChild<QAction*>(objectName);
}

void BinViewerWindow::buildMenus()
{
    auto* bar = new QMenuBar(this);
    auto add = [this](QMenu* menu, const char* name, const char* caption, auto slot) {
        QAction* a = menu->addAction(QLatin1String(caption));
        a->setObjectName(QLatin1String(name));
        connect(a, &QAction::triggered, this, slot);
        return a;
    };
    QMenu* file = bar->addMenu(tr("File"));
    add(file, "OpenBINFile", "Open BIN File", [this] { openBinFile(); });
    add(file, "Exit", "Exit", [this] { exitViewer(); });
    addJournalItems(bar->addMenu(tr("Edit")), this, *viewer_);
    QMenu* tools = bar->addMenu(tr("Tools"));
    QAction* tips = add(tools, "ToolTipEnabled", "Tool Tip Enabled", [this](bool on) { viewer_->setToolTipEnabled(on); });
    tips->setCheckable(true);
    tips->setChecked(true);
    add(tools, "HexChart", "View Hex Chart", [this] {
        HexChartWindow* chart = hexChart();
        chart->show();
        chart->raise();
    });
    add(tools, "OpenNewViewer", "Open New Viewer", [this] { openNewViewer(); })
        ->setEnabled(viewer_->TxtFormCount() == 1);
    static_cast<QVBoxLayout*>(layout())->setMenuBar(bar);
}

void BinViewerWindow::refresh()
{
    const BinViewer& v = *viewer_;
    if (banks_->currentIndex() != v.bankIndex())
        banks_->setCurrentIndex(v.bankIndex());
    path_->setText(v.pathBox() == QLatin1String(vexorin::rom::kNoFile) ? QString() : v.pathBox());
    converted_->setText(v.convertedLabel());
    vexorin::ui::setCheckedQuietly(editMode_, v.editMode());
    grid_->setEnabled(v.grid().enabled);
    grid_->setToolTip(v.gridToolTip());
    regions_->setToolTip(v.listToolTip());
    updateJournalItems(this, v, v.pathBox() != QLatin1String(vexorin::rom::kNoFile));
    placeEditBox();
}

void BinViewerWindow::placeEditBox()
{
    const BinViewer& v = *viewer_;
    if (!v.editBoxVisible()) {
        editBox_->hide();
        return;
    }
    const QRect cell = grid_->visualRect(grid_->model()->index(v.editBoxRow(), v.editBoxColumn()));
    editBox_->setFont(grid_->font());
    editBox_->setGeometry(cell);
    if (editBox_->text() != v.editBoxText()) {
        editBox_->setText(v.editBoxText());
        editBox_->end(false);
    }
    editBox_->show();
}

int BinViewerWindow::keyCodeOf(const QKeyEvent* e)
{
    if (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter)
        return kEnter;
    if (e->key() == Qt::Key_Backspace)
        return kBackspace;
    const QString text = e->text();
    return text.isEmpty() ? -1 : text.at(0).unicode();
}

bool BinViewerWindow::eventFilter(QObject* watched, QEvent* e)
{
    if (watched == editBox_) {
        if (e->type() == QEvent::KeyPress) {
            const int code = keyCodeOf(static_cast<QKeyEvent*>(e));
            if (code >= 0) {
                viewer_->editBoxKey(code);
                if (!viewer_->editBoxVisible())
                    grid_->setFocus();
                return true;
            }
        } else if (e->type() == QEvent::FocusOut) {
            viewer_->editBoxFocusLost();
        }
    } else if (watched == grid_ && e->type() == QEvent::KeyPress) {
        const int code = keyCodeOf(static_cast<QKeyEvent*>(e));
        if (code > 0) {
            // The cell under the mouse, not the selected one.
            const QPoint at = grid_->viewport()->mapFromGlobal(QCursor::pos());
            viewer_->keyOnGrid(code, grid_->rowAt(at.y()), grid_->columnAt(at.x()));
            if (viewer_->editBoxVisible())
                editBox_->setFocus();
            return true;
        }
    }
    return QWidget::eventFilter(watched, e);
}

void BinViewerWindow::openBinFile()
{
    const QString path = mCommonDialog::openFileName(this, QString::fromLatin1(vexorin::rom::kBinExtension),
                                                     QString::fromLatin1(vexorin::rom::kBinFilter));
    viewer_->OpenBINFile(path);
}

void BinViewerWindow::saveSnapshot()
{
    saveWindowSnapshot(this);
}

BinViewerWindow* BinViewerWindow::openNewViewer()
{
    auto* w = new BinViewerWindow(viewer_->nextFormCount(), parentWidget());
    w->family_ = family_;
    family_->viewers.append(w);
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->setWindowTitle(viewer_->nextViewerCaption());
    w->show();
    emit viewerOpened(w);
    return w;
}

void BinViewerWindow::unload()
{
    viewer_->abortLoad();
    vexorin::ui::endDialogsOf(this);
    hide();
    vexorin::ui::deleteWhenDialogsEnd(this);
}

void BinViewerWindow::exitViewer()
{
    for (BinViewerWindow* w : family())
        if (w != this)
            w->unload();
    if (HexChartWindow* chart = existingHexChart()) {
        chart->hide();
        chart->deleteLater();
    }
    unload();
}

void BinViewerWindow::closeEvent(QCloseEvent* e)
{
    e->ignore();
    exitViewer();
}
