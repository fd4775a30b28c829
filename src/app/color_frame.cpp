#include "app/color_frame.h"

#include "app/settings/settings_keys.h"
#include "app/settings/settings_store.h"
#include "sensors/sensor_displays.h"
#include "voice/alerts.h"

using vexorin::sensors::SensorId;

namespace {
constexpr int bar(SensorId id)
{
    return int(id);
}
constexpr int kLarge = SensorDisplays::kLargeBarIndex;
}  // namespace

// The A/F bar is switch 7, between O2 (R) and INJ, though its menu item comes last.
const std::array<ColorFrame::Target, ColorFrame::kTargets> ColorFrame::kTargetTable = {{
    {"AllSensorColors", "All Sensor Colors", -1, ""},
    {"SpeedSensorColor", "Speed Sensor Color", bar(SensorId::Speed), "SPEEDbar"},
    {"RPMSensorColor", "RPM Sensor Color", bar(SensorId::RPM), "RPMbar"},
    {"TPSSensorColor", "TPS Sensor Color", bar(SensorId::TPS), "TPSbar"},
    {"MAFSensorColor", "MAF Sensor Color", bar(SensorId::MAF), "MAFbar"},
    {"OTwoLeftSensorColor", "O2 (L) Sensor Color", bar(SensorId::O2L), "LO2bar"},
    {"OTwoRightSensorColor", "O2 (R) Sensor Color", bar(SensorId::O2R), "RO2bar"},
    {"AFSensorColor", "A/F Sensor Color", bar(SensorId::AF), "AFbar"},
    {"INJSensorColor", "INJ Sensor Color", bar(SensorId::INJ), "INJECTORbar"},
    {"TimingSensorColor", "Timing Sensor Color", bar(SensorId::Timing), "TIMINGbar"},
    {"IACVSensorColor", "IACV Sensor Color", bar(SensorId::IACV), "IACVbar"},
    {"WaterSensorColor", "Water Sensor Color", bar(SensorId::Water), "WATERbar"},
    {"FuelSensorColor", "Fuel Sensor Color", bar(SensorId::Fuel), "FUELbar"},
    {"BatterySensorColor", "Battery Sensor Color", bar(SensorId::Battery), "BATTERYbar"},
    {"LargeSensorBarColor", "Large Sensor View Color", kLarge, "LargeSensorBar"},
}};

const std::array<int, 14> ColorFrame::kAllOrder = {
    bar(SensorId::Speed), bar(SensorId::RPM),    bar(SensorId::TPS),   bar(SensorId::MAF),  bar(SensorId::O2L),
    bar(SensorId::O2R),   bar(SensorId::AF),     bar(SensorId::INJ),   bar(SensorId::Timing), bar(SensorId::IACV),
    bar(SensorId::Water), bar(SensorId::Fuel),   bar(SensorId::Battery), kLarge};

ColorFrame::ColorFrame(SettingsStore& store, SensorDisplays& displays, FrameSpot& spot, QObject* parent)
    : QObject(parent), store_(store), displays_(displays), spot_(spot)
{
    caption_ = QLatin1String(kTargetTable[0].caption);
    const BarColors design;
    pickers_ = {design.back, design.start, design.end};
}

void ColorFrame::ShowFrame(int colorSwitch)
{
    if (colorSwitch < 0 || colorSwitch >= kTargets)
        return;
    colorSwitch_ = colorSwitch;
    caption_ = QLatin1String(kTargetTable[std::size_t(colorSwitch)].caption);
    // The pickers start from the colours the target shows now.
    const int shown = colorSwitch == 0 ? kAllOrder[0] : kTargetTable[std::size_t(colorSwitch)].bar;
    const BarColors c = displays_.barColors(shown);
    pickers_ = {c.back, c.start, c.end};
    spot_.show(FrameSpot::Color);
    emit changed();
}

void ColorFrame::pick(Picker p, quint32 bgr)
{
    pickers_[std::size_t(p)] = bgr;
    applyPreview();
    emit changed();
}

void ColorFrame::applyPreview()
{
    auto apply = [this](int bar) {
        BarColors c = displays_.barColors(bar);
        c.back = pickers_[Back];
        c.start = pickers_[Start];
        c.end = pickers_[End];
        displays_.setBarColors(bar, c);
    };
    if (colorSwitch_ == 0) {
        for (int bar : kAllOrder)
            apply(bar);
    } else {
        apply(kTargetTable[std::size_t(colorSwitch_)].bar);
    }
}

void ColorFrame::OK()
{
    spot_.hide(FrameSpot::Color);
    applyPreview();
    if (colorSwitch_ != 0) {
        const Target& t = kTargetTable[std::size_t(colorSwitch_)];
        writeBar(t.section);
        emit changed();
        return;
    }
    // All fourteen: every back colour first, then every start, then every end.
    const QLatin1StringView keys[] = {Settings::BackColorKey, Settings::BarStartColorKey, Settings::BarEndColorKey};
    for (int k = 0; k < 3; ++k)
        for (std::size_t i = 0; i < Settings::BarSections.size(); ++i)
            store_.WriteSetting(Settings::BarSections[i], keys[k], QString::number(pickers_[std::size_t(k)]));
    emit changed();
}

void ColorFrame::writeBar(const char* section)
{
    const QString s = QLatin1String(section);
    store_.WriteSetting(s, Settings::BackColorKey, QString::number(pickers_[Back]));
    store_.WriteSetting(s, Settings::BarStartColorKey, QString::number(pickers_[Start]));
    store_.WriteSetting(s, Settings::BarEndColorKey, QString::number(pickers_[End]));
}

void ColorFrame::Cancel()
{
    // The bars keep the preview until the next start; nothing is stored.
    spot_.hide(FrameSpot::Color);
    emit changed();
}

void ColorFrame::restore()
{
    bool anyStored = false;
    for (QLatin1StringView section : Settings::BarSections)
        for (QLatin1StringView key : {Settings::BackColorKey, Settings::BarStartColorKey, Settings::BarEndColorKey})
            anyStored = anyStored || !store_.ReadSetting(section, key).isEmpty();
    if (!anyStored)
        return;
    for (std::size_t i = 0; i < Settings::BarSections.size(); ++i) {
        const QLatin1StringView section = Settings::BarSections[i];
        BarColors c = displays_.barColors(kAllOrder[i]);
        c.back = store_.ReadSetting(section, Settings::BackColorKey).toUInt();
        c.start = store_.ReadSetting(section, Settings::BarStartColorKey).toUInt();
        c.end = store_.ReadSetting(section, Settings::BarEndColorKey).toUInt();
        displays_.setBarColors(kAllOrder[i], c);
    }
}
