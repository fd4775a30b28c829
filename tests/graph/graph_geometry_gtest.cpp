#include "graph/graph_geometry.h"

#include <gtest/gtest.h>

using namespace vexorin::graph;

namespace {
GraphSettings plain()
{
    GraphSettings s;
    s.FixedPoints = 5;
    s.BarWidth = 0.5f;
    s.MaxValue = 100;
    s.MinValue = 0;
    s.YGridInc = 25;
    s.XGridInc = 2;
    return s;
}
}  // namespace

TEST(GraphGeometryTest, PositionsBarsAndBaseline)
{
    const GraphGeometry g = layoutGraph(plain(), {0, 25, 50, 75, 100}, 1000, 500);
    EXPECT_EQ(g.S, 5);
    EXPECT_DOUBLE_EQ(g.B, 100);  // 1000 / 5 x 0.5
    const double xs[] = {50, 275, 500, 725, 950};
    const double ys[] = {500, 375, 250, 125, 0};
    ASSERT_EQ(g.x.size(), 5u);
    for (int i = 0; i < 5; ++i) {
        EXPECT_DOUBLE_EQ(g.x[std::size_t(i)], xs[i]);
        EXPECT_DOUBLE_EQ(g.y[std::size_t(i)], ys[i]);
    }
    EXPECT_TRUE(g.hasBaseline);
    EXPECT_DOUBLE_EQ(g.Y0, 500);
    EXPECT_DOUBLE_EQ(g.axisY, 500);
    EXPECT_EQ(g.verticalGrid, (std::vector<double>{275, 725}));  // slots 2 and 4
    EXPECT_EQ(g.horizontalGrid.size(), 5u);                     // 500, 375, 250, 125, 0
    EXPECT_EQ(g.markedPoints, (std::vector<int>{1, 2, 4}));
}

TEST(GraphGeometryTest, GridStandsOverEmptySlots)
{
    const GraphGeometry g = layoutGraph(plain(), {10}, 1000, 500);
    EXPECT_EQ(g.x.size(), 1u);
    EXPECT_EQ(g.verticalGrid, (std::vector<double>{275, 725}));
    EXPECT_DOUBLE_EQ(g.x[0], 50);  // S above 1: the single point stands at B / 2
}

TEST(GraphGeometryTest, SinglePointWithOneSlotIsCentred)
{
    GraphSettings s = plain();
    s.FixedPoints = 1;
    const GraphGeometry g = layoutGraph(s, {10}, 1000, 500);
    EXPECT_DOUBLE_EQ(g.x[0], 500);
}

TEST(GraphGeometryTest, UnlimitedSeriesNarrowsItsBars)
{
    GraphSettings s = plain();
    s.FixedPoints = 0;
    const GraphGeometry two = layoutGraph(s, {1, 2}, 1000, 500);
    const GraphGeometry ten = layoutGraph(s, std::vector<double>(10, 5), 1000, 500);
    EXPECT_EQ(two.S, 2);
    EXPECT_EQ(ten.S, 10);
    EXPECT_DOUBLE_EQ(two.B, 250);
    EXPECT_DOUBLE_EQ(ten.B, 50);
}

TEST(GraphGeometryTest, EqualRangeGivesTheBottomRowAndNoDivision)
{
    GraphSettings s = plain();
    s.MaxValue = 7;
    s.MinValue = 7;
    const GraphGeometry g = layoutGraph(s, {7, 100, -5}, 1000, 500);
    for (double y : g.y)
        EXPECT_DOUBLE_EQ(y, 499);
    EXPECT_FALSE(g.hasBaseline);
    EXPECT_TRUE(g.horizontalGrid.empty());
}

TEST(GraphGeometryTest, BarWidthIsAWholeNumberAndOffWithoutBars)
{
    GraphSettings s = plain();
    s.FixedPoints = 3;
    s.BarWidth = 0.8f;
    const GraphGeometry g = layoutGraph(s, {1}, 1000, 500);  // 266.66.. rounds to 267
    EXPECT_DOUBLE_EQ(g.B, 267);
    s.ShowBars = false;
    EXPECT_DOUBLE_EQ(layoutGraph(s, {1}, 1000, 500).B, 0);
}

TEST(GraphGeometryTest, FadeInUsesTheCountWhileFilling)
{
    GraphSettings s = plain();
    s.FadeIn = true;
    EXPECT_DOUBLE_EQ(layoutGraph(s, {1, 2}, 1000, 500).B, 250);  // 1000 / 2 x 0.5
    s.FadeIn = false;
    EXPECT_DOUBLE_EQ(layoutGraph(s, {1, 2}, 1000, 500).B, 100);
}

TEST(GraphGeometryTest, AxisAndGridAroundANegativeRange)
{
    GraphSettings s = plain();
    s.MaxValue = 1.2;
    s.MinValue = -1.2;
    s.YGridInc = 0.5;
    s.FixedPoints = 0;
    s.XGridInc = 90;
    const GraphGeometry g = layoutGraph(s, std::vector<double>(721, 0.0), 2400, 480);
    EXPECT_DOUBLE_EQ(g.Y0, 240);  // 480 / 2.4 x 1.2
    EXPECT_DOUBLE_EQ(g.axisY, 240);
    EXPECT_EQ(g.horizontalGrid.size(), 5u);  // 240 and two steps of 100 each way
    EXPECT_EQ(g.verticalGrid.size(), 8u);    // slots 90, 180, .. 720
    EXPECT_EQ(g.markedPoints.size(), 9u);    // the first and every 90th
    s.MaxValue = 0;
    s.MinValue = -10;
    EXPECT_DOUBLE_EQ(layoutGraph(s, {1}, 100, 100).axisY, 0);
}

TEST(GraphGeometryTest, ValuesOutsideTheRangeLeaveThePicture)
{
    GraphSettings s = GraphSettings::mainWindow();  // range 0 to 50
    const GraphGeometry g = layoutGraph(s, {3000}, 9000, 1500);
    EXPECT_LT(g.y[0], 0);  // nothing rescales
}
