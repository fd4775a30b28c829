#include "tools/fuel_settings.h"

#include "app/settings/settings_access.h"
#include "tools/fuel_run_file.h"

#include <cmath>

namespace vexorin::tools {

const std::array<FuelSettingField, 6> kFuelSettingFields{{
    {"Lag (ms)", &Settings::FuelCorrectionLag, 0, 3000, 50, 0,
     [](const FuelSettings& s) { return double(s.lagMs); }, [](FuelSettings& s, double v) { s.lagMs = int(std::lround(v)); }},
    {"Min samples", &Settings::FuelCorrectionMinSamples, 1, 1000, 1, 0,
     [](const FuelSettings& s) { return double(s.minSamples); },
     [](FuelSettings& s, double v) { s.minSamples = int(std::lround(v)); }},
    {"Max change %", &Settings::FuelCorrectionMaxChange, 1, 50, 1, 0,
     [](const FuelSettings& s) { return s.maxChangePercent; }, [](FuelSettings& s, double v) { s.maxChangePercent = v; }},
    {"Min water (\u00B0F)", &Settings::FuelCorrectionMinWater, -40, 250, 5, 0,
     [](const FuelSettings& s) { return s.minWaterF; }, [](FuelSettings& s, double v) { s.minWaterF = v; }},
    {"Steady RPM", &Settings::FuelCorrectionSteadyRpm, 0, 5000, 25, 0,
     [](const FuelSettings& s) { return s.steadyRpm; }, [](FuelSettings& s, double v) { s.steadyRpm = v; }},
    {"Steady TPS (V)", &Settings::FuelCorrectionSteadyTps, 0, 5, 0.02, 2,
     [](const FuelSettings& s) { return s.steadyTps; }, [](FuelSettings& s, double v) { s.steadyTps = v; }},
}};

FuelSettings loadFuelSettings(const SettingsStore& store)
{
    FuelSettings s;
    for (const FuelSettingField& f : kFuelSettingFields) {
        const std::optional<double> v = runNumber(readSettingOrDefault(store, *f.key).trimmed().toStdString());
        const std::optional<double> fallback = runNumber(std::string(f.key->defaultValue.data(), f.key->defaultValue.size()));
        f.set(s, v && *v >= f.min && *v <= f.max ? *v : fallback.value_or(f.min));
    }
    s.useAlpha = readSettingOrDefault(store, Settings::FuelCorrectionUseAlpha).compare(QLatin1String("False"), Qt::CaseInsensitive) != 0;
    return s;
}

void saveFuelSettings(SettingsStore& store, const FuelSettings& settings)
{
    for (const FuelSettingField& f : kFuelSettingFields)
        writeSetting(store, *f.key, QString::number(f.get(settings), 'f', f.decimals));
    writeSetting(store, Settings::FuelCorrectionUseAlpha, settings.useAlpha ? QStringLiteral("True") : QStringLiteral("False"));
}

}  // namespace vexorin::tools
