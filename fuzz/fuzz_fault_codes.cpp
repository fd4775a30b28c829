// Any bytes as the ECU's reply to a fault-code read, through the decoder the
// "Get Fault Codes" button uses: the data stops at the first frame start, and
// every code found is one of the table's.
#include "consult/fault_codes.h"
#include "consult/wire.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

using namespace vexorin::consult;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Bytes reply(data, data + size);
    const ReplyBuffer buf(reply, kFaultCodesReplyLength, 2);
    const FaultScan scan = scanFaultReply(buf);
    if (scan.bytes.size() > std::size_t(kFaultCodesReplyLength))
        __builtin_trap();
    // The bytes are the reply's from the length byte on, in order, up to a frame start.
    for (std::size_t i = 0; i < scan.bytes.size(); ++i)
        if (scan.bytes[i] != buf(int(i) + 1) || scan.bytes[i] == FrameStart)
            __builtin_trap();
    bool frameStart = false;
    for (int p = 1; p <= kFaultCodesReplyLength && !frameStart; ++p)
        frameStart = buf(p) == FrameStart;
    if (scan.endedAtFrameStart != frameStart)
        __builtin_trap();
    if (!frameStart && scan.bytes.size() != std::size_t(kFaultCodesReplyLength))
        __builtin_trap();
    for (int byte : scan.bytes) {
        const FaultCode* code = findFaultCode(byte);
        const bool known = std::any_of(kFaultCodes.begin(), kFaultCodes.end(),
                                       [byte](const FaultCode& c) { return c.byte == byte; });
        if ((code != nullptr) != known || (code && code->byte != byte))
            __builtin_trap();
    }
    return 0;
}
