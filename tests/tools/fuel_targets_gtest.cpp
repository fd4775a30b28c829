// The target file: its name, its text, what a read accepts and refuses, and
// the targets a map starts with.
#include "tools/fuel_targets.h"

#include <gtest/gtest.h>

using namespace vexorin::tools;

TEST(FuelTargets, NameBesideTheBinFile)
{
    EXPECT_EQ(targetPathFor("/cars/tune.bin"), "/cars/tune.bin.target.csv");
}

TEST(FuelTargets, TextRoundTrip)
{
    Targets t{};
    for (std::size_t i = 0; i < t.size(); ++i)
        t[i] = 12.0 + double(i % 50) / 10;
    const std::string text = targetsText(t);
    EXPECT_EQ(text.substr(0, 30), "12.00,12.10,12.20,12.30,12.40,");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 16);
    const auto back = parseTargets(text);
    ASSERT_TRUE(back);
    for (std::size_t i = 0; i < t.size(); ++i)
        EXPECT_NEAR((*back)[i], t[i], 1e-9);
}

TEST(FuelTargets, LineEndsAndBlanks)
{
    std::string line = " 14.70";
    for (int c = 1; c < 16; ++c)
        line += ", 13.5 ";
    std::string text;
    for (int r = 0; r < 16; ++r)
        text += line + (r % 2 ? "\r\n" : "\r");
    const auto t = parseTargets(text.substr(0, text.size() - 1));  // no last line end
    ASSERT_TRUE(t);
    EXPECT_DOUBLE_EQ((*t)[0], 14.70);
    EXPECT_DOUBLE_EQ((*t)[255], 13.5);
}

TEST(FuelTargets, RefusedTexts)
{
    Targets t{};
    t.fill(14.7);
    const std::string good = targetsText(t);
    std::string problem;
    EXPECT_FALSE(parseTargets(good.substr(0, good.rfind("14.70")), &problem));
    EXPECT_FALSE(parseTargets(good + "14.70\n", &problem));
    EXPECT_EQ(problem, "it does not hold 16 lines");
    std::string outside = good;
    outside.replace(0, 5, "19.61");
    EXPECT_FALSE(parseTargets(outside, &problem));
    EXPECT_EQ(problem, "line 1 holds a figure outside 6.56 to 19.60");
    std::string extra = good;
    extra.insert(extra.find('\n'), ",14.70");
    EXPECT_FALSE(parseTargets(extra, &problem));
    EXPECT_EQ(problem, "line 1 does not hold 16 figures");
    EXPECT_FALSE(parseTargets("", &problem));
    std::string word = good;
    word.replace(6, 5, "fuel!");
    EXPECT_FALSE(parseTargets(word, &problem));
    std::string inRange = good;
    inRange.replace(0, 5, "6.56");
    EXPECT_TRUE(parseTargets(inRange));
}

TEST(FuelTargets, TargetsOfAMapAreItsFigures)
{
    std::array<std::uint8_t, kMapCells> bytes{};
    bytes[0] = 192;
    bytes[1] = 160;
    bytes[2] = 159;
    const Targets t = targetsOfMap(bytes);
    EXPECT_DOUBLE_EQ(t[0], 14.70);
    EXPECT_DOUBLE_EQ(t[1], 19.60);
    EXPECT_DOUBLE_EQ(t[2], 6.56);
    EXPECT_DOUBLE_EQ(t[3], 14.70);
}
