// Any bytes as a wideband run file and as a target file. Checked for every
// input: reading it whole and in two pieces gives the same rows; every line
// after the header is a row or counted unreadable, never both; rows come out
// in time order; every row written back reads the same; the analysis of the
// rows keeps its counts within the readings; a target text that reads is
// written back to the same figures.
#include "sim/ecu_simulator.h"
#include "tools/fuel_analysis.h"
#include "tools/fuel_run_file.h"
#include "tools/fuel_targets.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

using namespace vexorin::tools;

namespace {
void check(bool ok, int line)
{
    if (!ok) {
        std::fprintf(stderr, "property of line %d broken\n", line);
        std::abort();
    }
}
#define require(ok) check(ok, __LINE__)

// The lines after the first that hold anything, as the reader splits them.
std::int64_t rowLines(std::string_view text)
{
    std::int64_t lines = 0;
    bool first = true;
    std::size_t length = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        const bool end = i == text.size();
        if (!end && text[i] != '\r' && text[i] != '\n') {
            ++length;
            continue;
        }
        if (!end || length > 0) {
            if (!first && length > 0)
                ++lines;
            first = false;
        }
        length = 0;
        if (!end && text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            ++i;
    }
    return lines;
}

const FuelMap& syntheticMap()
{
    static const FuelMap map = [] {
        const auto rom = vexorin::sim::makeSyntheticRom();
        return fuelMapOf(std::vector<std::uint8_t>(rom.begin(), rom.end()), 0x7D00, 1024);
    }();
    return map;
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);

    RunReader whole;
    whole.feed(text);
    const bool good = whole.finish();
    RunReader pieces;
    pieces.feed(text.substr(0, size / 2));
    pieces.feed(text.substr(size / 2));
    require(pieces.finish() == good);
    require(pieces.unreadable() == whole.unreadable());
    const FuelRun run = whole.take();
    const FuelRun again = pieces.take();
    require(run.ecu.size() == again.ecu.size() && run.afr.size() == again.afr.size());
    if (good)
        require(std::int64_t(run.ecu.size() + run.afr.size()) + whole.unreadable() == rowLines(text));
    for (std::size_t i = 1; i < run.ecu.size(); ++i)
        require(run.ecu[i - 1].timeMs <= run.ecu[i].timeMs);
    for (std::size_t i = 1; i < run.afr.size(); ++i)
        require(run.afr[i - 1].timeMs <= run.afr[i].timeMs);
    for (const AfrRow& r : run.afr) {
        std::string line = afrRowLine(r.timeMs, twoDecimals(r.afr));
        line.pop_back();
        const RunRow back = parseRunRow(line);
        require(std::isfinite(r.afr) && (!back.afr || (back.afr->timeMs == r.timeMs && std::fabs(back.afr->afr - r.afr) <= 0.005 + 1e-9 * std::fabs(r.afr))));
    }

    CellTally tally;
    tallyRun(run, FuelSettings(), syntheticMap(), tally);
    require(tally.samples() <= std::int64_t(run.afr.size()));
    const FuelAdvice advice = advise(tally, syntheticMap(), targetsOfMap(syntheticMap().bytes), FuelSettings());
    for (const CellAdvice& c : advice.cells) {
        require(c.byteNew >= 0 && c.byteNew <= 255);
        if (c.enough)
            require(c.suggested >= c.map * 0.9 - 1e-9 && c.suggested <= c.map * 1.1 + 1e-9);
    }

    std::string problem;
    if (const auto targets = parseTargets(text, &problem)) {
        const auto back = parseTargets(targetsText(*targets));
        require(back.has_value());
        for (std::size_t i = 0; i < targets->size(); ++i)
            require(std::fabs((*back)[i] - (*targets)[i]) <= 0.005 + 1e-9);
    } else {
        require(!problem.empty());
    }
    return 0;
}
