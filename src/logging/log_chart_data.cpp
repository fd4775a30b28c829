#include "logging/log_chart_data.h"

#include "sensors/sensor_catalog.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace vexorin::logging {

void LogChartData::add(const LogFrame& frame)
{
    const bool first = firstLines_.empty();
    for (std::size_t k = 0; k < std::size_t(kFrameValues); ++k) {
        // No reading comes near a billion: a figure beyond is drawn at the edge of that.
        const float stored = float(std::clamp(frame.numbers[k], -1e9, 1e9));
        const double v = stored;
        values_[k].push_back(stored);
        min_[k] = first ? v : std::min(min_[k], v);
        max_[k] = first ? v : std::max(max_[k], v);
    }
    firstLines_.push_back(frame.firstLine);
}

std::int64_t LogChartData::frameAtLine(std::int64_t line) const
{
    const auto it = std::upper_bound(firstLines_.begin(), firstLines_.end(), line);
    return std::int64_t(it - firstLines_.begin()) - 1;
}

std::vector<ChartPoint> LogChartData::envelope(int k, double from, double to, int columns) const
{
    std::vector<ChartPoint> out;
    const std::int64_t n = frames();
    if (n == 0 || k < 0 || k >= kFrameValues || columns < 1 || !(to >= from))
        return out;
    // Frames from 1: one more on each side, so the line runs to the edges.
    const std::int64_t first = std::clamp<std::int64_t>(std::int64_t(std::floor(from)) - 1, 1, n);
    const std::int64_t last = std::clamp<std::int64_t>(std::int64_t(std::ceil(to)) + 1, 1, n);
    const std::vector<float>& ys = values_[std::size_t(k)];
    const std::int64_t count = last - first + 1;
    if (count <= 2 * std::int64_t(columns)) {
        out.reserve(std::size_t(count));
        for (std::int64_t f = first; f <= last; ++f)
            out.push_back({double(f), double(ys[std::size_t(f - 1)])});
        return out;
    }
    out.reserve(std::size_t(columns) * 2);
    const double perColumn = double(count) / columns;
    for (int c = 0; c < columns; ++c) {
        const std::int64_t a = first + std::int64_t(c * perColumn);
        const std::int64_t b = std::min(last, first + std::int64_t((c + 1) * perColumn) - 1);
        if (b < a)
            continue;
        std::int64_t lo = a, hi = a;
        for (std::int64_t f = a + 1; f <= b; ++f) {
            const float y = ys[std::size_t(f - 1)];
            if (y < ys[std::size_t(lo - 1)])
                lo = f;
            if (y > ys[std::size_t(hi - 1)])
                hi = f;
        }
        const std::int64_t p = std::min(lo, hi), q = std::max(lo, hi);
        out.push_back({double(p), double(ys[std::size_t(p - 1)])});
        if (q != p)
            out.push_back({double(q), double(ys[std::size_t(q - 1)])});
    }
    return out;
}

std::string LogChartData::numberText(int k, double v)
{
    char buf[48];
    std::snprintf(buf, sizeof buf, "%.2f", v);
    std::string s = buf;
    if (vexorin::sensors::kSensors[std::size_t(k)].form == vexorin::sensors::TextForm::TwoDecimals)
        return s;
    // The log's values have at most two decimals: print those and drop trailing zeros.
    while (!s.empty() && s.back() == '0')
        s.pop_back();
    if (!s.empty() && s.back() == '.')
        s.pop_back();
    if (s == "-0")
        s = "0";
    return s;
}

ChartRange ChartRange::zoomed(double factor, double centre, double first, double last) const
{
    const double whole = std::max(kMinimumSpan, last - first);
    const double span = std::clamp(this->span() * factor, std::min(kMinimumSpan, whole), whole);
    const double old = this->span();
    const double at = old > 0 ? std::clamp((centre - from) / old, 0.0, 1.0) : 0.5;
    ChartRange r{centre - at * span, centre - at * span + span};
    return r.panned(0, first, last);
}

ChartRange ChartRange::panned(double frames, double first, double last) const
{
    const double span = this->span();
    double a = from + frames;
    if (a + span > std::max(last, first + span))
        a = std::max(last, first + span) - span;
    if (a < first)
        a = first;
    return {a, a + span};
}

}  // namespace vexorin::logging
