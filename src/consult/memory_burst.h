// One burst of memory reads as the Map Viewer and the ECU tools send it:
// eight addresses, the requests one byte a write, CmdGo, the wait for the
// 34-byte reply (with the link's time-out), one CmdStop byte, and the read of
// everything waiting.
#pragma once

#include "consult/wire.h"

#include <cstdint>
#include <optional>
#include <vector>

class ConsultLink;

namespace vexorin::consult {

// The reply of one burst of eight memory reads: 24 echo bytes, frame start,
// length, eight data bytes.
constexpr int kBurstAddresses = 8;
constexpr int kBurstReplyLength = 34;
constexpr int kBurstFirstData = 26;
constexpr int kFirstEchoByte = 54;   // 0x36, the read command inverted
constexpr int kCmdReadMemory = CmdReadMemory;
constexpr int kCmdGo = CmdGo;
constexpr int kCmdStop = CmdStop;
constexpr int kStopReply = 0xCF;
constexpr int kBurstFrameLength = 2 + kBurstAddresses;

// Where, in everything received after a burst's request, the ECU's stream
// could end: the frame-start slots behind the echoes. A burst's stream has
// ended once such a slot holds anything but a new frame start (the ECU's
// stop reply, normally).
bool burstStreamEnded(const std::vector<std::uint8_t>& received);

// Sends the read requests of the eight addresses from `high`, `firstLow` on.
void requestBurst(ConsultLink& link, int high, int firstLow);

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

}  // namespace vexorin::consult
