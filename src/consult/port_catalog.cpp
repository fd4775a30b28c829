#include "consult/port_catalog.h"

#include "consult/qt_serial_transport.h"
#include "consult/recording_transport.h"
#include "consult/serial_device.h"
#include "consult/simulator_transport.h"

#include <QSerialPortInfo>

const QString PortCatalog::kSimulatorPath = QStringLiteral("sim:ecu");
const QString PortCatalog::kSimulatorName = QStringLiteral("Vexorin ECU Simulator");

namespace {
QList<SystemPort> listSystemPorts()
{
    QList<SystemPort> out;
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts()) {
        const QString kernel = info.systemLocation();
        const QString stable = serial_device::stableName(kernel);
        out.append({stable, info.description(), stable == kernel ? QString() : kernel});
    }
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

void PortCatalog::adoptStableName(const SystemPort& port)
{
    if (port.kernelPath.isEmpty() || port.kernelPath == port.path)
        return;
    int kernelNumber = 0;
    for (int n = 1; n <= kMaxPorts; ++n) {
        if (pathFor(n) == port.path)
            return;
        if (pathFor(n) == port.kernelPath)
            kernelNumber = n;
    }
    if (kernelNumber > 0)
        store_.WriteSetting(QString(PortSettingKeys::PortAssignmentsSection), comKey(kernelNumber), port.path);
}

QList<PlatformDevice> PortCatalog::devices(bool presentOnly)
{
    struct Row {
        QString path;
        QString description;
        bool showPath;
    };
    QList<Row> rows;
    for (const SystemPort& p : systemPorts_()) {
        adoptStableName(p);
        rows.append({p.path, p.description.isEmpty() ? QStringLiteral("Serial Port") : p.description, true});
    }
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

QString PortCatalog::latencyReport(const QString& sysRoot)
{
    QStringList lines;
    bool slow = false;
    for (const SystemPort& p : systemPorts_()) {
        const int ms = serial_device::latencyTimerMs(p.kernelPath.isEmpty() ? p.path : p.kernelPath, sysRoot);
        const int n = numberFor(p.path);
        const QString name = (p.description.isEmpty() ? QStringLiteral("Serial Port") : p.description) +
            (n > 0 ? QStringLiteral(" (COM%1)").arg(n) : QString());
        if (ms < 0) {
            lines << QStringLiteral("%1: no latency timer (%2).").arg(name, p.path);
        } else {
            lines << QStringLiteral("%1: latency timer %2 ms (%3).").arg(name).arg(ms).arg(p.path);
            slow = slow || ms > 1;
        }
    }
    if (lines.isEmpty())
        return QStringLiteral("No serial device is plugged in.");
    lines << QString();
    lines << QStringLiteral("Vexorin opens every port with the kernel's low-latency flag where the driver takes it.");
    if (slow)
        lines << QStringLiteral("A latency timer above 1 ms delays every reply of the ECU: set it to 1 with "
                                "\"echo 1 | sudo tee /sys/bus/usb-serial/devices/<device>/latency_timer\", "
                                "or for good with a udev rule (see README, \"Serial ports on Linux\").");
    return lines.join(QLatin1Char('\n'));
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
        t = new SimulatorTransport(nullptr, simulatorConfig_);
    else
        t = new QtSerialTransport(path);
    const QString record =
        store_.ReadSetting(QString(PortSettingKeys::RecordSection), QString(PortSettingKeys::RecordKey));
    if (!record.isEmpty() && openRecording_)
        t = new RecordingTransport(t, openRecording_(record, nullptr));
    return t;
}
