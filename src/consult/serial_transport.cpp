#include "consult/serial_transport.h"

SerialTransport* openTransport(const TransportFactory& factory, int port, QString* error)
{
    QString why;
    SerialTransport* t = factory ? factory(port, &why) : nullptr;
    if (t && !t->open(&why)) {
        delete t;
        t = nullptr;
    }
    if (!t && error)
        *error = why.isEmpty() ? QStringLiteral("No device for port %1").arg(port) : why;
    return t;
}
