// A Map Viewer over the built-in simulated ECU, whose every received byte is
// kept, with a BIN file of the simulator's ROM at hand.
#pragma once

#include "consult/simulator_transport.h"
#include "rom/map_viewer.h"
#include "rom/rom_image.h"
#include "session_rig.h"
#include "sim/ecu_simulator.h"
#include "ui/binary_files.h"

#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

// The simulated ECU, with every byte the program writes kept.
class WatchedSim : public SimulatorTransport {
public:
    void write(const QByteArray& bytes) override
    {
        written.append(bytes);
        SimulatorTransport::write(bytes);
    }
    QByteArray written;
};

using Rom = std::array<std::uint8_t, vexorin::sim::EcuSimulator::kRomSize>;

struct MapRig : SessionRig {
    MapRig()
        : SessionRig([this](int, QString*) {
              sim = new WatchedSim;
              sim->ecu().setRom(rom);
              return sim;
          }),
          rom(vexorin::sim::makeSyntheticRom(7)),
          viewer(session)
    {
        viewer.setPauseMs(0);
        QObject::connect(&viewer, &MapViewer::message, [this](const QString& t, bool excl) {
            messages.append(t);
            exclamations.append(excl);
        });
        QObject::connect(&viewer, &MapViewer::beep, [this] { ++beeps; });
        path = dir.filePath(QStringLiteral("ecu.bin"));
    }
    void connect()
    {
        session.ConnectDisconnect();
        QTRY_COMPARE(session.KeepInitializationTimerOffSwitch, QStringLiteral("Off"));
    }
    void writeBin(const QString& p, std::size_t size = vexorin::rom::kRomSize)
    {
        std::vector<std::uint8_t> bytes(rom.begin(), rom.end());
        bytes.resize(size, 0x5A);
        QVERIFY(vexorin::files::WriteBytes(p.toStdString(), bytes, nullptr));
    }
    std::vector<std::uint8_t> onDisk() const
    {
        std::vector<std::uint8_t> b;
        vexorin::rom::readImage(path.toStdString(), b);
        return b;
    }
    // Runs the tab's timer ticks until the map is done or stopped.
    void download(int tab, bool button = true)
    {
        if (button)
            viewer.DownloadButton(tab);
        else
            viewer.DownloadMapData();
        for (int i = 0; i < 60 && viewer.mapTimers[std::size_t(tab)].isActive(); ++i)
            viewer.MapTimerTick(tab);
    }
    // Loads the file and selects a cell in edit mode.
    void editAt(int tab, int row, int column)
    {
        viewer.setEditMode(tab, true);
        viewer.selectCell(tab, row, column);
    }

    Rom rom;
    QTemporaryDir dir;
    QString path;
    QPointer<WatchedSim> sim;
    MapViewer viewer;
    QStringList messages;
    QList<bool> exclamations;
    int beeps = 0;
};
