// A map cell or scale heading as a figure in its own units (A/F ratio,
// degrees, RPM, TP) and back: the byte a typed or computed figure becomes.
#pragma once

#include <optional>
#include <string>

namespace vexorin::rom {

enum class FigureKind { Fuel, Timing, Rpm, Tp };

struct FigureRange {
    double min;
    double max;
    const char* minText;
    const char* maxText;
};

FigureRange figureRange(FigureKind kind);
// "The figure must be between 6.56 and 19.60."
std::string figureRangeMessage(FigureKind kind);

// The figure a byte shows: the fuel ratio as its two-decimal text reads, the
// degrees of timing, the RPM, the TP.
double figureOfByte(FigureKind kind, int byte);
// The byte's text, as the grid shows it.
std::string figureText(FigureKind kind, int byte);

// The byte for a figure inside its range (see byteForFigure), or nothing when
// the figure lies outside it.
std::optional<int> byteForTypedFigure(FigureKind kind, double figure);

// The byte for a figure, the figure first clamped to its range:
// - fuel: among the stepping line 160..192, 1..159 the byte whose shown ratio
//   is nearest (a tie goes to the richer, lower ratio);
// - timing: d for 0..128, 256 + d for -95..-1, d rounded to a whole (a half upwards);
// - RPM: figure / 50, TP: the figure, rounded to a whole (a half upwards).
// `clamped` says whether the figure lay outside the range.
int byteForFigure(FigureKind kind, double figure, bool* clamped = nullptr);

// A typed figure: digits with one optional leading "-" and one optional ".".
std::optional<double> parseFigure(const std::string& text);

}  // namespace vexorin::rom
