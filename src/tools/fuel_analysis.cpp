#include "tools/fuel_analysis.h"

#include "rom/map_figures.h"
#include "rom/rules/map_decoding.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace vexorin::tools {

using vexorin::rom::FigureKind;

namespace {
// Spreads and limits come from decimal figures: a spread this close to its
// limit counts as lying on it.
constexpr double kNoise = 1e-9;
constexpr double kLargestInput = 1e6;

int wholeOf(double value)
{
    return int(std::llround(std::clamp(value, -kLargestInput, kLargestInput)));
}

template <class Rows>
auto firstAfter(const Rows& rows, std::int64_t time)
{
    return std::upper_bound(rows.begin(), rows.end(), time,
                            [](std::int64_t t, const auto& row) { return t < row.timeMs; });
}
}  // namespace

bool FuelSettings::operator==(const FuelSettings& o) const
{
    return lagMs == o.lagMs && minSamples == o.minSamples && maxChangePercent == o.maxChangePercent &&
           minWaterF == o.minWaterF && steadyRpm == o.steadyRpm && steadyTps == o.steadyTps &&
           useAlpha == o.useAlpha;
}

FuelMap fuelMapOf(const std::vector<std::uint8_t>& image, int mapOffset, double traceScale)
{
    FuelMap map;
    map.tables = vexorin::rom::traceTables(image);
    map.traceScale = traceScale;
    for (int i = 0; i < kMapCells; ++i) {
        const std::size_t at = std::size_t(mapOffset + i);
        map.bytes[std::size_t(i)] = mapOffset >= 0 && at < image.size() ? image[at] : 0;
    }
    return map;
}

SampleVerdict sampleFor(const FuelRun& run, const AfrRow& reading, const FuelSettings& settings, const FuelMap& map,
                        FuelSample* sample)
{
    const std::int64_t frameTime = reading.timeMs - settings.lagMs;
    const auto after = firstAfter(run.ecu, frameTime);
    if (after == run.ecu.begin())
        return SampleVerdict::NoFrame;
    const EcuRow& f = *(after - 1);
    if (f.timeMs < frameTime - kFrameGapMs)
        return SampleVerdict::FrameTooOld;
    if (f.water < settings.minWaterF - kNoise)
        return SampleVerdict::Cold;
    if (wholeOf(f.rpm) == 0)
        return SampleVerdict::EngineStopped;
    double rpmLow = f.rpm, rpmHigh = f.rpm, tpsLow = f.tps, tpsHigh = f.tps;
    for (auto it = firstAfter(run.ecu, frameTime - kSteadySpanMs - 1); it != after; ++it) {
        rpmLow = std::min(rpmLow, it->rpm);
        rpmHigh = std::max(rpmHigh, it->rpm);
        tpsLow = std::min(tpsLow, it->tps);
        tpsHigh = std::max(tpsHigh, it->tps);
    }
    if (rpmHigh - rpmLow > settings.steadyRpm + kNoise)
        return SampleVerdict::RpmUnsteady;
    if (tpsHigh - tpsLow > settings.steadyTps + kNoise)
        return SampleVerdict::TpsUnsteady;
    if (!(reading.afr > 0) || reading.afr > kLargestInput)
        return SampleVerdict::NoRatio;
    if (sample) {
        const vexorin::rom::TracePoint point =
            vexorin::rom::tracePoint(map.tables, wholeOf(f.rpm), wholeOf(f.maf * 100), map.traceScale);
        sample->cell = (point.row - 1) * kMapSide + (point.fuelColumn - 1);
        const bool alpha = settings.useAlpha && f.alpha > 0 && f.alpha < kLargestInput;
        sample->ratio = alpha ? reading.afr * f.alpha / 100 : reading.afr;
    }
    return SampleVerdict::Taken;
}

void CellTally::add(const FuelSample& s)
{
    if (s.cell < 0 || s.cell >= kMapCells)
        return;
    ++count[std::size_t(s.cell)];
    sum[std::size_t(s.cell)] += s.ratio;
}

std::int64_t CellTally::samples() const
{
    std::int64_t n = 0;
    for (const int c : count)
        n += c;
    return n;
}

int CellTally::cellsWithSamples() const
{
    return int(std::count_if(count.begin(), count.end(), [](int c) { return c > 0; }));
}

void tallyRun(const FuelRun& run, const FuelSettings& settings, const FuelMap& map, CellTally& tally)
{
    FuelSample sample;
    for (const AfrRow& reading : run.afr)
        if (sampleFor(run, reading, settings, map, &sample) == SampleVerdict::Taken)
            tally.add(sample);
}

bool CellAdvice::richer() const
{
    return changes() && vexorin::rom::afrHundredths(byteNew) < vexorin::rom::afrHundredths(byteOld);
}

CellAdvice adviseCell(int samples, double sum, int byte, double target, const FuelSettings& settings)
{
    CellAdvice a;
    a.samples = samples;
    a.enough = samples > 0 && samples >= settings.minSamples;
    a.target = target;
    a.byteOld = byte;
    a.byteNew = byte;
    a.map = vexorin::rom::figureOfByte(FigureKind::Fuel, byte);
    if (samples > 0)
        a.measured = sum / samples;
    if (!a.enough || !(a.measured > 0))
        return a;
    const double m = settings.maxChangePercent / 100;
    a.suggested = std::clamp(a.map * target / a.measured, a.map * (1 - m), a.map * (1 + m));
    const int nearest = vexorin::rom::byteForFigure(FigureKind::Fuel, a.suggested);
    // A byte off the stepping line (0, 193..255) keeps its place where the nearest one shows the same figure.
    if (vexorin::rom::afrHundredths(nearest) != vexorin::rom::afrHundredths(byte))
        a.byteNew = nearest;
    return a;
}

FuelAdvice advise(const CellTally& tally, const FuelMap& map, const std::array<double, kMapCells>& targets,
                  const FuelSettings& settings)
{
    FuelAdvice advice;
    for (std::size_t i = 0; i < std::size_t(kMapCells); ++i) {
        CellAdvice& c = advice.cells[i];
        c = adviseCell(tally.count[i], tally.sum[i], map.bytes[i], targets[i], settings);
        advice.samples += c.samples;
        advice.cellsWithSamples += c.samples > 0 ? 1 : 0;
        advice.cellsToChange += c.changes() ? 1 : 0;
    }
    return advice;
}

std::string twoDecimals(double value)
{
    if (!std::isfinite(value))
        return std::string();
    char text[64];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 2);
    if (error != std::errc())
        return std::string();
    std::string out(text, end);
    return out == "-0.00" ? std::string("0.00") : out;
}

std::string cellTip(const CellAdvice& a)
{
    if (a.samples <= 0)
        return std::string();
    std::string tip = "Samples " + std::to_string(a.samples);
    if (a.enough)
        tip += ", measured " + twoDecimals(a.measured) + ", target " + twoDecimals(a.target) + ", map " +
               twoDecimals(a.map) + ", suggested " + twoDecimals(a.suggested);
    return tip;
}

std::string adviceStatus(const FuelAdvice& advice)
{
    return std::to_string(advice.samples) + " samples in " + std::to_string(advice.cellsWithSamples) + " cells; " +
           std::to_string(advice.cellsToChange) + " cells to change";
}

}  // namespace vexorin::tools
