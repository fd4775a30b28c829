// One Map Viewer grid as a surface in three dimensions: the cell figures as
// heights over the TP headings (across) and the RPM headings (in depth), each
// cell in its band colour. Built from the grid's texts and colours alone, so
// it shows whatever the grid shows, a hostile BIN file's headings included.
#pragma once

#include "rom/rules/map_decoding.h"
#include "rom/map_grid.h"

#include <QImage>
#include <QString>
#include <array>
#include <optional>

namespace vexorin::rom {

// Cells along each side of a map, headings not counted.
constexpr int kSurfaceSide = MapGrid::kSize - 1;

template <typename T>
using SurfaceCells = std::array<std::array<T, kSurfaceSide>, kSurfaceSide>;
using Headings = std::array<std::optional<double>, kSurfaceSide>;

// A cell with no figure (a grid not loaded or cleared) lies on the floor of
// the value axis in this grey, which no band uses.
constexpr Rgb kNoFigureColor{0xA0, 0xA0, 0xA0};

// The figure a grid text shows: "14.70" is 14.7, "6400" is 6400. None for an
// empty text or one that is not a number between -1e9 and 1e9.
std::optional<double> figureOf(const QString& text);

// Headings can place their rows or columns only when each has a figure and
// each is larger than the one before (as the float the 3D view draws with):
// the surface needs its points in order.
bool headingsArePositions(const Headings& headings);

// One horizontal axis: where each row or column stands, and its label.
struct SurfaceAxis {
    QString title;
    // Strictly increasing: the heading figures when they can place the
    // points, otherwise the indexes 0..15.
    std::array<double, kSurfaceSide> positions{};
    // The heading texts as the grid shows them, in every case.
    std::array<QString, kSurfaceSide> labels;
    bool byHeading = false;
};

// The value axis: from `low` to `high` in `segments` steps of `step`, taking
// in every figure of the map.
struct ValueRange {
    double low = 0, high = 1, step = 1;
    int segments = 1;
    int decimals = 0;  // what the labels need to show a step
};

struct MapSurface {
    SurfaceAxis tp;   // x: row 0, columns 1..16
    SurfaceAxis rpm;  // z: column 0, rows 1..16
    QString valueTitle;  // y: "A/F Ratio" or "Timing"
    ValueRange range;
    // Indexed [rpm][tp]: the cell at grid row rpm + 1, column tp + 1.
    SurfaceCells<std::optional<double>> figures;
    SurfaceCells<double> heights{};  // the figure, or range.low where there is none
    SurfaceCells<Rgb> colors{};      // the grid's band colour, or kNoFigureColor
};

// The value axis for these figures: the smallest round step (1, 2 or 5 times
// a power of ten) that takes them in at most ten segments ending on whole
// steps. One figure alone, or all alike, get the unit they lie in (14.7 gets
// 14 to 15); no figure at all gets 0 to 1.
ValueRange valueRangeOf(const SurfaceCells<std::optional<double>>& figures);

// The surface of a grid of a fuel map (A/F ratios) or a timing map (degrees).
MapSurface mapSurface(const MapGrid& grid, bool fuel);

// The band colours as a square image to lay over the surface: from left to
// right the TP positions from the first to the last, from bottom to top the
// RPM positions from the first to the last (the graph reads the image's last
// line as the first RPM); each pixel takes the colour of the nearest point.
QImage bandTexture(const MapSurface& surface, int side = 512);

// The index of the position nearest to `value` (the lower one on a tie).
int nearestIndex(const std::array<double, kSurfaceSide>& positions, double value);

}  // namespace vexorin::rom
