#include "consult/simulator_transport.h"

#include <QDateTime>
#include <QTimer>

SimulatorTransport::SimulatorTransport(QObject* parent)
    : SerialTransport(parent), ecu_(static_cast<std::uint32_t>(QDateTime::currentMSecsSinceEpoch()))
{
    clock_.start();
}

bool SimulatorTransport::open(QString*)
{
    open_ = true;
    input_.clear();
    return true;
}

void SimulatorTransport::close()
{
    open_ = false;
    input_.clear();
}

void SimulatorTransport::advanceClock()
{
    const qint64 now = clock_.elapsed();
    if (now > lastMs_) {
        ecu_.advance(int(now - lastMs_));
        lastMs_ = now;
    }
}

void SimulatorTransport::pull(std::size_t max)
{
    advanceClock();
    const std::vector<std::uint8_t> out = ecu_.transmit(max);
    input_.append(reinterpret_cast<const char*>(out.data()), qsizetype(out.size()));
}

qint64 SimulatorTransport::bytesAvailable()
{
    if (open_)
        pull(ecu_.pending());
    return input_.size();
}

QByteArray SimulatorTransport::readAll()
{
    bytesAvailable();
    QByteArray out;
    out.swap(input_);
    return out;
}

void SimulatorTransport::clear()
{
    // What the ECU has sent by now has arrived on a real line, so it goes too.
    if (open_)
        pull(ecu_.pending());
    input_.clear();
}

void SimulatorTransport::write(const QByteArray& bytes)
{
    if (!open_)
        return;
    advanceClock();
    ecu_.receive(reinterpret_cast<const std::uint8_t*>(bytes.constData()), std::size_t(bytes.size()));
    if (!readyPending_) {
        readyPending_ = true;
        QTimer::singleShot(1, this, [this] {
            readyPending_ = false;
            if (open_ && bytesAvailable() > 0)
                emit readyRead();
        });
    }
}

bool SimulatorTransport::waitForBytes(qint64 count, int)
{
    if (!open_)
        return false;
    if (input_.size() < count)
        pull(std::size_t(count - input_.size()));
    return input_.size() >= count;
}
