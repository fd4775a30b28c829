// The Map Viewer window's editing beyond the spin buttons: the Edit menu
// (undo, redo, revert to the backup, the block edits), the block selection
// on the grid, and typed figures in the box over the selected cell.
#include "rom/map_viewer_window.h"

#include "rom/block_preview_window.h"
#include "rom/journal_menu_window.h"
#include "rom/map_grid_widget.h"
#include "rom/map_viewer.h"
#include "rom/rom_image.h"
#include "ui/number_prompt.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTabWidget>

using vexorin::rom::BlockOp;
using vexorin::rom::FigureKind;
using vexorin::rom::kMaps;

namespace {
const struct BlockItem {
    const char* name;
    const char* caption;
    BlockOp op;
} kBlockItems[] = {
    {"SetTo", "Set to...", BlockOp::SetTo},
    {"Add", "Add...", BlockOp::Add},
    {"ScaleBy", "Scale by %...", BlockOp::ScaleBy},
    {"Interpolate", "Interpolate", BlockOp::Interpolate},
    {"Smooth", "Smooth", BlockOp::Smooth},
};

QString titleOf(BlockOp op)
{
    QString caption = QLatin1String(vexorin::rom::blockOpCaption(op));
    while (caption.endsWith(QLatin1Char('.')))
        caption.chop(1);
    return caption;
}
}  // namespace

void MapViewerWindow::buildEditMenu(QMenuBar* menuBar)
{
    QMenu* edit = menuBar->addMenu(tr("&Edit"));
    addJournalItems(edit, this, *viewer_);
    edit->addSeparator();
    for (const BlockItem& item : kBlockItems) {
        QAction* a = edit->addAction(QLatin1String(item.caption));
        a->setObjectName(QLatin1String(item.name));
        connect(a, &QAction::triggered, this, [this, op = item.op] { blockEdit(op); });
    }
}

void MapViewerWindow::updateEditActions()
{
    if (!action(QStringLiteral("Smooth")))
        return;  // the menus are still being built
    const int t = viewer_->currentTab();
    updateJournalItems(this, *viewer_, viewer_->tab(t).pathBox != QLatin1String(vexorin::rom::kNoFile));
    for (const BlockItem& item : kBlockItems)
        action(QLatin1String(item.name))->setEnabled(viewer_->blockEditAllowed(t));
}

void MapViewerWindow::showSelection(int t)
{
    const MapViewer::Tab& tab = viewer_->tab(t);
    grid(t)->setSelection(tab.editMode ? tab.selection : std::nullopt);
}

void MapViewerWindow::gridPressed(int t, int row, int column)
{
    if (!viewer_->tab(t).grid.enabled)
        return;
    if ((QApplication::keyboardModifiers() & Qt::ShiftModifier) && viewer_->tab(t).selection)
        viewer_->extendSelection(t, row, column);
    else
        viewer_->selectCell(t, row, column);
}

void MapViewerWindow::blockEdit(BlockOp op)
{
    const int t = viewer_->currentTab();
    if (!viewer_->blockEditAllowed(t))
        return;
    const bool fuel = kMaps[std::size_t(t)].fuel;
    const QString title = titleOf(op);
    QPointer<MapViewerWindow> self(this);
    double value = 0;
    if (op == BlockOp::SetTo || op == BlockOp::Add || op == BlockOp::ScaleBy) {
        const MapViewer::Tab& tab = viewer_->tab(t);
        const QString unit = fuel ? tr("A/F ratio") : tr("Degrees");
        QString label = op == BlockOp::SetTo ? unit + QLatin1Char(':')
                        : op == BlockOp::Add  ? tr("%1 to add:").arg(unit)
                                              : tr("Percent (negative for less):");
        const double start = op == BlockOp::SetTo ? tab.grid.text(tab.anchorRow, tab.anchorColumn).toDouble() : 0;
        const auto answer =
            vexorin::ui::askNumber(this, title, label, start, op == BlockOp::ScaleBy ? 1 : (fuel ? 2 : 0));
        if (!self || !answer)
            return;
        value = *answer;
    }
    const std::vector<vexorin::rom::BlockCell> plan = viewer_->planBlock(t, op, value);
    if (plan.empty())
        return;
    const bool ok = BlockPreviewWindow::confirm(blockPreview(t, op, plan));
    if (self && ok)
        viewer_->applyBlock(t, plan);
}

BlockPreviewWindow* MapViewerWindow::blockPreview(int t, BlockOp op, const std::vector<vexorin::rom::BlockCell>& plan)
{
    QStringList rpm, tp;
    for (int i = 0; i < MapGrid::kSize; ++i) {
        rpm << viewer_->tab(t).grid.text(i, 0);
        tp << viewer_->tab(t).grid.text(0, i);
    }
    const FigureKind kind = kMaps[std::size_t(t)].fuel ? FigureKind::Fuel : FigureKind::Timing;
    return new BlockPreviewWindow(titleOf(op), kind, plan, rpm, tp, this);
}

bool MapViewerWindow::typingFigure(int t) const
{
    const QLineEdit* box = pages_[std::size_t(t)].overlayBox;
    return box && !box->isReadOnly();
}

void MapViewerWindow::startFigure(int t, const QString& text)
{
    const MapViewer::Tab& tab = viewer_->tab(t);
    if (!tab.editMode || !tab.overlayVisible)
        return;
    QLineEdit* box = pages_[std::size_t(t)].overlayBox;
    box->setReadOnly(false);
    box->setStyleSheet(QStringLiteral("background-color: white; color: black;"));
    box->setText(text);
    if (text.size() > 1)
        box->selectAll();  // Enter: the figure as it stands, replaced by the first key
    box->setFocus();
}

bool MapViewerWindow::figureBoxKey(int t, const QKeyEvent& key)
{
    if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
        endFigure(t, true);
        return true;
    }
    if (key.key() == Qt::Key_Escape) {
        endFigure(t, false);
        return true;
    }
    return false;
}

void MapViewerWindow::endFigure(int t, bool write)
{
    Page& p = pages_[std::size_t(t)];
    const QString text = p.overlayBox->text();
    p.overlayBox->setReadOnly(true);
    p.grid->setFocus();
    placeOverlay(t);
    if (write)
        viewer_->typeFigure(t, text);
}
