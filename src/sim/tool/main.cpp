// vexorin-ecu-sim: the simulated ECU on a pseudo-terminal, for running the
// workstation (or anything else that talks Consult) without a car.
#include "sim/pty_server.h"
#include "sim/tool_options.h"

#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

namespace {

volatile std::sig_atomic_t g_stop = 0;

extern "C" void onSignal(int)
{
    g_stop = 1;
}

void installHandlers()
{
    struct sigaction sa{};
    sa.sa_handler = onSignal;
    sigemptyset(&sa.sa_mask);
    sa.sa_flags = 0;   // no SA_RESTART: poll() returns at once
    sigaction(SIGINT, &sa, nullptr);
    sigaction(SIGTERM, &sa, nullptr);
    // A hang-up of the controlling terminal ends the tool cleanly too, unless
    // it was started to ignore hang-ups (nohup).
    struct sigaction old{};
    if (sigaction(SIGHUP, nullptr, &old) == 0 && old.sa_handler != SIG_IGN)
        sigaction(SIGHUP, &sa, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGTTIN, SIG_IGN);   // a background read of the terminal fails instead of stopping us
}

}  // namespace

int main(int argc, char** argv)
{
    using namespace vexorin::sim;
    const std::string program = argc > 0 ? argv[0] : "vexorin-ecu-sim";
    std::vector<std::string> args(argv + (argc > 0 ? 1 : 0), argv + argc);
    ToolOptions options;
    std::string error;
    switch (parseToolOptions(args, options, &error)) {
    case ParseResult::Help:
        std::fputs(toolUsage(program).c_str(), stdout);
        return 0;
    case ParseResult::Error:
        std::fprintf(stderr, "%s: %s\n\n%s", program.c_str(), error.c_str(), toolUsage(program).c_str());
        return 2;
    case ParseResult::Ok:
        break;
    }
    if (!options.writeRomPath.empty()) {
        const auto rom = makeSyntheticRom(options.seed);
        std::FILE* f = std::fopen(options.writeRomPath.c_str(), "wb");
        const bool ok = f && std::fwrite(rom.data(), 1, rom.size(), f) == rom.size();
        if (f && std::fclose(f) != 0)
            return 1;
        if (!ok) {
            std::fprintf(stderr, "%s: cannot write %s\n", program.c_str(), options.writeRomPath.c_str());
            return 1;
        }
        std::printf("ROM written to %s\n", options.writeRomPath.c_str());
        return 0;
    }
    installHandlers();
    return runPtyServer(options, g_stop);
}
