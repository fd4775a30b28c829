#include "rom/map_surface.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vexorin::rom {

namespace {
constexpr int kMostSegments = 10;
// Beyond this no map figure goes, and the 3D view, which draws in float, still
// tells figures apart below it; spans under kLeastSpan count as none.
constexpr double kLargestFigure = 1e9;
constexpr double kLeastSpan = 1e-6;

SurfaceAxis axisOf(const MapGrid& grid, bool across, const char* title)
{
    SurfaceAxis axis;
    axis.title = QLatin1String(title);
    Headings figures;
    for (int i = 0; i < kSurfaceSide; ++i) {
        const QString text = across ? grid.text(0, i + 1) : grid.text(i + 1, 0);
        axis.labels[std::size_t(i)] = text.trimmed();
        figures[std::size_t(i)] = figureOf(text);
    }
    axis.byHeading = headingsArePositions(figures);
    for (int i = 0; i < kSurfaceSide; ++i)
        axis.positions[std::size_t(i)] = axis.byHeading ? *figures[std::size_t(i)] : double(i);
    return axis;
}

// The smallest round step (1, 2 or 5 times a power of ten) of at least `atLeast`.
double nextRoundStep(double atLeast)
{
    double power = std::pow(10.0, std::floor(std::log10(atLeast)));
    for (;;) {
        for (const double m : {1.0, 2.0, 5.0})
            if (m * power >= atLeast * (1 - 1e-9))
                return m * power;
        power *= 10;
    }
}
}  // namespace

std::optional<double> figureOf(const QString& text)
{
    bool ok = false;
    const double figure = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(figure) || std::abs(figure) > kLargestFigure)
        return std::nullopt;
    return figure;
}

bool headingsArePositions(const Headings& headings)
{
    for (std::size_t i = 0; i < headings.size(); ++i) {
        if (!headings[i])
            return false;
        if (i > 0 && !(float(*headings[i]) > float(*headings[i - 1])))
            return false;
    }
    return true;
}

ValueRange valueRangeOf(const SurfaceCells<std::optional<double>>& figures)
{
    std::optional<double> least, most;
    for (const auto& row : figures) {
        for (const std::optional<double>& f : row) {
            if (!f)
                continue;
            least = least ? std::min(*least, *f) : *f;
            most = most ? std::max(*most, *f) : *f;
        }
    }
    ValueRange range;
    if (!least)
        return range;
    const double span = *most - *least;
    if (span < kLeastSpan) {
        range.step = 1;
        range.low = std::floor(*least);
        range.high = range.low + 1;
    } else {
        // Ending on whole steps can add a segment at each end: then a larger step.
        for (double step = nextRoundStep(span / kMostSegments);; step = nextRoundStep(step * 1.5)) {
            range.step = step;
            range.low = std::floor(*least / step) * step;
            range.high = std::ceil(*most / step) * step;
            if (std::lround((range.high - range.low) / step) <= kMostSegments)
                break;
        }
    }
    if (!(range.high > range.low))
        range.high = range.low + range.step;
    range.segments = std::max(1, int(std::lround((range.high - range.low) / range.step)));
    range.decimals = std::max(0, -int(std::floor(std::log10(range.step) + 1e-9)));
    return range;
}

MapSurface mapSurface(const MapGrid& grid, bool fuel)
{
    MapSurface s;
    s.tp = axisOf(grid, true, "TP");
    s.rpm = axisOf(grid, false, "RPM");
    s.valueTitle = fuel ? QStringLiteral("A/F Ratio") : QStringLiteral("Timing");
    for (int r = 0; r < kSurfaceSide; ++r)
        for (int c = 0; c < kSurfaceSide; ++c)
            s.figures[std::size_t(r)][std::size_t(c)] = figureOf(grid.text(r + 1, c + 1));
    s.range = valueRangeOf(s.figures);
    for (int r = 0; r < kSurfaceSide; ++r) {
        for (int c = 0; c < kSurfaceSide; ++c) {
            const std::optional<double>& f = s.figures[std::size_t(r)][std::size_t(c)];
            const std::optional<Rgb> color = grid.color(r + 1, c + 1);
            s.heights[std::size_t(r)][std::size_t(c)] = f ? *f : s.range.low;
            s.colors[std::size_t(r)][std::size_t(c)] = f && color ? *color : kNoFigureColor;
        }
    }
    return s;
}

int nearestIndex(const std::array<double, kSurfaceSide>& positions, double value)
{
    int best = 0;
    for (int i = 1; i < kSurfaceSide; ++i)
        if (std::abs(positions[std::size_t(i)] - value) < std::abs(positions[std::size_t(best)] - value))
            best = i;
    return best;
}

QImage bandTexture(const MapSurface& s, int side)
{
    side = std::max(side, kSurfaceSide);
    QImage image(side, side, QImage::Format_RGB32);
    // Which column each pixel column shows, and which row each pixel row shows.
    auto owners = [side](const SurfaceAxis& axis) {
        std::vector<int> owner(std::size_t(side), 0);
        const double first = axis.positions.front(), last = axis.positions.back();
        for (int p = 0; p < side; ++p)
            owner[std::size_t(p)] = nearestIndex(axis.positions, first + (p + 0.5) / side * (last - first));
        return owner;
    };
    const std::vector<int> columns = owners(s.tp);
    const std::vector<int> rows = owners(s.rpm);
    // One line of pixels per RPM row, copied to every line that row owns.
    std::array<std::vector<QRgb>, kSurfaceSide> lines;
    for (int y = 0; y < side; ++y) {
        const int row = rows[std::size_t(y)];
        std::vector<QRgb>& line = lines[std::size_t(row)];
        if (line.empty()) {
            line.resize(std::size_t(side));
            for (int x = 0; x < side; ++x) {
                const Rgb& c = s.colors[std::size_t(row)][std::size_t(columns[std::size_t(x)])];
                line[std::size_t(x)] = qRgb(c.r, c.g, c.b);
            }
        }
        // The first RPM at the foot of the image: OpenGL takes its first line as the bottom.
        std::copy(line.begin(), line.end(), reinterpret_cast<QRgb*>(image.scanLine(side - 1 - y)));
    }
    return image;
}

}  // namespace vexorin::rom
