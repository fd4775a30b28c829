#include "consult/port_catalog.h"

#include "consult/qt_serial_transport.h"
#include "consult/recording_transport.h"
#include "consult/simulator_transport.h"

#include <QSerialPortInfo>

const QString PortCatalog::kSimulatorPath = QStringLiteral("sim:ecu");
const QString PortCatalog::kSimulatorName = QStringLiteral("Vexorin ECU Simulator");

namespace {
QList<SystemPort> listSystemPorts()
{
    QList<SystemPort> out;
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts())
        out.append({info.systemLocation(), info.description()});
    return out;
}

QString comKey(int n)
{
    return QStringLiteral("COM%1").arg(n);
}
}  // namespace

PortCatalog::PortCatalog(PortSettings& store, RecordingFileOpener openRecording)
    : store_(store), openRecording_(std::move(openRecording)), systemPorts_(listSystemPorts)
{
}

QString PortCatalog::pathFor(int number) const
{
    if (number < 1 || number > kMaxPorts)
        return QString();
    return store_.ReadSetting(QString(PortSettingKeys::PortAssignmentsSection), comKey(number));
}

int PortCatalog::numberFor(const QString& path, const QStringList& presentPaths)
{
    const QString section(PortSettingKeys::PortAssignmentsSection);
    for (int n = 1; n <= kMaxPorts; ++n)
        if (pathFor(n) == path)
            return n;
    for (int n = 1; n <= kMaxPorts; ++n) {
        if (pathFor(n).isEmpty()) {
            store_.WriteSetting(section, comKey(n), path);
            return n;
        }
    }
    // All numbers remembered: take over the first one whose device is not here now.
    for (int n = 1; n <= kMaxPorts; ++n) {
        if (!presentPaths.contains(pathFor(n))) {
            store_.WriteSetting(section, comKey(n), path);
            return n;
        }
    }
    return 0;
}

QList<PlatformDevice> PortCatalog::devices(bool presentOnly)
{
    struct Row {
        QString path;
        QString description;
        bool showPath;
    };
    QList<Row> rows;
    for (const SystemPort& p : systemPorts_())
        rows.append({p.path, p.description.isEmpty() ? QStringLiteral("Serial Port") : p.description, true});
    for (const QString& key : store_.keys(QString(PortSettingKeys::ExtraPortsSection))) {
        const QString path = store_.ReadSetting(QString(PortSettingKeys::ExtraPortsSection), key).trimmed();
        if (!path.isEmpty())
            rows.append({path, QStringLiteral("Extra Serial Port"), true});
    }
    rows.append({kSimulatorPath, kSimulatorName, false});

    QStringList present;
    for (const Row& r : rows)
        present.append(r.path);
    if (!presentOnly) {
        for (int n = 1; n <= kMaxPorts; ++n) {
            const QString p = pathFor(n);
            if (!p.isEmpty() && !present.contains(p))
                rows.append({p, QStringLiteral("Serial Port (not present)"), true});
        }
    }

    QList<PlatformDevice> out;
    QStringList seen;
    for (const Row& r : rows) {
        if (seen.contains(r.path))
            continue;
        seen.append(r.path);
        const int n = numberFor(r.path, present);
        QString name = r.showPath ? r.description + QStringLiteral(" - ") + r.path : r.description;
        if (n > 0)
            name += QStringLiteral(" (COM%1)").arg(n);
        out.append({r.path, r.description, name, QStringLiteral("Ports")});
    }
    return out;
}

DeviceSource PortCatalog::source()
{
    return [this](bool presentOnly) { return devices(presentOnly); };
}

SerialTransport* PortCatalog::makeTransport(int number, QString* error) const
{
    const QString path = pathFor(number);
    if (path.isEmpty()) {
        if (error)
            *error = QStringLiteral("no device is assigned to COM%1").arg(number);
        return nullptr;
    }
    SerialTransport* t = nullptr;
    if (path == kSimulatorPath)
        t = new SimulatorTransport;
    else
        t = new QtSerialTransport(path);
    const QString record =
        store_.ReadSetting(QString(PortSettingKeys::RecordSection), QString(PortSettingKeys::RecordKey));
    if (!record.isEmpty() && openRecording_)
        t = new RecordingTransport(t, openRecording_(record, nullptr));
    return t;
}
