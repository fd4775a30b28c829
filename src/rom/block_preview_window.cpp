#include "rom/block_preview_window.h"

#include "ui/owned_dialogs.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

using namespace vexorin::rom;

const QColor BlockPreviewWindow::kClampedBack(0xFF, 0xC8, 0x64);

namespace {
BlockPreviewWindow::Answerer& answerer()
{
    static BlockPreviewWindow::Answerer a;
    return a;
}

QTableWidgetItem* item(const QString& text, bool clamped)
{
    auto* it = new QTableWidgetItem(text);
    it->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    it->setTextAlignment(Qt::AlignCenter);
    if (clamped) {
        it->setBackground(BlockPreviewWindow::kClampedBack);
        it->setForeground(Qt::black);
        it->setToolTip(QObject::tr("Clamped to the end of the range"));
    }
    return it;
}
}  // namespace

BlockPreviewWindow::BlockPreviewWindow(const QString& operation, FigureKind kind, const std::vector<BlockCell>& cells,
                                       const QStringList& rpm, const QStringList& tp, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("BlockPreview"));
    setWindowTitle(tr("Preview - %1").arg(operation));
    auto* v = new QVBoxLayout(this);
    int changed = 0, clamped = 0;
    for (const BlockCell& c : cells) {
        changed += c.newByte != c.oldByte;
        clamped += c.clamped;
    }
    QString text = changed == 1 ? tr("1 cell changes.") : tr("%1 cells change.").arg(changed);
    if (clamped > 0)
        text += tr(" %1 clamped to the end of the range (shaded).").arg(clamped);
    summary_ = new QLabel(text);
    summary_->setObjectName(QStringLiteral("PreviewSummary"));
    v->addWidget(summary_);

    table_ = new QTableWidget(int(cells.size()), 4, this);
    table_->setObjectName(QStringLiteral("PreviewCells"));
    table_->setAccessibleName(tr("Cells"));
    table_->setHorizontalHeaderLabels({tr("RPM"), tr("TP"), tr("Old"), tr("New")});
    table_->verticalHeader()->hide();
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    for (int i = 0; i < int(cells.size()); ++i) {
        const BlockCell& c = cells[std::size_t(i)];
        table_->setItem(i, 0, item(rpm.value(c.row), c.clamped));
        table_->setItem(i, 1, item(tp.value(c.column), c.clamped));
        table_->setItem(i, 2, item(QString::fromStdString(figureText(kind, c.oldByte)), c.clamped));
        auto* after = item(QString::fromStdString(figureText(kind, c.newByte)), c.clamped);
        if (c.newByte != c.oldByte) {
            QFont bold = after->font();
            bold.setBold(true);
            after->setFont(bold);
        }
        table_->setItem(i, 3, after);
    }
    table_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table_->setMinimumSize(320, 300);
    v->addWidget(table_, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setEnabled(changed > 0);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    v->addWidget(buttons);
}

bool BlockPreviewWindow::confirm(BlockPreviewWindow* shown)
{
    QPointer<BlockPreviewWindow> preview = shown;
    bool ok = false;
    if (answerer()) {
        ok = answerer()(*preview);
    } else {
        const vexorin::ui::DialogWait wait(preview->parentWidget());
        ok = preview->exec() == QDialog::Accepted;
    }
    delete preview.data();
    return ok;
}

void BlockPreviewWindow::setAnswerer(Answerer a)
{
    answerer() = std::move(a);
}
