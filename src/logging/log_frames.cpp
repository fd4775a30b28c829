#include "logging/log_frames.h"

#include <charconv>
#include <cstdio>

namespace vexorin::logging {

namespace {
bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

std::string_view trimmed(std::string_view s)
{
    while (!s.empty() && isBlank(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back()))
        s.remove_suffix(1);
    return s;
}

// `count` digits at `at`, as a number; -1 when they are not all digits.
int digitsAt(std::string_view s, std::size_t at, std::size_t count)
{
    if (at + count > s.size())
        return -1;
    int v = 0;
    for (std::size_t i = at; i < at + count; ++i) {
        if (!isDigit(s[i]))
            return -1;
        v = v * 10 + (s[i] - '0');
    }
    return v;
}

// A separator: one character that is neither a digit nor a blank.
bool separatorAt(std::string_view s, std::size_t at)
{
    return at < s.size() && !isDigit(s[at]) && !isBlank(s[at]);
}

int daysIn(int year, int month)
{
    static constexpr int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : kDays[month - 1];
}
}  // namespace

std::optional<LogStamp> parseStampLine(std::string_view line)
{
    const std::string_view s = trimmed(line);
    // mm?dd?yyyy
    LogStamp t;
    t.month = digitsAt(s, 0, 2);
    t.day = digitsAt(s, 3, 2);
    t.year = digitsAt(s, 6, 4);
    if (t.month < 1 || t.month > 12 || t.year < 1 || !separatorAt(s, 2) || !separatorAt(s, 5))
        return std::nullopt;
    if (t.day < 1 || t.day > daysIn(t.year, t.month))
        return std::nullopt;
    std::size_t at = 10;
    while (at < s.size() && isBlank(s[at]))
        ++at;
    // hh?mm?ss, and nothing behind it
    if (s.size() != at + 8 || !separatorAt(s, at + 2) || !separatorAt(s, at + 5))
        return std::nullopt;
    t.hour = digitsAt(s, at, 2);
    t.minute = digitsAt(s, at + 3, 2);
    t.second = digitsAt(s, at + 6, 2);
    if (t.hour < 0 || t.hour > 23 || t.minute < 0 || t.minute > 59 || t.second < 0 || t.second > 59)
        return std::nullopt;
    return t;
}

std::optional<std::string> parseValueLine(std::string_view line)
{
    const std::string_view s = trimmed(line);
    std::size_t i = 0;
    if (i < s.size() && s[i] == '-')
        ++i;
    const std::size_t intStart = i;
    while (i < s.size() && isDigit(s[i]))
        ++i;
    if (i == intStart)
        return std::nullopt;
    std::string out(s.substr(0, i));
    if (i < s.size()) {
        if (s[i] != '.' && s[i] != ',')
            return std::nullopt;
        const std::size_t fracStart = ++i;
        while (i < s.size() && isDigit(s[i]))
            ++i;
        if (i == fracStart || i != s.size())
            return std::nullopt;
        out += '.';
        out += s.substr(fracStart);
    }
    return out;
}

std::string isoText(const LogStamp& t)
{
    char buf[32];
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02dT%02d:%02d:%02d", t.year, t.month, t.day, t.hour, t.minute,
                  t.second);
    return buf;
}

std::string unreadableFramesText(std::int64_t frames)
{
    if (frames <= 0)
        return {};
    if (frames == 1)
        return "1 frame could not be read.";
    return std::to_string(frames) + " frames could not be read.";
}

void LogFrameReader::feed(const char* data, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i) {
        const char c = data[i];
        if (c == '\n' && afterCr_) {
            afterCr_ = false;  // CR LF is one line end
            continue;
        }
        afterCr_ = false;
        if (c == '\r' || c == '\n') {
            afterCr_ = c == '\r';
            takeLine();
            continue;
        }
        lineOpen_ = true;
        if (line_.size() < kLongestLine)
            line_ += c;
        else
            lineLong_ = true;
    }
}

void LogFrameReader::finish()
{
    if (lineOpen_)
        takeLine();  // a last line without its line end
    if (taken_ >= 0)
        skipGroup();
    taken_ = -1;
}

void LogFrameReader::skipGroup()
{
    if (!inSkippedGroup_)
        ++unreadable_;
    inSkippedGroup_ = true;
    taken_ = -1;
}

void LogFrameReader::takeLine()
{
    handleLine(lineLong_ ? std::string_view() : std::string_view(line_), lines_++);
    line_.clear();
    lineLong_ = false;
    lineOpen_ = false;
}

void LogFrameReader::handleLine(std::string_view line, std::int64_t number)
{
    if (taken_ >= 0) {
        const auto value = parseValueLine(line);
        if (value) {
            const int k = taken_++;
            frame_.values[std::size_t(k)] = *value;
            double n = 0;
            std::from_chars(value->data(), value->data() + value->size(), n);
            frame_.numbers[std::size_t(k)] = n;
            if (taken_ == kFrameValues) {
                ++frames_;
                taken_ = -1;
                if (sink_)
                    sink_(frame_);
            }
            return;
        }
        skipGroup();  // the group goes; this very line may start the next one
    }
    if (const auto stamp = parseStampLine(line)) {
        frame_.stamp = *stamp;
        frame_.firstLine = number;
        taken_ = 0;
        inSkippedGroup_ = false;
    } else if (!inSkippedGroup_) {
        skipGroup();  // lines that belong to no frame: one unreadable group however many
    }
}

}  // namespace vexorin::logging
