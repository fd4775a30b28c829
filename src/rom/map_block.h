// Block operations on a rectangle of map cells: set, add, scale, interpolate
// and smooth the figures the cells show, each result turned back into a byte.
#pragma once

#include "rom/map_figures.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace vexorin::rom {

// Body cells, rows and columns 1..16, both ends included.
struct MapSelection {
    int top = 1;
    int left = 1;
    int bottom = 1;
    int right = 1;
    // The rectangle between two cells, whichever way round; clipped to the body.
    static MapSelection between(int row0, int column0, int row1, int column1);
    bool contains(int row, int column) const
    {
        return row >= top && row <= bottom && column >= left && column <= right;
    }
    int rows() const { return bottom - top + 1; }
    int columns() const { return right - left + 1; }
    bool operator==(const MapSelection& o) const
    {
        return top == o.top && left == o.left && bottom == o.bottom && right == o.right;
    }
};

enum class BlockOp { SetTo, Add, ScaleBy, Interpolate, Smooth };

struct BlockCell {
    int row;
    int column;
    int oldByte;
    int newByte;
    double target;  // the computed figure, before clamping
    bool clamped;   // the target lay outside the range and was clamped to its end
};

// The 256 bytes of a map, row by row, as the file holds them.
using MapBytes = std::array<std::uint8_t, 256>;

// Every cell of the selection, row by row, with its old and new byte.
// `value`: the figure of SetTo and Add, the percentage of ScaleBy; unused otherwise.
std::vector<BlockCell> planBlock(FigureKind kind, const MapBytes& bytes, const MapSelection& selection, BlockOp op,
                                 double value = 0);

// The menu caption of an operation ("Scale by %...").
const char* blockOpCaption(BlockOp op);

}  // namespace vexorin::rom
