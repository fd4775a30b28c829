// The standalone simulator's main loop: the ECU behind a pseudo-terminal,
// driven by the real clock, with console commands on a file descriptor; with
// --dlp-link the DLP-IO8-G of the same engine behind a second one.
#pragma once

#include "sim/tool_options.h"

#include <csignal>
#include <cstdio>
#include <string>

namespace vexorin::sim {

struct ServerIo {
    int commandFd = 0;          // console commands, one per line; end of input is not the end
    std::FILE* out = stdout;    // the "PTY <path>" line
    std::FILE* log = stderr;    // everything else
};

// Output pacing. Without --pace bytes go out as fast as the PC takes them, but
// never more than kMaxQueued wait in the pty, so a stream is never generated
// far ahead of what the PC reads.
constexpr std::size_t kMaxQueued = 64;
constexpr double kLineBytesPerSecond = 960.0;   // 9600 baud, 10 bits a byte

class PtyLink;

// Opens a pseudo-terminal and the symbolic link to it, if one is asked for;
// false after printing the reason, prefixed with the tool's name, on io.log.
bool openPty(PtyLink& pty, const std::string& linkPath, const char* tool, const ServerIo& io);
// Opens the tool's pseudo-terminal and the symbolic link to it, if one is
// asked for, and prints "PTY <slave path>" on io.out; false after printing
// the reason, prefixed with the tool's name, on io.log.
bool openToolPty(PtyLink& pty, const std::string& linkPath, const char* tool, const ServerIo& io);
// Removes the symbolic link, closes the pseudo-terminal and says so on io.log.
void closeToolPty(PtyLink& pty, const std::string& linkPath, const char* tool, const ServerIo& io);

// Runs until `stop` becomes non-zero or "quit" is read. Returns the exit code.
int runPtyServer(const ToolOptions& options, const volatile std::sig_atomic_t& stop, const ServerIo& io = ServerIo{});

}  // namespace vexorin::sim
