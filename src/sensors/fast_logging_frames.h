// Fast Logging's bytes: the all-sensor request sent once and the ECU left
// streaming, ended by the usual stop pair. Its frames (FF, 16, sixteen data
// bytes, back to back) come out laid out as the 50-byte reply of the 100 ms
// read, so that one decoder serves both. A frame counts only when the next
// frame starts right behind it: a frame that lost or gained a byte is
// dropped, not decoded shifted, and the reader passes over the bytes up to
// the next FF 16. Plain C++, unit-tested and fuzzed.
#pragma once

#include "consult/register_stream.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace vexorin::sensors {

// 5A r for each of the sixteen all-sensor registers, F0; ended by 30 30.
consult::StreamPlan fastLoggingPlan();

// A frame's sixteen data bytes as the read's reply: positions 1 to 32 (the
// echoes, never examined) zero, 33 the frame start, 34 the length, 35 to 50 the data.
consult::Bytes allSensorsReplyOf(const consult::Bytes& frame);

class FastLoggingFrames {
public:
    FastLoggingFrames();

    // Feeds the bytes received since the last call; returns the replies of
    // the frames they confirmed, oldest first. The newest frame waits for the
    // first byte behind it.
    std::vector<consult::Bytes> feed(const std::uint8_t* data, std::size_t size);
    std::vector<consult::Bytes> feed(const consult::Bytes& bytes) { return feed(bytes.data(), bytes.size()); }

    // Frames dropped because no frame start followed them.
    std::size_t dropped() const { return dropped_; }
    // Bytes passed over between frames (after the echoes).
    std::size_t skipped() const { return reader_.skipped(); }

private:
    consult::RegisterStreamReader reader_;
    std::optional<consult::Bytes> waiting_;
    std::size_t dropped_ = 0;
};

}  // namespace vexorin::sensors
