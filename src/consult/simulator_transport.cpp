#include "consult/simulator_transport.h"

#include <QDateTime>

SimulatorTransport::SimulatorTransport(QObject* parent)
    : SimulatedDeviceTransport(parent, static_cast<std::uint32_t>(QDateTime::currentMSecsSinceEpoch()))
{
}
