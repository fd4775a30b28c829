// Any bytes as a register stream of engine speed and air flow, fed in pieces
// of any size, and any bytes as the ROM on view: the frames do not depend on
// how the bytes were cut, each stands behind FF 04 in what came, and every
// frame places the engine inside the map with a finite, positive load.
#include "consult/register_stream.h"
#include "rom/rules/live_trace.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

using namespace vexorin::consult;
using namespace vexorin::rom;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const std::size_t piece = data[0] % 16 + 1;
    const double scale = data[1] == 0 ? kDefaultTraceScale : data[1] / 4.0;
    const std::uint8_t* line = data + 2;
    const std::size_t n = size - 2;

    RegisterStreamReader whole(4), cut(4);
    const std::vector<Bytes> frames = whole.feed(line, n);
    std::vector<Bytes> pieces;
    for (std::size_t at = 0; at < n; at += piece)
        for (Bytes& f : cut.feed(line + at, std::min(piece, n - at)))
            pieces.push_back(std::move(f));
    if (frames != pieces)
        __builtin_trap();
    if (n < 8 ? !frames.empty() : frames.size() > (n - 8) / 6)
        __builtin_trap();

    // The same bytes as a ROM: short or odd tables must not matter.
    const TraceTables tables = traceTables(std::vector<std::uint8_t>(line, line + n));
    for (const Bytes& f : frames) {
        if (f.size() != 4)
            __builtin_trap();
        const auto rpm = traceRpm(f[0], f[1]);
        const auto maf = traceMafHundredths(f[2], f[3]);
        if (rpm.has_value() != (f[0] <= 3) || maf.has_value() != (f[2] <= 3))
            __builtin_trap();
        const TracePoint p = tracePoint(tables, rpm.value_or(0), maf.value_or(0), scale);
        if (p.row < 1 || p.row > 16 || p.fuelColumn < 1 || p.fuelColumn > 16 || p.timingColumn < 1 || p.timingColumn > 16)
            __builtin_trap();
        if (!std::isfinite(p.tp) || p.tp < 0 || (p.rpm == 0 && p.tp != 0))
            __builtin_trap();
        for (const Neighbour* nb : {&p.rowNeighbour, &p.fuelNeighbour, &p.timingNeighbour})
            if (nb->index != -1 && (nb->index < 1 || nb->index > 16 || nb->nearness <= 0 || nb->nearness >= 1))
                __builtin_trap();
        if (traceStatus(p, true).rfind("Trace: RPM ", 0) != 0)
            __builtin_trap();
    }
    return 0;
}
