#include "consult/simulator_transport.h"

// The seed of the standalone tool: a ROM downloaded from this simulator equals
// the file that `vexorin-ecu-sim --write-rom` writes.
SimulatorTransport::SimulatorTransport(QObject* parent)
    : SimulatedDeviceTransport(parent, vexorin::sim::kDefaultSeed)
{
}
