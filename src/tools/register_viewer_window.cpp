#include "tools/register_viewer_window.h"

#include "rom/map_grid_widget.h"
#include "rom/rom_image.h"
#include "ui/color_picker_widget.h"
#include "ui/message_box.h"
#include "ui/plain_text.h"
#include "ui/user_input.h"
#include "ui/vb_color.h"
#include "ui/window_capture.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

using vexorin::rom::Rgb;

namespace {
constexpr int kHeadingWidth = 84;
constexpr int kCellWidth = 30;

QPushButton* newButton(const QString& caption, QWidget* parent)
{
    auto* b = new QPushButton(caption, parent);
    b->setAccessibleName(caption);
    return b;
}
}  // namespace

RegisterViewerWindow::RegisterViewerWindow(ConsultSession& session, QWidget* parent)
    : QMainWindow(parent), viewer_(session)
{
    setObjectName(QStringLiteral("RegisterViewerWindow"));
    setWindowTitle(QStringLiteral("Vexorin E.C.U. Register Viewer"));

    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    QAction* exit = file->addAction(QStringLiteral("&Exit"));
    exit->setObjectName(QStringLiteral("Exit"));
    connect(exit, &QAction::triggered, this, &QWidget::hide);
    QMenu* view = menuBar()->addMenu(QStringLiteral("&View"));
    QAction* hexChart = view->addAction(QStringLiteral("&Hex Chart"));
    hexChart->setObjectName(QStringLiteral("HexChart"));
    connect(hexChart, &QAction::triggered, this, &RegisterViewerWindow::hexChartRequested);

    auto* area = new QWidget(this);
    auto* outer = new QHBoxLayout(area);
    outer->setContentsMargins(10, 8, 10, 8);
    outer->setSpacing(10);

    // Left: bank, buttons, mode, highlight colour.
    auto* left = new QVBoxLayout;
    auto* bankGroup = new QGroupBox(QStringLiteral("Select Register Bank"), area);
    auto* bankLayout = new QVBoxLayout(bankGroup);
    selector_ = new QComboBox(bankGroup);
    selector_->setObjectName(QStringLiteral("BankSelector"));
    selector_->setAccessibleName(QStringLiteral("Select Register Bank"));
    for (int bank = vexorin::rom::kLastBank; bank >= vexorin::rom::kFirstBank; --bank)
        selector_->addItem(QString::number(bank), bank);
    connect(selector_, &QComboBox::activated, this,
            [this](int index) { viewer_.selectBank(selector_->itemData(index).toInt()); });
    bankLayout->addWidget(selector_);
    left->addWidget(bankGroup);

    auto* download = newButton(QStringLiteral("Download Register Bank"), area);
    auto* stop = newButton(QStringLiteral("Stop Data Flow"), area);
    auto* clear = newButton(QStringLiteral("Manual Clear Matrix"), area);
    auto* snapshot = newButton(QStringLiteral("Save Snapshot"), area);
    connect(download, &QPushButton::clicked, &viewer_, &RegisterViewer::DownloadRegisterBank);
    connect(stop, &QPushButton::clicked, &viewer_, &RegisterViewer::StopDataFlow);
    connect(clear, &QPushButton::clicked, &viewer_, &RegisterViewer::ManualClearMatrix);
    connect(snapshot, &QPushButton::clicked, this, &RegisterViewerWindow::saveSnapshot);
    for (QPushButton* b : {download, stop, clear, snapshot})
        left->addWidget(b);
    auto* clearBox = new QCheckBox(QStringLiteral("Clear Matrix Before Download"), area);
    clearBox->setObjectName(QStringLiteral("ClearMatrix"));
    connect(clearBox, &QCheckBox::toggled, this, [this](bool on) { viewer_.ClearMatrix = on; });
    left->addWidget(clearBox);

    auto* modeGroup = new QGroupBox(QStringLiteral("Address Form"), area);
    auto* modeLayout = new QHBoxLayout(modeGroup);
    ecu_ = new QRadioButton(QStringLiteral("E.C.U"), modeGroup);
    ecu_->setObjectName(QStringLiteral("ECU"));
    eprom_ = new QRadioButton(QStringLiteral("EPROM"), modeGroup);
    eprom_->setObjectName(QStringLiteral("Eprom"));
    ecu_->setChecked(true);
    vexorin::ui::onUserChoose(ecu_, this, [this] { viewer_.setMode(RegisterViewer::Mode::Ecu); });
    vexorin::ui::onUserChoose(eprom_, this, [this] { viewer_.setMode(RegisterViewer::Mode::Eprom); });
    modeLayout->addWidget(ecu_);
    modeLayout->addWidget(eprom_);
    left->addWidget(modeGroup);

    // Controls of the design that do nothing.
    auto* idle = new QGroupBox(QStringLiteral("Cell Monitor"), area);
    auto* idleLayout = new QGridLayout(idle);
    auto* regCell = new QLabel(QStringLiteral("00"), idle);
    regCell->setObjectName(QStringLiteral("RegCell"));
    regCell->setAlignment(Qt::AlignCenter);
    regCell->setFrameShape(QFrame::StyledPanel);
    idleLayout->addWidget(regCell, 0, 0, 1, 2);
    idleLayout->addWidget(newButton(QStringLiteral("Monitor"), idle), 1, 0);
    idleLayout->addWidget(newButton(QStringLiteral("View in Decimal"), idle), 1, 1);
    left->addWidget(idle);

    picker_ = new ColorPicker(QStringLiteral("Highlight Color"), area);
    picker_->setObjectName(QStringLiteral("ColorPicker"));
    const Rgb h = viewer_.highlight();
    picker_->setColor(quint32(h.r) | quint32(h.g) << 8 | quint32(h.b) << 16);
    connect(picker_, &ColorPicker::colorPicked, this, [this](quint32 bgr) {
        const QColor c = fromBgr(bgr);
        viewer_.setHighlight(Rgb{std::uint8_t(c.red()), std::uint8_t(c.green()), std::uint8_t(c.blue())});
    });
    left->addWidget(picker_);
    left->addStretch(1);
    outer->addLayout(left);

    // Middle: the matrix and the converted value.
    auto* middle = new QVBoxLayout;
    matrix_ = new MapGridWidget(area);
    matrix_->setObjectName(QStringLiteral("Matrix"));
    matrix_->setAccessibleName(QStringLiteral("Register matrix"));
    matrix_->setColumnWidth(0, kHeadingWidth);
    for (int c = 1; c < MapGrid::kSize; ++c)
        matrix_->setColumnWidth(c, kCellWidth);
    matrix_->setFixedSize(matrix_->sizeHint());
    connect(matrix_, &QTableWidget::cellClicked, &viewer_, &RegisterViewer::CellClicked);
    middle->addWidget(matrix_);
    converted_ = new QLabel(area);
    converted_->setObjectName(QStringLiteral("ConvertedLabel"));
    QFont cf = converted_->font();
    cf.setBold(true);
    converted_->setFont(cf);
    middle->addWidget(converted_);
    notice_ = new QLabel(area);
    notice_->setObjectName(QStringLiteral("Notice"));
    notice_->setWordWrap(true);
    middle->addWidget(notice_);
    middle->addStretch(1);
    outer->addLayout(middle);

    // Right: the named regions.
    auto* listGroup = new QGroupBox(QStringLiteral("Registers"), area);
    auto* listLayout = new QVBoxLayout(listGroup);
    list_ = new QListWidget(listGroup);
    list_->setObjectName(QStringLiteral("RegionList"));
    list_->setAccessibleName(QStringLiteral("Named regions"));
    list_->setMinimumWidth(list_->fontMetrics().horizontalAdvance(
                               QStringLiteral("(241) F100 - F1FF High Octane High Gear Fuel Map")) + 30);
    vexorin::ui::onRowOpened(list_, this, [this](int row) { viewer_.RegionDoubleClicked(row); });
    listLayout->addWidget(list_);
    outer->addWidget(listGroup, 1);
    setCentralWidget(area);

    connect(&viewer_, &RegisterViewer::matrixChanged, this, &RegisterViewerWindow::refreshMatrix);
    connect(&viewer_, &RegisterViewer::stateChanged, this, &RegisterViewerWindow::refreshState);
    connect(&viewer_, &RegisterViewer::message, this, [this](const QString& t) { MessageBoxes::information(this, t); });
    refreshMatrix();
    refreshState();
    resize(sizeHint());
    vexorin::ui::keepTextPlain(this);
}

