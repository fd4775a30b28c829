// vexorin-ecu-sim: the simulated ECU on a pseudo-terminal, for running the
// workstation (or anything else that talks Consult) without a car.
#include "sim/pty_server.h"
#include "sim/tool_main.h"

int main(int argc, char** argv)
{
    using namespace vexorin::sim;
    return runTool<ToolOptions>(argc, argv, "vexorin-ecu-sim", parseToolOptions, toolUsage,
                                [](const ToolOptions& o, const volatile std::sig_atomic_t& stop) {
                                    return runPtyServer(o, stop);
                                });
}
