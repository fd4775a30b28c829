// The built-in simulated ECU as a serial device, in this process.
#pragma once

#include "consult/serial_transport.h"
#include "sim/ecu_simulator.h"

#include <QElapsedTimer>

class SimulatorTransport : public SerialTransport {
    Q_OBJECT
public:
    explicit SimulatorTransport(QObject* parent = nullptr);

    bool open(QString* error) override;
    void close() override;
    bool isOpen() const override { return open_; }
    qint64 bytesAvailable() override;
    QByteArray readAll() override;
    void clear() override;
    void write(const QByteArray& bytes) override;
    // Never blocks: the simulator answers at once or not at all.
    bool waitForBytes(qint64 count, int timeoutMs) override;
    void setDtr(bool) override {}

    vexorin::sim::EcuSimulator& ecu() { return ecu_; }

private:
    void advanceClock();
    void pull(std::size_t max);

    vexorin::sim::EcuSimulator ecu_;
    QElapsedTimer clock_;
    qint64 lastMs_ = 0;
    QByteArray input_;
    bool open_ = false;
    bool readyPending_ = false;
};
