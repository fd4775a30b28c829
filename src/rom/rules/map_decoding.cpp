#include "rom/rules/map_decoding.h"

#include <cstdio>

namespace vexorin::rom {

const std::array<MapSpec, kMapCount> kMaps = {{
    {"Fuel (High Octane)", "FuelHighOct", "Primary Fuel Map", "Getting Fuel Map (High Octane)", 253, true},
    {"Fuel (High Oct/High Gear)", "FuelHighOctHighGear", "High Octane High Gear Fuel Map",
     "Getting Fuel Map (High Octane/High Gear)", 241, true},
    {"Fuel (Low Octane)", "FuelLowOct", "Secondary Fuel Map", "Getting Fuel Map (Low Octane)", 242, true},
    {"Fuel (Low Oct/High Gear)", "FuelLowOctHighGear", "Low Octane High Gear Fuel Map",
     "Getting Fuel Map (Low Octane/High Gear)", 240, true},
    {"Timing (High Octane)", "TimingHighOct", "Primary Timing Map", "Getting Timing Map (High Octane)", 248, false},
    {"Timing (Low Octane)", "TimingLowOct", "Secondary Timing Map (Knock)", "Getting Timing Map (Low Octane)", 252,
     false},
}};

namespace {
// 14.7 x 128 in hundredths: the ratio in hundredths is this over the divisor.
constexpr long kStoichTimes128 = 188160;

struct Band {
    int upTo;  // the band holds values up to and including this
    Rgb color;
};

template <std::size_t N>
Rgb bandColor(const Band (&bands)[N], int value, Rgb above)
{
    for (const Band& band : bands)
        if (value <= band.upTo)
            return band.color;
    return above;
}
}  // namespace

int afrHundredths(int value)
{
    const long divisor = value < 160 ? long(value) + 128 : long(value) - 192 + 128;
    if (divisor <= 0)
        return -1;
    return int((2 * kStoichTimes128 + divisor) / (2 * divisor));  // rounded half up
}

std::string FormatAfr(int value)
{
    const int h = afrHundredths(value);
    if (h < 0)
        return {};
    char text[16];
    std::snprintf(text, sizeof text, "%d.%02d", h / 100, h % 100);
    return text;
}

Rgb AfrBandColor(int x)
{
    // Ratios in hundredths; the first band whose upper end holds wins.
    static constexpr Band kBands[] = {{1100, {0x80, 0x80, 0xFF}}, {1200, {0xC0, 0xC0, 0xFF}},
                                      {1300, {0xC0, 0xFF, 0xFF}}, {1400, {0xC0, 0xFF, 0xC0}},
                                      {1600, {0x80, 0xFF, 0x80}}, {1700, {0xFF, 0xFF, 0x00}}};
    return bandColor(kBands, x, {0xFF, 0x80, 0x80});
}

int timingDegrees(int value)
{
    if (value > 128 && value <= 160)
        return value - 128;
    if (value > 160)
        return value - 256;
    return value;
}

std::string FormatTiming(int value)
{
    return std::to_string(timingDegrees(value));
}

Rgb TimingBandColor(int d)
{
    // In timing the stronger green lies below the paler one.
    static constexpr Band kBands[] = {{0, {0x80, 0x80, 0xFF}},  {10, {0xC0, 0xC0, 0xFF}}, {30, {0x80, 0xFF, 0x80}},
                                      {35, {0xC0, 0xFF, 0xC0}}, {40, {0xFF, 0xFF, 0x00}}};
    return bandColor(kBands, d, {0xFF, 0x80, 0x80});
}

std::string formatMapByte(bool fuel, int value)
{
    return fuel ? FormatAfr(value) : FormatTiming(value);
}

Rgb mapByteColor(bool fuel, int value)
{
    return fuel ? AfrBandColor(afrHundredths(value)) : TimingBandColor(timingDegrees(value));
}

}  // namespace vexorin::rom
