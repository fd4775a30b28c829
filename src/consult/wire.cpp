#include "consult/wire.h"

#include <algorithm>

namespace vexorin::consult {

Bytes registerStreamRequest(const Bytes& registers, bool withGo)
{
    Bytes out;
    out.reserve(registers.size() * 2 + 1);
    for (std::uint8_t r : registers) {
        out.push_back(CmdRegisterStream);
        out.push_back(r);
    }
    if (withGo)
        out.push_back(CmdGo);
    return out;
}

Bytes memoryReadRequest(const std::vector<std::uint16_t>& addresses)
{
    Bytes out;
    out.reserve(addresses.size() * 3 + 1);
    for (std::uint16_t a : addresses) {
        out.push_back(CmdReadMemory);
        out.push_back(static_cast<std::uint8_t>(a >> 8));
        out.push_back(static_cast<std::uint8_t>(a & 0xFF));
    }
    out.push_back(CmdGo);
    return out;
}

Bytes partNumberRequest() { return {CmdReadPartNumber, CmdGo}; }
Bytes faultCodesRequest() { return {CmdReadFaults, CmdGo}; }
Bytes kValueRequest() { return memoryReadRequest({kKValueHighAddress, kKValueLowAddress}); }

ReplyBuffer::ReplyBuffer(const Bytes& reply, int count, int skip)
{
    count = std::clamp(count, 0, kLimit);
    skip = std::max(skip, 0);
    bytes_.assign(static_cast<std::size_t>(count), 0);
    for (int i = 0; i < count; ++i) {
        const std::size_t src = static_cast<std::size_t>(skip + i);
        if (src < reply.size())
            bytes_[static_cast<std::size_t>(i)] = reply[src];
    }
}

int ReplyBuffer::operator()(int position) const
{
    if (position < 1 || position > size())
        return 0;
    return bytes_[static_cast<std::size_t>(position - 1)];
}

std::string hexText(int value)
{
    static const char digits[] = "0123456789ABCDEF";
    unsigned v = static_cast<unsigned>(value);
    if (v == 0)
        return "0";
    std::string out;
    while (v) {
        out.insert(out.begin(), digits[v & 0xF]);
        v >>= 4;
    }
    return out;
}

namespace {
int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}
}  // namespace

const std::string& Hex2Ascii::operator()(const std::string& hex)
{
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        int value = 0;
        bool ok = true;
        for (std::size_t j = i; j < std::min(i + 2, hex.size()); ++j) {
            const int d = hexDigit(hex[j]);
            if (d < 0) {
                ok = false;
                break;
            }
            value = value * 16 + d;
        }
        if (ok)
            text_.push_back(static_cast<char>(value));
    }
    return text_;
}

std::string partNumberText(const ReplyBuffer& reply)
{
    Hex2Ascii acc;
    for (int pos = 21; pos <= 25; ++pos)
        acc(hexText(reply(pos)));
    return kPartNumberPrefix + " - " + acc.text();
}

int kValueFromBytes(int high, int low)
{
    const std::string joined = hexText(high & 0xFF) + hexText(low & 0xFF);
    // Read as a decimal 16-bit integer; anything else leaves 0.
    long decimal = 0;
    for (char c : joined) {
        if (c < '0' || c > '9')
            return 0;
        decimal = decimal * 10 + (c - '0');
        if (decimal > 32767)
            return 0;
    }
    // Its decimal digits read as hexadecimal, then as a 16-bit integer.
    long hex = 0;
    for (char c : std::to_string(decimal))
        hex = hex * 16 + (c - '0');
    if (hex > 0xFFFF)
        return 0;  // overflows 16 bits: the conversion fails and the value stays 0
    if (hex > 0x7FFF)
        hex -= 0x10000;  // four hexadecimal digits read as a signed 16-bit integer
    return static_cast<int>(hex);
}

}  // namespace vexorin::consult
