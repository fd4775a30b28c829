// The external sensor port's devices: the same list of serial devices as the
// Consult port's, with their COM numbers, plus the built-in simulated
// DLP-IO8-G; and the device behind a chosen number, opened at 115200 baud.
#pragma once

#include "consult/dev_lister.h"

#include <QString>

class PortCatalog;
class SerialTransport;

namespace ExternalPorts {

extern const QString kDlpSimulatorPath;
extern const QString kDlpSimulatorName;
inline constexpr int kBaudRate = 115200;

// The devices of the catalog, then the simulated DLP-IO8-G with its COM number.
DeviceSource deviceSource(PortCatalog& catalog);

// Opens nothing: makes the device for a port number (null with a reason when there is none).
SerialTransport* makeTransport(const PortCatalog& catalog, int number, QString* error);

}  // namespace ExternalPorts
