// A log read back as frames: its date lines in any locale, values with either
// decimal mark, the groups it skips and how it finds its feet again, the CSV
// rows, and what a chart draws of it.
#include "logging/log_chart_data.h"
#include "logging/log_csv.h"
#include "logging/log_frames.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace vexorin::logging;

namespace {
// One frame of fourteen lines, as capture writes them.
std::string frameText(const std::string& stamp, const std::vector<std::string>& values,
                      const std::string& end = "\r\n")
{
    std::string out = stamp + end;
    for (const std::string& v : values)
        out += v + end;
    return out;
}

const std::vector<std::string> kValues = {" 18.6 ", " 1012.5 ", "0.46", "1.01", "0.45", "0.46", " 2.5 ",
                                          "-5 ",    " 12.5 ",   " 176 ", " 86 ", "12.00", " 100 "};
const std::vector<std::string> kCommaValues = {" 18,6 ", " 1012,5 ", "0,46", "1,01", "0,45", "0,46", " 2,5 ",
                                               "-5 ",    " 12,5 ",   " 176 ", " 86 ", "12,00", " 100 "};

struct Read {
    std::vector<LogFrame> frames;
    std::int64_t unreadable = 0;
    std::int64_t lines = 0;
};

// Feeds the text in pieces of `piece` bytes.
Read readAll(const std::string& text, std::size_t piece = 7)
{
    Read r;
    LogFrameReader reader([&r](const LogFrame& f) { r.frames.push_back(f); });
    for (std::size_t i = 0; i < text.size(); i += piece)
        reader.feed(text.data() + i, std::min(piece, text.size() - i));
    reader.finish();
    r.unreadable = reader.unreadable();
    r.lines = reader.lines();
    return r;
}

std::string csvOf(const std::string& log)
{
    std::string out = std::string(kCsvHeader) + kCsvLineEnd;
    LogFrameReader reader([&out](const LogFrame& f) { appendCsvRow(f, out); });
    reader.feed(log.data(), log.size());
    reader.finish();
    return out;
}
}  // namespace

TEST(LogFrames, DateLinesInAnyLocaleAreMonthFirst)
{
    const LogStamp expected{2026, 11, 22, 19, 28, 32};
    for (const char* line : {"11/22/202619:28:32", "11.22.202619.28.32", "11-22-2026 19:28:32", " 11/22/2026  19:28:32 "}) {
        const auto t = parseStampLine(line);
        ASSERT_TRUE(t) << line;
        EXPECT_EQ(*t, expected) << line;
    }
    EXPECT_EQ(isoText(expected), "2026-11-22T19:28:32");
    EXPECT_TRUE(parseStampLine("02/29/202400:00:00"));
    for (const char* bad : {"", "13/01/202600:00:00", "02/29/202500:00:00", "11/22/202624:00:00", "11/22/202619:60:00",
                            "11/22/26 19:28:32", "11/22/202619:28", "11/22/202619:28:32x", "1122202619:28:32", " 62 "})
        EXPECT_FALSE(parseStampLine(bad)) << bad;
}

TEST(LogFrames, ValuesTakeEitherDecimalMarkAndComeOutWithAPoint)
{
    EXPECT_EQ(parseValueLine(" 62 ").value_or("?"), "62");
    EXPECT_EQ(parseValueLine("-5 ").value_or("?"), "-5");
    EXPECT_EQ(parseValueLine("1.26").value_or("?"), "1.26");
    EXPECT_EQ(parseValueLine("1,26").value_or("?"), "1.26");
    EXPECT_EQ(parseValueLine(" -58,5 ").value_or("?"), "-58.5");
    for (const char* bad : {"", " ", "-", "1.", ".5", "1.2.3", "1,234.5", "1e3", "+5", "abc", "12 34", "11/22/202619:28:32"})
        EXPECT_FALSE(parseValueLine(bad)) << bad;
}

