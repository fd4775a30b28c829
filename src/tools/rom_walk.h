// The BIN File Downloader's walk through the ROM as a plain object: eight
// addresses a burst from 0x8000 up, and the Retry rule that steps back one
// address when a reply's first echo is damaged. The controller only sends
// what next() gives and shows what accept() says. No Qt.
#pragma once

#include <cstdint>
#include <vector>

namespace vexorin::tools {

struct RomStep {
    enum class Kind {
        Burst,      // send the request with CmdGo and wait for the reply
        SendOnly,   // the page ran past 255: the request goes out bare, the next burst follows at once
        Complete,   // every page has been read
    };
    Kind kind = Kind::Burst;
    // The read requests as counted; a value past 255 cannot go on the wire.
    std::vector<int> request;
    // The last address asked for, for the labels; -1 when the step asked for none.
    int shownRegister = -1;
    int shownByte = -1;
};

class RomWalk {
public:
    // The page and the last low byte asked for.
    int DownloadRegister = 128;
    int DownloadByte = -1;

    void restart()
    {
        DownloadRegister = 128;
        DownloadByte = -1;
    }
    // The next step; moves the walk on.
    RomStep next();
    // A burst's reply: true when its data count, false for a Retry (the walk
    // then stands one address back).
    bool accept(const std::vector<std::uint8_t>& reply);
};

}  // namespace vexorin::tools
