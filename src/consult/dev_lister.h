// A list of devices of one setup class. On Linux the class "Ports" holds the
// serial devices the system knows, the extra device paths of the settings and
// the built-in ECU simulator; a DeviceSource supplies them.
#pragma once

#include "consult/dev_info_storage.h"

#include <QList>
#include <QString>
#include <functional>

// One device as the platform reports it, with its properties as raw text.
struct PlatformDevice {
    QString instance;
    QString description;
    QString friendlyName;
    QString classText;
};

// Enumerates the devices of a class; presentOnly leaves out devices not plugged in now.
using DeviceSource = std::function<QList<PlatformDevice>(bool presentOnly)>;

class DevLister {
public:
    static constexpr int kPropertyBuffer = 500;

    explicit DevLister(DeviceSource source = {});

    void ListClear() { list_.clear(); }
    int ListCount() const { return int(list_.size()); }
    // Counted from 1.
    const DevInfo_Storage& Item(int index) const;

    void GetGUIDByName(const QString& name, QList<GUID_Storage>& guids, QString& status) const;
    void GetNameByGUID(const GUID_Storage& guid, QString& name, QString& status) const;
    void AddToList(const GUID_Storage* guid, bool presentOnly, QString& status);

    static QString StrTrimToNull(const QString& text);
    static QString PadStr(const QString& text, int length, QChar pad) { return GUID_Storage::PadStr(text, length, pad); }

    // The class identifier of "Ports".
    static GUID_Storage portsClassGuid();

private:
    QList<DevInfo_Storage> list_;
    DeviceSource source_;
};

// The present devices of the class "Ports", as the port menu and the Interface
// Check window list them. When a step fails, `errorTitle` names the error box
// and `status` is its text.
struct PortListing {
    DevLister lister;
    QString status;
    QString errorTitle;
    bool ok() const { return errorTitle.isEmpty(); }
};
PortListing listPresentPorts(DeviceSource source);
