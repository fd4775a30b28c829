#include "rom/bin_viewer_layout.h"

#include "rom/register_regions.h"
#include "rom/rom_image.h"

#include <cctype>
#include <cmath>
#include <cstdio>

namespace vexorin::rom {

namespace {
constexpr const char* kConverted = "Converted: ";

// Cells of the regions in list order (rows and columns of the grid), and
// how the value of the first cell converts.
enum class Conversion { None, Hundredths, TimesFifty, Speed, Word };
struct RegionView {
    RegionCells cells;
    Conversion conversion;
};
constexpr std::array<RegionView, kRegionCount> kViews = {{
    {{10, 10, 2, 2}, Conversion::Hundredths},  // Feedback Control
    {{15, 15, 1, 9}, Conversion::None},        // Knock Sensor Map
    {{12, 12, 5, 5}, Conversion::TimesFifty},  // Rev Limiter
    {{11, 11, 6, 6}, Conversion::Speed},       // Top Speed Limiter
    {{9, 9, 9, 9}, Conversion::Hundredths},    // Injector Latency
    {{3, 3, 12, 13}, Conversion::Word},        // K Value
    {{9, 9, 1, 16}, Conversion::None},         // TTP Min
    {{10, 10, 1, 16}, Conversion::None},       // TTP Max
    {{3, 3, 1, 16}, Conversion::None},         // Throttle Enrichment Table
    {{0, 0, 0, 0}, Conversion::None},          // Primary Fuel Map
    {{0, 0, 0, 0}, Conversion::None},          // Secondary Timing Map (Knock)
    {{2, 2, 1, 16}, Conversion::None},         // TP Scale Timing
    {{1, 1, 1, 16}, Conversion::None},         // RPM Scale
    {{7, 8, 1, 16}, Conversion::None},         // Ignition Dwell Duty
    {{4, 5, 1, 16}, Conversion::None},         // Temp Conversion Table
    {{8, 15, 1, 16}, Conversion::None},        // VQ Table
    {{16, 16, 1, 16}, Conversion::None},       // TP Scale Fuel
    {{16, 16, 7, 7}, Conversion::TimesFifty},  // VTC Release
    {{15, 15, 4, 12}, Conversion::None},       // Knock Limit: 79E3 to 79EB, though its label reaches 79EF
    {{7, 7, 1, 16}, Conversion::None},         // Air Flow Limiter
    {{0, 0, 0, 0}, Conversion::None},          // Primary Timing Map
    {{0, 0, 0, 0}, Conversion::None},          // Secondary Fuel Map
    {{0, 0, 0, 0}, Conversion::None},          // High Octane High Gear Fuel Map
    {{0, 0, 0, 0}, Conversion::None},          // Low Octane High Gear Fuel Map
}};

constexpr double kMilesPerKilometre = 0.621371192;
}  // namespace

std::string hexNoPad(int value)
{
    char text[16];
    std::snprintf(text, sizeof text, "%X", unsigned(value));
    return text;
}

std::string bankRangeLabel(int firstOffset)
{
    return hexNoPad(firstOffset) + " - " + hexNoPad(firstOffset + kBankSize - 1);
}

std::string rowLabel(int bankFirstOffset, int row)
{
    const int first = bankFirstOffset + (row - 1) * 16;
    return hexNoPad(first) + " - " + hexNoPad(first + 15);
}

std::string columnHeading(int row, int column)
{
    return hexByte((row - 1) * 16 + column - 1);
}

std::string addressText(const std::string& label, int column)
{
    return label.substr(0, 3) + hexNoPad((column - 1) & 0xF);
}

int hexValue(const std::string& text)
{
    int value = 0;
    for (char ch : text) {
        if (!std::isxdigit(static_cast<unsigned char>(ch)))
            break;
        const int digit = std::isdigit(static_cast<unsigned char>(ch)) ? ch - '0' : std::toupper(ch) - 'A' + 10;
        value = value * 16 + digit;
        if (value > 0xFFFFF)
            break;
    }
    return value;
}

RegionCells regionCells(int regionIndex)
{
    return kViews[std::size_t(regionIndex)].cells;
}

std::string regionMessage(int regionIndex)
{
    if (kViews[std::size_t(regionIndex)].cells.firstRow != 0)
        return {};
    return "Currently viewing the " + regionName(regionIndex) + ".";
}

std::string plainNumber(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.10g", value);
    return text;
}

std::string convertedFromCells(int regionIndex, const std::string& first, const std::string& second)
{
    const int v = hexValue(first);
    switch (kViews[std::size_t(regionIndex)].conversion) {
    case Conversion::Hundredths:
        return kConverted + plainNumber(v / 100.0) + " msec";
    case Conversion::TimesFifty:
        return kConverted + std::to_string(v * 50) + " RPM";
    case Conversion::Speed: {
        const int k = v * 2;
        const long m = std::lround(k * kMilesPerKilometre);
        return kConverted + std::to_string(k) + " km/h" + " or " + std::to_string(m) + " MPH";
    }
    case Conversion::Word:
        return kConverted + std::to_string(hexValue(first + second));
    case Conversion::None:
        break;
    }
    return kConverted;
}

bool editKeyPasses(int code)
{
    if (code < 48 || (code >= 58 && code <= 64) || (code >= 71 && code <= 95) || code >= 106)
        return false;
    return true;
}

}  // namespace vexorin::rom
