// The fuel correction's analysis: the sample rule at each of its boundaries,
// the A/F alpha on and off, the mean, the clamp at both ends, Min samples,
// the byte rule at ties, and the texts of the grid and the status.
#include "tools/fuel_analysis.h"

#include "rom/map_figures.h"
#include "rom/rules/map_decoding.h"
#include "sim/ecu_simulator.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace vexorin::tools;

namespace {
FuelMap synthMap()
{
    const auto rom = vexorin::sim::makeSyntheticRom();
    return fuelMapOf(std::vector<std::uint8_t>(rom.begin(), rom.end()), 0x7D00, 1024);
}

int traceCell(const FuelMap& map, int rpm, double maf)
{
    const auto p = vexorin::rom::tracePoint(map.tables, rpm, int(std::lround(maf * 100)), map.traceScale);
    return (p.row - 1) * kMapSide + (p.fuelColumn - 1);
}

// A steady engine: a frame every 100 ms from `from` to `to` (inclusive).
FuelRun steadyRun(std::int64_t from, std::int64_t to, double rpm = 2400, double maf = 2.0, double water = 185,
              double alpha = 100)
{
    FuelRun run;
    for (std::int64_t t = from; t <= to; t += 100)
        run.ecu.push_back({t, rpm, maf, 0.8, water, alpha});
    return run;
}

SampleVerdict verdict(const FuelRun& run, std::int64_t t, const FuelSettings& s = FuelSettings(), FuelSample* out = nullptr)
{
    FuelSample sample;
    return sampleFor(run, {t, 14.7}, s, synthMap(), out ? out : &sample);
}
}  // namespace

TEST(FuelAnalysis, TheFrameIsTheLastAtOrBeforeTimeLessLag)
{
    FuelRun run = steadyRun(0, 2000);
    run.ecu.push_back({2050, 2400, 2.0, 0.8, 185, 100});
    // At t = 2300 with lag 300 the frame is that of 2000: a reading at 2299 pairs with 1900.
    FuelSample sample;
    EXPECT_EQ(verdict(run, 2300, FuelSettings(), &sample), SampleVerdict::Taken);
    EXPECT_EQ(sample.cell, traceCell(synthMap(), 2400, 2.0));
    // No frame at or before t - lag.
    EXPECT_EQ(verdict(run, 299), SampleVerdict::NoFrame);
    EXPECT_EQ(verdict(run, 300), SampleVerdict::Taken);
    // The frame at 2050 is F for t = 2350 exactly, and only from then on.
    FuelRun cold = steadyRun(0, 2000);
    cold.ecu.push_back({2050, 2400, 2.0, 0.8, 100, 100});
    EXPECT_EQ(verdict(cold, 2349), SampleVerdict::Taken);
    EXPECT_EQ(verdict(cold, 2350), SampleVerdict::Cold);
}

TEST(FuelAnalysis, AFrameMoreThanASecondOldPairsWithNothing)
{
    const FuelRun run = steadyRun(0, 1000);
    // F = 1000: t - lag - 1000 = 1000 at t = 2300; one millisecond later F is too old.
    EXPECT_EQ(verdict(run, 2300), SampleVerdict::Taken);
    EXPECT_EQ(verdict(run, 2301), SampleVerdict::FrameTooOld);
}

TEST(FuelAnalysis, ColdOrStoppedEnginesGiveNoSample)
{
    FuelSettings s;
    EXPECT_EQ(verdict(steadyRun(0, 1000, 2400, 2.0, 160), 1300, s), SampleVerdict::Taken);
    EXPECT_EQ(verdict(steadyRun(0, 1000, 2400, 2.0, 159.9), 1300, s), SampleVerdict::Cold);
    s.minWaterF = 100;
    EXPECT_EQ(verdict(steadyRun(0, 1000, 2400, 2.0, 159.9), 1300, s), SampleVerdict::Taken);
    EXPECT_EQ(verdict(steadyRun(0, 1000, 0, 0.3), 1300), SampleVerdict::EngineStopped);
}

