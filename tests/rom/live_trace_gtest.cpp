// Where the trace puts the engine: rows and columns for chosen engine
// speeds, air flow voltages, VQ curves, K values and scales, worked out by
// hand here; ties and both ends of every scale; the fixed curve's cases.
#include "rom/rules/live_trace.h"
#include "rom/rom_image.h"
#include "rom/rules/vq_table.h"

#include <gtest/gtest.h>

using namespace vexorin::rom;

namespace {
// A ROM with the given tables and zeros elsewhere.
std::vector<std::uint8_t> romWith(const std::array<int, 16>& rpmBytes, const std::array<int, 16>& tpFuel,
                                  const std::array<int, 16>& tpTiming, const std::array<int, 64>& vq, int k)
{
    std::vector<std::uint8_t> rom(kRomSize, 0);
    for (int i = 0; i < 16; ++i) {
        rom[std::size_t(0x7B00 + i)] = std::uint8_t(rpmBytes[std::size_t(i)]);
        rom[std::size_t(0x7AF0 + i)] = std::uint8_t(tpFuel[std::size_t(i)]);
        rom[std::size_t(0x7B10 + i)] = std::uint8_t(tpTiming[std::size_t(i)]);
    }
    for (int i = 0; i < 64; ++i) {
        rom[std::size_t(0x7A70 + 2 * i)] = std::uint8_t(vq[std::size_t(i)] >> 8);
        rom[std::size_t(0x7A70 + 2 * i + 1)] = std::uint8_t(vq[std::size_t(i)] & 0xFF);
    }
    rom[0x7F2B] = std::uint8_t(k >> 8);
    rom[0x7F2C] = std::uint8_t(k & 0xFF);
    return rom;
}

constexpr std::array<int, 16> kRpmBytes{12, 16, 20, 24, 32, 40, 48, 56, 64, 72, 80, 88, 96, 104, 112, 128};
constexpr std::array<int, 16> kTpFuel{10, 16, 22, 28, 34, 40, 46, 52, 58, 64, 72, 80, 90, 100, 112, 128};
constexpr std::array<int, 16> kTpTiming{8, 14, 20, 26, 32, 38, 44, 50, 56, 62, 70, 78, 88, 98, 110, 124};

// Word i = 100 x (i + 1): the quantity rises by 100 every 0.08 V.
std::array<int, 64> linearVq()
{
    std::array<int, 64> vq{};
    for (int i = 0; i < 64; ++i)
        vq[std::size_t(i)] = 100 * (i + 1);
    return vq;
}
}  // namespace

TEST(LiveTrace, EngineSpeedAsTheRpmLabelShowsIt)
{
    EXPECT_EQ(traceRpm(0, 0), 0);
    EXPECT_EQ(traceRpm(0, 81), 1012);   // 1012.5 to the even neighbour
    EXPECT_EQ(traceRpm(0, 83), 1038);   // 1037.5
    EXPECT_EQ(traceRpm(3, 255), 12788); // 12787.5
    EXPECT_FALSE(traceRpm(4, 0).has_value());
}

TEST(LiveTrace, AirFlowVoltageToTwoDecimalsHalvesUp)
{
    EXPECT_EQ(traceMafHundredths(0, 201), 101);  // 1.005 V gives 1.01
    EXPECT_EQ(traceMafHundredths(0, 200), 100);
    EXPECT_EQ(traceMafHundredths(3, 255), 512);  // 5.115 V gives 5.12
    EXPECT_FALSE(traceMafHundredths(5, 0).has_value());
}

TEST(LiveTrace, TablesComeFromTheRom)
{
    const TraceTables t = traceTables(romWith(kRpmBytes, kTpFuel, kTpTiming, linearVq(), 0x1234));
    EXPECT_EQ(t.rpmHeadings[0], 600);
    EXPECT_EQ(t.rpmHeadings[15], 6400);
    EXPECT_EQ(t.tpFuelHeadings[3], 28);
    EXPECT_EQ(t.tpTimingHeadings[15], 124);
    EXPECT_EQ(t.vq[0], 100);
    EXPECT_EQ(t.vq[63], 6400);
    EXPECT_EQ(t.kValue, 4660);
    // A short file gives zeros for what it lacks.
    EXPECT_EQ(traceTables(std::vector<std::uint8_t>(100, 7)).kValue, 0);
}

TEST(LiveTrace, VqCurveInterpolatesAndStaysFlatBeyondItsEnds)
{
    std::array<std::int32_t, kVqWords> curve{};
    for (int i = 0; i < kVqWords; ++i)
        curve[std::size_t(i)] = 100 * (i + 1);
    EXPECT_DOUBLE_EQ(vqQuantity(curve, 8), 100);
    EXPECT_DOUBLE_EQ(vqQuantity(curve, 12), 150);  // halfway between 0.08 and 0.16
    EXPECT_DOUBLE_EQ(vqQuantity(curve, 0), 100);   // below the first point
    EXPECT_DOUBLE_EQ(vqQuantity(curve, 512), 6400);
    EXPECT_DOUBLE_EQ(vqQuantity(curve, 550), 6400);  // above the last
    EXPECT_NEAR(vqQuantity(curve, 200), 2500, 1e-9);
}

