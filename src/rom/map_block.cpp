#include "rom/map_block.h"

#include <algorithm>

namespace vexorin::rom {

namespace {
constexpr int kSide = 16;

int clampBody(int v)
{
    return std::clamp(v, 1, kSide);
}

double figureAt(FigureKind kind, const MapBytes& bytes, int row, int column)
{
    return figureOfByte(kind, bytes[std::size_t((row - 1) * kSide + (column - 1))]);
}

// Linear between the figures at both ends, by position.
double between(double first, double last, int index, int count)
{
    if (count <= 1)
        return first;
    return first + (last - first) * index / (count - 1);
}

double targetOf(FigureKind kind, const MapBytes& bytes, const MapSelection& s, BlockOp op, double value, int r,
                int c)
{
    const double own = figureAt(kind, bytes, r, c);
    switch (op) {
    case BlockOp::SetTo: return value;
    case BlockOp::Add: return own + value;
    case BlockOp::ScaleBy: return own * (1 + value / 100);
    case BlockOp::Interpolate:
        if (s.columns() == 1)
            return between(figureAt(kind, bytes, s.top, c), figureAt(kind, bytes, s.bottom, c), r - s.top,
                           s.rows());
        return between(figureAt(kind, bytes, r, s.left), figureAt(kind, bytes, r, s.right), c - s.left,
                       s.columns());
    case BlockOp::Smooth: break;
    }
    double sum = own;
    int count = 1;
    const int near[4][2] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}};
    for (const auto& d : near) {
        if (s.contains(r + d[0], c + d[1])) {
            sum += figureAt(kind, bytes, r + d[0], c + d[1]);
            ++count;
        }
    }
    return sum / count;
}
}  // namespace

MapSelection MapSelection::between(int row0, int column0, int row1, int column1)
{
    MapSelection s;
    s.top = clampBody(std::min(row0, row1));
    s.bottom = clampBody(std::max(row0, row1));
    s.left = clampBody(std::min(column0, column1));
    s.right = clampBody(std::max(column0, column1));
    return s;
}

std::vector<BlockCell> planBlock(FigureKind kind, const MapBytes& bytes, const MapSelection& selection, BlockOp op,
                                 double value)
{
    const MapSelection s = MapSelection::between(selection.top, selection.left, selection.bottom, selection.right);
    std::vector<BlockCell> cells;
    cells.reserve(std::size_t(s.rows() * s.columns()));
    for (int r = s.top; r <= s.bottom; ++r) {
        for (int c = s.left; c <= s.right; ++c) {
            BlockCell cell{r, c, bytes[std::size_t((r - 1) * kSide + (c - 1))], 0, 0, false};
            cell.target = targetOf(kind, bytes, s, op, value, r, c);
            cell.newByte = byteForFigure(kind, cell.target, &cell.clamped);
            cells.push_back(cell);
        }
    }
    return cells;
}

const char* blockOpCaption(BlockOp op)
{
    switch (op) {
    case BlockOp::SetTo: return "Set to...";
    case BlockOp::Add: return "Add...";
    case BlockOp::ScaleBy: return "Scale by %...";
    case BlockOp::Interpolate: return "Interpolate";
    case BlockOp::Smooth: break;
    }
    return "Smooth";
}

}  // namespace vexorin::rom
