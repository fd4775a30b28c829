// The Map Viewer window's editing by keyboard and beyond the spin buttons:
// the grid's keys, the Edit menu (undo, redo, revert to the backup, the
// block edits), the block selection on the grid, and typed figures in the
// box over the selected cell.
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

// Keys on a grid (arrows, Shift+arrows, Ctrl+Up/Down, Enter, the first key
// of a figure) and in the figure box over the cell (Enter, Esc).
bool MapViewerWindow::eventFilter(QObject* watched, QEvent* event)
{
    for (int b = 0; b < MapViewer::kTabs; ++b) {
        if (watched != pages_[std::size_t(b)].overlayBox)
            continue;
        if (event->type() == QEvent::FocusOut && typingFigure(b))
            endFigure(b, false);  // a figure is written by Enter only
        else if (event->type() == QEvent::KeyPress && typingFigure(b))
            return figureBoxKey(b, *static_cast<QKeyEvent*>(event));
        return QWidget::eventFilter(watched, event);
    }
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    int t = 0;
    while (t < int(pages_.size()) && pages_[std::size_t(t)].grid != watched)
        ++t;
    if (t == int(pages_.size()))
        return QWidget::eventFilter(watched, event);
    return gridKey(t, *static_cast<QKeyEvent*>(event));
}

bool MapViewerWindow::gridKey(int t, const QKeyEvent& key)
{
    const MapViewer::Tab& tab = viewer_->tab(t);
    MapGridWidget* grid = pages_[std::size_t(t)].grid;
    const bool stepKey = key.key() == Qt::Key_Up || key.key() == Qt::Key_Down;
    if (key.modifiers() == Qt::ControlModifier && stepKey) {
        if (tab.editMode)
            key.key() == Qt::Key_Up ? viewer_->spinUp(t) : viewer_->spinDown(t);
        return true;
    }
    const auto arrow = [&key](int& dr, int& dc) {
        dr = key.key() == Qt::Key_Up ? -1 : key.key() == Qt::Key_Down ? 1 : 0;
        dc = key.key() == Qt::Key_Left ? -1 : key.key() == Qt::Key_Right ? 1 : 0;
        return dr != 0 || dc != 0;
    };
    int dr = 0, dc = 0;
    if (key.modifiers() == Qt::ShiftModifier && arrow(dr, dc)) {
        // Shift+arrows stretch the block selection from its anchor.
        if (tab.selection)
            viewer_->extendSelection(t, qBound(1, tab.endRow + dr, 16), qBound(1, tab.endColumn + dc, 16));
        return true;
    }
    if (key.modifiers() != Qt::NoModifier && key.modifiers() != Qt::KeypadModifier)
        return false;
    if (tab.editMode && tab.overlayVisible) {
        if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
            startFigure(t, tab.grid.text(tab.overlayRow, tab.overlayColumn));
            return true;
        }
        if (key.text().size() == 1 && QStringLiteral("0123456789.-").contains(key.text())) {
            startFigure(t, key.text());
            return true;
        }
    }
    switch (key.key()) {
    case Qt::Key_Up: dr = -1; break;
    case Qt::Key_Down: dr = 1; break;
    case Qt::Key_Left: dc = -1; break;
    case Qt::Key_Right: dc = 1; break;
    default: return false;
    }
    // From the cell being edited, or from the grid's own current cell outside edit mode.
    const QModelIndex current = grid->currentIndex();
    const int row = tab.editMode ? tab.overlayRow : (current.isValid() ? current.row() : 0);
    const int column = tab.editMode ? tab.overlayColumn : (current.isValid() ? current.column() : 0);
    const int r = qBound(0, row + dr, grid->rowCount() - 1);
    const int c = qBound(0, column + dc, grid->columnCount() - 1);
    grid->setCurrentCell(r, c);
    if (tab.grid.enabled)
        viewer_->selectCell(t, r, c);
    return true;
}

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
    grid(t)->setMapSelection(tab.editMode ? tab.selection : std::nullopt);
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
