// The wideband oxygen sensor of the simulated engine: the A/F ratio of the
// exhaust where the engine runs, and the 0-5 V signal of its controller
// (0 V = 10.00 AFR, 5 V = 20.00 AFR, linear between).
//
// The ratio is the figure of the Fuel (High Octane) cell the Live Trace
// shows for the engine speed and air flow meter bytes the ECU reports, made
// leaner by the engine's fuel error and corrected by the ECU's A/F alpha:
//   cell x (1 + error / 100) x 100 / alpha
// An alpha of 0 (no feedback reported) counts as 100.
#pragma once

#include "rom/rules/live_trace.h"

#include <cstddef>
#include <optional>

namespace vexorin::sim {

// How long the sensor and its controller take to show a change of mixture.
constexpr int kWidebandDelayMs = 300;
constexpr double kWidebandLowAfr = 10.0;    // at 0 V
constexpr double kWidebandHighAfr = 20.0;   // at 5 V
constexpr double kStoichAfr = 14.7;

// The Fuel (High Octane) map's first byte in the ROM image.
constexpr std::size_t kWidebandFuelMapOffset = 0x7D00;

// The raw bytes of the ECU registers where the engine runs.
struct TraceBytes {
    int rpmHi = 0, rpmLo = 0;   // registers 0 and 1
    int mafHi = 0, mafLo = 0;   // registers 4 and 5
};

// The image offset of the fuel cell where the engine runs; nothing when a
// high byte is out of range (above 3).
std::optional<std::size_t> fuelCellOffset(const rom::TraceTables& tables, const TraceBytes& bytes);

// The ratio of a fuel cell byte as the map shows it, to two decimals.
double fuelCellRatio(int cellByte);

// The exhaust's ratio for a cell byte, the alpha byte (register 26) and the fuel error in percent.
double mixtureRatio(int cellByte, int alpha, double fuelErrorPercent);

// The controller's output for a ratio, clamped to 0..5 V.
double widebandVolts(double ratio);

}  // namespace vexorin::sim
