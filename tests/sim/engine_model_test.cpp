// The engine behind the simulated ECU: plausible, moving, in range, deterministic.
#include "sim/ecu_simulator.h"
#include "sim/engine_model.h"
#include "sim_test_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <set>
#include <vector>

using namespace vexorin::sim;
using namespace vexorin::sim::test;

namespace {

// Raw register decoded as the PC decodes it.
double rpmOf(const EcuSimulator& e)
{
    std::uint8_t hi = 0, lo = 0;
    e.registerValue(0, hi);
    e.registerValue(1, lo);
    return (hi * 256 + lo) * 12.5;
}

int raw(const EcuSimulator& e, std::uint8_t reg)
{
    std::uint8_t v = 0;
    EXPECT_TRUE(e.registerValue(reg, v));
    return v;
}

// Samples f every stepMs over durationMs of simulated time.
std::vector<double> sample(EcuSimulator& e, int durationMs, int stepMs, const std::function<double()>& f)
{
    std::vector<double> out;
    for (int t = 0; t < durationMs; t += stepMs) {
        e.advance(stepMs);
        out.push_back(f());
    }
    return out;
}

double mean(const std::vector<double>& v)
{
    double s = 0;
    for (double x : v)
        s += x;
    return v.empty() ? 0 : s / double(v.size());
}

double stddev(const std::vector<double>& v)
{
    const double m = mean(v);
    double s = 0;
    for (double x : v)
        s += (x - m) * (x - m);
    return v.empty() ? 0 : std::sqrt(s / double(v.size()));
}

std::vector<std::uint8_t> allRegisters(const EcuSimulator& e)
{
    std::vector<std::uint8_t> v;
    for (int r = 0; r < 64; ++r) {
        std::uint8_t b = 0;
        if (e.registerValue(std::uint8_t(r), b))
            v.push_back(b);
    }
    return v;
}

// ----- determinism -------------------------------------------------------

TEST(EngineModel, SameSeedSameValues)
{
    EcuSimulator a(42), b(42);
    for (int i = 0; i < 300; ++i) {
        a.advance(100);
        b.advance(100);
        ASSERT_EQ(allRegisters(a), allRegisters(b)) << i;
    }
}

TEST(EngineModel, HowTimeIsHandedInDoesNotMatter)
{
    EcuSimulator a(9), b(9), c(9);
    a.advance(20000);
    for (int i = 0; i < 2000; ++i)
        b.advance(10);
    int total = 0;
    for (int i = 0; total < 20000; ++i) {
        const int step = std::min(20000 - total, 1 + (i * 7) % 23);
        c.advance(step);
        total += step;
    }
    EXPECT_EQ(allRegisters(a), allRegisters(b));
    EXPECT_EQ(allRegisters(a), allRegisters(c));
    EXPECT_EQ(a.elapsedMs(), 20000);
}

TEST(EngineModel, OtherSeedOtherValues)
{
    EcuSimulator a(1), b(2);
    int differences = 0;
    for (int i = 0; i < 50; ++i) {
        a.advance(100);
        b.advance(100);
        differences += allRegisters(a) != allRegisters(b);
    }
    EXPECT_GT(differences, 40);
}

TEST(EngineModel, NegativeOrZeroTimeChangesNothing)
{
    EcuSimulator a(3), b(3);
    a.advance(0);
    a.advance(-50);
    EXPECT_EQ(allRegisters(a), allRegisters(b));
    EXPECT_EQ(a.elapsedMs(), 0);
}

// ----- the automatic cycle -----------------------------------------------

TEST(EngineModel, CyclesIdleRevDriveAboutOnceAMinute)
{
    EcuSimulator e;
    EXPECT_EQ(e.phase(), EnginePhase::Idle);
    EXPECT_FALSE(e.phaseForced());
    e.advance(10000);
    EXPECT_EQ(e.phase(), EnginePhase::Idle);
    e.advance(15000);   // 25 s
    EXPECT_EQ(e.phase(), EnginePhase::Rev);
    e.advance(15000);   // 40 s
    EXPECT_EQ(e.phase(), EnginePhase::Drive);
    e.advance(21000);   // 61 s
    EXPECT_EQ(e.phase(), EnginePhase::Idle);
}

TEST(EngineModel, IdleLooksLikeIdle)
{
    EcuSimulator e(5);
    e.forcePhase(EnginePhase::Idle);
    e.advance(2000);
    for (int i = 0; i < 50; ++i) {
        e.advance(100);
        const EngineSnapshot s = e.engine();
        EXPECT_GT(rpmOf(e), 650);
        EXPECT_LT(rpmOf(e), 950);
        EXPECT_NEAR(110 - raw(e, 22), 14, 2);           // timing
        EXPECT_GE(raw(e, 23) / 2.0, 25);                 // IACV %
        EXPECT_LE(raw(e, 23) / 2.0, 50);
        EXPECT_NEAR(raw(e, 12) * 0.08, 14.0, 0.5);       // battery
        EXPECT_EQ(raw(e, 11), 0);                        // speed
        EXPECT_LT(raw(e, 13) * 0.02, 0.55);              // TPS closed
        EXPECT_TRUE(s.running);
        EXPECT_EQ(raw(e, 19) & 0x80, 0x80);              // idle switch
    }
}

TEST(EngineModel, O2SwitchesAboutEveryHalfSecondAtIdle)
{
    EcuSimulator e(11);
    e.forcePhase(EnginePhase::Idle);
    e.advance(3000);
    for (std::uint8_t reg : {std::uint8_t(9), std::uint8_t(10)}) {
        const std::vector<double> o2 = sample(e, 5000, 20, [&] { return raw(e, reg) * 0.01; });
        int crossings = 0;
        for (std::size_t i = 1; i < o2.size(); ++i)
            crossings += (o2[i - 1] < 0.45) != (o2[i] < 0.45);
        EXPECT_GE(crossings, 6) << int(reg);
        EXPECT_LE(crossings, 25) << int(reg);
        EXPECT_LT(*std::min_element(o2.begin(), o2.end()), 0.2);
        EXPECT_GT(*std::max_element(o2.begin(), o2.end()), 0.75);
    }
}

TEST(EngineModel, AlphaHoversAroundItsCentre)
{
    EcuSimulator e(12);
    e.forcePhase(EnginePhase::Idle);
    e.advance(5000);
    const std::vector<double> a = sample(e, 5000, 50, [&] { return double(raw(e, 26)); });
    EXPECT_NEAR(mean(a), 100, 8);
    EXPECT_GT(stddev(a), 0.3);
}

TEST(EngineModel, WaterWarmsFromColdTowards190F)
{
    EcuSimulator e(4);
    const int start = raw(e, 8);
    EXPECT_LT(start - 50, 30);   // cold start, degrees C
    e.advance(60000);
    const int after1 = raw(e, 8);
    e.advance(540000);
    const int after10 = raw(e, 8);
    EXPECT_GT(after1, start + 10);
    EXPECT_GT(after10, after1);
    const double fahrenheit = (after10 - 50) * 1.8 + 32;
    EXPECT_NEAR(fahrenheit, 190, 6);
}

TEST(EngineModel, RevClimbsToAbout4500AndBack)
{
    EcuSimulator e(6);
    e.advance(5000);
    e.forcePhase(EnginePhase::Rev);
    double peak = 0, tpsPeak = 0;
    for (int t = 0; t < EngineModel::kRevMs; t += 50) {
        e.advance(50);
        peak = std::max(peak, rpmOf(e));
        tpsPeak = std::max(tpsPeak, raw(e, 13) * 0.02);
        EXPECT_EQ(raw(e, 11), 0);
    }
    EXPECT_GT(peak, 4200);
    EXPECT_LT(peak, 4900);
    EXPECT_GT(tpsPeak, 2.0);
    EXPECT_LT(rpmOf(e), 1000);   // back at idle at the end
}

TEST(EngineModel, DriveGoesToSixtyMphThroughTheGears)
{
    EcuSimulator e(8);
    e.advance(2000);
    e.forcePhase(EnginePhase::Drive);
    double topMph = 0;
    int topGear = 0;
    std::vector<int> gears;
    int sinceShift = 0;
    for (int t = 0; t < EngineModel::kDriveMs; t += 100) {
        e.advance(100);
        const EngineSnapshot s = e.engine();
        sinceShift = !gears.empty() && gears.back() != s.gear ? 0 : sinceShift + 100;
        topMph = std::max(topMph, raw(e, 11) * 2 * 0.62);
        topGear = std::max(topGear, s.gear);
        if (gears.empty() || gears.back() != s.gear)
            gears.push_back(s.gear);
        if (s.gear > 0 && sinceShift >= 500 && t > 1500) {
            // Engine speed follows road speed in gear.
            static const double perKmh[6] = {0, 113.0, 64.7, 44.5, 34.0, 25.8};
            const double expected = std::max(700.0, s.speedKmh * perKmh[s.gear]);
            EXPECT_NEAR(s.rpm, expected, expected * 0.25 + 150) << t;
        }
        EXPECT_LT(rpmOf(e), 4000);
    }
    EXPECT_NEAR(topMph, 60, 3);
    EXPECT_EQ(topGear, 5);
    EXPECT_GE(gears.size(), 6u);   // 1, 2, 3, 4, 5 and back down
    EXPECT_EQ(raw(e, 11), 0);      // stopped again at the end
}

TEST(EngineModel, CruiseIsInTopGearAtAbout2500)
{
    EcuSimulator e(8);
    e.forcePhase(EnginePhase::Drive);
    e.advance(16000);
    EXPECT_EQ(e.engine().gear, 5);
    EXPECT_NEAR(rpmOf(e), 2500, 250);
    EXPECT_NEAR(raw(e, 11) * 2 * 0.62, 60, 2);
}

TEST(EngineModel, StaysInRangeOverSeveralCycles)
{
    for (std::uint32_t seed : {1u, 77u}) {
        EcuSimulator e(seed);
        for (int t = 0; t < 4 * EngineModel::kCycleMs; t += 100) {
            e.advance(100);
            for (std::uint8_t hi : {0, 2, 4, 6, 20})
                ASSERT_LE(raw(e, hi), 3) << "register " << int(hi) << " at " << t;
            const double rpm = rpmOf(e);
            ASSERT_GE(rpm, 0);
            ASSERT_LE(rpm, 7000);
            ASSERT_LE(raw(e, 11) * 2, 200);                 // km/h
            ASSERT_LE(raw(e, 13) * 0.02, 4.6);              // TPS volts
            ASSERT_GE(raw(e, 13) * 0.02, 0.4);
            ASSERT_LE((raw(e, 4) * 256 + raw(e, 5)) * 0.005, 5.0);
            ASSERT_LE(raw(e, 9) * 0.01, 1.0);
            ASSERT_LE(raw(e, 10) * 0.01, 1.0);
            const int timing = 110 - raw(e, 22);
            ASSERT_GE(timing, 0);
            ASSERT_LE(timing, 50);
            ASSERT_LE(raw(e, 23) / 2.0, 100);
            ASSERT_GE(raw(e, 12) * 0.08, 10.0);
            ASSERT_LE(raw(e, 12) * 0.08, 15.0);
            ASSERT_GE(raw(e, 26), 75);
            ASSERT_LE(raw(e, 26), 125);
            ASSERT_LE(raw(e, 8) - 50, 95);                  // coolant C
            ASSERT_LE((raw(e, 20) * 256 + raw(e, 21)) * 0.01, 10.23);
        }
    }
}

TEST(EngineModel, EverySensorMovesWithinAMinute)
{
    EcuSimulator e(2);
    std::map<int, std::set<int>> seen;
    for (int i = 0; i < 600; ++i) {
        e.advance(100);
        for (std::uint8_t reg : sensorRegisters())
            seen[reg].insert(raw(e, reg));
    }
    for (std::uint8_t reg : sensorRegisters())
        EXPECT_GT(seen[reg].size(), 1u) << "register " << int(reg);
}

// ----- forcing phases and stopping the engine ----------------------------

TEST(EngineModel, ForcedOffStopsTheEngineAndReleaseRestartsIt)
{
    EcuSimulator e;
    e.forcePhase(EnginePhase::Off);
    EXPECT_TRUE(e.phaseForced());
    EXPECT_EQ(e.phase(), EnginePhase::Off);
    e.advance(3000);
    EXPECT_EQ(rpmOf(e), 0);
    EXPECT_FALSE(e.engine().running);
    EXPECT_NEAR(raw(e, 12) * 0.08, 12.5, 0.3);
    EXPECT_EQ(raw(e, 20) * 256 + raw(e, 21), 0);
    e.releasePhase();
    EXPECT_FALSE(e.phaseForced());
    e.advance(300);
    EXPECT_TRUE(e.engine().cranking);
    EXPECT_EQ(raw(e, 19) & 0x40, 0x40);   // start signal
    e.advance(3000);
    EXPECT_TRUE(e.engine().running);
    EXPECT_GT(rpmOf(e), 600);
    EXPECT_EQ(e.phase(), EnginePhase::Idle);
}

// ----- active tests ------------------------------------------------------

class ActiveTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        handshake(ecu);
        ecu.forcePhase(EnginePhase::Idle);
        ecu.advance(4000);
    }
    void send(std::uint8_t code, std::uint8_t value)
    {
        ecu.receive(Bytes{0x0A, code, value});
        EXPECT_EQ(drain(ecu), (Bytes{0xF5, code, value}));
        EXPECT_EQ(ecu.activeTestValue(code), value);
    }
    EcuSimulator ecu{21};
};

