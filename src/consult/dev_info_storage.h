// One device of a device list.
#pragma once

#include "consult/guid_storage.h"

#include <QString>

class DevInfo_Storage {
public:
    GUID_Storage ClassGuid;
    QString DevInst;       // the device instance; on Linux the device path
    QString Description;
    QString FriendlyName;
    QString ClassText;

    // The friendly name, or the description when that is empty.
    QString GetName() const { return FriendlyName.isEmpty() ? Description : FriendlyName; }
    QString GetLocation() const { return ClassText; }
};
