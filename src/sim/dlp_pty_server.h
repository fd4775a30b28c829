// vexorin-dlp-sim: the simulated DLP-IO8-G behind a pseudo-terminal, driven
// by the real clock, with console commands on a file descriptor.
#pragma once

#include "sim/dlp_simulator.h"
#include "sim/pty_server.h"
#include "sim/tool_options.h"

#include <csignal>
#include <string>
#include <vector>

namespace vexorin::sim {

struct DlpToolOptions {
    DlpFaults faults;
    std::uint32_t seed = 1;
    std::string linkPath;   // empty: no symbolic link
    bool verbose = false;   // log every request and answer on stderr
};

// args without the program name.
ParseResult parseDlpToolOptions(const std::vector<std::string>& args, DlpToolOptions& out, std::string* error);
std::string dlpToolUsage(const std::string& program);

// One console line: "silent on|off", "late MS|off", "garbage on|off",
// "hold CHANNEL VOLTS|off", "status", "quit". Changes the faults and holds
// of `sim`; returns false with a reason for a line it does not understand,
// and sets `quit` for "quit".
bool applyDlpCommand(const std::string& line, DlpSimulator& sim, bool& quit, std::string* reply);

// Runs until `stop` becomes non-zero or "quit" is read. Returns the exit code.
int runDlpPtyServer(const DlpToolOptions& options, const volatile std::sig_atomic_t& stop,
                    const ServerIo& io = ServerIo{});

}  // namespace vexorin::sim
