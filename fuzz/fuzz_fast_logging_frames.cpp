// Any bytes as Fast Logging's line, fed in pieces of any size: the replies do
// not depend on how the bytes were cut, each is laid out as the read's
// 50-byte reply, and there are never more than the line could hold. The same
// bytes cut into frames and sent clean come back exactly, FF data bytes and all.
#include "sensors/fast_logging_frames.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

using namespace vexorin::consult;
using namespace vexorin::sensors;

namespace {
bool laidOut(const Bytes& reply)
{
    return reply.size() == 50 && reply[32] == 0xFF && reply[33] == 16 &&
           std::all_of(reply.begin(), reply.begin() + 32, [](std::uint8_t b) { return b == 0; });
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 1)
        return 0;
    const std::size_t piece = data[0] % 24 + 1;
    const std::uint8_t* line = data + 1;
    const std::size_t n = size - 1;

    FastLoggingFrames whole, cut;
    const std::vector<Bytes> replies = whole.feed(line, n);
    std::vector<Bytes> pieces;
    for (std::size_t at = 0; at < n; at += piece)
        for (Bytes& r : cut.feed(line + at, std::min(piece, n - at)))
            pieces.push_back(std::move(r));
    if (replies != pieces || whole.dropped() != cut.dropped() || whole.skipped() != cut.skipped())
        __builtin_trap();
    // Echoes, then FF 16 and sixteen bytes a frame, and the next frame's start behind the last.
    if (n < 32 + 19 ? !replies.empty() : replies.size() > (n - 33) / 18)
        __builtin_trap();
    for (const Bytes& r : replies)
        if (!laidOut(r))
            __builtin_trap();

    // A clean line of the same bytes as frame data.
    const std::size_t frames = n / 16;
    Bytes clean(32, 0xA5);
    for (std::size_t f = 0; f < frames; ++f) {
        clean.insert(clean.end(), {0xFF, 16});
        clean.insert(clean.end(), line + 16 * f, line + 16 * f + 16);
    }
    clean.push_back(0xFF);
    FastLoggingFrames reader;
    const std::vector<Bytes> back = reader.feed(clean);
    if (back.size() != frames || reader.dropped() != 0 || reader.skipped() != 0)
        __builtin_trap();
    for (std::size_t f = 0; f < frames; ++f)
        if (!std::equal(back[f].begin() + 34, back[f].end(), line + 16 * f))
            __builtin_trap();
    return 0;
}
