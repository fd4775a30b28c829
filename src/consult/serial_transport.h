// One serial device under the Consult link or the external sensor port: the
// real port, an in-process simulator, a test double or a recorder around any
// of them.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <functional>

class SerialTransport : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    ~SerialTransport() override = default;

    // Opens the device with 8 data bits, no parity, 1 stop bit, no flow control, at
    // 9600 baud for the Consult line (the external port's devices take their own speed).
    virtual bool open(QString* error) = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;

    // Bytes waiting to be read.
    virtual qint64 bytesAvailable() = 0;
    // Everything waiting, removed from the buffer.
    virtual QByteArray readAll() = 0;
    // Discards everything waiting.
    virtual void clear() = 0;
    virtual void write(const QByteArray& bytes) = 0;
    // Takes in what the device holds by now, without waiting; true when at
    // least `count` bytes wait.
    virtual bool poll(qint64 count) = 0;
    // A reader gave up waiting for `count` bytes.
    virtual void timedOut(qint64 count) { Q_UNUSED(count); }
    virtual void setDtr(bool on) = 0;
    // One line for the session log about how the device was opened, or empty.
    virtual QString openNote() const { return QString(); }

signals:
    // New bytes have arrived.
    void readyRead();
    // The device went away (unplugged) or failed for good while open.
    void lost(const QString& reason);
};

// Makes the device behind a port number; null with an error text when there is none.
using TransportFactory = std::function<SerialTransport*(int port, QString* error)>;
// Makes and opens the device behind a port number; null with the reason when
// there is none or it cannot be opened (missing, busy, no permission).
SerialTransport* openTransport(const TransportFactory& factory, int port, QString* error);
