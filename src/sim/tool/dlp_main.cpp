// vexorin-dlp-sim: a simulated DLP-IO8-G on a pseudo-terminal, for trying the
// External Gauge Monitor without the device.
#include "sim/dlp_pty_server.h"
#include "sim/tool_main.h"

int main(int argc, char** argv)
{
    using namespace vexorin::sim;
    return runTool<DlpToolOptions>(argc, argv, "vexorin-dlp-sim", parseDlpToolOptions, dlpToolUsage,
                                   [](const DlpToolOptions& o, const volatile std::sig_atomic_t& stop) {
                                       return runDlpPtyServer(o, stop);
                                   });
}
