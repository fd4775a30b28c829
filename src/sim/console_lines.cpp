#include "sim/console_lines.h"

#include <cerrno>
#include <unistd.h>

namespace vexorin::sim {

bool ConsoleLines::readable() const
{
    if (!open_ || fd_ < 0)
        return false;
    // A terminal is read only while the tool runs in the foreground; started
    // in the background of a shell it would otherwise be stopped (SIGTTIN).
    if (::isatty(fd_) == 1) {
        const pid_t fg = ::tcgetpgrp(fd_);
        return fg < 0 || fg == ::getpgrp();
    }
    return true;
}

std::vector<std::string> ConsoleLines::read()
{
    std::vector<std::string> lines;
    char buf[256];
    const ssize_t n = ::read(fd_, buf, sizeof buf);
    if (n < 0 && errno == EIO && ::isatty(fd_) == 1)
        return lines;   // a background read of the terminal; try again in the foreground
    if (n == 0 || (n < 0 && errno != EINTR && errno != EAGAIN)) {
        open_ = false;   // keep running without a console
        return lines;
    }
    if (n < 0)
        return lines;
    buffer_.append(buf, std::size_t(n));
    std::size_t nl;
    while ((nl = buffer_.find('\n')) != std::string::npos) {
        lines.push_back(buffer_.substr(0, nl));
        buffer_.erase(0, nl + 1);
    }
    if (buffer_.size() > 4096)
        buffer_.clear();
    return lines;
}

}  // namespace vexorin::sim
