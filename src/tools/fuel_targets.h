// The target ratios of the fuel correction: one A/F ratio per map cell, kept
// beside the BIN file as "<file name>.target.csv", 16 lines of 16
// comma-separated figures with two decimals, the rows in the map's order.
// Plain C++, unit-tested and fuzzed.
#pragma once

#include "tools/fuel_analysis.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace vexorin::tools {

using Targets = std::array<double, kMapCells>;

// "tune.bin" -> "tune.bin.target.csv".
std::string targetPathFor(const std::string& binPath);

// The file's text.
std::string targetsText(const Targets& targets);

// The targets of a file's text: 16 lines (CR LF, LF or CR; a last line end is
// optional) of 16 figures each, every one a fuel figure in range; blanks
// around a figure are allowed. Otherwise nothing, with the reason.
std::optional<Targets> parseTargets(std::string_view text, std::string* problem = nullptr);

// The figures of a map's bytes (each as its two-decimal text reads).
Targets targetsOfMap(const std::array<std::uint8_t, kMapCells>& bytes);

}  // namespace vexorin::tools
