#include "consult/simulator_transport.h"

SimulatorTransport::SimulatorTransport(QObject* parent, const SimulatorConfigSource& config)
    : SimulatedDeviceTransport(parent, SharedSimulation::car(config))
{
}

SimulatorTransport::SimulatorTransport(std::shared_ptr<SharedCar> car, QObject* parent)
    : SimulatedDeviceTransport(parent, std::move(car))
{
}
