#include "rom/rules/vq_table.h"

#include <gtest/gtest.h>

using namespace vexorin::rom;

TEST(VqTableTest, CurveHasSixtyFourRows)
{
    EXPECT_EQ(kVqCurve.size(), 64u);
    EXPECT_EQ(kVqCurve[6], 73);     // 0.56 V
    EXPECT_EQ(kVqCurve[24], 3111);  // 2.00 V
    EXPECT_EQ(kVqCurve[50], 31267); // 4.08 V
    EXPECT_EQ(kVqCurve[63], 65535); // 5.12 V
}

TEST(VqTableTest, FirstRowOfEachRoundingGroupAnswers)
{
    EXPECT_EQ(VqTable::quantityOf(0), 48);
    EXPECT_EQ(VqTable::quantityOf(1), 73);
    EXPECT_EQ(VqTable::quantityOf(2), 1399);  // not the 3111 of the row 2.00
    EXPECT_EQ(VqTable::quantityOf(3), 6969);
    EXPECT_EQ(VqTable::quantityOf(4), 19510);
    EXPECT_EQ(VqTable::quantityOf(5), 44923);
    EXPECT_EQ(VqTable::quantityOf(6), -1);
}

TEST(VqTableTest, OverflowKeepsTheLastQuantityAndTheClasses)
{
    VqTable vq;
    ASSERT_TRUE(vq.VQTable(3, "1000"));
    EXPECT_EQ(vq.airQuantity(), 6969);
    EXPECT_EQ(vq.rpmBin(), 3);
    EXPECT_FALSE(vq.VQTable(5, "6500"));
    EXPECT_EQ(vq.airQuantity(), 6969);
    EXPECT_EQ(vq.rpmBin(), 3);
}

TEST(VqTableTest, RpmClassBorders)
{
    const std::pair<int, int> cases[] = {{400, 1},  {401, 2},   {2500, 7},  {2501, 8},  {2800, 8},
                                         {5600, 14}, {5601, 15}, {6000, 15}, {6001, 16}, {0, 1}};
    for (const auto& [e, bin] : cases)
        EXPECT_EQ(VqTable::rpmBinOf(e), bin) << e;
}

TEST(VqTableTest, ThrottleClassBorders)
{
    EXPECT_EQ(VqTable::tpBinOf(8), 1);
    EXPECT_EQ(VqTable::tpBinOf(9), 2);
    EXPECT_EQ(VqTable::tpBinOf(64), 13);
    EXPECT_EQ(VqTable::tpBinOf(72), 14);
    EXPECT_EQ(VqTable::tpBinOf(73), 15);
    EXPECT_EQ(VqTable::tpBinOf(81), 16);
}

TEST(VqTableTest, ThrottleClassFeedsOnItselfAndStaysOne)
{
    VqTable vq;
    for (int i = 0; i < 5; ++i) {
        vq.VQTable(1, "3000");
        EXPECT_EQ(vq.tpBin(), 1);
    }
}

TEST(VqTableTest, ArgumentFromTheRawMafValue)
{
    EXPECT_EQ(vqArgument(201), 1);   // 1.005 V → 1.01 → 1
    EXPECT_EQ(vqArgument(400), 2);
    EXPECT_EQ(vqArgument(1000), 5);
    EXPECT_EQ(vqArgument(500), 2);   // 2.50 → 2, half to even
    EXPECT_EQ(vqArgument(700), 4);   // 3.50 → 4
    EXPECT_EQ(vqArgument(0), 0);
}
