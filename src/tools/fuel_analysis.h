// The fuel correction's analysis: which wideband readings of a run count as
// samples, in which map cell each lies, and what each cell's figure should
// become so that the measured ratio meets the target.
//
// A reading at time t is paired with the frame F that the exhaust it measured
// came from: the last frame at or before t - lag. It counts only where that
// frame is recent enough, the engine was warm and running, and speed and
// throttle were steady over the half second before F. Its cell is where the
// Live Trace places F on the map; its ratio is corrected by F's A/F alpha
// (the ECU's own closed-loop trim) when asked to. Plain C++, unit-tested.
#pragma once

#include "rom/rules/live_trace.h"
#include "tools/fuel_run_file.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace vexorin::tools {

inline constexpr int kMapSide = 16;
inline constexpr int kMapCells = kMapSide * kMapSide;
// A frame older than this before t - lag pairs with no reading.
inline constexpr int kFrameGapMs = 1000;
// The span before F over which speed and throttle must be steady.
inline constexpr int kSteadySpanMs = 500;

struct FuelSettings {
    int lagMs = 300;
    int minSamples = 5;
    double maxChangePercent = 10;
    double minWaterF = 160;
    double steadyRpm = 150;
    double steadyTps = 0.10;
    bool useAlpha = true;
    bool operator==(const FuelSettings& o) const;
};

// What the analysis needs of the BIN file: the trace's tables and the map's bytes.
struct FuelMap {
    vexorin::rom::TraceTables tables;
    double traceScale = vexorin::rom::kDefaultTraceScale;
    std::array<std::uint8_t, kMapCells> bytes{};
};
// The map of the file at `mapOffset` (a short image gives zeros where it ends).
FuelMap fuelMapOf(const std::vector<std::uint8_t>& image, int mapOffset, double traceScale);

// One sample: its cell (0..255, row-major) and its measured ratio.
struct FuelSample {
    int cell = 0;
    double ratio = 0;
};

// Why a reading gave no sample (for tests and the tally).
enum class SampleVerdict { Taken, NoFrame, FrameTooOld, Cold, EngineStopped, RpmUnsteady, TpsUnsteady, NoRatio };

// The verdict on one reading of `run` (its ecu rows sorted by time), and the sample when taken.
SampleVerdict sampleFor(const FuelRun& run, const AfrRow& reading, const FuelSettings& settings, const FuelMap& map,
                        FuelSample* sample);

// Per cell: the number of samples and the sum of their ratios.
struct CellTally {
    std::array<int, kMapCells> count{};
    std::array<double, kMapCells> sum{};
    void add(const FuelSample& s);
    std::int64_t samples() const;
    int cellsWithSamples() const;
};
// Adds the samples of every reading of the run.
void tallyRun(const FuelRun& run, const FuelSettings& settings, const FuelMap& map, CellTally& tally);

// What a cell should become.
struct CellAdvice {
    int samples = 0;
    bool enough = false;       // samples >= Min samples
    double measured = 0;       // the mean ratio
    double target = 0;
    double map = 0;            // the figure of the cell's byte now
    double suggested = 0;      // map x target / measured, held within Max change
    int byteOld = 0;
    int byteNew = 0;           // the byte nearest the suggested figure (its byte when that shows the same figure)
    bool changes() const { return enough && byteNew != byteOld; }
    // Richer: the new byte shows a smaller ratio.
    bool richer() const;
};
CellAdvice adviseCell(int samples, double sum, int byte, double target, const FuelSettings& settings);

struct FuelAdvice {
    std::array<CellAdvice, kMapCells> cells{};
    std::int64_t samples = 0;
    int cellsWithSamples = 0;
    int cellsToChange = 0;
};
FuelAdvice advise(const CellTally& tally, const FuelMap& map, const std::array<double, kMapCells>& targets,
                  const FuelSettings& settings);

// "Samples 12, measured 14.91, target 14.70, map 14.70, suggested 14.49", without the
// last three parts below Min samples; empty without samples.
std::string cellTip(const CellAdvice& advice);
// "<S> samples in <C> cells; <D> cells to change".
std::string adviceStatus(const FuelAdvice& advice);

// A figure with two decimals, '.' as the decimal mark.
std::string twoDecimals(double value);

}  // namespace vexorin::tools
