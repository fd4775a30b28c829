// The plain tables of the ECU tools: binary text, the delay items, the 16-bit
// counters, the end of a burst's stream, region conversions, and the Active
// Test's position tables, water temperature and on/off steps.
#include "tools/ecu_tool_tables.h"

#include <gtest/gtest.h>

using namespace vexorin::tools;

TEST(DecimalToBinary, MostSignificantFirstWithoutLeadingZeros)
{
    EXPECT_EQ(DecimalToBinary(0), "0");
    EXPECT_EQ(DecimalToBinary(1), "1");
    EXPECT_EQ(DecimalToBinary(54), "110110");
    EXPECT_EQ(DecimalToBinary(255), "11111111");
    EXPECT_EQ(DecimalToBinary(256), "100000000");
}

TEST(DelayItems, TwelveItemsAndOnlyTheFirstSixCarryAnEstimate)
{
    const int intervals[] = {10, 50, 100, 150, 200, 250, 300, 350, 400, 450, 500, 1000};
    for (int i = 0; i < kDelayCount; ++i) {
        EXPECT_EQ(kDelayItems[std::size_t(i)].intervalMs, intervals[i]);
        EXPECT_EQ(kDelayItems[std::size_t(i)].estimate != nullptr, i < 6) << i;
    }
    EXPECT_STREQ(kDelayItems[0].estimate, "Estimated Time : 5 min 38 sec");
    EXPECT_STREQ(kDelayItems[5].estimate, "Estimated Time : 21 min 46 sec");
    EXPECT_STREQ(kDelayItems[10].name, "fivrhunmilliseconds");
    EXPECT_STREQ(kDelayItems[7].name, "threhunfiftymilliseconds");
    EXPECT_STREQ(kDelayItems[11].caption, "1000 milliseconds");
    EXPECT_EQ(kDelayItems[kSwitchingDelay].intervalMs, 250);
}

TEST(Int16, AnAdditionPastTheLimitLeavesTheValue)
{
    EXPECT_EQ(addInt16(32766, 1), 32767);
    EXPECT_EQ(addInt16(32767, 1), 32767);
    EXPECT_EQ(addInt16(-1, 1), 0);
    EXPECT_EQ(addInt16(-32768, -1), -32768);
}

TEST(BurstStream, EndsAtTheFirstFrameSlotThatHoldsNoFrameStart)
{
    std::vector<std::uint8_t> r(34, 0x36);
    r[24] = 0xFF;
    EXPECT_FALSE(burstStreamEnded(r));
    r.push_back(0xCF);   // the stop reply right behind the first frame
    EXPECT_TRUE(burstStreamEnded(r));
    r.resize(34);
    r.push_back(0xFF);   // a second frame had begun
    EXPECT_FALSE(burstStreamEnded(r));
    r.resize(44, 0xCF);  // its data may hold CF without ending anything
    EXPECT_FALSE(burstStreamEnded(r));
    r.push_back(0xCF);
    EXPECT_TRUE(burstStreamEnded(r));
}

TEST(RegionViews, BanksCellsAndMessagesOfTheTable)
{
    EXPECT_EQ(kRegionViews[2].bank, 255);
    EXPECT_EQ(kRegionViews[2].row, 12);
    EXPECT_EQ(kRegionViews[2].firstColumn, 5);
    EXPECT_EQ(kRegionViews[5].firstColumn, 12);
    EXPECT_EQ(kRegionViews[5].lastColumn, 13);
    EXPECT_EQ(kRegionViews[15].row, 8);
    EXPECT_EQ(kRegionViews[15].lastRow, 15);
    // Row 18 paints only to column 12.
    EXPECT_EQ(kRegionViews[18].lastColumn, 12);
    EXPECT_STREQ(kRegionViews[9].message, "Currently viewing the Primary Fuel Map.");
    EXPECT_STREQ(kRegionViews[23].message, "Currently viewing the Low Octane High Gear Fuel Map.");
    EXPECT_EQ(kRegionViews[23].bank, 240);
}

