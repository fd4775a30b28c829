// Where on a map the engine runs now: the row from the engine speed against
// the RPM scale, the column from the load (TP) against a TP scale. The load
// is worked out from the ROM on view: the air quantity at the air flow
// meter's voltage from the ROM's own VQ curve, times the K value, per
// revolution and scaled: TP = Q x K / (RPM x S). The ECU's own scaling is not
// published; S is a setting. Plain C++, unit-tested and fuzzed.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vexorin::rom {

constexpr int kVqRegionOffset = 0x7A70;  // 64 big-endian words
constexpr int kVqWords = 64;
constexpr int kKValueOffset = 0x7F2B;    // two bytes, high first
constexpr double kDefaultTraceScale = 1024;

// The engine speed as the RPM label shows it: (Hi x 256 + Lo) x 12.5 to a
// whole number, halves to even; nothing when Hi is above 3.
std::optional<int> traceRpm(int hi, int lo);
// The air flow meter's voltage in hundredths as the MAF label shows it:
// (Hi x 256 + Lo) x 5 / 1000 to two decimals, halves up; nothing when Hi is above 3.
std::optional<int> traceMafHundredths(int hi, int lo);

// What the trace takes from a ROM image (a file shorter than a table gives
// zeros for the bytes it lacks).
struct TraceTables {
    std::array<int, 16> rpmHeadings{};       // byte x 50
    std::array<int, 16> tpFuelHeadings{};    // the byte
    std::array<int, 16> tpTimingHeadings{};
    std::array<std::int32_t, kVqWords> vq{};  // the ROM's VQ curve
    int kValue = 0;
};
TraceTables traceTables(const std::vector<std::uint8_t>& rom);

// The air quantity at a voltage (in hundredths) on a 64-point curve whose
// point i belongs to (i + 1) x 0.08 V, linear between points, flat beyond both ends.
double vqQuantity(const std::array<std::int32_t, kVqWords>& curve, int hundredths);

// The nearest heading's index (0-based); of equally near headings the first.
int nearestHeading(const std::array<int, 16>& headings, double value);

// The heading just beyond the nearest on the value's side, and how near the
// value lies to it (0: at the nearest heading, up to 0.5: halfway); none
// when the value lies at or outside the end of the scale.
struct Neighbour {
    int index = -1;
    double nearness = 0;
};
Neighbour neighbourHeading(const std::array<int, 16>& headings, int nearest, double value);

struct TracePoint {
    int rpm = 0;
    double tp = 0;
    int row = 1;           // 1..16
    int fuelColumn = 1;    // 1..16 on the fuel maps' TP scale
    int timingColumn = 1;  // 1..16 on the timing maps' TP scale
    bool fixedCurve = false;
    Neighbour rowNeighbour, fuelNeighbour, timingNeighbour;  // indexes 1..16 when present
    int column(bool fuel) const { return fuel ? fuelColumn : timingColumn; }
    const Neighbour& columnNeighbour(bool fuel) const { return fuel ? fuelNeighbour : timingNeighbour; }
};

// One frame's point. With an engine speed of 0, a K value of 0 or a VQ
// region of zeros the fixed curve gives Q; with an engine speed of 0 the
// load is 0 (nothing is drawn per revolution).
TracePoint tracePoint(const TraceTables& tables, int rpm, int mafHundredths, double scale);

// "Trace: RPM 2450 row 7, TP 31.4 column 5", with " (fixed VQ curve)" behind it when that curve served.
std::string traceStatus(const TracePoint& point, bool fuel);

}  // namespace vexorin::rom
