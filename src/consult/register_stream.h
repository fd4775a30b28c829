// A register stream as it comes off the line: the ECU echoes each requested
// register (two bytes each), then sends frames of a frame start (FF), the
// frame length and one byte per register, again and again until it is
// stopped. The reader takes the bytes in whatever pieces they arrive and
// gives back whole frames. Plain C++, unit-tested and fuzzed.
#pragma once

#include "consult/wire.h"

#include <cstddef>
#include <vector>

namespace vexorin::consult {

// A stream the link owner runs until it is ended: the request goes out once,
// the stop bytes when it ends.
struct StreamPlan {
    Bytes request;
    Bytes stop;
};
// 5A r for each register, then F0; ended by one CmdStop.
StreamPlan registerStreamPlan(const Bytes& registers);

class RegisterStreamReader {
public:
    // A stream of `registers` registers (1 to 20).
    explicit RegisterStreamReader(std::size_t registers);

    // Feeds the bytes received since the last call; returns the frames they
    // completed, oldest first, each `registers()` bytes long.
    std::vector<Bytes> feed(const std::uint8_t* data, std::size_t size);
    std::vector<Bytes> feed(const Bytes& bytes) { return feed(bytes.data(), bytes.size()); }

    std::size_t registers() const { return registers_; }
    // Bytes passed over because they did not fit a frame (after the echoes).
    std::size_t skipped() const { return skipped_; }

private:
    enum class Expect { Echo, Start, Length, Data };
    std::size_t registers_;
    std::size_t echoLeft_;
    Expect expect_ = Expect::Echo;
    Bytes frame_;
    std::size_t skipped_ = 0;
};

}  // namespace vexorin::consult
