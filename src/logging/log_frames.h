// Reading a log file back as frames, for export and charts. A frame is a
// date and time line and the thirteen values behind it. The reader takes the
// file's bytes in pieces of any size and finds the frames in them:
//   - a group whose first line is not a date and time, or any of whose
//     thirteen values is not a number, is skipped whole, and reading goes on
//     from the next date and time line;
//   - a partial last frame is skipped.
// Every skipped group counts once as a frame that could not be read. Line ends
// are CR LF, LF or CR, as the Log Player takes them, so line numbers agree.
// Plain C++, unit-tested and fuzzed.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vexorin::logging {

constexpr int kFrameValues = 13;

// The moment of a frame, as its first line gives it.
struct LogStamp {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    bool operator==(const LogStamp& o) const
    {
        return year == o.year && month == o.month && day == o.day && hour == o.hour && minute == o.minute &&
               second == o.second;
    }
};

struct LogFrame {
    LogStamp stamp;
    // The values as the log has them, with '.' as the decimal mark and
    // without the blanks around them: "62", "-5", "1012.5", "0.46".
    std::array<std::string, kFrameValues> values;
    std::array<double, kFrameValues> numbers{};
    // The line of the file (from 0) that holds the frame's date and time.
    std::int64_t firstLine = 0;
};

// "mm/dd/yyyy" and "hh:mm:ss", any one separator character each, with or
// without blanks between date and time; a real date and time of day.
std::optional<LogStamp> parseStampLine(std::string_view line);
// A number as the log writes it (" 62 ", "-5 ", "1.26", or with a decimal
// comma "1,26"), normalised; nothing for anything else.
std::optional<std::string> parseValueLine(std::string_view line);
// "2026-11-22T19:28:32".
std::string isoText(const LogStamp& stamp);
// "N frames could not be read." ("1 frame …"); empty for none.
std::string unreadableFramesText(std::int64_t frames);

class LogFrameReader {
public:
    // Lines longer than this cannot be part of a frame; only their start is looked at.
    static constexpr std::size_t kLongestLine = 128;

    using FrameSink = std::function<void(const LogFrame&)>;
    explicit LogFrameReader(FrameSink sink) : sink_(std::move(sink)) {}

    void feed(const char* data, std::size_t size);
    // The end of the file: a frame left open is counted as unreadable.
    void finish();

    std::int64_t frames() const { return frames_; }
    std::int64_t unreadable() const { return unreadable_; }
    std::int64_t lines() const { return lines_; }

private:
    void takeLine();
    void handleLine(std::string_view line, std::int64_t number);
    void skipGroup();

    FrameSink sink_;
    std::string line_;
    bool lineLong_ = false;
    bool afterCr_ = false;
    bool lineOpen_ = false;
    std::int64_t lines_ = 0;
    std::int64_t frames_ = 0;
    std::int64_t unreadable_ = 0;
    // The frame being read: values taken so far, or -1 while looking for a date line.
    int taken_ = -1;
    bool inSkippedGroup_ = false;
    LogFrame frame_;
};

}  // namespace vexorin::logging
