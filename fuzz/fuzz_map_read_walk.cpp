// Any run of map read steps, for any of the six maps in any order and with
// restarts between them (as "Load All ECU Data Maps" and the Stop button
// leave the walk): every burst asks for eight addresses that start on a
// multiple of eight and stay inside one bank, the walk never stands past the
// end of a bank, and a fresh read of one map ends, in 36 bursts.
#include "rom/map_decoding.h"
#include "rom/map_read_walk.h"

#include <cstddef>
#include <cstdint>

using namespace vexorin::rom;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    MapReadWalk walk;
    walk.restart();
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] & 0x80)
            walk.restart();
        const MapSpec& map = kMaps[std::size_t(data[i] % kMaps.size())];
        const MapReadStep step = walk.next(map.fuel, map.bank);
        const MapReadState& s = walk.state();
        if (s.low < -1 || s.low > 255 || (s.low + 1) % 8 != 0)
            __builtin_trap();
        if (step.kind != MapReadStep::Kind::Burst)
            continue;
        if (step.firstLow < 0 || step.firstLow % 8 != 0 || step.firstLow + 7 > 255)
            __builtin_trap();
        if (step.lastLow != step.firstLow + 7 || step.high != s.high)
            __builtin_trap();
    }
    // A fresh read of the last map chosen ends.
    const MapSpec& map = kMaps[size > 0 ? std::size_t(data[size - 1] % kMaps.size()) : 0];
    walk.restart();
    int bursts = 0;
    for (;;) {
        const MapReadStep step = walk.next(map.fuel, map.bank);
        if (step.kind == MapReadStep::Kind::MapDone)
            break;
        if (step.kind == MapReadStep::Kind::Burst && ++bursts > 36)
            __builtin_trap();
    }
    if (bursts != 36)
        __builtin_trap();
    return 0;
}