TEST_F(ActiveTest, CylinderCutDropsAndShakesTheIdle)
{
    const std::vector<double> before = sample(ecu, 3000, 20, [&] { return rpmOf(ecu); });
    send(0x88, 3);
    ecu.advance(1500);
    const std::vector<double> cut = sample(ecu, 3000, 20, [&] { return rpmOf(ecu); });
    EXPECT_LT(mean(cut), mean(before) - 60);
    EXPECT_GT(stddev(cut), 2 * stddev(before));
    send(0x88, 0);
    ecu.advance(2000);
    const std::vector<double> after = sample(ecu, 2000, 20, [&] { return rpmOf(ecu); });
    EXPECT_NEAR(mean(after), mean(before), 40);
}

TEST_F(ActiveTest, CoolantSubstitute)
{
    // 140 F as the Active Test window sends it: (140 - 32) * 5 / 9 + 50 = 110.
    send(0x80, 110);
    ecu.advance(100);
    EXPECT_EQ(raw(ecu, 8), 110);
    send(0x80, 0);
    ecu.advance(100);
    EXPECT_LT(raw(ecu, 8), 100);
}

TEST_F(ActiveTest, FuelTrimShiftsAlphaAndO2)
{
    const double alphaBefore = mean(sample(ecu, 2000, 20, [&] { return double(raw(ecu, 26)); }));
    send(0x81, 106);   // richer: the closed loop pulls back
    const std::vector<double> o2 = sample(ecu, 600, 10, [&] { return raw(ecu, 9) * 0.01; });
    ecu.advance(2000);
    const double alphaRich = mean(sample(ecu, 2000, 20, [&] { return double(raw(ecu, 26)); }));
    EXPECT_LT(alphaRich, alphaBefore - 3);
    EXPECT_GT(*std::max_element(o2.begin(), o2.end()), 0.7);
    send(0x81, 94);
    ecu.advance(4000);
    const double alphaLean = mean(sample(ecu, 2000, 20, [&] { return double(raw(ecu, 26)); }));
    EXPECT_GT(alphaLean, alphaBefore + 3);
}