TEST(LogCsv, RowsCarryTheIsoTimeAndThePointWhateverTheLogsLocale)
{
    const std::string point = csvOf(frameText("11/22/202619:28:32", kValues));
    const std::string comma = csvOf(frameText("11.22.202619.28.32", kCommaValues));
    const std::string expected =
        "time,speed_mph,rpm,tps_v,maf_v,o2_left_v,o2_right_v,inj_ms,timing_deg,iacv_pct,water_f,fuel_f,battery_v,af_alpha\n"
        "2026-11-22T19:28:32,18.6,1012.5,0.46,1.01,0.45,0.46,2.5,-5,12.5,176,86,12.00,100\n";
    EXPECT_EQ(point, expected);
    EXPECT_EQ(comma, expected);
}

TEST(LogCsv, AnEmptyLogGivesTheHeaderAlone)
{
    EXPECT_EQ(csvOf(""), std::string(kCsvHeader) + "\n");
}

TEST(LogFrames, ABadValueSkipsTheWholeGroupAndReadingGoesOnAtTheNextDateLine)
{
    std::vector<std::string> bad = kValues;
    bad[4] = "garbage";
    const std::string text = frameText("11/22/202619:28:30", kValues) + frameText("11/22/202619:28:31", bad) +
                             frameText("11/22/202619:28:32", kValues);
    const Read r = readAll(text);
    ASSERT_EQ(r.frames.size(), 2u);
    EXPECT_EQ(r.frames[0].stamp.second, 30);
    EXPECT_EQ(r.frames[1].stamp.second, 32);
    EXPECT_EQ(r.frames[1].firstLine, 28);
    EXPECT_EQ(r.unreadable, 1);
}

TEST(LogFrames, AFrameMissingALineIsSkippedAndTheNextOneIsFoundAtItsDateLine)
{
    std::vector<std::string> shortValues = kValues;
    shortValues.pop_back();  // twelve values: the next date line comes one line early
    const std::string text = frameText("11/22/202619:28:30", shortValues) + frameText("11/22/202619:28:31", kValues);
    const Read r = readAll(text, 1);
    ASSERT_EQ(r.frames.size(), 1u);
    EXPECT_EQ(r.frames[0].stamp.second, 31);
    EXPECT_EQ(r.frames[0].firstLine, 13);
    EXPECT_EQ(r.unreadable, 1);
}

TEST(LogFrames, LinesBeforeTheFirstDateLineCountAsOneGroup)
{
    const std::string text = "junk\r\n 5 \r\nmore junk\r\n" + frameText("11/22/202619:28:30", kValues);
    const Read r = readAll(text);
    ASSERT_EQ(r.frames.size(), 1u);
    EXPECT_EQ(r.frames[0].firstLine, 3);
    EXPECT_EQ(r.unreadable, 1);
}

TEST(LogFrames, APartialLastFrameIsSkipped)
{
    std::string text = frameText("11/22/202619:28:30", kValues) + frameText("11/22/202619:28:31", kValues);
    text.resize(text.size() - 12);  // the last lines lost
    const Read r = readAll(text);
    EXPECT_EQ(r.frames.size(), 1u);
    EXPECT_EQ(r.unreadable, 1);
    // A last value without its line end is a value all the same.
    std::string whole = frameText("11/22/202619:28:30", kValues);
    whole.resize(whole.size() - 2);
    EXPECT_EQ(readAll(whole).frames.size(), 1u);
    EXPECT_EQ(readAll(whole).unreadable, 0);
}

TEST(LogFrames, LineEndsAreCountedAsTheLogPlayerCountsThem)
{
    const std::string lf = frameText("11/22/202619:28:30", kValues, "\n");
    const std::string cr = frameText("11/22/202619:28:31", kValues, "\r");
    const Read r = readAll(lf + cr, 3);
    ASSERT_EQ(r.frames.size(), 2u);
    EXPECT_EQ(r.frames[1].firstLine, 14);
    EXPECT_EQ(r.lines, 28);
}

TEST(LogFrames, AnOverlongLineIsNoValue)
{
    std::vector<std::string> values = kValues;
    values[2] = std::string(100000, '1');
    const Read r = readAll(frameText("11/22/202619:28:30", values), 4096);
    EXPECT_TRUE(r.frames.empty());
    EXPECT_EQ(r.unreadable, 1);
}

TEST(LogFrames, UnreadableTexts)
{
    EXPECT_EQ(unreadableFramesText(0), "");
    EXPECT_EQ(unreadableFramesText(1), "1 frame could not be read.");
    EXPECT_EQ(unreadableFramesText(3), "3 frames could not be read.");
}

