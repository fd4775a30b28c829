// A gauge's own scale: two points that tie a voltage to a figure (such as
// 0.5 V to 0 psi and 4.5 V to 100 psi), a unit and the decimals to show. The
// figure of a reading lies on the straight line through the two points, also
// beyond them, and is rounded half up to the decimals ("14.68 AFR"). The
// reading box and the bar never see it; it is shown beside them.
#pragma once

#include <QString>
#include <array>
#include <optional>

namespace vexorin::external {

struct ChannelScale {
    double volts1 = 0;
    double figure1 = 0;
    double volts2 = 0;
    double figure2 = 0;
    QString unit;
    int decimals = 0;

    bool operator==(const ChannelScale& o) const
    {
        return volts1 == o.volts1 && figure1 == o.figure1 && volts2 == o.volts2 && figure2 == o.figure2 &&
               unit == o.unit && decimals == o.decimals;
    }
    bool operator!=(const ChannelScale& o) const { return !(*this == o); }
};

inline constexpr int kMaxScaleDecimals = 4;
inline constexpr int kMaxUnitLength = 8;
// The largest figure or voltage a point may have, either sign.
inline constexpr double kLargestPoint = 1e6;

// The ready-made scales of the Channel Scale window.
struct ScalePreset {
    const char* caption;
    double volts1, figure1, volts2, figure2;
    const char* unit;
    int decimals;

    ChannelScale scale() const
    {
        return {volts1, figure1, volts2, figure2, QString::fromLatin1(unit), decimals};
    }
};
inline constexpr std::array<ScalePreset, 2> kScalePresets{{
    {"Wideband 0-5 V", 0.0, 10.0, 5.0, 20.0, "AFR", 2},
    {"Pressure 0.5-4.5 V", 0.5, 0.0, 4.5, 100.0, "psi", 1},
}};

// The volts of a reading box's text such as "2.34V"; blanks around the number
// and the V are allowed, the V may be missing. Empty for any other text.
std::optional<double> readingVolts(const QString& text);

// The figure on the line through the scale's two points (Volts 1 must differ from Volts 2).
double figureAt(const ChannelScale& scale, double volts);

// The value rounded half up to `decimals` places ("14.68", "-0.5", "3"); binary
// noise does not spoil a half (14.675 gives 14.68). Empty when the value is not
// finite, or reaches 10^12 in units of its last decimal place.
QString roundedFigure(double value, int decimals);

// What the gauge shows beside its reading: "<figure> <unit>" (just the figure
// without a unit), or empty when the reading is no number.
QString scaledReading(const ChannelScale& scale, const QString& reading);

// The texts of the device's lowest and highest reading (0 and 5 volts): on a
// straight line, no reading in between has a longer one.
std::array<QString, 2> spanTexts(const ChannelScale& scale);

// A number for a box or the settings: '.' as the decimal mark, no exponent, as
// few digits as give the same number back.
QString numberText(double value);
// A number typed in a box or read from the settings: blanks around it are
// allowed, and ',' serves as the decimal mark as well as '.'.
std::optional<double> parseNumber(const QString& text);

// The fields of the Channel Scale window, as typed.
enum class ScaleField { Volts1, Figure1, Volts2, Figure2, Unit, Decimals };
inline constexpr int kScaleFieldCount = 6;
// "Volts 1", "Figure 1", "Volts 2", "Figure 2", "Unit", "Decimals".
QString fieldCaption(ScaleField field);
struct ScaleEntry {
    QString volts1, figure1, volts2, figure2, unit;
    int decimals = 0;
};
// The scale of the fields, or what is wrong with them and in which field.
struct ScaleCheck {
    std::optional<ChannelScale> scale;
    QString problem;
    ScaleField field = ScaleField::Volts1;
};
ScaleCheck checkEntry(const ScaleEntry& entry);
// The fields that show a scale.
ScaleEntry entryOf(const ChannelScale& scale);

}  // namespace vexorin::external
