// Any bytes as an ECU reply to the identity reads.
#include "consult/wire.h"

#include <cstddef>
#include <cstdint>

using namespace vexorin::consult;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Bytes reply(data, data + size);
    const ReplyBuffer part(reply, kPartNumberReplyLength);
    const std::string text = partNumberText(part);
    if (text.compare(0, 8, "23710 - ") != 0 || text.size() != 13)
        __builtin_trap();
    const ReplyBuffer k(reply, kKValueReplyLength);
    const int kv = kValueFromBytes(k(9), k(10));
    if (kv < -32768 || kv > 32767)
        __builtin_trap();
    const ReplyBuffer faults(reply, kFaultCodesReplyLength, 2);
    for (int i = -1; i <= 40; ++i)
        if (faults(i) < 0 || faults(i) > 255)
            __builtin_trap();
    Hex2Ascii h;
    h(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
