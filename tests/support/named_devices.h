// A device list of ports with the given names (friendly name, description
// and instance alike), for the port menus' tests.
#pragma once

#include "consult/dev_lister.h"

#include <QStringList>

inline DeviceSource namedDevices(const QStringList& friendlyNames)
{
    return [friendlyNames](bool) {
        QList<PlatformDevice> out;
        for (const QString& n : friendlyNames)
            out.append({n, n, n, QStringLiteral("Ports")});
        return out;
    };
}
