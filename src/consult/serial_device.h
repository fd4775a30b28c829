// What Linux tells about a serial device beyond opening it: its stable name
// under /dev/serial/by-id, the kernel's low-latency flag, and the USB
// adapter's latency timer.
#pragma once

#include <QString>

namespace serial_device {

// The /dev/serial/by-id name of the device at `path` (a USB adapter keeps it
// whatever ttyUSB number it gets), or `path` itself when it has none.
QString stableName(const QString& path, const QString& byIdDir = QStringLiteral("/dev/serial/by-id"));

// The kernel's name of the device: ttyUSB0 for /dev/ttyUSB0 or a by-id link to it.
QString kernelName(const QString& path);

// The adapter's latency timer in milliseconds (FTDI chips: 16 unless set), or
// -1 when the driver has none.
int latencyTimerMs(const QString& path, const QString& sysRoot = QStringLiteral("/sys"));

// Asks the driver of the open descriptor to pass every byte on at once
// (ASYNC_LOW_LATENCY). False where the driver does not take it, as a
// pseudo-terminal does not.
bool requestLowLatency(int fd);

}  // namespace serial_device
