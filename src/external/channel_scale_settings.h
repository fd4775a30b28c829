// Where a gauge's scale is kept: section ExSensor1Scale to ExSensor8Scale of
// the settings store, keys V1, F1, V2, F2, Unit and Decimals. A missing
// section, or one that does not make a scale, means the gauge has none.
#pragma once

#include "external/channel_scale.h"

#include <optional>

class SettingsStore;

namespace vexorin::external {

// "ExSensor1Scale" to "ExSensor8Scale".
QString channelScaleSection(int channel);

std::optional<ChannelScale> loadChannelScale(const SettingsStore& store, int channel);
// Writes the scale, or with none removes the section's keys.
void saveChannelScale(SettingsStore& store, int channel, const std::optional<ChannelScale>& scale);

}  // namespace vexorin::external
