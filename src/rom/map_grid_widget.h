// A map on screen: a 17 by 17 table whose row 0 and column 0 are headings.
#pragma once

#include "rom/map_block.h"
#include "rom/map_grid.h"
#include "rom/map_trace.h"

#include <QTableWidget>
#include <optional>

class MapGridWidget : public QTableWidget {
    Q_OBJECT
public:
    static constexpr int kHeadingWidthTwips = 1085;
    static constexpr int kCellWidthTwips = 510;

    explicit MapGridWidget(QWidget* parent = nullptr);

    // The heading column's width and the text it must hold; where texts stand;
    // the widest text of a cell (a map's figure by default).
    void configure(int headingWidthTwips, const QString& widestHeading, Qt::Alignment corner,
                   Qt::Alignment headingColumn, Qt::Alignment cells,
                   const QString& widestCell = QStringLiteral("19.60"));

    // Shows every cell of the grid.
    void showGrid(const MapGrid& grid);
    void showCell(const MapGrid& grid, int row, int column);
    // The cell's rectangle in the coordinates of `ancestor`.
    QRect cellRect(int row, int column, const QWidget* ancestor) const;
    QSize sizeHint() const override;

    // Drawn over the cells in colours no band uses: the traced cell with a
    // thick outline, its fading trail, and its two neighbours shaded by nearness.
    static const QColor kTraceColor;
    static const QColor kCompareColor;
    // Compare: a border round every cell with a tip ("B: …"), the tip as the cell's tool tip.
    void setCompareTips(const std::array<QString, MapGrid::kSize * MapGrid::kSize>& tips);
    bool compareMarked(int row, int column) const;
    void setTraceMarks(const TraceMarks& marks);
    const TraceMarks& traceMarks() const { return trace_; }
    // The block selection: a tinted rectangle with a dark border.
    static const QColor kSelectionColor;
    void setMapSelection(const std::optional<vexorin::rom::MapSelection>& selection);
    const std::optional<vexorin::rom::MapSelection>& selection() const { return selection_; }

signals:
    // The mouse, its left button held, moved onto another cell.
    void dragged(int row, int column);

protected:
    void paintEvent(QPaintEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;

private:
    void paintTrace(QPainter& painter) const;
    void paintCompare(QPainter& painter) const;
    std::array<bool, MapGrid::kSize * MapGrid::kSize> compared_{};
    bool anyCompared_ = false;
    QRect cellBox(int row, int column) const;
    TraceMarks trace_;
    std::optional<vexorin::rom::MapSelection> selection_;
    QModelIndex dragCell_;
    Qt::Alignment alignmentOf(int row, int column) const;
    Qt::Alignment corner_ = Qt::AlignCenter;
    Qt::Alignment headingColumn_ = Qt::AlignCenter;
    Qt::Alignment cells_ = Qt::AlignCenter;
};
