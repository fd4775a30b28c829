#include "rom/map_figures.h"

#include "rom/rules/map_decoding.h"

#include <algorithm>
#include <cmath>
#include <charconv>

namespace vexorin::rom {

namespace {
// Computed figures (a mean, a scaled ratio) carry binary noise: a figure this
// close to a half or to a tie counts as lying on it.
constexpr double kNoise = 1e-9;

int roundHalfUp(double x)
{
    return int(std::floor(x + 0.5 + kNoise));
}

// The fuel stepping line: 160 .. 192, then 1 .. 159, from 19.60 down to 6.56.
template <class Visit>
void forEachLineByte(Visit visit)
{
    for (int b = 160; b <= 192; ++b)
        visit(b);
    for (int b = 1; b <= 159; ++b)
        visit(b);
}

int nearestFuelByte(double figure)
{
    int best = 160;
    double bestDistance = 1e300;
    forEachLineByte([&](int b) {
        const double d = std::fabs(afrHundredths(b) / 100.0 - figure);
        // Along the line the ratio falls: a later byte at the same distance is the richer one.
        if (d < bestDistance - kNoise || std::fabs(d - bestDistance) <= kNoise) {
            best = b;
            bestDistance = std::min(d, bestDistance);
        }
    });
    return best;
}
}  // namespace

FigureRange figureRange(FigureKind kind)
{
    switch (kind) {
    case FigureKind::Fuel: return {6.56, 19.60, "6.56", "19.60"};
    case FigureKind::Timing: return {-95, 128, "-95", "128"};
    case FigureKind::Rpm: return {0, 10000, "0", "10000"};
    case FigureKind::Tp: break;
    }
    return {0, 99, "0", "99"};
}

std::string figureRangeMessage(FigureKind kind)
{
    const FigureRange r = figureRange(kind);
    return std::string("The figure must be between ") + r.minText + " and " + r.maxText + ".";
}

double figureOfByte(FigureKind kind, int byte)
{
    switch (kind) {
    case FigureKind::Fuel: return afrHundredths(byte) / 100.0;
    case FigureKind::Timing: return timingDegrees(byte);
    case FigureKind::Rpm: return byte * kRpmPerStep;
    case FigureKind::Tp: break;
    }
    return byte;
}

std::string figureText(FigureKind kind, int byte)
{
    switch (kind) {
    case FigureKind::Fuel: return FormatAfr(byte);
    case FigureKind::Timing: return FormatTiming(byte);
    case FigureKind::Rpm: return std::to_string(byte * kRpmPerStep);
    case FigureKind::Tp: break;
    }
    return std::to_string(byte);
}

int byteForFigure(FigureKind kind, double figure, bool* clamped)
{
    const FigureRange range = figureRange(kind);
    bool outside = !(figure >= range.min - kNoise && figure <= range.max + kNoise);
    if (outside)
        figure = figure > range.max ? range.max : range.min;  // NaN goes to the low end
    if (clamped)
        *clamped = outside;
    switch (kind) {
    case FigureKind::Fuel: return nearestFuelByte(figure);
    case FigureKind::Timing: {
        const int d = std::clamp(roundHalfUp(figure), -95, 128);
        return d < 0 ? 256 + d : d;
    }
    case FigureKind::Rpm: return std::clamp(roundHalfUp(figure / kRpmPerStep), 0, 200);
    case FigureKind::Tp: break;
    }
    return std::clamp(roundHalfUp(figure), 0, 99);
}

std::optional<int> byteForTypedFigure(FigureKind kind, double figure)
{
    bool clamped = false;
    const int byte = byteForFigure(kind, figure, &clamped);
    if (clamped)
        return std::nullopt;
    return byte;
}

std::optional<double> parseFigure(const std::string& text)
{
    std::size_t i = 0;
    if (i < text.size() && text[i] == '-')
        ++i;
    bool digits = false, point = false;
    for (; i < text.size(); ++i) {
        if (text[i] >= '0' && text[i] <= '9')
            digits = true;
        else if (text[i] == '.' && !point)
            point = true;
        else
            return std::nullopt;
    }
    if (!digits || text.size() > 32)
        return std::nullopt;
    double value = 0;  // read the same whatever the desktop's locale
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

}  // namespace vexorin::rom
