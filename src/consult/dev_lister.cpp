#include "consult/dev_lister.h"

namespace {
// Reads one property the way the platform does: into a buffer of 500 bytes,
// the trailing zero byte dropped. A longer property leaves the value empty.
QString readProperty(const QString& raw, QString& status, const char* tag)
{
    QString value;
    const QByteArray bytes = raw.toLocal8Bit();
    const int needed = int(bytes.size()) + 1;  // with its terminating zero
    QString readStatus = QStringLiteral("OK");
    if (needed > DevLister::kPropertyBuffer)
        readStatus = QStringLiteral("Buffer too small %1 vs %2").arg(needed).arg(DevLister::kPropertyBuffer);
    else
        value = DevLister::StrTrimToNull(raw);
    if (readStatus != QLatin1String("OK"))
        status = readStatus + QLatin1String(tag);
    return value;
}
}  // namespace

DevLister::DevLister(DeviceSource source)
    : source_(std::move(source))
{
}

const DevInfo_Storage& DevLister::Item(int index) const
{
    static const DevInfo_Storage none;
    return index >= 1 && index <= list_.size() ? list_[index - 1] : none;
}

GUID_Storage DevLister::portsClassGuid()
{
    return GUID_Storage(0x4D36E978, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18});
}

void DevLister::GetGUIDByName(const QString& name, QList<GUID_Storage>& guids, QString& status) const
{
    guids.clear();
    if (name.compare(QLatin1String("Ports"), Qt::CaseInsensitive) != 0) {
        status = QStringLiteral("Incorrect class name");
        return;
    }
    guids.append(portsClassGuid());
    status = QStringLiteral("OK");
}

void DevLister::GetNameByGUID(const GUID_Storage& guid, QString& name, QString& status) const
{
    if (guid.IsEqual(portsClassGuid())) {
        name = StrTrimToNull(QStringLiteral("Ports")).trimmed();
        status = QStringLiteral("OK");
    } else {
        name.clear();
        status = QStringLiteral("The specified class is not installed.");
    }
}

void DevLister::AddToList(const GUID_Storage* guid, bool presentOnly, QString& status)
{
    status = QStringLiteral("OK");
    // Without a class every device is wanted; this source knows only ports.
    if (guid && !guid->IsEqual(portsClassGuid()))
        return;
    if (!source_)
        return;
    for (const PlatformDevice& d : source_(presentOnly)) {
        DevInfo_Storage info;
        info.ClassGuid = portsClassGuid();
        info.DevInst = d.instance;
        info.Description = readProperty(d.description, status, "SPDRP_DEVICEDESC ");
        info.FriendlyName = readProperty(d.friendlyName, status, "SPDRP_FRIENDLYNAME ");
        info.ClassText = readProperty(d.classText, status, "SPDRP_CLASS ");
        list_.append(info);
    }
}

QString DevLister::StrTrimToNull(const QString& text)
{
    const int zero = text.indexOf(QChar(0));
    return zero < 0 ? text : text.left(zero);
}

PortListing listPresentPorts(DeviceSource source)
{
    PortListing out{DevLister(std::move(source)), QString(), QString()};
    QList<GUID_Storage> guids;
    out.lister.GetGUIDByName(QStringLiteral("Ports"), guids, out.status);
    if (out.status != QLatin1String("OK")) {
        out.errorTitle = QStringLiteral("Error Finding 'Ports' GUID");
        return out;
    }
    out.lister.AddToList(&guids.first(), true, out.status);
    if (out.status != QLatin1String("OK"))
        out.errorTitle = QStringLiteral("Error Getting Device List");
    return out;
}
