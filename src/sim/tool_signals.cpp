#include "sim/tool_signals.h"

namespace vexorin::sim {

namespace {

volatile std::sig_atomic_t g_stop = 0;

extern "C" void onStopSignal(int)
{
    g_stop = 1;
}

}  // namespace

const volatile std::sig_atomic_t& installStopSignals()
{
    struct sigaction sa{};
    sa.sa_handler = onStopSignal;
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
    return g_stop;
}

}  // namespace vexorin::sim
