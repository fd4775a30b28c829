// Any bytes as a log read back for its CSV export and its chart. Checked for
// every input: reading it whole and in pieces of any size finds the same
// frames and the same unreadable groups; frames start on increasing lines,
// never more than the lines allow; every value is a number in its normal
// form; every CSV row has the time and thirteen fields; a chart's envelope
// stays within its frames and its columns.
#include "logging/log_chart_data.h"
#include "logging/log_csv.h"
#include "logging/log_frames.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

using namespace vexorin::logging;

namespace {
void check(bool ok, int line)
{
    if (!ok) {
        std::fprintf(stderr, "property of line %d broken\n", line);
        std::abort();
    }
}
#define require(ok) check(ok, __LINE__)

struct Read {
    std::vector<LogFrame> frames;
    std::int64_t unreadable = 0;
    std::int64_t lines = 0;
};

Read read(const std::uint8_t* data, std::size_t size, std::size_t piece)
{
    Read r;
    LogFrameReader reader([&r](const LogFrame& f) { r.frames.push_back(f); });
    for (std::size_t i = 0; i < size; i += piece)
        reader.feed(reinterpret_cast<const char*>(data) + i, std::min(piece, size - i));
    reader.finish();
    r.unreadable = reader.unreadable();
    r.lines = reader.lines();
    return r;
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::size_t piece = 1 + data[0] % 17;
    const Read whole = read(data + 1, size - 1, size);
    const Read pieces = read(data + 1, size - 1, piece);
    require(whole.frames.size() == pieces.frames.size());
    require(whole.unreadable == pieces.unreadable && whole.lines == pieces.lines);
    require(std::int64_t(whole.frames.size()) * 14 <= whole.lines);

    LogChartData chart;
    std::int64_t lastLine = -14;
    for (std::size_t i = 0; i < whole.frames.size(); ++i) {
        const LogFrame& f = whole.frames[i];
        require(f.firstLine == pieces.frames[i].firstLine && f.values == pieces.frames[i].values);
        require(f.firstLine >= lastLine + 14 && f.firstLine + 14 <= whole.lines);
        lastLine = f.firstLine;
        for (const std::string& v : f.values) {
            const auto again = parseValueLine(v);
            require(again && *again == v && v.find(',') == std::string::npos);
        }
        std::string row;
        appendCsvRow(f, row);
        require(std::count(row.begin(), row.end(), ',') == kFrameValues && row.back() == '\n');
        require(isoText(f.stamp).size() == 19);
        chart.add(f);
    }
    if (chart.frames() > 0) {
        const double from = 1 + data[0] % 7;
        const double to = from + double(size % 1000);
        const int columns = 1 + int(size % 64);
        for (int k = 0; k < kFrameValues; ++k) {
            const std::vector<ChartPoint> points = chart.envelope(k, from, to, columns);
            require(points.size() <= std::max<std::size_t>(2 * std::size_t(columns), std::size_t(chart.frames())));
            for (const ChartPoint& p : points)
                require(p.frame >= 1 && p.frame <= double(chart.frames()) && p.value >= chart.minimum(k) - 1 &&
                        p.value <= chart.maximum(k) + 1);
        }
        require(chart.frameAtLine(whole.lines) == chart.frames() - 1);
    }
    return 0;
}
