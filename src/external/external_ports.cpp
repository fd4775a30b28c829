#include "external/external_ports.h"

#include "consult/port_catalog.h"
#include "consult/qt_serial_transport.h"
#include "consult/simulator_transport.h"
#include "external/dlp_simulator_transport.h"

namespace ExternalPorts {

const QString kDlpSimulatorPath = QStringLiteral("sim:dlp");
const QString kDlpSimulatorName = QStringLiteral("Vexorin DLP-IO8-G Simulator");

DeviceSource deviceSource(PortCatalog& catalog)
{
    return [&catalog](bool presentOnly) {
        QList<PlatformDevice> rows;
        QStringList present;
        for (const PlatformDevice& d : catalog.devices(presentOnly)) {
            if (d.instance == kDlpSimulatorPath)
                continue;  // remembered from an earlier run; it is listed below as present
            rows.append(d);
            present.append(d.instance);
        }
        present.append(kDlpSimulatorPath);
        QString name = kDlpSimulatorName;
        if (const int n = catalog.numberFor(kDlpSimulatorPath, present))
            name += QStringLiteral(" (COM%1)").arg(n);
        rows.append({kDlpSimulatorPath, kDlpSimulatorName, name, QStringLiteral("Ports")});
        return rows;
    };
}

SerialTransport* makeTransport(const PortCatalog& catalog, int number, QString* error)
{
    const QString path = catalog.pathFor(number);
    if (path.isEmpty()) {
        if (error)
            *error = QStringLiteral("no device is assigned to COM%1").arg(number);
        return nullptr;
    }
    if (path == kDlpSimulatorPath)
        return new DlpSimulatorTransport(nullptr, catalog.simulatorConfig());
    // An ECU of its own, which answers no request letter: the letters must not
    // reach the ECU the Consult port may be talking to.
    if (path == PortCatalog::kSimulatorPath)
        return new SimulatorTransport(SharedSimulation::separateCar());
    auto* port = new QtSerialTransport(path);
    port->setBaudRate(kBaudRate);
    return port;
}

}  // namespace ExternalPorts
