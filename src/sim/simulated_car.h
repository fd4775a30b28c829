// A simulated car: one engine with its ECU on the Consult port and a
// DLP-IO8-G whose channel 1 reads a wideband oxygen sensor in the exhaust of
// that engine (the "Wideband 0-5 V" scale: 0 V = 10.00 AFR, 5 V = 20.00 AFR).
//
// The sensor reads the ratio the ECU's ROM asks for where the engine runs,
// with the engine's fuel error and the ECU's A/F alpha on it (sim/wideband.h),
// as it was kWidebandDelayMs earlier: the sensor and its controller are
// sampled every 10 ms into a short ring. The other seven channels move by
// themselves as on a DLP-IO8-G alone.
//
// The ROM may come from a BIN file, which is looked at again at most once a
// second of the car's time and read again when its modification time or
// size has changed, so that a map saved again is served without reconnecting.
//
// Plain C++ like the devices it holds; advance() is the only clock.
#pragma once

#include "rom/rules/live_trace.h"
#include "sim/dlp_simulator.h"
#include "sim/ecu_simulator.h"
#include "sim/rom_file.h"
#include "sim/wideband.h"

#include <array>
#include <cstdint>
#include <string>

namespace vexorin::sim {

class SimulatedCar {
public:
    static constexpr int kStepMs = 10;
    static constexpr int kWidebandChannel = 1;
    static constexpr int kRomCheckMs = 1000;
    // The fuel error is kept within this many percent either way.
    static constexpr double kMaxFuelError = 50.0;

    explicit SimulatedCar(std::uint32_t ecuSeed = kDefaultSeed, std::uint32_t dlpSeed = 1);
    SimulatedCar(const SimulatedCar&) = delete;
    SimulatedCar& operator=(const SimulatedCar&) = delete;

    // Moves the engine, the ECU and the DLP-IO8-G on by ms milliseconds.
    void advance(int ms);
    // Moves them on to the car's time `ms`; nothing when that time has passed.
    void advanceTo(std::int64_t ms);
    std::int64_t nowMs() const { return nowMs_; }

    // Percent of fuel the engine lacks: 8 runs 8 % lean, -5 runs 5 % rich.
    void setFuelError(double percent);
    double fuelError() const { return fuelError_; }

    // Serves this image as the ECU's ROM (and stops serving a file).
    void setRom(const RomImage& image);
    // Serves a BIN file as the ROM and watches it. False with a reason when
    // it cannot be read now; the ROM then stays as it was, and the file is
    // still watched, so that it is served once it can be read.
    bool serveRomFile(const std::string& path, std::string* error);
    // The file served, or empty.
    const std::string& romFile() const { return romWatch_.path(); }

    // The ratio the wideband shows now (that of kWidebandDelayMs ago), and its voltage on channel 1.
    double widebandRatio() const;
    double widebandVolts() const;

    EcuSimulator& ecu() { return ecu_; }
    const EcuSimulator& ecu() const { return ecu_; }
    DlpSimulator& dlp() { return dlp_; }
    const DlpSimulator& dlp() const { return dlp_; }

private:
    static constexpr std::size_t kRing = std::size_t(kWidebandDelayMs / kStepMs) + 1;

    void step();
    void checkRomFile();
    // The ratio in the exhaust now, worked out from what the ECU reports.
    double presentRatio();
    // A change of fuel error or ROM reaches the mixture at once (and, before
    // the car has moved at all, the sensor too: there is no earlier mixture).
    void resample();

    EcuSimulator ecu_;
    DlpSimulator dlp_;
    double fuelError_ = 0;
    std::int64_t nowMs_ = 0;
    int intoStepMs_ = 0;

    rom::TraceTables tables_;
    std::uint64_t tablesRevision_ = 0;
    bool tablesRead_ = false;
    double lastRatio_ = kStoichAfr;
    std::array<double, kRing> ring_{};
    std::size_t head_ = 0;

    RomFileWatch romWatch_;
    std::int64_t lastRomCheckMs_ = 0;
};

}  // namespace vexorin::sim
