// The built-in simulated DLP-IO8-G as a serial device, in this process: the
// "Vexorin DLP-IO8-G Simulator" row of the external port list. It sits in the
// simulated car it shares with the built-in ECU: channel 1 reads the wideband
// in that engine's exhaust (see consult/shared_simulation.h).
#pragma once

#include "consult/shared_simulation.h"
#include "consult/simulated_device_transport.h"
#include "sim/dlp_simulator.h"

class DlpSimulatorTransport : public SimulatedDeviceTransport<SharedCarDevice<CarDlp>> {
    Q_OBJECT
public:
    // The DLP-IO8-G of the shared car, which `config` sets up when given.
    explicit DlpSimulatorTransport(QObject* parent = nullptr, const SimulatorConfigSource& config = {});

    vexorin::sim::DlpSimulator& dlp() { return device().device(); }
    vexorin::sim::SimulatedCar& car() { return device().shared().car(); }
};