TEST(LiveTrace, NearestHeadingTieGoesToTheLowerRow)
{
    const std::array<int, 16> h{600, 800, 1000, 1200, 1600, 2000, 2400, 2800, 3200, 3600, 4000, 4400, 4800, 5200, 5600, 6400};
    EXPECT_EQ(nearestHeading(h, 0), 0);      // below the scale: the first row
    EXPECT_EQ(nearestHeading(h, 700), 0);    // tie between 600 and 800
    EXPECT_EQ(nearestHeading(h, 701), 1);
    EXPECT_EQ(nearestHeading(h, 6000), 14);  // tie between 5600 and 6400
    EXPECT_EQ(nearestHeading(h, 9000), 15);  // above: the last row
}

TEST(LiveTrace, RowAndColumnWorkedOutByHand)
{
    const TraceTables t = traceTables(romWith(kRpmBytes, kTpFuel, kTpTiming, linearVq(), 4096));
    // 2000 rpm, 2.00 V: Q = 2500 (point 24 at 2.00 V), TP = 2500 x 4096 / (2000 x 1024) = 5.0.
    TracePoint p = tracePoint(t, 2000, 200, 1024);
    EXPECT_DOUBLE_EQ(p.tp, 5.0);
    EXPECT_EQ(p.row, 6);           // 2000 is heading 6
    EXPECT_EQ(p.fuelColumn, 1);    // 5 is nearest 10
    EXPECT_EQ(p.timingColumn, 1);  // and 8
    EXPECT_FALSE(p.fixedCurve);
    EXPECT_EQ(traceStatus(p, true), "Trace: RPM 2000 row 6, TP 5.0 column 1");

    // 1000 rpm, 4.00 V: Q = 5000, S = 256: TP = 5000 x 4096 / (1000 x 256) = 80.
    p = tracePoint(t, 1000, 400, 256);
    EXPECT_DOUBLE_EQ(p.tp, 80.0);
    EXPECT_EQ(p.row, 3);
    EXPECT_EQ(p.fuelColumn, 12);   // 80 is heading 12 of the fuel scale
    EXPECT_EQ(p.timingColumn, 12); // 80 lies between 78 (12) and 88 (13): 78 is nearer
    EXPECT_EQ(traceStatus(p, false), "Trace: RPM 1000 row 3, TP 80.0 column 12");

    // A tie on the fuel scale: TP 13 lies halfway between 10 and 16. At 1000 rpm and 2.00 V
    // (Q = 2500, K = 4096) the scale S = 2500 x 4096 / (1000 x 13) gives TP 13.
    p = tracePoint(t, 1000, 200, 2500.0 * 4096 / (1000 * 13));
    EXPECT_NEAR(p.tp, 13.0, 1e-9);
    EXPECT_EQ(p.fuelColumn, 1);    // the lower column of the tie
    EXPECT_EQ(p.timingColumn, 2);  // 14 is nearer than 8

    // No clamp: a load far above the scale lands on the last column, and the status shows it as it is.
    p = tracePoint(t, 600, 512, 1);
    EXPECT_DOUBLE_EQ(p.tp, 6400.0 * 4096 / 600);
    EXPECT_EQ(p.fuelColumn, 16);
    EXPECT_EQ(p.row, 1);
}

TEST(LiveTrace, NeighboursAreShadedByNearness)
{
    const TraceTables t = traceTables(romWith(kRpmBytes, kTpFuel, kTpTiming, linearVq(), 4096));
    // 2100 rpm lies a quarter of the way from 2000 (row 6) to 2400 (row 7).
    const TracePoint p = tracePoint(t, 2100, 200, 1024);
    EXPECT_EQ(p.row, 6);
    EXPECT_EQ(p.rowNeighbour.index, 7);
    EXPECT_DOUBLE_EQ(p.rowNeighbour.nearness, 0.25);
    // TP = 2500 x 4096 / (2100 x 1024) = 4.76: below the first heading, no neighbour.
    EXPECT_EQ(p.fuelNeighbour.index, -1);
    // At a heading exactly there is none either.
    EXPECT_EQ(tracePoint(t, 2000, 200, 1024).rowNeighbour.index, -1);
}

TEST(LiveTrace, FixedCurveServesWhenTheRomCannot)
{
    // K of 0: the fixed curve, and TP 0 with it.
    TracePoint p = tracePoint(traceTables(romWith(kRpmBytes, kTpFuel, kTpTiming, linearVq(), 0)), 2000, 200, 1024);
    EXPECT_TRUE(p.fixedCurve);
    EXPECT_DOUBLE_EQ(p.tp, 0.0);
    EXPECT_EQ(traceStatus(p, true), "Trace: RPM 2000 row 6, TP 0.0 column 1 (fixed VQ curve)");

    // A VQ region of zeros: Q from the fixed curve, 3111 at 2.00 V (its 25th point).
    const std::array<int, 64> zeros{};
    p = tracePoint(traceTables(romWith(kRpmBytes, kTpFuel, kTpTiming, zeros, 4096)), 2000, 200, 1024);
    EXPECT_TRUE(p.fixedCurve);
    EXPECT_DOUBLE_EQ(p.tp, 3111.0 * 4096 / (2000 * 1024));  // 6.222
    EXPECT_EQ(traceStatus(p, true), "Trace: RPM 2000 row 6, TP 6.2 column 1 (fixed VQ curve)");
    EXPECT_EQ(kVqCurve[24], 3111);

    // An engine that does not turn: the fixed curve, no load, the first row.
    p = tracePoint(traceTables(romWith(kRpmBytes, kTpFuel, kTpTiming, linearVq(), 4096)), 0, 150, 1024);
    EXPECT_TRUE(p.fixedCurve);
    EXPECT_DOUBLE_EQ(p.tp, 0.0);
    EXPECT_EQ(p.row, 1);
}
