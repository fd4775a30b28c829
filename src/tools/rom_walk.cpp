#include "tools/rom_walk.h"

#include "tools/ecu_tool_tables.h"

namespace vexorin::tools {

RomStep RomWalk::next()
{
    RomStep step;
    if (DownloadByte == 255) {
        DownloadRegister = addInt16(DownloadRegister, 1);
        DownloadByte = -1;
    }
    if (DownloadRegister == 256) {
        step.kind = RomStep::Kind::Complete;
        return step;
    }
    for (int i = 0; i < consult::kBurstAddresses; ++i) {
        DownloadByte = addInt16(DownloadByte, 1);
        if (DownloadByte == 256)
            break;
        step.shownRegister = DownloadRegister;
        step.shownByte = DownloadByte;
        step.request.insert(step.request.end(), {consult::kCmdReadMemory, DownloadRegister, DownloadByte});
    }
    if (DownloadByte == 256)
        step.kind = RomStep::Kind::SendOnly;
    return step;
}

bool RomWalk::accept(const std::vector<std::uint8_t>& reply)
{
    if (!reply.empty() && consult::echoOk(reply[0]))
        return true;
    // One address back, not eight: the seven before it are never asked for again.
    DownloadByte = addInt16(DownloadByte, -1);
    return false;
}

}  // namespace vexorin::tools
