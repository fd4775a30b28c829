// FuelRun files: the rows a recording writes, and what reading a file makes of
// good rows, odd line ends, unreadable rows and a wrong first line.
#include "tools/fuel_run_file.h"

#include <gtest/gtest.h>

using namespace vexorin::tools;

TEST(FuelRunFile, RowsOfAScriptedSession)
{
    std::string file = std::string(kRunHeader) + "\n";
    file += ecuRowLine(0, "750", "1.32", "0.46", "185", "100");
    file += afrRowLine(40, "14.62");
    file += ecuRowLine(101, "2450", "2.05", "0.74", "185.0", "97");
    EXPECT_EQ(file,
              "time_ms,kind,rpm,maf_v,tps_v,water_f,af_alpha,afr\n"
              "0,ecu,750,1.32,0.46,185,100,\n"
              "40,afr,,,,,,14.62\n"
              "101,ecu,2450,2.05,0.74,185.0,97,\n");
    RunReader reader;
    ASSERT_TRUE(reader.feed(file));
    ASSERT_TRUE(reader.finish());
    EXPECT_EQ(reader.unreadable(), 0);
    const FuelRun run = reader.take();
    ASSERT_EQ(run.ecu.size(), 2u);
    ASSERT_EQ(run.afr.size(), 1u);
    EXPECT_EQ(run.ecu[1].timeMs, 101);
    EXPECT_DOUBLE_EQ(run.ecu[1].rpm, 2450);
    EXPECT_DOUBLE_EQ(run.ecu[1].maf, 2.05);
    EXPECT_DOUBLE_EQ(run.ecu[1].tps, 0.74);
    EXPECT_DOUBLE_EQ(run.ecu[1].water, 185);
    EXPECT_DOUBLE_EQ(run.ecu[1].alpha, 97);
    EXPECT_EQ(run.afr[0].timeMs, 40);
    EXPECT_DOUBLE_EQ(run.afr[0].afr, 14.62);
}

TEST(FuelRunFile, UnreadableRowsAreCountedAndSkipped)
{
    RunReader reader;
    reader.feed(std::string(kRunHeader) + "\r\n");
    const char* const bad[] = {
        "12,ecu,750,1.32,0.46,185,100",          // a field short
        "12,ecu,750,1.32,0.46,185,100,,",        // a field too many
        "12,ecu,750,1.32,0.46,185,100,14.7",     // an ecu row with a ratio
        "12,afr,750,,,,,14.7",                   // an afr row with a frame value
        "12,afr,,,,,,",                          // no ratio
        "12,afr,,,,,,14,7",                      // a comma as decimal mark
        "-5,afr,,,,,,14.7",                      // a negative time
        "1.5,afr,,,,,,14.7",                     // a time that is no whole number
        "12,AFR,,,,,,14.7",                      // an unknown kind
        "12,ecu,750,1e3,0.46,185,100,",          // an exponent
        "12,ecu,750,nan,0.46,185,100,",
        " 12,afr,,,,,,14.7",                     // a blank
        "12,afr,,,,,,14.7x",
    };
    for (const char* line : bad)
        reader.feed(std::string(line) + "\r\n");
    reader.feed("13,afr,,,,,,14.70\r");  // a good one, CR alone
    reader.feed("\n14,afr,,,,,,-1.5");   // the CR LF pair split across feeds, no last line end
    EXPECT_TRUE(reader.finish());
    EXPECT_EQ(reader.unreadable(), std::int64_t(std::size(bad)));
    const FuelRun run = reader.take();
    ASSERT_EQ(run.afr.size(), 2u);
    EXPECT_DOUBLE_EQ(run.afr[1].afr, -1.5);
}

TEST(FuelRunFile, AWrongFirstLineIsNoRunFile)
{
    for (const char* first : {"time_ms,kind,rpm,maf_v,tps_v,water_f,af_alpha", "Time,kind,rpm,maf_v,tps_v,water_f,af_alpha,afr",
                              "", "10,ecu,750,1.32,0.46,185,100,"}) {
        RunReader reader;
        reader.feed(std::string(first) + "\n10,afr,,,,,,14.7\n");
        EXPECT_FALSE(reader.finish()) << first;
        EXPECT_TRUE(reader.headerWrong()) << first;
    }
    RunReader empty;
    EXPECT_FALSE(empty.finish());
    EXPECT_FALSE(empty.headerWrong());
    RunReader marked;
    marked.feed("\xEF\xBB\xBF" + std::string(kRunHeader) + "\n");
    EXPECT_TRUE(marked.finish());
}

TEST(FuelRunFile, RowsAreSortedByTimeKeepingTheOrderOfEqualTimes)
{
    RunReader reader;
    reader.feed(std::string(kRunHeader) + "\n20,afr,,,,,,14.1\n10,afr,,,,,,14.2\n20,afr,,,,,,14.3\n");
    const FuelRun run = reader.take();
    ASSERT_EQ(run.afr.size(), 3u);
    EXPECT_DOUBLE_EQ(run.afr[0].afr, 14.2);
    EXPECT_DOUBLE_EQ(run.afr[1].afr, 14.1);
    EXPECT_DOUBLE_EQ(run.afr[2].afr, 14.3);
}

TEST(FuelRunFile, LabelTextsBecomePlainNumbers)
{
    EXPECT_EQ(plainNumber("1,32", ",", "."), "1.32");
    EXPECT_EQ(plainNumber("1.012", ",", "."), "1012");
    EXPECT_EQ(plainNumber("2450"), "2450");
    EXPECT_EQ(plainNumber("-4.5"), "-4.5");
    EXPECT_EQ(plainNumber(""), "");
    EXPECT_EQ(plainNumber("abc"), "");
    EXPECT_FALSE(runNumber("."));
    EXPECT_FALSE(runNumber("-"));
    EXPECT_DOUBLE_EQ(*runNumber("0.5"), 0.5);
}