void RegisterViewerWindow::refreshMatrix()
{
    matrix_->setUpdatesEnabled(false);
    matrix_->showGrid(viewer_.matrix());
    for (int r = 0; r < MapGrid::kSize; ++r)
        for (int c = 0; c < MapGrid::kSize; ++c)
            if (QTableWidgetItem* it = matrix_->item(r, c))
                it->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    matrix_->setUpdatesEnabled(true);
}

void RegisterViewerWindow::refreshState()
{
    const QStringList rows = viewer_.regionList();
    if (list_->count() != rows.size()) {
        list_->clear();
        list_->addItems(rows);
    } else {
        for (int i = 0; i < rows.size(); ++i)
            list_->item(i)->setText(rows[i]);
    }
    list_->setEnabled(viewer_.listEnabled());
    ecu_->setEnabled(viewer_.optionsEnabled());
    eprom_->setEnabled(viewer_.optionsEnabled());
    (viewer_.mode() == RegisterViewer::Mode::Ecu ? ecu_ : eprom_)->setChecked(true);
    const int index = selector_->findData(viewer_.selectorBank());
    if (index >= 0 && index != selector_->currentIndex())
        selector_->setCurrentIndex(index);
    converted_->setText(viewer_.ConvertedLabel());
    notice_->setText(viewer_.notice());
}

void RegisterViewerWindow::saveSnapshot()
{
    saveWindowSnapshot(this);
}

void RegisterViewerWindow::closeEvent(QCloseEvent* event)
{
    // The close box hides the window and keeps its state; a running read goes on.
    hide();
    event->ignore();
}
