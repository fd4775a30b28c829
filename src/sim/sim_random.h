// A small deterministic random source for the simulator: the same seed gives
// the same sequence on every platform and compiler (no <random> distributions,
// whose output is implementation-defined).
#pragma once

#include <cstdint>

namespace vexorin::sim {

class SimRandom {
public:
    explicit SimRandom(std::uint32_t seed) : state_(0x9E3779B97F4A7C15ull ^ (std::uint64_t(seed) << 17) ^ seed) {}

    // splitmix64
    std::uint64_t next()
    {
        std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }

    // Uniform in [0, 1).
    double uniform() { return double(next() >> 11) * (1.0 / 9007199254740992.0); }
    // Uniform in [-1, 1).
    double symmetric() { return uniform() * 2.0 - 1.0; }
    // Uniform integer in [0, n).
    std::uint32_t below(std::uint32_t n) { return n == 0 ? 0 : std::uint32_t(next() % n); }

private:
    std::uint64_t state_;
};

}  // namespace vexorin::sim
