// vexorin-ecu-sim: the simulated ECU on a pseudo-terminal, for running the
// workstation (or anything else that talks Consult) without a car.
#include "sim/ecu_simulator.h"
#include "sim/pty_server.h"
#include "sim/tool_main.h"

#include <cstdio>

namespace {
// --write-rom: the ROM image of the seed as a BIN file, and nothing else.
int writeRom(const vexorin::sim::ToolOptions& o)
{
    const auto rom = vexorin::sim::makeSyntheticRom(o.seed);
    std::FILE* f = std::fopen(o.writeRomPath.c_str(), "wb");
    bool ok = f && std::fwrite(rom.data(), 1, rom.size(), f) == rom.size();
    if (f)
        ok = std::fclose(f) == 0 && ok;
    if (!ok) {
        std::fprintf(stderr, "vexorin-ecu-sim: cannot write %s\n", o.writeRomPath.c_str());
        return 1;
    }
    std::printf("ROM written to %s\n", o.writeRomPath.c_str());
    return 0;
}
}  // namespace

int main(int argc, char** argv)
{
    using namespace vexorin::sim;
    return runTool<ToolOptions>(argc, argv, "vexorin-ecu-sim", parseToolOptions, toolUsage,
                                [](const ToolOptions& o, const volatile std::sig_atomic_t& stop) {
                                    return o.writeRomPath.empty() ? runPtyServer(o, stop) : writeRom(o);
                                });
}
