// A simulated device as a serial device in this process. The device answers
// the bytes written to it and moves with the real clock; what it has sent by
// the time the caller looks is what waits in the input. Any device with
// advance(ms), receive(bytes, n), pending() and transmit(max) will do: the
// ECU simulator for the Consult link, the DLP-IO8-G simulator for the
// external sensor port.
#pragma once

#include "consult/serial_transport.h"

#include <QElapsedTimer>
#include <QTimer>
#include <cstdint>
#include <vector>

template <class Device>
class SimulatedDeviceTransport : public SerialTransport {
public:
    template <class... Args>
    explicit SimulatedDeviceTransport(QObject* parent, Args&&... deviceArgs)
        : SerialTransport(parent), device_(std::forward<Args>(deviceArgs)...)
    {
        clock_.start();
    }

    bool open(QString*) override
    {
        open_ = true;
        input_.clear();
        return true;
    }
    void close() override
    {
        open_ = false;
        input_.clear();
    }
    bool isOpen() const override { return open_; }

    qint64 bytesAvailable() override
    {
        if (open_)
            pull(device_.pending());
        return input_.size();
    }
    QByteArray readAll() override
    {
        bytesAvailable();
        QByteArray out;
        out.swap(input_);
        return out;
    }
    void clear() override
    {
        // What the device has sent by now has arrived on a real line, so it goes too.
        if (open_)
            pull(device_.pending());
        input_.clear();
    }
    void write(const QByteArray& bytes) override
    {
        if (!open_)
            return;
        advanceClock();
        device_.receive(reinterpret_cast<const std::uint8_t*>(bytes.constData()), std::size_t(bytes.size()));
        if (!readyPending_) {
            readyPending_ = true;
            QTimer::singleShot(1, this, [this] {
                readyPending_ = false;
                if (open_ && bytesAvailable() > 0)
                    emit readyRead();
            });
        }
    }
    // The device answers by now or not at all; a stream is made as it is read.
    bool poll(qint64 count) override
    {
        if (!open_)
            return false;
        if (input_.size() < count)
            pull(std::size_t(count - input_.size()));
        return input_.size() >= count;
    }
    void setDtr(bool) override {}

protected:
    Device& device() { return device_; }

private:
    void advanceClock()
    {
        const qint64 now = clock_.elapsed();
        if (now > lastMs_) {
            device_.advance(int(now - lastMs_));
            lastMs_ = now;
        }
    }
    void pull(std::size_t max)
    {
        advanceClock();
        const std::vector<std::uint8_t> out = device_.transmit(max);
        input_.append(reinterpret_cast<const char*>(out.data()), qsizetype(out.size()));
    }

    Device device_;
    QElapsedTimer clock_;
    qint64 lastMs_ = 0;
    QByteArray input_;
    bool open_ = false;
    bool readyPending_ = false;
};
