// One map on screen: 17 by 17 cells, heading row 0 and heading column 0,
// texts, band colours and the current cell.
#pragma once

#include "rom/rules/map_decoding.h"

#include <QString>
#include <array>
#include <optional>

class MapGrid {
public:
    static constexpr int kSize = 17;
    static constexpr const char* kCorner = "RPM / TP";

    static bool inside(int row, int column) { return row >= 0 && row < kSize && column >= 0 && column < kSize; }

    // Empties every cell; `fixedColumn` says whether column 0 is a heading column.
    void rebuild(bool fixedColumn = true);

    QString text(int row, int column) const;
    std::optional<vexorin::rom::Rgb> color(int row, int column) const;
    // Writes outside the grid are dropped, as a cell that does not exist.
    void setText(int row, int column, const QString& text);
    void setColor(int row, int column, vexorin::rom::Rgb color);

    int row = 1;
    int column = 0;
    bool enabled = false;
    bool fixedColumn = true;

private:
    static int index(int row, int column) { return row * kSize + column; }
    std::array<QString, kSize * kSize> texts_;
    std::array<std::optional<vexorin::rom::Rgb>, kSize * kSize> colors_;
};
