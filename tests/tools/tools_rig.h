// A Consult session over the in-process simulated ECU that keeps every byte
// the program writes, with a temporary settings store and folder.
#pragma once

#include "consult/simulator_transport.h"
#include "session_rig.h"
#include "sim/ecu_simulator.h"
#include "temp_settings.h"

#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

// The simulated ECU, with every byte the program writes kept.
class WatchedSim : public SimulatorTransport {
public:
    void write(const QByteArray& bytes) override
    {
        written.append(bytes);
        writes.append(bytes);
        SimulatorTransport::write(bytes);
    }
    QByteArray written;
    QList<QByteArray> writes;
};

using Rom = std::array<std::uint8_t, vexorin::sim::EcuSimulator::kRomSize>;

struct ToolsRig : SessionRig {
    ToolsRig()
        : SessionRig([this](int, QString*) {
              sim = new WatchedSim;
              sim->ecu().setRom(rom);
              return sim;
          }),
          rom(vexorin::sim::makeSyntheticRom(7))
    {
        QObject::connect(&session, &ConsultSession::message, [this](const QString& m) { messages.append(m); });
    }
    void connect()
    {
        session.ConnectDisconnect();
        QTRY_COMPARE(session.KeepInitializationTimerOffSwitch, QStringLiteral("Off"));
        QTRY_VERIFY(!session.GetSerialNumberKValue.isActive());
        sim->written.clear();
        sim->writes.clear();
        speech.clear();
    }
    void setFaults(bool silent)
    {
        vexorin::sim::SimFaults f = sim->ecu().faults();
        f.silent = silent;
        sim->ecu().setFaults(f);
    }
    void corruptNextEcho()
    {
        vexorin::sim::SimFaults f = sim->ecu().faults();
        f.corruptNextEcho = true;
        sim->ecu().setFaults(f);
    }
    QByteArray fileBytes(const QString& path) const
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    QByteArray romBytes(int from, int count) const
    {
        return QByteArray(reinterpret_cast<const char*>(rom.data()) + from, count);
    }

    Rom rom;
    TempSettings settings;
    QTemporaryDir dir;
    QPointer<WatchedSim> sim;
    QStringList messages;
};

// The bytes of one request of eight reads at bank `bank` from low byte `first`, with CmdGo.
inline QByteArray burstRequest(int bank, int first)
{
    QByteArray r;
    for (int i = 0; i < 8; ++i) {
        r.append(char(0xC9));
        r.append(char(bank));
        r.append(char(first + i));
    }
    r.append(char(0xF0));
    return r;
}
