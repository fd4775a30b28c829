// Every read of the ECU as data: what goes out (one byte a write), how many
// bytes complete the reply, what goes out after it (the stop bytes), and the
// decode step of each reader. Plain C++: the link owner runs these, the
// controllers only show what the decode steps give.
#pragma once

#include "consult/wire.h"

#include <array>
#include <cstddef>
#include <string>

namespace vexorin::consult {

// How long a reader waits for its bytes before it gives the cycle up.
constexpr int kReplyTimeoutMs = 2000;
// The line moves 960 bytes a second at 9600 baud, 8N1.
constexpr int kLineBytesPerSecond = 960;
// What a reply may take beyond its bytes' time on the line (the ECU's turn
// around, a USB adapter's latency) before a waiting click abandons it.
constexpr int kReplyMarginMs = 50;

struct Cycle {
    Bytes send;                  // one byte a write
    std::size_t expect = 0;      // bytes that complete the reply
    Bytes after;                 // one byte a write, once the reply is in or given up
    bool clearFirst = true;      // what waits in the input is discarded first
    bool settle = false;         // a burst: the rest of the ECU's stream is read to its stop reply
    int timeoutMs = kReplyTimeoutMs;
    int pauseMs = 0;             // a quiet wait before the request
};

// The time a cycle takes on a working line: its pause, its bytes at 960 a
// second, and the margin.
inline int normalTimeMs(const Cycle& c)
{
    const std::size_t bytes = c.send.size() + c.expect + c.after.size();
    return c.pauseMs + int((bytes * 1000 + kLineBytesPerSecond - 1) / kLineBytesPerSecond) + kReplyMarginMs;
}

// ---- The identity reads ---------------------------------------------------

Cycle partNumberCycle();
Cycle kValueCycle();

// What the Byte Viewer and the labels show after an identity read.
struct IdentityReply {
    std::array<std::string, 32> cells;   // Byte Viewer positions 1..32
    std::string label;                   // the part number suffix, or the K value
};
// Positions in hexadecimal; the label is the text of positions 21..25.
IdentityReply decodePartNumber(const Bytes& reply);
// Positions in decimal; the label is the K value of positions 9 and 10.
IdentityReply decodeKValue(const Bytes& reply);

// ---- Fault codes, the all-sensor frame ------------------------------------

Cycle faultCodesCycle();
// The all-sensor request of the stream and of the Active Test's Check Actual.
Cycle allSensorsCycle(int timeoutMs = kReplyTimeoutMs);

// ---- Memory bursts ---------------------------------------------------------

// The reply of one burst of eight memory reads: 24 echo bytes, frame start,
// length, eight data bytes.
constexpr int kBurstAddresses = 8;
constexpr int kBurstReplyLength = 34;
constexpr int kBurstFirstData = 26;
constexpr int kCmdReadMemory = CmdReadMemory;
constexpr int kCmdGo = CmdGo;
constexpr int kCmdStop = CmdStop;
constexpr int kFirstEchoByte = 0x36;   // the read command inverted
constexpr int kStopReply = 0xCF;
constexpr int kBurstFrameLength = 2 + kBurstAddresses;

// A burst: the read requests as given (a value outside 0..255 cannot be sent
// and is left out), CmdGo, the 34-byte reply, one CmdStop.
Cycle burstCycle(const std::vector<int>& request, bool settle);
// The read requests of the eight addresses from `high`, `firstLow` on.
std::vector<int> burstRequest(int high, int firstLow);
// The values that can go on the wire, in order.
Bytes sendable(const std::vector<int>& values);

// The eight data bytes of a burst's reply.
std::array<int, kBurstAddresses> burstData(const Bytes& reply);
constexpr bool echoOk(int first) { return first == kFirstEchoByte; }

// Where, in everything received after a burst's request, the ECU's stream
// could end: the frame-start slots behind the echoes. A burst's stream has
// ended once such a slot holds anything but a new frame start (the ECU's
// stop reply, normally).
bool burstStreamEnded(const Bytes& received);

// How long the line may stay quiet before a settling read gives up, and the
// longest a settling read may take.
constexpr int kSettleQuietMs = 30;
constexpr int kSettleLimitMs = 250;

}  // namespace vexorin::consult
