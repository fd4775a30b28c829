// The ROM image the simulated ECU starts with.
//
// Calibration (0xF000..0xFFFF): the six maps, their scales and the small
// tables at their usual addresses. The maps and scales have the same shape for
// every seed; the seed only changes the filler. Below 0xF000 stands a
// program-like filler of 6303-style instructions, so that a download looks
// like a real image rather than a block of zeros.
#include "sim/ecu_simulator.h"
#include "sim/rom_layout.h"
#include "sim/sim_random.h"

#include <algorithm>
#include <cmath>

namespace vexorin::sim {

namespace {

using Image = std::array<std::uint8_t, EcuSimulator::kRomSize>;

void put(Image& img, std::uint16_t address, std::uint8_t value)
{
    img[rom::offset(address)] = value;
}

std::uint8_t clampByte(double v)
{
    return std::uint8_t(std::clamp<long>(std::lround(v), 0, 255));
}

// Rpm scale: 600 .. 6400 rpm, byte x 50.
constexpr std::uint8_t kRpmScale[16] = {12, 16, 20, 24, 32, 40, 48, 56, 64, 72, 80, 88, 96, 104, 112, 128};
// Load (TP) scales.
constexpr std::uint8_t kTpFuel[16] = {10, 16, 22, 28, 34, 40, 46, 52, 58, 64, 72, 80, 90, 100, 112, 128};
constexpr std::uint8_t kTpTiming[16] = {8, 14, 20, 26, 32, 38, 44, 50, 56, 62, 70, 78, 88, 98, 110, 124};

// Fuel byte below 160: the bigger, the richer (0 is stoichiometric, 36 about 11.5:1).
double fuelCell(int r, int c)
{
    const double load = c / 15.0;
    const double speed = r / 15.0;
    return 30.0 * std::pow(load, 1.6) + 6.0 * speed;
}

// Timing in degrees BTDC: advance grows with rpm and falls with load.
double timingCell(int r, int c)
{
    const double load = c / 15.0;
    const double speed = r / 15.0;
    return 14.0 + 24.0 * std::pow(speed, 0.7) - 10.0 * std::pow(load, 1.3);
}

void writeMaps(Image& img)
{
    for (int i = 0; i < 16; ++i) {
        put(img, std::uint16_t(rom::kRpmScale + i), kRpmScale[i]);
        put(img, std::uint16_t(rom::kTpScaleFuel + i), kTpFuel[i]);
        put(img, std::uint16_t(rom::kTpScaleTiming + i), kTpTiming[i]);
    }
    for (int r = 0; r < 16; ++r) {
        for (int c = 0; c < 16; ++c) {
            const std::uint16_t cell = std::uint16_t(r * 16 + c);
            const double load = c / 15.0;
            const double fuel = fuelCell(r, c);
            // Low octane runs a little richer at load; the high-gear maps a little leaner there.
            put(img, std::uint16_t(rom::kFuelHighOct + cell), clampByte(fuel));
            put(img, std::uint16_t(rom::kFuelLowOct + cell), clampByte(fuel + 3.0 * load * load));
            put(img, std::uint16_t(rom::kFuelHighOctHighGear + cell), clampByte(std::max(0.0, fuel - 2.0 * load * load)));
            put(img, std::uint16_t(rom::kFuelLowOctHighGear + cell), clampByte(fuel + 1.0 * load * load));

            const double high = std::round(timingCell(r, c));
            const double low = high - 2.0 - std::round(2.0 * load);
            put(img, std::uint16_t(rom::kTimingHighOct + cell), clampByte(high));
            put(img, std::uint16_t(rom::kTimingLowOct + cell), clampByte(low));
        }
    }
}

// The air flow meter table: voltage in 0.08 V steps to air quantity, 64 words.
constexpr std::uint16_t kVq[64] = {
    48, 48, 48, 48, 48, 48, 73, 104, 143, 190, 247, 319, 405, 509, 638, 784,
    947, 1129, 1399, 1555, 1804, 2085, 2397, 2739, 3111, 3514, 3968, 4478, 5027, 5624, 6273, 6969,
    7710, 8505, 9351, 10242, 11189, 12190, 13249, 14372, 15556, 16822, 18141, 19510, 20953, 22462, 24050, 25716,
    27472, 29324, 31267, 33305, 35432, 37648, 39977, 42404, 44923, 47544, 50268, 53100, 56040, 59061, 62255, 65535};

void writeCalibration(Image& img)
{
    put(img, rom::kKValue, 0x12);
    put(img, std::uint16_t(rom::kKValue + 1), 0x34);
    put(img, rom::kFeedbackControl, 50);      // 0.50 ms
    put(img, rom::kRevLimiter, 130);          // 6500 rpm
    put(img, rom::kTopSpeedLimiter, 90);      // 180 km/h
    put(img, rom::kInjectorLatency, 90);      // 0.90 ms
    put(img, rom::kVtcRelease, 110);          // 5500 rpm
    for (int i = 0; i < 9; ++i)
        put(img, std::uint16_t(rom::kKnockSensorMap + i), std::uint8_t(0x30 + 6 * i));
    for (int i = 0; i < 16; ++i) {
        put(img, std::uint16_t(rom::kTtpMin + i), std::uint8_t(6 + 5 * i));
        put(img, std::uint16_t(rom::kTtpMax + i), std::uint8_t(20 + 9 * i));
        put(img, std::uint16_t(rom::kThrottleEnrichment + i), std::uint8_t(64 - 3 * i));
        put(img, std::uint16_t(rom::kAirFlowLimiter + i), std::uint8_t(std::min(255, 40 + 14 * i)));
    }
    for (int i = 0; i < 13; ++i)
        put(img, std::uint16_t(rom::kKnockLimit + i), std::uint8_t(0x18 + 4 * i));
    for (int i = 0; i < 32; ++i) {
        put(img, std::uint16_t(rom::kIgnitionDwellDuty + i), std::uint8_t(40 + i * 5 / 2));
        // Coolant sensor input to temperature: falling as the sensor voltage rises.
        put(img, std::uint16_t(rom::kTempConversion + i), std::uint8_t(200 - i * 6));
    }
    for (int i = 0; i < 64; ++i) {
        put(img, std::uint16_t(rom::kVqTable + 2 * i), std::uint8_t(kVq[i] >> 8));
        put(img, std::uint16_t(rom::kVqTable + 2 * i + 1), std::uint8_t(kVq[i] & 0xFF));
    }
}

// Calibration banks outside the named regions: short rising or falling
// tables of small values, as constants and curves look.
void fillCalibration(Image& img, SimRandom& rng)
{
    for (std::size_t row = rom::offset(rom::kCalibrationStart); row < img.size(); row += 16) {
        const int start = int(rng.below(160)) + 8;
        const int stepSize = int(rng.below(9)) - 4;
        for (int i = 0; i < 16; ++i)
            img[row + std::size_t(i)] = std::uint8_t(std::clamp(start + stepSize * i + int(rng.below(3)), 0, 254));
    }
}

// Program area: a stream of plausible 6303 instructions with their operands.
void fillProgram(Image& img, SimRandom& rng)
{
    struct Op { std::uint8_t code; int operands; int kind; };   // kind: 0 data, 1 RAM address, 2 code address, 3 branch
    static constexpr Op kOps[] = {
        {0x86, 1, 0}, {0xC6, 1, 0}, {0x96, 1, 1}, {0xD6, 1, 1}, {0x97, 1, 1}, {0xD7, 1, 1},
        {0xB6, 2, 1}, {0xF6, 2, 1}, {0xB7, 2, 1}, {0xFC, 2, 1}, {0xFD, 2, 1}, {0xCE, 2, 1},
        {0xBD, 2, 2}, {0x7E, 2, 2}, {0x20, 1, 3}, {0x26, 1, 3}, {0x27, 1, 3}, {0x24, 1, 3},
        {0x25, 1, 3}, {0x81, 1, 0}, {0x8B, 1, 0}, {0x84, 1, 0}, {0x39, 0, 0}, {0x36, 0, 0},
        {0x32, 0, 0}, {0x08, 0, 0}, {0x09, 0, 0}, {0x4D, 0, 0}, {0x4F, 0, 0}, {0x5F, 0, 0},
        {0x05, 0, 0}, {0x3D, 0, 0}, {0x01, 0, 0}, {0xA6, 1, 0}, {0xE6, 1, 0}, {0x3A, 0, 0},
    };
    constexpr std::size_t kOpCount = sizeof(kOps) / sizeof(kOps[0]);
    const std::size_t end = rom::offset(rom::kCalibrationStart);
    std::size_t pos = 0;
    while (pos < end) {
        const Op& op = kOps[rng.below(kOpCount)];
        img[pos++] = op.code;
        std::uint8_t hi = 0, lo = 0;
        switch (op.kind) {
        case 0: hi = std::uint8_t(rng.below(256)); lo = std::uint8_t(rng.below(256)); break;
        case 1: hi = std::uint8_t(rng.below(2)); lo = std::uint8_t(0x40 + rng.below(0xC0)); break;
        case 2: hi = std::uint8_t(0x80 + rng.below(0x70)); lo = std::uint8_t(rng.below(256)); break;
        default: lo = std::uint8_t(rng.below(64)); if (rng.below(2) != 0) lo = std::uint8_t(-int(lo)); break;
        }
        if (op.operands == 1 && pos < end) {
            img[pos++] = op.kind == 1 ? lo : (op.kind == 3 ? lo : hi);
        } else if (op.operands == 2) {
            if (pos < end)
                img[pos++] = hi;
            if (pos < end)
                img[pos++] = lo;
        }
    }
}

void writeVectors(Image& img, SimRandom& rng)
{
    // Interrupt vectors, the reset vector last, all pointing into the program area.
    for (std::uint16_t a = rom::kVectors; a < 0xFFFE; a += 2) {
        put(img, a, std::uint8_t(0x80 + rng.below(0x70)));
        put(img, std::uint16_t(a + 1), std::uint8_t(rng.below(256)));
    }
    put(img, 0xFFFE, 0x80);
    put(img, 0xFFFF, 0x00);
}

}  // namespace

std::array<std::uint8_t, EcuSimulator::kRomSize> makeSyntheticRom(std::uint32_t seed)
{
    Image img{};
    SimRandom rng(seed ^ 0x5A17C0DEu);
    fillProgram(img, rng);
    fillCalibration(img, rng);
    writeMaps(img);
    writeCalibration(img);
    writeVectors(img, rng);
    return img;
}

}  // namespace vexorin::sim
