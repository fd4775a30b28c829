// How a map or scale byte becomes a figure and a colour, and which bytes
// belong to which of the six maps.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace vexorin::rom {

struct Rgb {
    std::uint8_t r, g, b;
    bool operator==(const Rgb& o) const { return r == o.r && g == o.g && b == o.b; }
};

// The A/F ratio of a fuel byte in hundredths, rounded; -1 where the byte
// (only possible for values outside 0..255 in a step) has no ratio.
int afrHundredths(int value);
// The ratio with two decimals ("14.70"); empty where there is no ratio.
std::string FormatAfr(int value);
// The band colour of a rounded ratio, given in hundredths (1100 is 11.00).
Rgb AfrBandColor(int hundredths);

// Degrees of a timing byte: 129..160 lose 128, above 160 lose 256, the rest stay.
int timingDegrees(int value);
std::string FormatTiming(int value);
Rgb TimingBandColor(int degrees);

// The scales shared by the maps, as file offsets of their first byte.
constexpr int kRpmScaleOffset = 0x7B00;
constexpr int kTpScaleFuelOffset = 0x7AF0;
constexpr int kTpScaleTimingOffset = 0x7B10;
constexpr int kScaleLength = 16;
constexpr int kRpmPerStep = 50;

struct MapSpec {
    const char* tabCaption;     // "Fuel (High Octane)"
    const char* operationName;  // the middle of the Dump…RPM/TP/MAP names: "FuelHighOct"
    const char* regionName;     // the register list name
    const char* gettingText;    // status panel text while downloading
    int bank;
    bool fuel;
    int fileOffset() const { return (bank - 128) * 256; }
    int tpScaleOffset() const { return fuel ? kTpScaleFuelOffset : kTpScaleTimingOffset; }
    // One-based positions (file offset + 1), as the display cache counts them.
    int firstCellPosition() const { return fileOffset() + 16; }
    int cellPosition(int row, int column) const { return fileOffset() + (row - 1) * 16 + column; }
    const char* cellMeaning() const { return fuel ? "A/F Ratio" : "Timing"; }
};

constexpr int kMapCount = 6;
// In tab order, which is also the order of loading.
extern const std::array<MapSpec, kMapCount> kMaps;

// The text and colour of a map byte, by the kind of map.
std::string formatMapByte(bool fuel, int value);
Rgb mapByteColor(bool fuel, int value);

// One-based positions of the scales.
constexpr int kRpmScaleFirstPosition = kRpmScaleOffset + 1;  // 31489
constexpr int tpScaleFirstPosition(bool fuel)
{
    return (fuel ? kTpScaleFuelOffset : kTpScaleTimingOffset) + 1;
}

}  // namespace vexorin::rom
