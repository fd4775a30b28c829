// Any run of map read steps, for any of the six maps in any order and with
// restarts between them (as "Load All ECU Data Maps" and the Stop button
// leave the walk): every burst asks for the eight addresses after where the
// walk stood, in the bank it stands in, and leaves the walk on the last of
// them. Then a fresh read of one map: every burst starts on a multiple of
// eight inside one bank, and the read ends, in 36 bursts.
#include "rom/rules/map_decoding.h"
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
        const MapReadState before = walk.state();
        const MapReadStep step = walk.next(map.fuel, map.bank);
        const MapReadState& s = walk.state();
        if (step.kind != MapReadStep::Kind::Burst)
            continue;
        if (step.lastLow != step.firstLow + 7 || step.high != s.high || s.low != step.lastLow)
            __builtin_trap();
        // From where it stood, or from the start of a scale's second stage.
        if (step.firstLow != before.low + 1 && !step.cursorToCorner)
            __builtin_trap();
    }
    const MapSpec& map = kMaps[size > 0 ? std::size_t(data[size - 1] % kMaps.size()) : 0];
    walk.restart();
    int bursts = 0;
    for (;;) {
        const MapReadStep step = walk.next(map.fuel, map.bank);
        if (step.kind == MapReadStep::Kind::MapDone)
            break;
        if (step.kind != MapReadStep::Kind::Burst)
            continue;
        if (step.firstLow < 0 || step.firstLow % 8 != 0 || step.lastLow > 255 || ++bursts > 36)
            __builtin_trap();
    }
    if (bursts != 36)
        __builtin_trap();
    return 0;
}
