// The built-in simulated ECU as a serial device, in this process.
#pragma once

#include "consult/simulated_device_transport.h"
#include "sim/ecu_simulator.h"

class SimulatorTransport : public SimulatedDeviceTransport<vexorin::sim::EcuSimulator> {
    Q_OBJECT
public:
    explicit SimulatorTransport(QObject* parent = nullptr);

    vexorin::sim::EcuSimulator& ecu() { return device(); }
};
