#include "external/dlp_simulator_transport.h"

#include <QDateTime>

DlpSimulatorTransport::DlpSimulatorTransport(QObject* parent)
    : SimulatedDeviceTransport(parent, static_cast<std::uint32_t>(QDateTime::currentMSecsSinceEpoch()))
{
}
