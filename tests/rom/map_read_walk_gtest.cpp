// Reading a map from the ECU: the scale stages, then the map's bank, and the
// state a stopped read leaves for the next.
#include "rom/rules/map_decoding.h"
#include "rom/map_read_walk.h"

#include <gtest/gtest.h>

using namespace vexorin::rom;

namespace {
struct Burst {
    int high;
    int firstLow;
    bool scale;
    bool rpm;
    bool corner;
};
// A fresh read of one map, burst by burst; `walk` is left where the read ended.
std::vector<Burst> readWholeMap(MapReadWalk& walk, bool fuel, int bank, int* scalesDone)
{
    walk.restart();
    *scalesDone = 0;
    std::vector<Burst> bursts;
    for (int i = 0; i < 100; ++i) {
        const MapReadStep s = walk.next(fuel, bank);
        if (s.kind == MapReadStep::Kind::MapDone)
            return bursts;
        if (s.kind == MapReadStep::Kind::ScalesDone) {
            ++*scalesDone;
            continue;
        }
        bursts.push_back({s.high, s.firstLow, s.scale, s.rpm, s.cursorToCorner});
        EXPECT_EQ(s.lastLow, s.firstLow + 7);
    }
    ADD_FAILURE() << "the walk did not end";
    return bursts;
}
}  // namespace

TEST(MapReadWalk, FuelMapReadsBothScaleBanksThenItsOwn)
{
    MapReadWalk walk;
    int scalesDone;
    const auto bursts = readWholeMap(walk, true, 242, &scalesDone);
    ASSERT_EQ(bursts.size(), 4u + 32u);
    EXPECT_EQ(scalesDone, 1);
    EXPECT_EQ(bursts[0].high, kScaleBank);
    EXPECT_EQ(bursts[0].firstLow, 0);
    EXPECT_TRUE(bursts[0].rpm);
    EXPECT_EQ(bursts[1].firstLow, 8);
    // The third request: the fuel TP scale at 0xFAF0, the cursor back to the corner.
    EXPECT_EQ(bursts[2].high, kFuelTpBank);
    EXPECT_EQ(bursts[2].firstLow, 0xF0);
    EXPECT_FALSE(bursts[2].rpm);
    EXPECT_TRUE(bursts[2].corner);
    EXPECT_EQ(bursts[3].firstLow, 0xF8);
    for (std::size_t i = 4; i < bursts.size(); ++i) {
        EXPECT_EQ(bursts[i].high, 242);
        EXPECT_EQ(bursts[i].firstLow, int(i - 4) * 8);
        EXPECT_FALSE(bursts[i].scale);
    }
}

TEST(MapReadWalk, TimingMapReadsTwoPhasesOfTheScaleBank)
{
    MapReadWalk walk;
    int scalesDone;
    const auto bursts = readWholeMap(walk, false, 248, &scalesDone);
    ASSERT_EQ(bursts.size(), 4u + 32u);
    EXPECT_TRUE(bursts[1].rpm);
    EXPECT_FALSE(bursts[2].rpm);
    EXPECT_TRUE(bursts[2].corner);
    EXPECT_EQ(bursts[3].high, kScaleBank);
    EXPECT_EQ(bursts[3].firstLow, 24);
    EXPECT_EQ(walk.state().scalePhase, 2);
    EXPECT_EQ(bursts[4].high, 248);
}

TEST(MapReadWalk, TheNextReadGoesOnFromTheStateLeftBehind)
{
    MapReadWalk walk;
    walk.restart();
    for (int i = 0; i < 6; ++i)
        walk.next(true, kMaps[0].bank);
    const MapReadState left = walk.state();
    EXPECT_EQ(left.high, kMaps[0].bank);
    // Another map's step reads on in that bank.
    const MapReadStep s = walk.next(false, kMaps[4].bank);
    EXPECT_EQ(s.high, left.high);
    EXPECT_EQ(s.firstLow, left.low + 1);
}
