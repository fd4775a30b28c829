#include "consult/read_plans.h"

namespace vexorin::consult {

namespace {
const Bytes kStopPair{CmdStop, CmdStop};

Cycle requestCycle(Bytes request, int count, int timeoutMs = kReplyTimeoutMs)
{
    Cycle c;
    c.send = std::move(request);
    c.expect = std::size_t(count);
    c.after = kStopPair;
    c.timeoutMs = timeoutMs;
    return c;
}
}  // namespace

Cycle partNumberCycle() { return requestCycle(partNumberRequest(), kPartNumberReplyLength); }
Cycle kValueCycle() { return requestCycle(kValueRequest(), kKValueReplyLength); }
Cycle faultCodesCycle() { return requestCycle(faultCodesRequest(), kFaultCodesReplyLength); }

Cycle allSensorsCycle(int timeoutMs)
{
    return requestCycle(registerStreamRequest(kAllSensorRegisters), kAllSensorsReplyLength, timeoutMs);
}

IdentityReply decodePartNumber(const Bytes& reply)
{
    const ReplyBuffer buf(reply, kPartNumberReplyLength);
    IdentityReply out;
    Hex2Ascii hex2ascii;
    for (int pos = 1; pos <= 32; ++pos) {
        out.cells[std::size_t(pos - 1)] = hexText(buf(pos));
        if (pos >= 21 && pos <= 25)
            hex2ascii(out.cells[std::size_t(pos - 1)]);
    }
    out.label = hex2ascii.text();
    return out;
}

IdentityReply decodeKValue(const Bytes& reply)
{
    const ReplyBuffer buf(reply, kKValueReplyLength);
    IdentityReply out;
    for (int pos = 1; pos <= 32; ++pos)
        out.cells[std::size_t(pos - 1)] = std::to_string(buf(pos));
    out.label = std::to_string(kValueFromBytes(buf(9), buf(10)));
    return out;
}

Bytes sendable(const std::vector<int>& values)
{
    Bytes out;
    out.reserve(values.size());
    for (int v : values)
        if (v >= 0 && v <= 255)
            out.push_back(std::uint8_t(v));
    return out;
}

std::vector<int> burstRequest(int high, int firstLow)
{
    std::vector<int> request;
    for (int i = 0; i < kBurstAddresses; ++i)
        request.insert(request.end(), {CmdReadMemory, high, firstLow + i});
    return request;
}

Cycle burstCycle(const std::vector<int>& request, bool settle)
{
    Cycle c;
    c.send = sendable(request);
    c.send.push_back(CmdGo);
    c.expect = kBurstReplyLength;
    c.after = {CmdStop};
    c.settle = settle;
    return c;
}

std::array<int, kBurstAddresses> burstData(const Bytes& reply)
{
    std::array<int, kBurstAddresses> data{};
    for (int i = 0; i < kBurstAddresses; ++i) {
        const std::size_t at = std::size_t(kBurstFirstData + i);
        data[std::size_t(i)] = at < reply.size() ? reply[at] : 0;
    }
    return data;
}

bool burstStreamEnded(const Bytes& received)
{
    constexpr std::size_t echoes = kBurstFirstData - 2;
    for (std::size_t slot = echoes + kBurstFrameLength; slot < received.size(); slot += kBurstFrameLength)
        if (received[slot] != FrameStart)
            return true;
    return false;
}

}  // namespace vexorin::consult
