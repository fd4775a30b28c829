#include "external/dlp_simulator_transport.h"

DlpSimulatorTransport::DlpSimulatorTransport(QObject* parent, const SimulatorConfigSource& config)
    : SimulatedDeviceTransport(parent, SharedSimulation::car(config))
{
}
