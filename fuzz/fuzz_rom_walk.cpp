// Any run of good and damaged burst replies through the downloader's walk:
// every request asks for addresses of the page the walk stands on, in
// increasing order (up to the counter's 16-bit limit), at most eight; the
// page only ever moves up; and a walk
// whose replies are all good reads every address once, in order, and ends.
#include "tools/rom_walk.h"

#include <cstddef>
#include <cstdint>
#include <vector>

using vexorin::tools::RomStep;
using vexorin::tools::RomWalk;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    RomWalk walk;
    bool retried = false;
    int nextAddress = 0x8000;
    for (std::size_t i = 0; i < 5000; ++i) {
        const int page = walk.DownloadRegister;
        const RomStep step = walk.next();
        if (walk.DownloadRegister < page || walk.DownloadRegister > 256)
            __builtin_trap();
        if (step.kind == RomStep::Kind::Complete) {
            if (walk.DownloadRegister != 256)
                __builtin_trap();
            break;
        }
        if (step.request.size() % 3 != 0 || step.request.size() > 24)
            __builtin_trap();
        for (std::size_t k = 0; k < step.request.size(); k += 3) {
            if (step.request[k] != 0xC9 || step.request[k + 1] != walk.DownloadRegister)
                __builtin_trap();
            // In order; past a Retry the count runs up to the 16-bit limit and stays there.
            if (k > 0 && step.request[k + 2] != step.request[k - 1] + 1 && step.request[k + 2] != 32767)
                __builtin_trap();
            if (!retried && step.request[k + 1] * 256 + step.request[k + 2] != nextAddress++)
                __builtin_trap();
        }
        if (step.kind == RomStep::Kind::SendOnly)
            continue;
        // One input byte a reply: its low bit says whether the first echo arrived whole.
        const bool good = i >= size || (data[i] & 1);
        const std::vector<std::uint8_t> reply(34, good ? 0x36 : data[i]);
        const int before = walk.DownloadByte;
        const bool counted = walk.accept(reply);
        if (counted != (reply[0] == 0x36))
            __builtin_trap();
        if (!counted && walk.DownloadByte != before - 1)
            __builtin_trap();
        retried = retried || !counted;
    }
    if (!retried && (walk.DownloadRegister != 256 || nextAddress != 0x10000))
        __builtin_trap();
    return 0;
}
