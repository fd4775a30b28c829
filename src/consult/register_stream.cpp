#include "consult/register_stream.h"

#include <algorithm>

namespace vexorin::consult {

StreamPlan registerStreamPlan(const Bytes& registers)
{
    return {registerStreamRequest(registers), {CmdStop}};
}

RegisterStreamReader::RegisterStreamReader(std::size_t registers)
    : registers_(std::clamp<std::size_t>(registers, 1, 20)), echoLeft_(2 * registers_)
{
    frame_.reserve(registers_);
}

std::vector<Bytes> RegisterStreamReader::feed(const std::uint8_t* data, std::size_t size)
{
    std::vector<Bytes> frames;
    for (std::size_t i = 0; i < size; ++i) {
        const std::uint8_t b = data[i];
        switch (expect_) {
        case Expect::Echo:
            // The echoes are not checked: a frame start behind them is.
            if (--echoLeft_ == 0)
                expect_ = Expect::Start;
            break;
        case Expect::Start:
            if (b == FrameStart)
                expect_ = Expect::Length;
            else
                ++skipped_;
            break;
        case Expect::Length:
            if (b == registers_) {
                frame_.clear();
                expect_ = Expect::Data;
            } else if (b != FrameStart) {
                // Not a frame after all: look for the next frame start.
                skipped_ += 2;
                expect_ = Expect::Start;
            } else {
                ++skipped_;  // FF FF: the second may start the frame
            }
            break;
        case Expect::Data:
            frame_.push_back(b);
            if (frame_.size() == registers_) {
                frames.push_back(frame_);
                expect_ = Expect::Start;
            }
            break;
        }
    }
    return frames;
}

}  // namespace vexorin::consult
