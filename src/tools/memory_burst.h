// One burst of memory reads as the ECU tools send it: the requests one byte
// a write, CmdGo, the wait for the 34-byte reply (with the link's time-out),
// one CmdStop byte, and the read of everything waiting.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

class ConsultLink;

namespace vexorin::tools {

// Sends each value in a write of its own. A value outside 0..255 cannot be
// sent: that write fails and the others go out without it.
void sendEachByte(ConsultLink& link, const std::vector<int>& values);

// After the request has gone out: CmdGo, the wait, the stop byte, the read.
// Nothing when the reply did not come within the time-out (the stop byte
// still goes out). With `settle`, the rest of the ECU's stream up to its stop
// reply is read and dropped as well, so that on a real line none of it is
// left to arrive in front of the next burst's reply.
std::optional<std::vector<std::uint8_t>> finishBurst(ConsultLink& link, bool settle);

// How long the line may stay quiet before a settling read gives up, and the
// longest a settling read may take.
constexpr int kSettleQuietMs = 30;
constexpr int kSettleLimitMs = 250;

}  // namespace vexorin::tools
