// The thirteen monitored values: their names on the main window, the Dash and the bars.
#pragma once

#include <array>

enum class SensorId { Speed, RPM, TPS, MAF, O2L, O2R, INJ, Timing, IACV, Water, Fuel, Battery, AF };

struct SensorNames {
    SensorId id;
    const char* button;     // button caption
    const char* label;      // main-window value label
    const char* bar;        // main-window bar
    int barMax;
    const char* dashLabel;  // Dash value label, or nullptr
};

inline constexpr std::array<SensorNames, 13> kSensorNames{{
    {SensorId::Speed, "Speed", "SPEEDLabel", "SPEEDbar", 160, "DashSpeed"},
    {SensorId::RPM, "RPM", "RPMLabel", "RPMbar", 7000, "DashRPM"},
    {SensorId::TPS, "TPS", "TPSLabel", "TPSbar", 5, "DashTPS"},
    {SensorId::MAF, "MAF", "MAFLabel", "MAFbar", 6, "DashMAF"},
    {SensorId::O2L, "O2 (L)", "LO2Label", "LO2bar", 5, "DashO2L"},
    {SensorId::O2R, "O2 (R)", "RO2Label", "RO2bar", 5, "DashoO2R"},
    {SensorId::INJ, "INJ", "INJECTORLabel", "INJECTORbar", 5, "DashINJ"},
    {SensorId::Timing, "Timing", "TIMINGLabel", "TIMINGbar", 60, "DashTiming"},
    {SensorId::IACV, "IACV", "IACVLabel", "IACVbar", 100, "DashIACV"},
    {SensorId::Water, "Water", "WATERLabel", "WATERbar", 240, "DashWater"},
    {SensorId::Fuel, "Fuel", "FUELLabel", "FUELbar", 240, "DashFuel"},
    {SensorId::Battery, "Batt", "BATTERYLabel", "BATTERYbar", 20, "DashBattery"},
    {SensorId::AF, "A/F", "AFLabel", "AFbar", 200, nullptr},
}};
