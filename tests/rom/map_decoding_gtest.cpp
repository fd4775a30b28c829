#include "rom/rules/map_decoding.h"

#include <gtest/gtest.h>

using namespace vexorin::rom;

namespace {
const Rgb kBlue{0x80, 0x80, 0xFF};
const Rgb kPaleBlue{0xC0, 0xC0, 0xFF};
const Rgb kCyan{0xC0, 0xFF, 0xFF};
const Rgb kPaleGreen{0xC0, 0xFF, 0xC0};
const Rgb kGreen{0x80, 0xFF, 0x80};
const Rgb kYellow{0xFF, 0xFF, 0x00};
const Rgb kRed{0xFF, 0x80, 0x80};
}  // namespace

TEST(MapDecodingTest, FormatAfrReferenceValues)
{
    const struct {
        int byte;
        const char* text;
    } refs[] = {{0, "14.70"},   {1, "14.59"},   {128, "7.35"},  {159, "6.56"}, {160, "19.60"},
                {191, "14.82"}, {192, "14.70"}, {193, "14.59"}, {255, "9.85"}};
    for (const auto& r : refs)
        EXPECT_EQ(FormatAfr(r.byte), r.text) << r.byte;
    // 193..255 repeat 1..63.
    for (int v = 193; v <= 255; ++v)
        EXPECT_EQ(FormatAfr(v), FormatAfr(v - 192)) << v;
}

TEST(MapDecodingTest, FormatAfrMatchesTheFormulaForEveryByte)
{
    for (int v = 0; v < 256; ++v) {
        const double ratio = 14.7 * 128 / ((v < 160 ? v : v - 192) + 128);
        char expected[16];
        std::snprintf(expected, sizeof expected, "%.2f", ratio);
        EXPECT_EQ(FormatAfr(v), expected) << v;
    }
}

TEST(MapDecodingTest, NeighbouringBytesAtTheTwoEndsOfTheScale)
{
    EXPECT_EQ(FormatAfr(160), "19.60");
    EXPECT_EQ(mapByteColor(true, 160), kRed);
    EXPECT_EQ(FormatAfr(159), "6.56");
    EXPECT_EQ(mapByteColor(true, 159), kBlue);
    EXPECT_EQ(mapByteColor(true, 0), kGreen);
    EXPECT_EQ(mapByteColor(true, 192), kGreen);
}

TEST(MapDecodingTest, AfrBandBorders)
{
    EXPECT_EQ(AfrBandColor(1100), kBlue);
    EXPECT_EQ(AfrBandColor(1101), kPaleBlue);
    EXPECT_EQ(AfrBandColor(1200), kPaleBlue);
    EXPECT_EQ(AfrBandColor(1201), kCyan);
    EXPECT_EQ(AfrBandColor(1300), kCyan);
    EXPECT_EQ(AfrBandColor(1301), kPaleGreen);
    EXPECT_EQ(AfrBandColor(1400), kPaleGreen);
    EXPECT_EQ(AfrBandColor(1401), kGreen);
    EXPECT_EQ(AfrBandColor(1600), kGreen);
    EXPECT_EQ(AfrBandColor(1601), kYellow);
    EXPECT_EQ(AfrBandColor(1700), kYellow);
    EXPECT_EQ(AfrBandColor(1701), kRed);
}

TEST(MapDecodingTest, ColourFollowsTheRoundedRatio)
{
    // Byte 43: 1881.6 / 171 = 11.0035… rounds to 11.00 and falls in the first band.
    EXPECT_EQ(FormatAfr(43), "11.00");
    EXPECT_EQ(mapByteColor(true, 43), kBlue);
    // Byte 39: 11.267 → pale blue.
    EXPECT_EQ(mapByteColor(true, 39), kPaleBlue);
}

TEST(MapDecodingTest, FormatTimingRanges)
{
    EXPECT_EQ(FormatTiming(0), "0");
    EXPECT_EQ(FormatTiming(40), "40");
    EXPECT_EQ(FormatTiming(128), "128");
    EXPECT_EQ(FormatTiming(129), "1");
    EXPECT_EQ(FormatTiming(160), "32");
    EXPECT_EQ(FormatTiming(161), "-95");
    EXPECT_EQ(FormatTiming(255), "-1");
}

TEST(MapDecodingTest, TimingBandBorders)
{
    EXPECT_EQ(TimingBandColor(0), kBlue);
    EXPECT_EQ(TimingBandColor(-95), kBlue);
    EXPECT_EQ(TimingBandColor(1), kPaleBlue);
    EXPECT_EQ(TimingBandColor(10), kPaleBlue);
    EXPECT_EQ(TimingBandColor(11), kGreen);
    EXPECT_EQ(TimingBandColor(30), kGreen);
    EXPECT_EQ(TimingBandColor(31), kPaleGreen);
    EXPECT_EQ(TimingBandColor(35), kPaleGreen);
    EXPECT_EQ(TimingBandColor(36), kYellow);
    EXPECT_EQ(TimingBandColor(40), kYellow);
    EXPECT_EQ(TimingBandColor(41), kRed);
    EXPECT_EQ(mapByteColor(false, 40), kYellow);
    EXPECT_EQ(mapByteColor(false, 41), kRed);
    EXPECT_EQ(mapByteColor(false, 128), kRed);
    EXPECT_EQ(mapByteColor(false, 161), kBlue);
}

TEST(MapDecodingTest, SixMapsInTabOrder)
{
    const char* captions[] = {"Fuel (High Octane)",   "Fuel (High Oct/High Gear)", "Fuel (Low Octane)",
                              "Fuel (Low Oct/High Gear)", "Timing (High Octane)",   "Timing (Low Octane)"};
    const int offsets[] = {0x7D00, 0x7100, 0x7200, 0x7000, 0x7800, 0x7C00};
    const int firstCells[] = {32016, 28944, 29200, 28688, 30736, 31760};
    for (int t = 0; t < kMapCount; ++t) {
        EXPECT_STREQ(kMaps[std::size_t(t)].tabCaption, captions[t]);
        EXPECT_EQ(kMaps[std::size_t(t)].fileOffset(), offsets[t]);
        EXPECT_EQ(kMaps[std::size_t(t)].firstCellPosition(), firstCells[t]);
        EXPECT_EQ(kMaps[std::size_t(t)].cellPosition(1, 16), firstCells[t]);
    }
    EXPECT_EQ(kRpmScaleFirstPosition, 31489);
    EXPECT_EQ(tpScaleFirstPosition(true), 31473);
    EXPECT_EQ(tpScaleFirstPosition(false), 31505);
}
