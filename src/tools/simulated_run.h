// A wideband run recorded from the simulated car in simulated time: what
// "Record Run" writes while the built-in ECU and DLP-IO8-G simulators are
// monitored and polled, without waiting for the clock. The engine is warmed
// up first; then every 100 ms the all-sensor request goes to the ECU (the
// frame read as the labels show it) and, 50 ms later, channel 1 of the
// DLP-IO8-G is read through the "Wideband 0-5 V" scale. For the README's
// try-out, the end-to-end tests, the benchmarks and the screen tour.
#pragma once

#include <string>

namespace vexorin::sim {
class SimulatedCar;
}

namespace vexorin::tools {

// Warms the engine (advances the car by `warmUpMs`), then records `seconds`
// of run; returns the run file's text.
std::string recordSimulatedRun(vexorin::sim::SimulatedCar& car, int seconds, int warmUpMs = 300000);

}  // namespace vexorin::tools
