#include "rom/map_grid_widget.h"
#include "ui/twips.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

namespace {
constexpr int kRowHeight = 18;
// Room for the widest figure ("19.60", "12750") in the grid's font.
constexpr int kTextPadding = 6;

bool isHeading(const MapGrid& grid, int row, int column)
{
    return row == 0 || (column == 0 && grid.fixedColumn);
}
}  // namespace

MapGridWidget::MapGridWidget(QWidget* parent) : QTableWidget(MapGrid::kSize, MapGrid::kSize, parent)
{
    horizontalHeader()->hide();
    verticalHeader()->hide();
    horizontalHeader()->setMinimumSectionSize(8);
    verticalHeader()->setMinimumSectionSize(8);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::NoSelection);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideNone);
    setWordWrap(false);
    QFont f = font();
    f.setPixelSize(11);
    setFont(f);
    for (int r = 0; r < MapGrid::kSize; ++r) {
        setRowHeight(r, kRowHeight);
        for (int c = 0; c < MapGrid::kSize; ++c) {
            auto* item = new QTableWidgetItem;
            item->setFlags(Qt::ItemIsEnabled);
            setItem(r, c, item);
        }
    }
    configure(kHeadingWidthTwips, QString::fromLatin1(MapGrid::kCorner), Qt::AlignCenter, Qt::AlignCenter,
              Qt::AlignCenter);
}

void MapGridWidget::configure(int headingWidthTwips, const QString& widestHeading, Qt::Alignment corner,
                              Qt::Alignment headingColumn, Qt::Alignment cells, const QString& widestCell)
{
    const int cellText = QFontMetrics(font()).horizontalAdvance(widestCell) + kTextPadding;
    for (int c = 1; c < MapGrid::kSize; ++c)
        setColumnWidth(c, std::max(kCellWidthTwips / vexorin::ui::kTwipsPerPixel, cellText));
    QFont bold = font();
    bold.setBold(true);
    const int headingText = QFontMetrics(bold).horizontalAdvance(widestHeading) + kTextPadding;
    setColumnWidth(0, std::max(headingWidthTwips / vexorin::ui::kTwipsPerPixel, headingText));
    corner_ = corner;
    headingColumn_ = headingColumn;
    cells_ = cells;
    for (int r = 0; r < MapGrid::kSize; ++r)
        for (int c = 0; c < MapGrid::kSize; ++c)
            item(r, c)->setTextAlignment(alignmentOf(r, c) | Qt::AlignVCenter);
}

Qt::Alignment MapGridWidget::alignmentOf(int row, int column) const
{
    if (row == 0 && column == 0)
        return corner_;
    if (column == 0)
        return headingColumn_;
    return row == 0 ? Qt::AlignCenter : cells_;
}

QSize MapGridWidget::sizeHint() const
{
    int w = 2 * frameWidth();
    for (int c = 0; c < columnCount(); ++c)
        w += columnWidth(c);
    int h = 2 * frameWidth();
    for (int r = 0; r < rowCount(); ++r)
        h += rowHeight(r);
    return {w, h};
}

void MapGridWidget::showGrid(const MapGrid& grid)
{
    setUpdatesEnabled(false);
    for (int r = 0; r < MapGrid::kSize; ++r)
        for (int c = 0; c < MapGrid::kSize; ++c)
            showCell(grid, r, c);
    setUpdatesEnabled(true);
}

void MapGridWidget::showCell(const MapGrid& grid, int row, int column)
{
    QTableWidgetItem* it = item(row, column);
    if (!it)
        return;
    it->setText(grid.text(row, column));
    it->setTextAlignment(alignmentOf(row, column) | Qt::AlignVCenter);
    QBrush back;
    if (const auto color = grid.color(row, column))
        back = QColor(color->r, color->g, color->b);
    else if (isHeading(grid, row, column))
        back = palette().button();
    it->setBackground(back);
    it->setForeground(QBrush(Qt::black));
    QFont f = font();
    f.setBold(isHeading(grid, row, column));
    it->setFont(f);
}

QRect MapGridWidget::cellRect(int row, int column, const QWidget* ancestor) const
{
    const QRect r = visualRect(model()->index(row, column));
    const QPoint topLeft = viewport()->mapTo(ancestor, r.topLeft());
    return {topLeft, r.size()};
}

