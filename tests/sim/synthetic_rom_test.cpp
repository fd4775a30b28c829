// The synthetic ROM image: maps, scales and constants where the workstation looks for them.
#include "sim/ecu_simulator.h"
#include "sim/rom_layout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

using namespace vexorin::sim;

namespace {

using Image = std::array<std::uint8_t, EcuSimulator::kRomSize>;

std::uint8_t at(const Image& img, std::uint16_t address)
{
    return img[rom::offset(address)];
}

std::uint8_t cell(const Image& img, std::uint16_t map, int row, int col)
{
    return at(img, std::uint16_t(map + row * 16 + col));
}

// The map viewer's conversions.
double afr(std::uint8_t v)
{
    return v < 160 ? 14.7 * 128 / (v + 128) : 14.7 * 128 / ((v - 192) + 128);
}

int degrees(std::uint8_t v)
{
    if (v > 128 && v <= 160)
        return v - 128;
    if (v > 160)
        return v - 256;
    return v;
}

const std::uint16_t kFuelMaps[] = {rom::kFuelHighOct, rom::kFuelHighOctHighGear, rom::kFuelLowOct, rom::kFuelLowOctHighGear};
const std::uint16_t kTimingMaps[] = {rom::kTimingHighOct, rom::kTimingLowOct};

TEST(SyntheticRom, AddressesAreTheKnownOnes)
{
    EXPECT_EQ(rom::offset(rom::kFuelHighOct), 0x7D00u);
    EXPECT_EQ(rom::offset(rom::kFuelHighOctHighGear), 0x7100u);
    EXPECT_EQ(rom::offset(rom::kFuelLowOct), 0x7200u);
    EXPECT_EQ(rom::offset(rom::kFuelLowOctHighGear), 0x7000u);
    EXPECT_EQ(rom::offset(rom::kTimingHighOct), 0x7800u);
    EXPECT_EQ(rom::offset(rom::kTimingLowOct), 0x7C00u);
    EXPECT_EQ(rom::offset(rom::kRpmScale), 0x7B00u);
    EXPECT_EQ(rom::offset(rom::kTpScaleFuel), 0x7AF0u);
    EXPECT_EQ(rom::offset(rom::kTpScaleTiming), 0x7B10u);
    EXPECT_EQ(rom::offset(rom::kKValue), 0x7F2Bu);
}

TEST(SyntheticRom, DeterministicPerSeed)
{
    EXPECT_EQ(makeSyntheticRom(3), makeSyntheticRom(3));
    EXPECT_NE(makeSyntheticRom(3), makeSyntheticRom(4));
    EXPECT_EQ(EcuSimulator(3).rom(), makeSyntheticRom(3));
}

TEST(SyntheticRom, MapsAndConstantsDoNotDependOnTheSeed)
{
    const Image a = makeSyntheticRom(1), b = makeSyntheticRom(99);
    for (std::uint16_t map : {rom::kFuelHighOct, rom::kFuelHighOctHighGear, rom::kFuelLowOct, rom::kFuelLowOctHighGear,
                              rom::kTimingHighOct, rom::kTimingLowOct})
        for (int i = 0; i < 256; ++i)
            ASSERT_EQ(at(a, std::uint16_t(map + i)), at(b, std::uint16_t(map + i)));
    EXPECT_EQ(at(a, rom::kKValue), at(b, rom::kKValue));
}

TEST(SyntheticRom, KValue)
{
    const Image img = makeSyntheticRom(5);
    EXPECT_EQ(at(img, 0xFF2B), 0x12);
    EXPECT_EQ(at(img, 0xFF2C), 0x34);
    EXPECT_EQ(EcuSimulator(5).kValueWord(), 0x1234);
}

TEST(SyntheticRom, ScalesRise)
{
    const Image img = makeSyntheticRom();
    for (std::uint16_t scale : {rom::kRpmScale, rom::kTpScaleFuel, rom::kTpScaleTiming})
        for (int i = 1; i < 16; ++i)
            EXPECT_GT(at(img, std::uint16_t(scale + i)), at(img, std::uint16_t(scale + i - 1))) << scale << " " << i;
    EXPECT_GE(at(img, rom::kRpmScale) * 50, 400);
    EXPECT_LE(at(img, rom::kRpmScale + 15) * 50, 7000);
    EXPECT_GE(at(img, rom::kRpmScale + 15) * 50, 6000);
}

TEST(SyntheticRom, FuelGetsRicherWithLoadAndRpm)
{
    const Image img = makeSyntheticRom();
    for (std::uint16_t map : kFuelMaps) {
        for (int r = 0; r < 16; ++r) {
            for (int c = 0; c < 16; ++c) {
                const std::uint8_t v = cell(img, map, r, c);
                ASSERT_LT(v, 160) << map;   // the rich ramp only
                if (c > 0) {
                    ASSERT_GE(v, cell(img, map, r, c - 1)) << map << " " << r << " " << c;
                }
                if (r > 0) {
                    ASSERT_GE(v, cell(img, map, r - 1, c)) << map << " " << r << " " << c;
                }
            }
        }
        EXPECT_NEAR(afr(cell(img, map, 0, 0)), 14.7, 0.2);
        EXPECT_LT(afr(cell(img, map, 15, 15)), 12.5);
        EXPECT_GT(afr(cell(img, map, 15, 15)), 10.5);
    }
}

TEST(SyntheticRom, FuelMapsDifferFromEachOther)
{
    const Image img = makeSyntheticRom();
    std::set<std::vector<std::uint8_t>> maps;
    for (std::uint16_t map : kFuelMaps)
        maps.insert(std::vector<std::uint8_t>(img.begin() + long(rom::offset(map)), img.begin() + long(rom::offset(map) + 256)));
    EXPECT_EQ(maps.size(), 4u);
}

TEST(SyntheticRom, TimingFallsWithLoadAndRisesWithRpm)
{
    const Image img = makeSyntheticRom();
    for (std::uint16_t map : kTimingMaps) {
        for (int r = 0; r < 16; ++r) {
            for (int c = 0; c < 16; ++c) {
                const int d = degrees(cell(img, map, r, c));
                ASSERT_GE(d, 0);
                ASSERT_LE(d, 40);
                if (c > 0) {
                    ASSERT_LE(d, degrees(cell(img, map, r, c - 1))) << map << " " << r << " " << c;
                }
                if (r > 0) {
                    ASSERT_GE(d, degrees(cell(img, map, r - 1, c))) << map << " " << r << " " << c;
                }
            }
        }
        EXPECT_GT(degrees(cell(img, map, 15, 0)), degrees(cell(img, map, 0, 15)) + 20);
    }
}

TEST(SyntheticRom, HighOctaneTimingIsAFewDegreesAhead)
{
    const Image img = makeSyntheticRom();
    for (int i = 0; i < 256; ++i) {
        const int high = degrees(at(img, std::uint16_t(rom::kTimingHighOct + i)));
        const int low = degrees(at(img, std::uint16_t(rom::kTimingLowOct + i)));
        ASSERT_GE(high - low, 2) << i;
        ASSERT_LE(high - low, 5) << i;
    }
}

TEST(SyntheticRom, CalibrationConstants)
{
    const Image img = makeSyntheticRom();
    EXPECT_EQ(at(img, rom::kRevLimiter) * 50, 6500);
    EXPECT_EQ(at(img, rom::kTopSpeedLimiter) * 2, 180);
    EXPECT_EQ(at(img, rom::kInjectorLatency), 90);
    // The air flow meter table as big-endian words.
    EXPECT_EQ(at(img, rom::kVqTable) * 256 + at(img, rom::kVqTable + 1), 48);
    EXPECT_EQ(at(img, 0xFAEE) * 256 + at(img, 0xFAEF), 65535);
    EXPECT_EQ(at(img, 0xFFFE), 0x80);   // reset vector into the program
}

TEST(SyntheticRom, FillerIsNotBlank)
{
    const Image img = makeSyntheticRom(7);
    std::set<int> values;
    int zeros = 0;
    for (std::size_t i = 0; i < rom::offset(rom::kCalibrationStart); ++i) {
        values.insert(img[i]);
        zeros += img[i] == 0;
    }
    EXPECT_GT(values.size(), 100u);
    EXPECT_LT(zeros, int(rom::offset(rom::kCalibrationStart)) / 10);
    std::set<int> bankValues;
    for (int i = 0; i < 256; ++i)
        bankValues.insert(at(img, std::uint16_t(0xF300 + i)));
    EXPECT_GT(bankValues.size(), 20u);
}

}  // namespace
