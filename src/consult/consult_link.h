// The one serial session to the ECU's Consult port, with the properties the
// rest of the system uses: CommPort, PortOpen, RThreshold, InputMode,
// InBufferCount, Output, Input, DTREnable.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <functional>

#include "consult/serial_transport.h"

class ConsultLink : public QObject {
    Q_OBJECT
public:
    using TransportFactory = ::TransportFactory;

    explicit ConsultLink(TransportFactory factory, QObject* parent = nullptr);
    ~ConsultLink() override;

    int CommPort() const { return commPort_; }
    // Ignored while the port is open, as the serial control refuses it.
    void setCommPort(int port);

    bool PortOpen() const;
    // Opening fails (false, with the reason) when the device is missing or busy.
    bool setPortOpen(bool open, QString* error = nullptr);

    int RThreshold() const { return rThreshold_; }
    void setRThreshold(int t) { rThreshold_ = t; }
    int InputMode() const { return inputMode_; }
    void setInputMode(int m) { inputMode_ = m; }

    int InBufferCount();
    // Writing 0 discards everything waiting; accepted on a closed port too.
    void setInBufferCount(int count);

    // Sends bytes; ignored on a closed port.
    void Output(const QByteArray& bytes);
    void Output(std::initializer_list<int> bytes);
    // Everything waiting, removed from the buffer.
    QByteArray Input();

    bool DTREnable() const { return dtr_; }
    void setDTREnable(bool on);

    // Takes in what the device holds by now, without waiting; true when at
    // least `count` bytes wait.
    bool poll(int count);
    // A reader gave up waiting for `count` bytes (a recording notes it).
    void noteTimeout(int count);

    // The device currently open (null when closed).
    SerialTransport* transport() const { return transport_; }

signals:
    // The receive event: raised once for every received byte while RThreshold is 1.
    void OnComm();
    // Bytes have arrived, whatever RThreshold says.
    void bytesArrived();
    // The open device went away; the port is closed now. Delivered from the event loop.
    void portLost(const QString& reason);

private:
    void onReadyRead();

    TransportFactory factory_;
    QPointer<SerialTransport> transport_;
    int commPort_ = 1;
    int rThreshold_ = 1;
    int inputMode_ = 0;
    bool dtr_ = false;
    qint64 signalled_ = 0;
};
