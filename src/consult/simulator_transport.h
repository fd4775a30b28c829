// The built-in simulated ECU as a serial device, in this process: the ECU of
// the simulated car it shares with the built-in DLP-IO8-G (see
// consult/shared_simulation.h).
#pragma once

#include "consult/shared_simulation.h"
#include "consult/simulated_device_transport.h"
#include "sim/ecu_simulator.h"

class SimulatorTransport : public SimulatedDeviceTransport<SharedCarDevice<CarEcu>> {
    Q_OBJECT
public:
    // The ECU of the shared car, which `config` sets up when given.
    explicit SimulatorTransport(QObject* parent = nullptr, const SimulatorConfigSource& config = {});
    // The ECU of the given car.
    explicit SimulatorTransport(std::shared_ptr<SharedCar> car, QObject* parent = nullptr);

    vexorin::sim::EcuSimulator& ecu() { return device().device(); }
    vexorin::sim::SimulatedCar& car() { return device().shared().car(); }
};
