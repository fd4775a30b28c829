// The channels a wideband may be on: "Channel 1 (Fuel)" … "Channel 8 (Spare)"
// with each gauge's name, and the first channel scaled in "AFR", as the
// External Gauge Monitor has them (its settings while it is closed).
#pragma once

#include <QStringList>

class ExternalSensors;
class SettingsStore;

namespace vexorin::tools {

inline constexpr const char* kWidebandUnit = "AFR";

// `gauges` may be null (the monitor is closed).
QStringList widebandChannelCaptions(const SettingsStore& store, const ExternalSensors* gauges);
// 1..8: the first channel whose scale's unit is "AFR", else 1.
int defaultWidebandChannel(const SettingsStore& store, const ExternalSensors* gauges);

}  // namespace vexorin::tools
