// Typed and computed figures to bytes: every range end, the ties, the
// roundings a half upwards, the clamping of block edits, the range messages.
#include "rom/rules/map_decoding.h"
#include "rom/map_figures.h"

#include <gtest/gtest.h>

using namespace vexorin::rom;

namespace {
int typed(FigureKind kind, double figure)
{
    return byteForTypedFigure(kind, figure).value_or(-1);
}
}  // namespace

TEST(MapFigures, FuelTakesTheNearestByteOfTheSteppingLine)
{
    EXPECT_EQ(typed(FigureKind::Fuel, 19.60), 160);
    EXPECT_EQ(typed(FigureKind::Fuel, 6.56), 159);
    EXPECT_EQ(typed(FigureKind::Fuel, 14.70), 192);  // not 0: 0 is no stop of the line
    EXPECT_EQ(typed(FigureKind::Fuel, 14.59), 1);
    EXPECT_EQ(typed(FigureKind::Fuel, 13.72), 9);    // 13.73 is nearest
    EXPECT_EQ(FormatAfr(typed(FigureKind::Fuel, 12.7)), "12.71");
}

TEST(MapFigures, AFuelTieGoesToTheRicherByte)
{
    // Halfway between 14.70 (192) and 14.59 (1), and between 19.60 (160) and 19.40 (161).
    EXPECT_EQ(typed(FigureKind::Fuel, 14.645), 1);
    EXPECT_EQ(typed(FigureKind::Fuel, 19.50), 161);
    EXPECT_EQ(byteForFigure(FigureKind::Fuel, 14.59 + 0.055), 1);  // a computed half carries noise
}

TEST(MapFigures, FiguresOutsideTheirRangeAreRefused)
{
    EXPECT_EQ(typed(FigureKind::Fuel, 6.55), -1);
    EXPECT_EQ(typed(FigureKind::Fuel, 19.61), -1);
    EXPECT_EQ(typed(FigureKind::Timing, -96), -1);
    EXPECT_EQ(typed(FigureKind::Timing, 128.4), -1);
    EXPECT_EQ(typed(FigureKind::Rpm, -1), -1);
    EXPECT_EQ(typed(FigureKind::Rpm, 10001), -1);
    EXPECT_EQ(typed(FigureKind::Tp, -0.4), -1);
    EXPECT_EQ(typed(FigureKind::Tp, 99.4), -1);
    EXPECT_EQ(figureRangeMessage(FigureKind::Fuel), "The figure must be between 6.56 and 19.60.");
    EXPECT_EQ(figureRangeMessage(FigureKind::Timing), "The figure must be between -95 and 128.");
    EXPECT_EQ(figureRangeMessage(FigureKind::Rpm), "The figure must be between 0 and 10000.");
    EXPECT_EQ(figureRangeMessage(FigureKind::Tp), "The figure must be between 0 and 99.");
}

TEST(MapFigures, TimingIsTheDegreesThemselvesOrTheirComplement)
{
    EXPECT_EQ(typed(FigureKind::Timing, 0), 0);
    EXPECT_EQ(typed(FigureKind::Timing, 128), 128);
    EXPECT_EQ(typed(FigureKind::Timing, -95), 161);
    EXPECT_EQ(typed(FigureKind::Timing, -1), 255);
    EXPECT_EQ(typed(FigureKind::Timing, 12.5), 13);   // a half upwards
    EXPECT_EQ(typed(FigureKind::Timing, -2.5), 254);  // -2
    for (int d = -95; d <= 128; ++d)
        EXPECT_EQ(timingDegrees(typed(FigureKind::Timing, d)), d) << d;
}

TEST(MapFigures, ScaleHeadingsRoundAHalfUpwards)
{
    EXPECT_EQ(typed(FigureKind::Rpm, 0), 0);
    EXPECT_EQ(typed(FigureKind::Rpm, 10000), 200);
    EXPECT_EQ(typed(FigureKind::Rpm, 24), 0);
    EXPECT_EQ(typed(FigureKind::Rpm, 25), 1);
    EXPECT_EQ(typed(FigureKind::Rpm, 74), 1);
    EXPECT_EQ(typed(FigureKind::Rpm, 75), 2);
    EXPECT_EQ(typed(FigureKind::Tp, 0), 0);
    EXPECT_EQ(typed(FigureKind::Tp, 99), 99);
    EXPECT_EQ(typed(FigureKind::Tp, 98.5), 99);
    EXPECT_EQ(typed(FigureKind::Tp, 40.49), 40);
}

TEST(MapFigures, BlockTargetsAreClampedToTheRangeEnds)
{
    bool clamped = false;
    EXPECT_EQ(byteForFigure(FigureKind::Fuel, 25, &clamped), 160);
    EXPECT_TRUE(clamped);
    EXPECT_EQ(byteForFigure(FigureKind::Fuel, 3, &clamped), 159);
    EXPECT_TRUE(clamped);
    EXPECT_EQ(byteForFigure(FigureKind::Timing, 200, &clamped), 128);
    EXPECT_EQ(byteForFigure(FigureKind::Timing, -200, &clamped), 161);
    EXPECT_EQ(byteForFigure(FigureKind::Rpm, -5, &clamped), 0);
    EXPECT_EQ(byteForFigure(FigureKind::Tp, 300, &clamped), 99);
    EXPECT_TRUE(clamped);
    EXPECT_EQ(byteForFigure(FigureKind::Tp, 12, &clamped), 12);
    EXPECT_FALSE(clamped);
}

TEST(MapFigures, EveryByteOfTheLineComesBackFromItsOwnText)
{
    for (int b = 1; b <= 192; ++b)
        EXPECT_EQ(byteForFigure(FigureKind::Fuel, figureOfByte(FigureKind::Fuel, b)), b) << b;
}

TEST(MapFigures, TypedTextIsDigitsAPointAndALeadingMinus)
{
    EXPECT_DOUBLE_EQ(parseFigure("14.7").value_or(-1), 14.7);
    EXPECT_DOUBLE_EQ(parseFigure("-3").value_or(0), -3);
    EXPECT_DOUBLE_EQ(parseFigure(".5").value_or(0), 0.5);
    for (const char* bad : {"", "-", ".", "1.2.3", "1e3", "1,5", "--1", "12a", " 1"})
        EXPECT_FALSE(parseFigure(bad).has_value()) << bad;
}