TEST_F(ActiveTest, TimingOffset)
{
    const double before = mean(sample(ecu, 1000, 20, [&] { return 110.0 - raw(ecu, 22); }));
    send(0x82, 6);
    const double advanced = mean(sample(ecu, 1000, 20, [&] { return 110.0 - raw(ecu, 22); }));
    send(0x82, 250);   // -6
    const double retarded = mean(sample(ecu, 1000, 20, [&] { return 110.0 - raw(ecu, 22); }));
    EXPECT_NEAR(advanced - before, 6, 1);
    EXPECT_NEAR(before - retarded, 6, 1);
}

TEST_F(ActiveTest, IacvOpening)
{
    // Compared with a twin that gets no test, so that the warming engine does not blur the result.
    EcuSimulator twin = ecu;
    send(0x84, 106);
    ecu.advance(3000);
    twin.advance(3000);
    EXPECT_NEAR(raw(ecu, 23) / 2.0, raw(twin, 23) / 2.0 * 1.06, 1.0);
    EXPECT_GT(raw(ecu, 23), raw(twin, 23));
    const double rpm = mean(sample(ecu, 1000, 20, [&] { return rpmOf(ecu); }));
    const double twinRpm = mean(sample(twin, 1000, 20, [&] { return rpmOf(twin); }));
    EXPECT_GT(rpm, twinRpm + 40);
    send(0x84, 0);   // neutral
    ecu.advance(3000);
    twin.advance(3000);
    EXPECT_NEAR(raw(ecu, 23) / 2.0, raw(twin, 23) / 2.0, 0.5);
}

TEST_F(ActiveTest, FuelPumpOffStallsTheEngine)
{
    send(0x89, 0);
    ecu.advance(3000);
    EXPECT_EQ(rpmOf(ecu), 0);
    EXPECT_FALSE(ecu.engine().running);
    EXPECT_FALSE(ecu.engine().fuelPumpOn);
    ecu.advance(5000);
    EXPECT_EQ(rpmOf(ecu), 0);   // stays stalled
    send(0x89, 1);
    ecu.advance(3000);
    EXPECT_TRUE(ecu.engine().running);
    EXPECT_GT(rpmOf(ecu), 600);
}

TEST_F(ActiveTest, ClearSelfLearn)
{
    send(0x81, 106);   // make the learned value move away from 100
    ecu.advance(60000);
    EXPECT_LT(raw(ecu, 28), 98);
    send(0x8B, 0);
    EXPECT_EQ(raw(ecu, 28), 100);
}

TEST_F(ActiveTest, SolenoidsAreOnlyRecorded)
{
    for (std::uint8_t code : {0x8A, 0x90, 0x87, 0x8C, 0x8F}) {
        send(code, 0);
        send(code, 1);
    }
    ecu.advance(500);
    EXPECT_TRUE(ecu.engine().running);
}

}  // namespace