TEST(FuelAnalysis, SpeedAndThrottleMustBeSteadyOverHalfASecondBeforeTheFrame)
{
    // F at 1000; the span is [500, 1000]. A frame at 499 lies outside it.
    for (const auto& [at, rpm, verdictWanted] :
         std::vector<std::tuple<std::int64_t, double, SampleVerdict>>{{499, 2000, SampleVerdict::Taken},
                                                                       {500, 2250, SampleVerdict::Taken},
                                                                       {500, 2249, SampleVerdict::RpmUnsteady},
                                                                       {700, 2551, SampleVerdict::RpmUnsteady}}) {
        FuelRun run = steadyRun(1000, 1000);
        run.ecu.insert(run.ecu.begin(), {at, rpm, 2.0, 0.8, 185, 100});
        EXPECT_EQ(verdict(run, 1300), verdictWanted) << at << " " << rpm;
    }
    for (const auto& [tps, verdictWanted] : std::vector<std::pair<double, SampleVerdict>>{
             {0.70, SampleVerdict::Taken}, {0.90, SampleVerdict::Taken}, {0.68, SampleVerdict::TpsUnsteady},
             {0.92, SampleVerdict::TpsUnsteady}}) {
        FuelRun run = steadyRun(1000, 1000);
        run.ecu.insert(run.ecu.begin(), {600, 2400, 2.0, tps, 185, 100});
        EXPECT_EQ(verdict(run, 1300), verdictWanted) << tps;
    }
    FuelSettings loose;
    loose.steadyRpm = 1000;
    FuelRun run = steadyRun(1000, 1000);
    run.ecu.insert(run.ecu.begin(), {700, 3400, 2.0, 0.8, 185, 100});
    EXPECT_EQ(verdict(run, 1300, loose), SampleVerdict::Taken);
}

TEST(FuelAnalysis, AlphaScalesTheRatioWhenTicked)
{
    const FuelRun run = steadyRun(0, 1000, 2400, 2.0, 185, 96);
    FuelSample sample;
    FuelSettings s;
    ASSERT_EQ(sampleFor(run, {1300, 15.0}, s, synthMap(), &sample), SampleVerdict::Taken);
    EXPECT_DOUBLE_EQ(sample.ratio, 14.4);
    s.useAlpha = false;
    sampleFor(run, {1300, 15.0}, s, synthMap(), &sample);
    EXPECT_DOUBLE_EQ(sample.ratio, 15.0);
    // An alpha of 0 does not scale.
    s.useAlpha = true;
    sampleFor(steadyRun(0, 1000, 2400, 2.0, 185, 0), {1300, 15.0}, s, synthMap(), &sample);
    EXPECT_DOUBLE_EQ(sample.ratio, 15.0);
    // A ratio that is not above 0 is no sample.
    EXPECT_EQ(sampleFor(run, {1300, 0}, s, synthMap(), &sample), SampleVerdict::NoRatio);
}

TEST(FuelAnalysis, MeanTargetAndTheClampAtBothEnds)
{
    FuelSettings s;  // Max change 10 %
    // Byte 192 shows 14.70. Measured 15.00 against 14.70: 14.70 x 14.70 / 15.00 = 14.406.
    CellAdvice a = adviseCell(3, 45.0, 192, 14.70, FuelSettings{300, 3});
    EXPECT_TRUE(a.enough);
    EXPECT_DOUBLE_EQ(a.measured, 15.0);
    EXPECT_NEAR(a.suggested, 14.406, 1e-9);
    EXPECT_EQ(vexorin::rom::FormatAfr(a.byteNew), "14.36");  // of 14.36 (3) and 14.47 (2), 14.36 is nearer
    EXPECT_TRUE(a.changes());
    EXPECT_TRUE(a.richer());
    // Far too lean: held at -10 %; far too rich: held at +10 %.
    a = adviseCell(5, 5 * 20.0, 192, 14.70, s);
    EXPECT_DOUBLE_EQ(a.suggested, 14.70 * 0.9);
    a = adviseCell(5, 5 * 10.0, 192, 14.70, s);
    EXPECT_DOUBLE_EQ(a.suggested, 14.70 * 1.1);
    EXPECT_FALSE(a.richer());
    EXPECT_TRUE(a.changes());
    s.maxChangePercent = 50;
    a = adviseCell(5, 5 * 10.0, 192, 14.70, s);
    EXPECT_NEAR(a.suggested, 14.70 * 1.47, 1e-9);
}

