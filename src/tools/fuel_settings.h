// The fuel correction's settings: one table of the window's number boxes
// (caption, range, step, decimals, where the value lives) and their place in
// the settings store, section FuelCorrection.
#pragma once

#include "tools/fuel_analysis.h"

#include <array>

class SettingsStore;
struct SettingKey;

namespace vexorin::tools {

struct FuelSettingField {
    const char* caption;
    const SettingKey* key;
    double min, max, step;
    int decimals;
    double (*get)(const FuelSettings&);
    void (*set)(FuelSettings&, double);
};
// "Lag (ms)", "Min samples", "Max change %", "Min water (°F)", "Steady RPM", "Steady TPS (V)".
extern const std::array<FuelSettingField, 6> kFuelSettingFields;
inline constexpr const char* kUseAlphaCaption = "Use A/F alpha";

// The stored settings; a value that is missing, no number or out of range takes its default.
FuelSettings loadFuelSettings(const SettingsStore& store);
void saveFuelSettings(SettingsStore& store, const FuelSettings& settings);

}  // namespace vexorin::tools
