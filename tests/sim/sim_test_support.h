// Helpers shared by the simulator tests.
#pragma once

#include "sim/ecu_simulator.h"

#include <cstdint>
#include <vector>

namespace vexorin::sim::test {

using Bytes = std::vector<std::uint8_t>;

// The register list of the all-sensor stream, in request order.
inline const Bytes& sensorRegisters()
{
    static const Bytes regs = {11, 0, 1, 13, 4, 5, 9, 10, 20, 21, 22, 23, 8, 15, 12, 26};
    return regs;
}

inline Bytes registerRequest(const Bytes& regs, bool go = true)
{
    Bytes b;
    for (std::uint8_t r : regs) {
        b.push_back(0x5A);
        b.push_back(r);
    }
    if (go)
        b.push_back(0xF0);
    return b;
}

inline Bytes memoryRequest(std::uint16_t first, int count, bool go = true)
{
    Bytes b;
    for (int i = 0; i < count; ++i) {
        const std::uint16_t a = std::uint16_t(first + i);
        b.push_back(0xC9);
        b.push_back(std::uint8_t(a >> 8));
        b.push_back(std::uint8_t(a & 0xFF));
    }
    if (go)
        b.push_back(0xF0);
    return b;
}

// Everything queued that needs no new frame.
inline Bytes drain(EcuSimulator& ecu)
{
    return ecu.transmit(ecu.pending());
}

// A simulator past the handshake, with nothing queued.
inline void handshake(EcuSimulator& ecu)
{
    ecu.receive(Bytes{0xFF, 0xFF, 0xEF});
    drain(ecu);
}

}  // namespace vexorin::sim::test