TEST(LogChartData, KeepsEveryFramesValuesRangesAndLines)
{
    std::string text;
    for (int i = 0; i < 5; ++i) {
        std::vector<std::string> v = kValues;
        v[1] = " " + std::to_string(800 + 100 * i) + " ";
        text += frameText("11/22/202619:28:3" + std::to_string(i), v);
    }
    LogChartData data;
    LogFrameReader reader([&data](const LogFrame& f) { data.add(f); });
    reader.feed(text.data(), text.size());
    reader.finish();
    ASSERT_EQ(data.frames(), 5);
    EXPECT_DOUBLE_EQ(data.minimum(1), 800);
    EXPECT_DOUBLE_EQ(data.maximum(1), 1200);
    EXPECT_DOUBLE_EQ(data.value(1, 2), 1000);
    EXPECT_EQ(data.valueText(1, 2), "1000");
    EXPECT_EQ(data.valueText(11, 0), "12.00");  // battery keeps its two decimals
    EXPECT_EQ(data.valueText(7, 0), "-5");
    EXPECT_EQ(data.firstLine(3), 42);
    EXPECT_EQ(data.frameAtLine(0), 0);
    EXPECT_EQ(data.frameAtLine(42), 3);
    EXPECT_EQ(data.frameAtLine(50), 3);
    EXPECT_EQ(data.frameAtLine(-1), -1);
}

TEST(LogChartData, AnEnvelopeKeepsEveryColumnsLowAndHigh)
{
    LogChartData data;
    LogFrame f;
    for (int i = 0; i < 10000; ++i) {
        f.numbers[1] = i == 5000 ? 9000 : (i == 7000 ? -50 : 1000);
        f.firstLine = 14 * i;
        data.add(f);
    }
    const std::vector<ChartPoint> points = data.envelope(1, 1, 10000, 100);
    EXPECT_LE(points.size(), 200u);
    bool spike = false, dip = false;
    for (const ChartPoint& p : points) {
        spike = spike || (p.value == 9000 && p.frame == 5001);
        dip = dip || (p.value == -50 && p.frame == 7001);
    }
    EXPECT_TRUE(spike);
    EXPECT_TRUE(dip);
    // Zoomed in far enough, every frame is a point.
    const std::vector<ChartPoint> near = data.envelope(1, 4990, 5010, 100);
    EXPECT_EQ(near.size(), 23u);
    EXPECT_TRUE(data.envelope(1, 5, 1, 100).empty());
    EXPECT_TRUE(LogChartData().envelope(1, 1, 10, 100).empty());
}

TEST(ChartRange, ZoomKeepsThePointerStillAndStaysInsideTheLog)
{
    const ChartRange all{1, 1001};
    const ChartRange in = all.zoomed(0.5, 251, 1, 1001);
    EXPECT_DOUBLE_EQ(in.span(), 500);
    EXPECT_DOUBLE_EQ(in.from, 126);  // 251 stays a quarter of the way across
    EXPECT_DOUBLE_EQ(all.zoomed(4, 500, 1, 1001).span(), 1000);
    EXPECT_DOUBLE_EQ(all.zoomed(1e-9, 500, 1, 1001).span(), ChartRange::kMinimumSpan);
    const ChartRange left = in.panned(-1000, 1, 1001);
    EXPECT_DOUBLE_EQ(left.from, 1);
    EXPECT_DOUBLE_EQ(left.span(), 500);
    const ChartRange right = in.panned(1000, 1, 1001);
    EXPECT_DOUBLE_EQ(right.to, 1001);
}

TEST(LogChartData, AFigureBeyondAnyReadingIsDrawnAtTheEdge)
{
    LogChartData data;
    LogFrame f;
    f.numbers[1] = 7.7e49;  // a line of fifty digits
    data.add(f);
    f.numbers[1] = -7.7e49;
    data.add(f);
    EXPECT_FLOAT_EQ(float(data.maximum(1)), 1e9f);
    EXPECT_FLOAT_EQ(float(data.minimum(1)), -1e9f);
    for (const ChartPoint& p : data.envelope(1, 1, 2, 10))
        EXPECT_TRUE(p.value >= data.minimum(1) && p.value <= data.maximum(1));
}
