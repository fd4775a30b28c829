#include "external/channel_scale_settings.h"

#include "app/settings/settings_keys.h"
#include "app/settings/settings_store.h"

namespace vexorin::external {

QString channelScaleSection(int channel)
{
    return QString(Settings::ExSensorSectionPrefix) + QString::number(channel) +
           QString(Settings::ExSensorScaleSectionSuffix);
}

std::optional<ChannelScale> loadChannelScale(const SettingsStore& store, int channel)
{
    const QString section = channelScaleSection(channel);
    const auto read = [&](QLatin1StringView key) { return store.ReadSetting(section, QString(key)); };
    bool whole = false;
    const int decimals = read(Settings::ScaleDecimalsKey).trimmed().toInt(&whole);
    if (!whole)
        return std::nullopt;
    return checkEntry({read(Settings::ScaleVolts1Key), read(Settings::ScaleFigure1Key), read(Settings::ScaleVolts2Key),
                       read(Settings::ScaleFigure2Key), read(Settings::ScaleUnitKey), decimals})
        .scale;
}

void saveChannelScale(SettingsStore& store, int channel, const std::optional<ChannelScale>& scale)
{
    const QString section = channelScaleSection(channel);
    const QLatin1StringView keys[] = {Settings::ScaleVolts1Key, Settings::ScaleFigure1Key, Settings::ScaleVolts2Key,
                                      Settings::ScaleFigure2Key, Settings::ScaleUnitKey,   Settings::ScaleDecimalsKey};
    if (!scale) {
        for (QLatin1StringView key : keys)
            store.remove(section, QString(key));
        return;
    }
    const ScaleEntry e = entryOf(*scale);
    const QString values[] = {e.volts1, e.figure1, e.volts2, e.figure2, e.unit, QString::number(e.decimals)};
    for (std::size_t i = 0; i < std::size(keys); ++i)
        store.WriteSetting(section, QString(keys[i]), values[i]);
}

}  // namespace vexorin::external
