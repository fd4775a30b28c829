// What stands behind each port number on Linux: the serial devices the system
// lists, the extra device paths of the settings (pseudo-terminals, Bluetooth
// serial links) and the built-in simulated ECU. Every path keeps its COM
// number from run to run, so captions end in "(COMn)" and a saved port number
// finds the same device again. USB adapters go by their /dev/serial/by-id
// names, so that each keeps its number whichever ttyUSB it becomes.
#pragma once

#include "consult/dev_lister.h"
#include "consult/port_settings.h"
#include "consult/shared_simulation.h"

#include <QList>
#include <QString>
#include <functional>

class SerialTransport;

struct SystemPort {
    SystemPort(QString devicePath, QString text, QString kernel = {})
        : path(std::move(devicePath)), description(std::move(text)), kernelPath(std::move(kernel))
    {
    }
    QString path;         // e.g. /dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0, or /dev/ttyS0
    QString description;  // e.g. FT232R USB UART
    QString kernelPath;   // e.g. /dev/ttyUSB0, when `path` is a stable name for it
};

class PortCatalog {
public:
    static constexpr int kMaxPorts = 16;
    static const QString kSimulatorPath;
    static const QString kSimulatorName;

    // Without an opener no session is recorded, whatever the settings say.
    explicit PortCatalog(PortSettings& store, RecordingFileOpener openRecording = {});

    // Where the simulator rows' car takes its fuel error and ROM file from, each time one of them is opened.
    void setSimulatorConfig(SimulatorConfigSource source) { simulatorConfig_ = std::move(source); }
    const SimulatorConfigSource& simulatorConfig() const { return simulatorConfig_; }

    // Replaces the system's serial device list (tests).
    void setSystemPorts(std::function<QList<SystemPort>()> provider) { systemPorts_ = std::move(provider); }

    // Rows in list order: system devices, extra paths, then the simulator.
    QList<PlatformDevice> devices(bool presentOnly);
    DeviceSource source();

    // The remembered COM number of a path, assigning a free one on first sight (0 when all are taken).
    int numberFor(const QString& path, const QStringList& presentPaths = {});
    // The path behind a COM number, or empty.
    QString pathFor(int number) const;

    // The latency timer of each serial device plugged in now, one line each,
    // with how to lower it; `sysRoot` is where the kernel's device tree is.
    QString latencyReport(const QString& sysRoot = QStringLiteral("/sys"));

    // Opens nothing: makes the device for a port number (null with a reason when there is none).
    SerialTransport* makeTransport(int number, QString* error) const;

private:
    // A port numbered under its kernel name keeps its number under its stable name.
    void adoptStableName(const SystemPort& port);

    PortSettings& store_;
    RecordingFileOpener openRecording_;
    std::function<QList<SystemPort>()> systemPorts_;
    SimulatorConfigSource simulatorConfig_;
};
