// The one simulated car behind the built-in simulator rows of both port
// lists: the simulated ECU of the Consult port and the simulated DLP-IO8-G of
// the external sensor port read the same engine, so that the wideband on
// channel 1 follows what the ECU reports.
//
// Each transport of a simulator row holds the car while it exists; once
// none does, the car is gone and the next transport starts a fresh one. The
// car runs by one real clock, however many transports read it.
#pragma once

#include "sim/simulated_car.h"

#include <QElapsedTimer>
#include <QString>
#include <functional>
#include <memory>

// What the settings say about the simulated car.
struct SimulatorConfig {
    double fuelError = 0;    // percent of fuel the engine lacks (8 runs 8 % lean)
    QString romFile;         // a BIN file served as the ROM; empty: the simulator's own
    // A line for the session log (a ROM file that cannot be served); may be empty.
    std::function<void(const QString&)> note;
};
using SimulatorConfigSource = std::function<SimulatorConfig()>;

class SharedCar {
public:
    SharedCar();
    SharedCar(const SharedCar&) = delete;
    SharedCar& operator=(const SharedCar&) = delete;

    vexorin::sim::SimulatedCar& car() { return car_; }
    // Moves the car on to the real time since it was made.
    void catchUp();
    // Takes the fuel error and the ROM file of the settings; a ROM file that
    // cannot be served leaves the simulator's own ROM and says so in a note.
    void configure(const SimulatorConfig& config);

private:
    vexorin::sim::SimulatedCar car_;
    QElapsedTimer clock_;
};

namespace SharedSimulation {

// The car of the simulator rows, made when no transport holds one, and
// configured from `config` when one is given.
std::shared_ptr<SharedCar> car(const SimulatorConfigSource& config = {});
// A car of its own for a transport that must not share one.
std::shared_ptr<SharedCar> separateCar(const SimulatorConfigSource& config = {});

}  // namespace SharedSimulation

// A part of the shared car as the device of a SimulatedDeviceTransport: the
// transport's own clock is not used, the car catches up with the real time.
template <class Part>
class SharedCarDevice {
public:
    using Device = typename Part::Device;

    explicit SharedCarDevice(std::shared_ptr<SharedCar> shared) : shared_(std::move(shared)) {}

    Device& device() { return Part::of(shared_->car()); }
    SharedCar& shared() { return *shared_; }

    void advance(int) { shared_->catchUp(); }
    void receive(const std::uint8_t* bytes, std::size_t n) { device().receive(bytes, n); }
    std::size_t pending() { return device().pending(); }
    std::vector<std::uint8_t> transmit(std::size_t max) { return device().transmit(max); }

private:
    std::shared_ptr<SharedCar> shared_;
};

struct CarEcu {
    using Device = vexorin::sim::EcuSimulator;
    static Device& of(vexorin::sim::SimulatedCar& car) { return car.ecu(); }
};
struct CarDlp {
    using Device = vexorin::sim::DlpSimulator;
    static Device& of(vexorin::sim::SimulatedCar& car) { return car.dlp(); }
};
