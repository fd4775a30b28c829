#include "tools/wideband_channels.h"

#include "app/settings/settings_access.h"
#include "external/channel_scale_settings.h"
#include "external/external_channels.h"
#include "external/external_sensors.h"

namespace vexorin::tools {

namespace {
QString gaugeName(const SettingsStore& store, const ExternalSensors* gauges, int channel)
{
    if (gauges)
        return gauges->name(channel);
    const QString saved = store.ReadSetting(QString(Settings::ExternalSensorSectionPrefix) + QString::number(channel),
                                            QStringLiteral("Setting"));
    return saved.isEmpty() ? QString::fromLatin1(vexorin::external::kChannels[std::size_t(channel - 1)].defaultName)
                           : saved;
}
}  // namespace

QStringList widebandChannelCaptions(const SettingsStore& store, const ExternalSensors* gauges)
{
    QStringList captions;
    for (int n = 1; n <= vexorin::external::kChannelCount; ++n)
        captions << QStringLiteral("Channel %1 (%2)").arg(n).arg(gaugeName(store, gauges, n));
    return captions;
}

int defaultWidebandChannel(const SettingsStore& store, const ExternalSensors* gauges)
{
    for (int n = 1; n <= vexorin::external::kChannelCount; ++n) {
        const auto scale = gauges ? gauges->scale(n) : vexorin::external::loadChannelScale(store, n);
        if (scale && scale->unit == QLatin1String(kWidebandUnit))
            return n;
    }
    return 1;
}

}  // namespace vexorin::tools
