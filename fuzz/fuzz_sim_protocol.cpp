// Any bytes from the PC into the simulated ECU, interleaved with reads.
#include "sim/ecu_simulator.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    vexorin::sim::EcuSimulator ecu(7);
    vexorin::sim::SimFaults f;
    if (size > 0) {
        f.halfReply = data[0] & 1;
        f.corruptEcho = data[0] & 2;
    }
    ecu.setFaults(f);
    for (std::size_t i = 1; i < size; i += 4) {
        const std::size_t n = std::min<std::size_t>(4, size - i);
        ecu.receive(data + i, n);
        ecu.advance(data[i]);
        ecu.transmit(data[i] % 64);
        if (ecu.pending() > 1 << 20)
            __builtin_trap();  // output must stay bounded
    }
    return 0;
}
