#include "tools/fuel_run_file.h"

#include "rom/map_figures.h"

#include <algorithm>
#include <cmath>

namespace vexorin::tools {

namespace {
constexpr int kFields = 8;
constexpr std::size_t kLongestNumber = 32;
// Times above this (about 31 years) are no recording's.
constexpr std::int64_t kLatestTime = 1'000'000'000'000;

std::optional<std::int64_t> runTime(std::string_view text)
{
    if (text.empty() || text.size() > 13)
        return std::nullopt;
    std::int64_t value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9')
            return std::nullopt;
        value = value * 10 + (c - '0');
    }
    if (value > kLatestTime)
        return std::nullopt;
    return value;
}

// Splits at commas into exactly `kFields` fields.
bool splitFields(std::string_view line, std::string_view (&fields)[kFields])
{
    int n = 0;
    std::size_t start = 0;
    for (;;) {
        const std::size_t comma = line.find(',', start);
        if (n == kFields)
            return false;
        fields[n++] = line.substr(start, comma == std::string_view::npos ? std::string_view::npos : comma - start);
        if (comma == std::string_view::npos)
            break;
        start = comma + 1;
    }
    return n == kFields;
}
}  // namespace

std::string ecuRowLine(std::int64_t timeMs, std::string_view rpm, std::string_view maf, std::string_view tps,
                       std::string_view water, std::string_view alpha)
{
    std::string line = std::to_string(timeMs);
    line += ",ecu";
    for (const std::string_view field : {rpm, maf, tps, water, alpha}) {
        line += ',';
        line += field;
    }
    line += ",\n";
    return line;
}

std::string afrRowLine(std::int64_t timeMs, std::string_view figure)
{
    std::string line = std::to_string(timeMs);
    line += ",afr,,,,,,";
    line += figure;
    line += '\n';
    return line;
}

std::optional<double> runNumber(std::string_view text)
{
    if (text.size() > kLongestNumber)
        return std::nullopt;
    const std::optional<double> value = vexorin::rom::parseFigure(std::string(text));
    if (!value || !std::isfinite(*value))
        return std::nullopt;
    return value;
}

std::string plainNumber(std::string_view label, std::string_view decimal, std::string_view group)
{
    std::string out;
    for (std::size_t i = 0; i < label.size();) {
        if (!decimal.empty() && label.substr(i, decimal.size()) == decimal) {
            out += '.';
            i += decimal.size();
        } else if (!group.empty() && group != decimal && label.substr(i, group.size()) == group) {
            i += group.size();
        } else {
            out += label[i++];
        }
    }
    return runNumber(out) ? out : std::string();
}

RunRow parseRunRow(std::string_view line)
{
    RunRow row;
    std::string_view f[kFields];
    if (!splitFields(line, f))
        return row;
    const std::optional<std::int64_t> time = runTime(f[0]);
    if (!time)
        return row;
    if (f[1] == "ecu") {
        double v[5];
        for (int i = 0; i < 5; ++i) {
            const std::optional<double> n = runNumber(f[2 + i]);
            if (!n)
                return row;
            v[i] = *n;
        }
        if (!f[7].empty())
            return row;
        row.ecu = EcuRow{*time, v[0], v[1], v[2], v[3], v[4]};
    } else if (f[1] == "afr") {
        for (int i = 2; i < 7; ++i)
            if (!f[i].empty())
                return row;
        const std::optional<double> afr = runNumber(f[7]);
        if (!afr)
            return row;
        row.afr = AfrRow{*time, *afr};
    }
    return row;
}

bool RunReader::feed(std::string_view bytes)
{
    for (const char c : bytes) {
        if (header_ == Header::Wrong)
            return false;
        if (c == '\n' && lastWasCr_) {
            lastWasCr_ = false;
            continue;
        }
        lastWasCr_ = c == '\r';
        if (c == '\r' || c == '\n') {
            line(partial_);
            partial_.clear();
        } else if (partial_.size() <= 256) {
            partial_ += c;  // a longer line is no row: it stays unreadable however long it gets
        }
    }
    return header_ != Header::Wrong;
}

bool RunReader::finish()
{
    if (!partial_.empty())
        line(partial_);
    partial_.clear();
    return header_ == Header::Good;
}

void RunReader::line(std::string_view text)
{
    if (header_ == Header::Pending) {
        // A byte order mark before the header is allowed.
        if (text.substr(0, 3) == "\xEF\xBB\xBF")
            text.remove_prefix(3);
        header_ = text == kRunHeader ? Header::Good : Header::Wrong;
        return;
    }
    if (header_ == Header::Wrong || text.empty())
        return;
    const RunRow row = parseRunRow(text);
    if (row.ecu)
        run_.ecu.push_back(*row.ecu);
    else if (row.afr)
        run_.afr.push_back(*row.afr);
    else
        ++unreadable_;
}

FuelRun RunReader::take()
{
    FuelRun run = std::move(run_);
    run_ = FuelRun();
    const auto byTime = [](const auto& a, const auto& b) { return a.timeMs < b.timeMs; };
    std::stable_sort(run.ecu.begin(), run.ecu.end(), byTime);
    std::stable_sort(run.afr.begin(), run.afr.end(), byTime);
    return run;
}

}  // namespace vexorin::tools
