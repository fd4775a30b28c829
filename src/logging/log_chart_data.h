// A whole log held for its chart: every readable frame's thirteen values, the
// line each frame starts on (to meet the Log Player, which counts lines), and
// what one screen column of the chart shows of a sensor: the lowest and the
// highest value of the frames under it, so that a long log draws with a few
// points per column and no spike is lost at any zoom. Plain C++.
#pragma once

#include "logging/log_frames.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace vexorin::logging {

struct ChartPoint {
    double frame;  // frame number, from 1
    double value;
};

class LogChartData {
public:
    // Takes the frames a LogFrameReader gives, in order.
    void add(const LogFrame& frame);
    void setUnreadable(std::int64_t n) { unreadable_ = n; }

    std::int64_t frames() const { return std::int64_t(firstLines_.size()); }
    std::int64_t unreadable() const { return unreadable_; }
    // Value k (log order) of frame `index` (from 0).
    double value(int k, std::int64_t index) const { return values_[std::size_t(k)][std::size_t(index)]; }
    double minimum(int k) const { return min_[std::size_t(k)]; }
    double maximum(int k) const { return max_[std::size_t(k)]; }
    std::int64_t firstLine(std::int64_t index) const { return firstLines_[std::size_t(index)]; }
    // The frame (from 0) shown from `line`: the last one starting at or
    // before it; -1 when none does.
    std::int64_t frameAtLine(std::int64_t line) const;

    // Value k over frames `from` to `to` (frame numbers from 1, fractions
    // allowed) drawn on `columns` columns: each column's lowest and highest
    // value in the order they come, or every frame when they are fewer.
    std::vector<ChartPoint> envelope(int k, double from, double to, int columns) const;

    // Value k of frame `index` as text: two decimals for the volt readings,
    // the shortest form for the others ("1012.5", "-5", "0.46").
    std::string valueText(int k, std::int64_t index) const { return numberText(k, value(k, index)); }
    // Any figure of value k in that form.
    static std::string numberText(int k, double v);

private:
    std::array<std::vector<float>, kFrameValues> values_;
    std::array<double, kFrameValues> min_{};
    std::array<double, kFrameValues> max_{};
    std::vector<std::int64_t> firstLines_;
    std::int64_t unreadable_ = 0;
};

// The frames on view: zoom about a point, pan, and the limits of the log.
struct ChartRange {
    double from = 1;
    double to = 1;

    double span() const { return to - from; }
    // `factor` below 1 zooms in; `centre` stays where it is on the screen.
    ChartRange zoomed(double factor, double centre, double first, double last) const;
    ChartRange panned(double frames, double first, double last) const;
    // The narrowest view: this many frames.
    static constexpr double kMinimumSpan = 8;
};

}  // namespace vexorin::logging
