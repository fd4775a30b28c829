// The real serial port.
#pragma once

#include "consult/serial_transport.h"

#include <QSerialPort>

class QtSerialTransport : public SerialTransport {
    Q_OBJECT
public:
    explicit QtSerialTransport(const QString& devicePath, QObject* parent = nullptr);
    ~QtSerialTransport() override;

    // The line speed for the next open; 9600 baud, the Consult line, unless set.
    void setBaudRate(qint32 baud) { baud_ = baud; }

    bool open(QString* error) override;
    void close() override;
    bool isOpen() const override;
    qint64 bytesAvailable() override;
    QByteArray readAll() override;
    void clear() override;
    void write(const QByteArray& bytes) override;
    bool poll(qint64 count) override;
    void setDtr(bool on) override;
    QString openNote() const override { return openNote_; }

private:
    void onError(QSerialPort::SerialPortError error);

    QString path_;
    QSerialPort port_;
    bool dtr_ = false;
    qint32 baud_ = QSerialPort::Baud9600;
    QString openNote_;
};