TEST(FuelAnalysis, MinSamples)
{
    FuelSettings s;  // 5
    CellAdvice a = adviseCell(4, 4 * 16.0, 192, 14.70, s);
    EXPECT_FALSE(a.enough);
    EXPECT_FALSE(a.changes());
    EXPECT_EQ(cellTip(a), "Samples 4");
    a = adviseCell(5, 5 * 16.0, 192, 14.70, s);
    EXPECT_TRUE(a.enough);
    EXPECT_EQ(cellTip(a), "Samples 5, measured 16.00, target 14.70, map 14.70, suggested 13.51");
    EXPECT_EQ(cellTip(adviseCell(0, 0, 192, 14.70, s)), "");
}

TEST(FuelAnalysis, TheByteRuleAtTiesGoesToTheRicher)
{
    // 14.70 (192) and 14.59 (1) lie 0.11 apart: 14.645 is halfway and goes to 14.59.
    FuelSettings s;
    s.minSamples = 1;
    // X = 14.70, T = 14.645, Y = 14.70: X' = 14.645.
    CellAdvice a = adviseCell(1, 14.70, 192, 14.645, s);
    EXPECT_EQ(a.byteNew, 1);
    // At the engine's target nothing changes, and a byte off the stepping line keeps its place.
    a = adviseCell(8, 8 * 14.70, 0, 14.70, s);
    EXPECT_EQ(a.byteNew, 0);
    EXPECT_FALSE(a.changes());
    a = adviseCell(8, 8 * 14.59, 193, 14.59, s);
    EXPECT_EQ(a.byteNew, 193);
}

TEST(FuelAnalysis, TallyAdviceAndStatus)
{
    FuelMap map = synthMap();
    FuelRun run = steadyRun(0, 3000);
    for (std::int64_t t = 400; t <= 3000; t += 100)
        run.afr.push_back({t, 16.0});
    run.afr.push_back({200, 16.0});  // no frame yet
    CellTally tally;
    tallyRun(run, FuelSettings(), map, tally);
    const int cell = traceCell(map, 2400, 2.0);
    EXPECT_EQ(tally.count[std::size_t(cell)], 27);
    EXPECT_EQ(tally.samples(), 27);
    EXPECT_EQ(tally.cellsWithSamples(), 1);
    std::array<double, kMapCells> targets{};
    for (std::size_t i = 0; i < targets.size(); ++i)
        targets[i] = vexorin::rom::figureOfByte(vexorin::rom::FigureKind::Fuel, map.bytes[i]);
    const FuelAdvice advice = advise(tally, map, targets, FuelSettings());
    EXPECT_EQ(advice.cellsToChange, 1);
    EXPECT_EQ(adviceStatus(advice), "27 samples in 1 cells; 1 cells to change");
    EXPECT_TRUE(advice.cells[std::size_t(cell)].richer());
}

TEST(FuelAnalysis, TwoDecimals)
{
    EXPECT_EQ(twoDecimals(14.7), "14.70");
    EXPECT_EQ(twoDecimals(-0.001), "0.00");
    EXPECT_EQ(twoDecimals(6.555), "6.55");  // the binary 6.555 lies just below the half
    EXPECT_EQ(twoDecimals(std::nan("")), "");
}
