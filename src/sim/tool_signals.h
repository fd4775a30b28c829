// How the simulator tools end: SIGINT, SIGTERM or a hang-up of the terminal
// (unless started with nohup) set a flag that the main loop watches.
#pragma once

#include <csignal>

namespace vexorin::sim {

// Installs the handlers once and returns the flag that becomes non-zero on a stop signal.
const volatile std::sig_atomic_t& installStopSignals();

}  // namespace vexorin::sim