const QColor MapGridWidget::kTraceColor(0xA0, 0x00, 0xC0);
const QColor MapGridWidget::kCompareColor(0xFF, 0x8C, 0x00);
const QColor MapGridWidget::kSelectionColor(0x10, 0x30, 0x90);

void MapGridWidget::setMapSelection(const std::optional<vexorin::rom::MapSelection>& selection)
{
    if (selection == selection_)
        return;
    selection_ = selection;
    viewport()->update();
}

void MapGridWidget::mouseMoveEvent(QMouseEvent* e)
{
    QTableWidget::mouseMoveEvent(e);
    if (!(e->buttons() & Qt::LeftButton))
        return;
    const QModelIndex cell = indexAt(e->position().toPoint());
    if (cell.isValid() && cell != dragCell_) {
        dragCell_ = cell;
        emit dragged(cell.row(), cell.column());
    }
}

void MapGridWidget::setTraceMarks(const TraceMarks& marks)
{
    if (!marks.on && !trace_.on)
        return;
    trace_ = marks;
    viewport()->update();
}

QRect MapGridWidget::cellBox(int row, int column) const
{
    return visualRect(model()->index(row, column));
}

void MapGridWidget::setCompareTips(const std::array<QString, MapGrid::kSize * MapGrid::kSize>& tips)
{
    anyCompared_ = false;
    for (int r = 0; r < MapGrid::kSize; ++r) {
        for (int c = 0; c < MapGrid::kSize; ++c) {
            const std::size_t i = std::size_t(r * MapGrid::kSize + c);
            compared_[i] = !tips[i].isEmpty();
            anyCompared_ = anyCompared_ || compared_[i];
            item(r, c)->setToolTip(tips[i]);
        }
    }
    viewport()->update();
}

bool MapGridWidget::compareMarked(int row, int column) const
{
    return MapGrid::inside(row, column) && compared_[std::size_t(row * MapGrid::kSize + column)];
}

void MapGridWidget::paintEvent(QPaintEvent* e)
{
    QTableWidget::paintEvent(e);
    const bool tracing = trace_.on && trace_.row > 0;
    if (!tracing && !anyCompared_ && !selection_)
        return;
    QPainter painter(viewport());
    if (selection_) {
        const QRect box = cellBox(selection_->top, selection_->left).united(cellBox(selection_->bottom, selection_->right));
        QColor tint = kSelectionColor;
        tint.setAlphaF(0.22);
        painter.fillRect(box, tint);
        QPen border(kSelectionColor);
        border.setWidth(2);
        border.setJoinStyle(Qt::MiterJoin);
        painter.setPen(border);
        painter.drawRect(box.adjusted(1, 1, -1, -1));
    }
    if (anyCompared_)
        paintCompare(painter);
    if (tracing)
        paintTrace(painter);
}

void MapGridWidget::paintCompare(QPainter& painter) const
{
    QPen border(kCompareColor);
    border.setWidth(2);
    border.setJoinStyle(Qt::MiterJoin);
    painter.setPen(border);
    painter.setBrush(Qt::NoBrush);
    for (int r = 0; r < MapGrid::kSize; ++r)
        for (int c = 0; c < MapGrid::kSize; ++c)
            if (compared_[std::size_t(r * MapGrid::kSize + c)])
                painter.drawRect(cellBox(r, c).adjusted(1, 1, -1, -1));
}

void MapGridWidget::paintTrace(QPainter& painter) const
{
    painter.setPen(Qt::NoPen);
    auto shade = [&](const TraceMarks::Cell& c, double strength) {
        QColor fill = kTraceColor;
        fill.setAlphaF(std::clamp(strength, 0.0, 1.0));
        painter.fillRect(cellBox(c.row, c.column), fill);
    };
    for (const TraceMarks::Cell& c : trace_.trail)
        shade(c, 0.45 * c.weight);
    for (const TraceMarks::Cell& c : trace_.neighbours)
        shade(c, 0.9 * c.weight);  // up to 0.45 halfway between two headings
    QPen outline(kTraceColor);
    outline.setWidth(3);
    outline.setJoinStyle(Qt::MiterJoin);
    painter.setPen(outline);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(cellBox(trace_.row, trace_.column).adjusted(1, 1, -2, -2));
}
