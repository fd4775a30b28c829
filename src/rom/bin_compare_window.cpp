#include "rom/bin_compare_window.h"

#include "rom/bin_compare_view.h"
#include "rom/rom_image.h"
#include "ui/common_dialog.h"
#include "ui/message_box.h"
#include "ui/user_input.h"
#include "ui/window_keys.h"

#include <QDir>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {
// The widest row the list can be given (the speed limiter's two conversions),
// so that no row is cut whatever the files hold.
const QString kWidestRow = QStringLiteral("Top Speed Limiter: 510 km/h or 317 MPH \u2192 510 km/h or 317 MPH");
constexpr int kPathColumns = 48;  // characters a path box shows without scrolling
constexpr int kListRows = 14;

QPushButton* button(const QString& caption, const QString& accessible, const char* name, QWidget* parent)
{
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(QLatin1String(name));
    b->setAccessibleName(accessible);
    return b;
}

QLineEdit* pathBox(const QString& accessible, const char* name, QWidget* parent)
{
    auto* box = new QLineEdit(parent);
    box->setObjectName(QLatin1String(name));
    box->setAccessibleName(accessible);
    box->setReadOnly(true);
    box->setPlaceholderText(QObject::tr("No file opened"));
    box->setMinimumWidth(box->fontMetrics().averageCharWidth() * kPathColumns);
    return box;
}
}  // namespace

BinCompareWindow::BinCompareWindow(QWidget* parent)
    : QWidget(parent, Qt::Window), view_(new BinCompareView(this))
{
    setObjectName(QStringLiteral("BinCompare"));
    setWindowTitle(BinCompareView::kCaption);
    auto* outer = new QVBoxLayout(this);

    auto* files = new QGridLayout;
    QPushButton* openA = button(tr("Open &A..."), QStringLiteral("Open A..."), "OpenA", this);
    QPushButton* openB = button(tr("Open &B..."), QStringLiteral("Open B..."), "OpenB", this);
    pathA_ = pathBox(tr("Path of A"), "PathA", this);
    pathB_ = pathBox(tr("Path of B"), "PathB", this);
    files->addWidget(openA, 0, 0);
    files->addWidget(pathA_, 0, 1);
    files->addWidget(openB, 1, 0);
    files->addWidget(pathB_, 1, 1);
    files->setColumnStretch(1, 1);
    outer->addLayout(files);

    summary_ = new QLabel(this);
    summary_->setObjectName(QStringLiteral("CompareSummary"));
    summary_->setAccessibleName(tr("Summary"));
    summary_->setTextFormat(Qt::PlainText);
    summary_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QFont bold = summary_->font();
    bold.setBold(true);
    summary_->setFont(bold);
    outer->addWidget(summary_);

    auto* listLabel = new QLabel(tr("&Differences"), this);
    outer->addWidget(listLabel);
    list_ = new QListWidget(this);
    list_->setObjectName(QStringLiteral("CompareList"));
    list_->setAccessibleName(tr("Differences"));
    list_->setSelectionMode(QAbstractItemView::SingleSelection);
    list_->setUniformItemSizes(true);
    const int scrollBar = list_->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    list_->setMinimumWidth(list_->fontMetrics().horizontalAdvance(kWidestRow) + 2 * list_->frameWidth() + scrollBar + 16);
    list_->setMinimumHeight(list_->fontMetrics().height() * kListRows);
    listLabel->setBuddy(list_);
    outer->addWidget(list_, 1);

    auto* foot = new QHBoxLayout;
    auto* hint = new QLabel(tr("Enter or a double-click on a map opens it in the Map Viewer."), this);
    foot->addWidget(hint, 1);
    openMap_ = button(tr("Open in &Map Viewer"), QStringLiteral("Open in Map Viewer"), "OpenMap", this);
    foot->addWidget(openMap_);
    outer->addLayout(foot);

    BinCompareView& v = *view_;
    connect(openA, &QPushButton::clicked, this, &BinCompareWindow::chooseA);
    connect(openB, &QPushButton::clicked, this, &BinCompareWindow::chooseB);
    vexorin::ui::onRowOpened(list_, this, [this](int row) { view_->activateRow(row); });
    connect(list_, &QListWidget::currentRowChanged, this, &BinCompareWindow::refreshOpenMap);
    connect(openMap_, &QPushButton::clicked, this, [this] { view_->activateRow(list_->currentRow()); });
    connect(&v, &BinCompareView::changed, this, &BinCompareWindow::refresh);
    connect(&v, &BinCompareView::message, this, [this](const QString& text) { MessageBoxes::exclamation(this, text); });
    connect(&v, &BinCompareView::mapRequested, this, &BinCompareWindow::mapRequested);
    vexorin::ui::addEscapeToClose(this);
    refresh();
}

QString BinCompareWindow::chooseFile()
{
    return mCommonDialog::openFileName(this, QString::fromLatin1(vexorin::rom::kBinExtension),
                                       QString::fromLatin1(vexorin::rom::kBinFilter));
}

void BinCompareWindow::chooseA()
{
    view_->openA(chooseFile());
}

void BinCompareWindow::chooseB()
{
    view_->openB(chooseFile());
}

void BinCompareWindow::refresh()
{
    const BinCompareView& v = *view_;
    pathA_->setText(QDir::toNativeSeparators(v.pathA()));
    pathB_->setText(QDir::toNativeSeparators(v.pathB()));
    summary_->setText(v.summary());
    list_->clear();
    const auto& rows = v.result().rows;
    const QStringList texts = v.rows();
    for (int i = 0; i < texts.size(); ++i) {
        auto* item = new QListWidgetItem(texts[i], list_);
        if (rows[std::size_t(i)].mapTab >= 0)
            item->setToolTip(tr("Opens A in the Map Viewer, compared with B"));
    }
    if (list_->count() > 0)
        list_->setCurrentRow(0);
    refreshOpenMap();
}

void BinCompareWindow::refreshOpenMap()
{
    const int row = list_->currentRow();
    const auto& rows = view_->result().rows;
    openMap_->setEnabled(row >= 0 && std::size_t(row) < rows.size() && rows[std::size_t(row)].mapTab >= 0);
}
