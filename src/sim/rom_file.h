// A BIN file served as the simulated ECU's ROM: read whole or not at all, and
// watched for changes by its modification time and size, so that a map saved
// again is served again.
#pragma once

#include "sim/ecu_simulator.h"

#include <array>
#include <cstdint>
#include <string>

namespace vexorin::sim {

using RomImage = std::array<std::uint8_t, EcuSimulator::kRomSize>;

// Reads a ROM image; false with a reason (for the user) when the file cannot
// be read, is no regular file or is not exactly 32768 bytes long.
bool readRomFile(const std::string& path, RomImage& image, std::string* error);

class RomFileWatch {
public:
    RomFileWatch() = default;
    explicit RomFileWatch(std::string path);

    const std::string& path() const { return path_; }
    // Whether the file's time or size differs from when it was last looked at
    // (a file that vanishes or comes back counts too).
    bool changed();

private:
    struct Stamp {
        bool present = false;
        std::int64_t mtimeNs = 0;
        std::int64_t size = 0;
        bool operator==(const Stamp& o) const
        {
            return present == o.present && mtimeNs == o.mtimeNs && size == o.size;
        }
    };
    Stamp look() const;

    std::string path_;
    Stamp stamp_;
};

}  // namespace vexorin::sim
