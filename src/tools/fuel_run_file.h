// A wideband run file: what a recorded drive holds for the fuel correction.
// One header line, then one row per Consult frame shown ("ecu": engine speed,
// air flow meter, throttle, coolant and A/F alpha as their labels showed
// them) and one per wideband reading ("afr": the scaled figure), each stamped
// with whole milliseconds since the recording began:
//
//   time_ms,kind,rpm,maf_v,tps_v,water_f,af_alpha,afr
//   1200,ecu,2450,1.82,0.74,185,100,
//   1250,afr,,,,,,14.62
//
// Plain C++, unit-tested and fuzzed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vexorin::tools {

inline constexpr std::string_view kRunHeader = "time_ms,kind,rpm,maf_v,tps_v,water_f,af_alpha,afr";

// One Consult frame as the labels showed it.
struct EcuRow {
    std::int64_t timeMs = 0;
    double rpm = 0;
    double maf = 0;    // volts
    double tps = 0;    // volts
    double water = 0;  // degrees Fahrenheit
    double alpha = 0;  // percent
};

// One reading of the wideband.
struct AfrRow {
    std::int64_t timeMs = 0;
    double afr = 0;
};

// A run: its rows in time order.
struct FuelRun {
    std::vector<EcuRow> ecu;
    std::vector<AfrRow> afr;
};

// The texts of a row, with its line end.
std::string ecuRowLine(std::int64_t timeMs, std::string_view rpm, std::string_view maf, std::string_view tps,
                       std::string_view water, std::string_view alpha);
std::string afrRowLine(std::int64_t timeMs, std::string_view figure);

// A number of a run file: '.' as the decimal mark, an optional leading '-',
// no blanks, no exponent, finite. Label texts with ',' as their decimal mark
// are written with '.' (see plainNumber).
std::optional<double> runNumber(std::string_view text);
// A label's text as a run file writes it: the decimal mark '.', no grouping
// (`decimal` and `group` are the label's symbols); empty when it is no number.
std::string plainNumber(std::string_view label, std::string_view decimal = ".", std::string_view group = ",");

// Reads a run file line by line (line ends CR LF, LF or CR, any last line
// without one). The first line must be the header; a row that is not one of
// the two forms exactly is counted and skipped.
class RunReader {
public:
    // Feeds the next bytes; false once the first line turned out not to be the header.
    bool feed(std::string_view bytes);
    // The last line, when the file does not end with a line end.
    bool finish();
    bool headerSeen() const { return header_ == Header::Good; }
    bool headerWrong() const { return header_ == Header::Wrong; }
    std::int64_t unreadable() const { return unreadable_; }
    // The rows read so far, sorted by time (a stable sort: rows of one time keep their order).
    FuelRun take();

private:
    enum class Header { Pending, Good, Wrong };
    void line(std::string_view text);

    Header header_ = Header::Pending;
    std::string partial_;
    bool lastWasCr_ = false;
    std::int64_t unreadable_ = 0;
    FuelRun run_;
};

// One row: an ecu row, an afr row, or neither (unreadable).
struct RunRow {
    std::optional<EcuRow> ecu;
    std::optional<AfrRow> afr;
};
RunRow parseRunRow(std::string_view line);

}  // namespace vexorin::tools
