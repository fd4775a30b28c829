// Block edits on a crafted map: each operation's bytes against figures worked
// out by hand, nothing outside the selection planned, clamped cells marked.
#include "rom/map_block.h"
#include "rom/rules/map_decoding.h"

#include <gtest/gtest.h>

using namespace vexorin::rom;

namespace {
std::size_t at(int row, int column)
{
    return std::size_t((row - 1) * 16 + (column - 1));
}

// Every cell's new byte by (row, column); -1 for a cell not in the plan.
int planned(const std::vector<BlockCell>& plan, int row, int column)
{
    for (const BlockCell& c : plan)
        if (c.row == row && c.column == column)
            return c.newByte;
    return -1;
}

MapBytes filled(std::uint8_t value)
{
    MapBytes bytes;
    bytes.fill(value);
    return bytes;
}
}  // namespace

TEST(MapBlock, TheSelectionIsARectangleOfBodyCellsWhicheverWayItWasDrawn)
{
    const MapSelection s = MapSelection::between(5, 9, 2, 3);
    EXPECT_EQ(s, (MapSelection{2, 3, 5, 9}));
    EXPECT_EQ(MapSelection::between(0, 0, 20, 17), (MapSelection{1, 1, 16, 16}));
    EXPECT_EQ(s.rows(), 4);
    EXPECT_EQ(s.columns(), 7);
}

TEST(MapBlock, SetToWritesOneByteForEveryCellOfTheSelectionOnly)
{
    const MapBytes bytes = filled(20);  // 12.71
    const auto plan = planBlock(FigureKind::Fuel, bytes, {2, 4, 3, 5}, BlockOp::SetTo, 14.70);
    ASSERT_EQ(plan.size(), 4u);
    for (const BlockCell& c : plan) {
        EXPECT_EQ(c.oldByte, 20);
        EXPECT_EQ(c.newByte, 192);
        EXPECT_FALSE(c.clamped);
    }
    EXPECT_EQ(planned(plan, 1, 4), -1);
    EXPECT_EQ(planned(plan, 2, 6), -1);
    EXPECT_EQ(plan.front().row, 2);  // row by row
    EXPECT_EQ(plan.back().column, 5);
}

TEST(MapBlock, AddAndScaleWorkOnTheShownFigures)
{
    MapBytes bytes = filled(20);  // 12.71
    bytes[at(1, 2)] = 1;          // 14.59
    auto plan = planBlock(FigureKind::Fuel, bytes, {1, 1, 1, 2}, BlockOp::Add, 1.0);
    EXPECT_EQ(planned(plan, 1, 1), 9);  // 13.71: 13.73 is the nearest
    EXPECT_EQ(planned(plan, 1, 2), 185);  // 15.59: 15.55 is nearer than 15.68
    plan = planBlock(FigureKind::Fuel, bytes, {1, 1, 1, 2}, BlockOp::ScaleBy, 5);
    EXPECT_EQ(planned(plan, 1, 1), 13);  // 12.71 x 1.05 = 13.3455: 13.34
    plan = planBlock(FigureKind::Fuel, bytes, {1, 2, 1, 2}, BlockOp::ScaleBy, -10);
    EXPECT_EQ(planned(plan, 1, 2), 15);  // 14.59 x 0.9 = 13.131: 13.16
}

TEST(MapBlock, TargetsOutsideTheRangeAreClampedAndMarked)
{
    MapBytes bytes = filled(20);
    bytes[at(4, 4)] = 120;  // 120 degrees
    bytes[at(4, 5)] = 246;  // -10 degrees
    const auto plan = planBlock(FigureKind::Timing, bytes, {4, 4, 4, 5}, BlockOp::ScaleBy, 10);
    ASSERT_EQ(plan.size(), 2u);
    EXPECT_EQ(plan[0].newByte, 128);
    EXPECT_TRUE(plan[0].clamped);
    EXPECT_DOUBLE_EQ(plan[0].target, 132);
    EXPECT_EQ(plan[1].newByte, 245);  // -11
    EXPECT_FALSE(plan[1].clamped);
    const auto rich = planBlock(FigureKind::Fuel, bytes, {1, 1, 1, 1}, BlockOp::Add, -9);
    EXPECT_EQ(rich[0].newByte, 159);
    EXPECT_TRUE(rich[0].clamped);
}

TEST(MapBlock, InterpolateRunsAlongRowsOrDownASingleColumn)
{
    MapBytes bytes = filled(0);
    bytes[at(2, 1)] = 10;
    bytes[at(2, 5)] = 30;
    bytes[at(3, 1)] = 20;
    bytes[at(3, 5)] = 21;
    auto plan = planBlock(FigureKind::Timing, bytes, {2, 1, 3, 5}, BlockOp::Interpolate);
    const int row2[] = {10, 15, 20, 25, 30};
    const int row3[] = {20, 20, 21, 21, 21};  // 20.25, 20.5 (a half upwards), 20.75
    for (int c = 1; c <= 5; ++c) {
        EXPECT_EQ(planned(plan, 2, c), row2[c - 1]) << c;
        EXPECT_EQ(planned(plan, 3, c), row3[c - 1]) << c;
    }
    bytes[at(7, 9)] = 0;
    bytes[at(10, 9)] = 30;
    plan = planBlock(FigureKind::Timing, bytes, {7, 9, 10, 9}, BlockOp::Interpolate);
    const int column[] = {0, 10, 20, 30};
    for (int r = 7; r <= 10; ++r)
        EXPECT_EQ(planned(plan, r, 9), column[r - 7]) << r;
}

TEST(MapBlock, SmoothTakesTheMeanOfEachCellAndItsNeighboursInsideTheSelection)
{
    MapBytes bytes = filled(0);
    bytes[at(5, 5)] = 30;
    bytes[at(4, 4)] = 100;  // outside the selection: not counted
    const auto plan = planBlock(FigureKind::Timing, bytes, {5, 5, 7, 7}, BlockOp::Smooth);
    EXPECT_EQ(planned(plan, 5, 5), 10);  // (30 + 0 + 0) / 3
    EXPECT_EQ(planned(plan, 5, 6), 8);   // (0 + 30 + 0 + 0) / 4 = 7.5, a half upwards
    EXPECT_EQ(planned(plan, 6, 6), 0);   // the centre: no neighbour holds 30
    EXPECT_EQ(planned(plan, 6, 5), 8);
    EXPECT_EQ(planned(plan, 7, 7), 0);
}

TEST(MapBlock, CaptionsAreTheMenuItems)
{
    EXPECT_STREQ(blockOpCaption(BlockOp::SetTo), "Set to...");
    EXPECT_STREQ(blockOpCaption(BlockOp::Add), "Add...");
    EXPECT_STREQ(blockOpCaption(BlockOp::ScaleBy), "Scale by %...");
    EXPECT_STREQ(blockOpCaption(BlockOp::Interpolate), "Interpolate");
    EXPECT_STREQ(blockOpCaption(BlockOp::Smooth), "Smooth");
}