TEST(RegionViews, Conversions)
{
    EXPECT_EQ(convertRegion(Conversion::Msec, "4B"), "0.75 msec");
    EXPECT_EQ(convertRegion(Conversion::Msec, "64"), "1 msec");
    EXPECT_EQ(convertRegion(Conversion::Rpm, "82"), "6500 RPM");
    EXPECT_EQ(convertRegion(Conversion::Speed, "5A"), "180 km/h or 112 MPH");
    EXPECT_EQ(convertRegion(Conversion::KValue, "12", "34"), "4660");
    EXPECT_EQ(convertRegion(Conversion::None, "12"), "");
}

TEST(RegionViews, ABlankKValueCellLeavesTheOtherOrNothing)
{
    EXPECT_EQ(convertRegion(Conversion::KValue, "", "34"), "52");
    EXPECT_EQ(convertRegion(Conversion::KValue, "12", ""), "18");
    EXPECT_EQ(convertRegion(Conversion::KValue, "", ""), "");
}

TEST(RegionViews, RowHeadings)
{
    EXPECT_EQ(bankRowHeading(253, 0x10), " FD10-FD1F");
    EXPECT_EQ(bankRowHeading(0x7F, 0xF0), " 7FF0-7FFF");
}

TEST(ActiveTestTables, PositionTableOfTheThreeTrims)
{
    const char* timing[] = {"-6*", "-5*", "-4*", "-3*", "-2*", "-1*", "0*", "+1*", "+2*", "+3*", "+4*", "+5*", "+6*"};
    const int timingBytes[] = {250, 251, 252, 253, 254, 255, 0, 1, 2, 3, 4, 5, 6};
    for (int p = 0; p < kTrimPositions; ++p) {
        EXPECT_EQ(trimLabel(Trim::Timing, p), timing[p]);
        EXPECT_EQ(trimByte(Trim::Timing, p), timingBytes[p]);
        EXPECT_EQ(trimLabel(Trim::InjectorFuel, p), std::to_string(94 + p) + "%");
        EXPECT_EQ(trimLabel(Trim::Iacv, p), std::to_string(94 + p) + "%");
        EXPECT_EQ(trimByte(Trim::InjectorFuel, p), 94 + p);
        EXPECT_EQ(trimByte(Trim::Iacv, p), p == 6 ? 0 : 94 + p);
    }
    EXPECT_EQ(kTrims[0].code, 129);
    EXPECT_EQ(kTrims[1].code, 130);
    EXPECT_EQ(kTrims[2].code, 132);
}

TEST(ActiveTestTables, WaterTemperatureRoundsToTheNearest)
{
    EXPECT_EQ(waterTempByte(0), 32);
    EXPECT_EQ(waterTempByte(400), 254);
    EXPECT_EQ(waterTempByte(32), 50);
    EXPECT_EQ(waterTempByte(212), 150);
    EXPECT_EQ(waterTempByte(41), 55);
    EXPECT_EQ(waterTempByte(33), 51);   // 50.555… rounds up
    EXPECT_EQ(waterTempByte(34), 51);   // 51.111… rounds down
}

TEST(ActiveTestTables, OnOffCodesAndSteps)
{
    const int codes[] = {138, 144, 135, 140, 143, 137};
    for (int i = 0; i < kOnOffCount; ++i)
        EXPECT_EQ(kOnOffs[std::size_t(i)].code, codes[i]);
    EXPECT_FALSE(kOnOffs[kFuelPump].dashAtOpen);
    EXPECT_EQ(pressOnOff("-")->label, "OFF");
    EXPECT_EQ(pressOnOff("-")->value, 0);
    EXPECT_EQ(pressOnOff("ON")->value, 0);
    EXPECT_EQ(pressOnOff("OFF")->label, "ON");
    EXPECT_EQ(pressOnOff("OFF")->value, 1);
    EXPECT_FALSE(pressOnOff("?"));
}
