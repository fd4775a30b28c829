#include "consult/qt_serial_transport.h"

#include "consult/port_problem.h"
#include "consult/serial_device.h"

QtSerialTransport::QtSerialTransport(const QString& devicePath, QObject* parent)
    : SerialTransport(parent), path_(devicePath)
{
    port_.setPortName(devicePath);
    connect(&port_, &QSerialPort::readyRead, this, &SerialTransport::readyRead);
    connect(&port_, &QSerialPort::errorOccurred, this, &QtSerialTransport::onError);
}

QtSerialTransport::~QtSerialTransport()
{
    close();
}

bool QtSerialTransport::open(QString* error)
{
    port_.setBaudRate(baud_);
    port_.setDataBits(QSerialPort::Data8);
    port_.setParity(QSerialPort::NoParity);
    port_.setStopBits(QSerialPort::OneStop);
    port_.setFlowControl(QSerialPort::NoFlowControl);
    openNote_.clear();
    if (!port_.open(QIODevice::ReadWrite)) {
        if (error) {
            PortFacts facts = gatherPortFacts(path_);
            facts.systemText = port_.errorString();
            *error = explainOpenFailure(facts);
        }
        return false;
    }
    // USB adapters otherwise hold each byte for their latency timer (16 ms on FTDI chips).
    if (serial_device::requestLowLatency(int(port_.handle()))) {
        const int timer = serial_device::latencyTimerMs(path_);
        openNote_ = QStringLiteral("%1 opened with the kernel's low-latency flag").arg(path_) +
            (timer >= 0 ? QStringLiteral("; its latency timer is %1 ms.").arg(timer) : QStringLiteral("."));
    }
    port_.setDataTerminalReady(dtr_);
    port_.clear();
    return true;
}

void QtSerialTransport::close()
{
    if (port_.isOpen())
        port_.close();
}

bool QtSerialTransport::isOpen() const
{
    return port_.isOpen();
}

qint64 QtSerialTransport::bytesAvailable()
{
    if (!port_.isOpen())
        return 0;
    // Picks up bytes the driver holds without waiting for the event loop.
    port_.waitForReadyRead(0);
    return port_.bytesAvailable();
}

QByteArray QtSerialTransport::readAll()
{
    return port_.isOpen() ? port_.readAll() : QByteArray();
}

void QtSerialTransport::clear()
{
    if (!port_.isOpen())
        return;
    port_.waitForReadyRead(0);
    port_.readAll();
    port_.clear(QSerialPort::Input);
}

void QtSerialTransport::write(const QByteArray& bytes)
{
    if (!port_.isOpen())
        return;
    port_.write(bytes);
    port_.waitForBytesWritten(1000);
}

bool QtSerialTransport::poll(qint64 count)
{
    return bytesAvailable() >= count;
}

void QtSerialTransport::setDtr(bool on)
{
    dtr_ = on;
    if (port_.isOpen())
        port_.setDataTerminalReady(on);
}

void QtSerialTransport::onError(QSerialPort::SerialPortError error)
{
    if (error == QSerialPort::ResourceError && port_.isOpen()) {
        const QString reason = port_.errorString();
        port_.close();
        emit lost(reason);
    }
}
