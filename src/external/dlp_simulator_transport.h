// The built-in simulated DLP-IO8-G as a serial device, in this process: the
// "Vexorin DLP-IO8-G Simulator" row of the external port list.
#pragma once

#include "consult/simulated_device_transport.h"
#include "sim/dlp_simulator.h"

class DlpSimulatorTransport : public SimulatedDeviceTransport<vexorin::sim::DlpSimulator> {
    Q_OBJECT
public:
    explicit DlpSimulatorTransport(QObject* parent = nullptr);

    vexorin::sim::DlpSimulator& dlp() { return device(); }
};
