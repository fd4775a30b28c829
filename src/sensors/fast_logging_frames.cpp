#include "sensors/fast_logging_frames.h"

#include <algorithm>

namespace vexorin::sensors {

using consult::Bytes;

namespace {
// Where the frame start stands in the read's reply, counted from 0.
constexpr std::size_t kFrameStartIndex = 32;
}  // namespace

consult::StreamPlan fastLoggingPlan()
{
    return {consult::registerStreamRequest(consult::kAllSensorRegisters), {consult::CmdStop, consult::CmdStop}};
}

Bytes allSensorsReplyOf(const Bytes& frame)
{
    Bytes reply(consult::kAllSensorsReplyLength, 0);
    reply[kFrameStartIndex] = consult::FrameStart;
    reply[kFrameStartIndex + 1] = std::uint8_t(consult::kAllSensorRegisters.size());
    const std::size_t n = std::min(frame.size(), reply.size() - kFrameStartIndex - 2);
    std::copy_n(frame.begin(), n, reply.begin() + kFrameStartIndex + 2);
    return reply;
}

FastLoggingFrames::FastLoggingFrames()
    : reader_(consult::kAllSensorRegisters.size())
{
}

std::vector<Bytes> FastLoggingFrames::feed(const std::uint8_t* data, std::size_t size)
{
    std::vector<Bytes> replies;
    for (std::size_t i = 0; i < size; ++i) {
        if (waiting_) {
            if (data[i] == consult::FrameStart)
                replies.push_back(allSensorsReplyOf(*waiting_));
            else
                ++dropped_;
            waiting_.reset();
        }
        std::vector<Bytes> frames = reader_.feed(data + i, 1);
        if (!frames.empty())
            waiting_ = std::move(frames.front());
    }
    return replies;
}

}  // namespace vexorin::sensors
