#include "rom/rules/live_trace.h"

#include "rom/rules/map_decoding.h"
#include "rom/rules/vq_table.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace vexorin::rom {

namespace {
constexpr double kHundredthsPerPoint = 8;  // exact, where 0.08 V is not

int byteAt(const std::vector<std::uint8_t>& rom, int offset)
{
    return offset >= 0 && std::size_t(offset) < rom.size() ? rom[std::size_t(offset)] : 0;
}

bool allZero(const std::array<std::int32_t, kVqWords>& curve)
{
    return std::all_of(curve.begin(), curve.end(), [](std::int32_t q) { return q == 0; });
}

}  // namespace

std::optional<int> traceRpm(int hi, int lo)
{
    if (hi < 0 || hi > 3 || lo < 0 || lo > 255)
        return std::nullopt;
    const int twice = (hi * 256 + lo) * 25;  // twice the engine speed
    int whole = twice / 2;
    if (twice % 2 != 0 && whole % 2 != 0)
        ++whole;  // a half goes to the even neighbour
    return whole;
}

std::optional<int> traceMafHundredths(int hi, int lo)
{
    if (hi < 0 || hi > 3 || lo < 0 || lo > 255)
        return std::nullopt;
    const int millivolts = (hi * 256 + lo) * 5;
    return (millivolts + 5) / 10;  // halves up
}

TraceTables traceTables(const std::vector<std::uint8_t>& rom)
{
    TraceTables t;
    for (int i = 0; i < kScaleLength; ++i) {
        t.rpmHeadings[std::size_t(i)] = byteAt(rom, kRpmScaleOffset + i) * kRpmPerStep;
        t.tpFuelHeadings[std::size_t(i)] = byteAt(rom, kTpScaleFuelOffset + i);
        t.tpTimingHeadings[std::size_t(i)] = byteAt(rom, kTpScaleTimingOffset + i);
    }
    for (int i = 0; i < kVqWords; ++i)
        t.vq[std::size_t(i)] = byteAt(rom, kVqRegionOffset + 2 * i) * 256 + byteAt(rom, kVqRegionOffset + 2 * i + 1);
    t.kValue = byteAt(rom, kKValueOffset) * 256 + byteAt(rom, kKValueOffset + 1);
    return t;
}

double vqQuantity(const std::array<std::int32_t, kVqWords>& curve, int hundredths)
{
    const double position = hundredths / kHundredthsPerPoint - 1;  // point i lies at (i + 1) x 0.08 V
    if (!(position > 0))
        return curve.front();
    if (position >= kVqWords - 1)
        return curve.back();
    const int i = int(std::floor(position));
    const double f = position - i;
    return curve[std::size_t(i)] + f * (curve[std::size_t(i + 1)] - curve[std::size_t(i)]);
}

int nearestHeading(const std::array<int, 16>& headings, double value)
{
    int best = 0;
    for (int i = 1; i < int(headings.size()); ++i)
        if (std::fabs(headings[std::size_t(i)] - value) < std::fabs(headings[std::size_t(best)] - value))
            best = i;
    return best;
}

Neighbour neighbourHeading(const std::array<int, 16>& headings, int nearest, double value)
{
    const double at = headings[std::size_t(nearest)];
    if (value == at)
        return {};
    // The neighbour on the value's side along a rising or a falling scale.
    for (int other : {nearest - 1, nearest + 1}) {
        if (other < 0 || other >= int(headings.size()))
            continue;
        const double there = headings[std::size_t(other)];
        if (there == at || (value - at) * (there - at) <= 0)
            continue;
        const double span = std::fabs(there - at);
        if (std::fabs(value - at) >= span)
            continue;
        return {other, std::fabs(value - at) / span};
    }
    return {};
}

TracePoint tracePoint(const TraceTables& tables, int rpm, int mafHundredths, double scale)
{
    TracePoint p;
    p.rpm = rpm;
    p.fixedCurve = rpm == 0 || tables.kValue == 0 || allZero(tables.vq);
    const double q = vqQuantity(p.fixedCurve ? kVqCurve : tables.vq, mafHundredths);
    p.tp = rpm == 0 || scale == 0 ? 0 : q * tables.kValue / (double(rpm) * scale);

    const int row = nearestHeading(tables.rpmHeadings, rpm);
    const int fuel = nearestHeading(tables.tpFuelHeadings, p.tp);
    const int timing = nearestHeading(tables.tpTimingHeadings, p.tp);
    p.row = row + 1;
    p.fuelColumn = fuel + 1;
    p.timingColumn = timing + 1;
    auto oneBased = [](Neighbour n) {
        if (n.index >= 0)
            ++n.index;
        return n;
    };
    p.rowNeighbour = oneBased(neighbourHeading(tables.rpmHeadings, row, rpm));
    p.fuelNeighbour = oneBased(neighbourHeading(tables.tpFuelHeadings, fuel, p.tp));
    p.timingNeighbour = oneBased(neighbourHeading(tables.tpTimingHeadings, timing, p.tp));
    return p;
}

std::string traceStatus(const TracePoint& point, bool fuel)
{
    // One decimal with a point, whatever the system's regional settings.
    const long long tenths = std::isfinite(point.tp) ? std::llround(point.tp * 10) : 0;
    const char* sign = tenths < 0 ? "-" : "";
    char text[160];
    std::snprintf(text, sizeof text, "Trace: RPM %d row %d, TP %s%lld.%lld column %d%s", point.rpm, point.row, sign,
                  std::llabs(tenths) / 10, std::llabs(tenths) % 10, point.column(fuel),
                  point.fixedCurve ? " (fixed VQ curve)" : "");
    return text;
}

}  // namespace vexorin::rom
