#include "sim/dlp_pty_port.h"

#include "sim/pty_server.h"

#include <poll.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace vexorin::sim {

namespace {

std::string printable(const std::uint8_t* b, std::size_t n)
{
    std::string s;
    for (std::size_t i = 0; i < n; ++i) {
        char hex[8];
        if (b[i] >= 0x20 && b[i] < 0x7F)
            s.push_back(char(b[i]));
        else {
            std::snprintf(hex, sizeof hex, "\\x%02X", b[i]);
            s += hex;
        }
    }
    return s;
}

}  // namespace

DlpPtyPort::DlpPtyPort(DlpSimulator& dlp, bool verbose, std::FILE* log)
    : dlp_(dlp), verbose_(verbose), log_(log)
{
}

void DlpPtyPort::read(short revents)
{
    if ((revents & POLLIN) != 0) {
        std::uint8_t buf[256];
        long got;
        while ((got = pty_.read(buf, sizeof buf)) > 0) {
            if (verbose_)
                std::fprintf(log_, "pc -> %s\n", printable(buf, std::size_t(got)).c_str());
            dlp_.receive(buf, std::size_t(got));
        }
    } else if ((revents & (POLLHUP | POLLERR)) != 0) {
        ::usleep(1000);   // nobody on the other side; do not spin
    }
}

void DlpPtyPort::write()
{
    // Answers the PC does not read pile up in the pty no further than kMaxQueued.
    const std::size_t queued = pty_.queuedForPeer();
    if (queued < kMaxQueued && dlp_.pending() > 0) {
        const std::vector<std::uint8_t> out = dlp_.transmit(kMaxQueued - queued);
        if (verbose_)
            std::fprintf(log_, "dlp -> %s\n", printable(out.data(), out.size()).c_str());
        pty_.write(out.data(), out.size());
    }
}

}  // namespace vexorin::sim
