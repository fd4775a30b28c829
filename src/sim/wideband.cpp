#include "sim/wideband.h"

#include "rom/rules/map_decoding.h"

#include <algorithm>

namespace vexorin::sim {

namespace {
constexpr double kMaxVolts = 5.0;
}  // namespace

std::optional<std::size_t> fuelCellOffset(const rom::TraceTables& tables, const TraceBytes& bytes)
{
    const std::optional<int> rpm = rom::traceRpm(bytes.rpmHi, bytes.rpmLo);
    const std::optional<int> maf = rom::traceMafHundredths(bytes.mafHi, bytes.mafLo);
    if (!rpm || !maf)
        return std::nullopt;
    const rom::TracePoint point = rom::tracePoint(tables, *rpm, *maf, rom::kDefaultTraceScale);
    return kWidebandFuelMapOffset + std::size_t((point.row - 1) * 16 + (point.fuelColumn - 1));
}

double fuelCellRatio(int cellByte)
{
    const int hundredths = rom::afrHundredths(cellByte);
    return hundredths < 0 ? kStoichAfr : hundredths / 100.0;
}

double mixtureRatio(int cellByte, int alpha, double fuelErrorPercent)
{
    const double a = alpha == 0 ? 100.0 : double(alpha);
    return fuelCellRatio(cellByte) * (1.0 + fuelErrorPercent / 100.0) * 100.0 / a;
}

double widebandVolts(double ratio)
{
    const double v = (ratio - kWidebandLowAfr) / (kWidebandHighAfr - kWidebandLowAfr) * kMaxVolts;
    return std::clamp(v, 0.0, kMaxVolts);
}

}  // namespace vexorin::sim
