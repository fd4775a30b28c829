#include "sensors/sensor_catalog.h"

#include <string_view>
#include <utility>

namespace vexorin::sensors {

// clang-format off
const std::array<SensorSpec, kSensorCount> kSensors{{
    // id               pos two  milli  rawOff milliOff form                   bar                   unit                       bar            max   label            dash           button    large      selected    graph              log                                               spoken
    {SensorId::Speed,   35, false, 1240,  0,  0,     TextForm::Plain,       BarRule::Value,        "miles per hour",          "SPEEDbar",    160,  "SPEEDLabel",    "DashSpeed",   "Speed",  "Speed",   "Speed",    "Speed Sensor",    ": Voice monitor set to Vehicle Speed.",          "Voice monitor set to vehicle speed."},
    {SensorId::RPM,     37, true,  12500, 0,  0,     TextForm::WholeNumber, BarRule::Value,        "revolutions per minute",  "RPMbar",      7000, "RPMLabel",      "DashRPM",     "RPM",    "RPM",     "RPM",      "RPM Sensor",      ": Voice monitor set to RPM.",                    "Voice monitor set to RPM."},
    {SensorId::TPS,     38, false, 20,    0,  0,     TextForm::TwoDecimals, BarRule::TextTimesOne, "volts",                   "TPSbar",      5,    "TPSLabel",      "DashTPS",     "TPS",    "TPS",     "TPS",      "TPS Sensor",      ": Voice monitor set to Throttle Position Sensor.", "Voice monitor set to throttle position sensor."},
    {SensorId::MAF,     40, true,  5,     0,  0,     TextForm::TwoDecimals, BarRule::TextTimesOne, "volts",                   "MAFbar",      6,    "MAFLabel",      "DashMAF",     "MAF",    "MAF",     "MAF",      "MAF Sensor",      ": Voice monitor set to mass airflow sensor.",    "Voice monitor set to mass airflow sensor."},
    {SensorId::O2L,     41, false, 10,    0,  0,     TextForm::TwoDecimals, BarRule::TextTimesTen, "volts",                   "LO2bar",      5,    "LO2Label",      "DashO2L",     "O2 (L)", "O2 (L)",  "O2 (L)",   "O2 (L) Sensor",   ": Voice monitor set to Left Oxygen Sensor.",     "Voice monitor set to left oxygen sensor."},
    {SensorId::O2R,     42, false, 10,    0,  0,     TextForm::TwoDecimals, BarRule::TextTimesTen, "volts",                   "RO2bar",      5,    "RO2Label",      "DashoO2R",    "O2 (R)", "O2 (R)",  "O2 (R)",   "O2 (R) Sensor",   ": Voice monitor set to Right Oxygen Sensor.",    "Voice monitor set to right oxygen sensor."},
    {SensorId::INJ,     44, true,  10,    0,  0,     TextForm::Plain,       BarRule::Value,        "milliseconds",            "INJECTORbar", 5,    "INJECTORLabel", "DashINJ",     "INJ",    "INJ",     "Injector", "INJ Sensor",      ": Voice monitor set to Injector Pulse.",         "Voice monitor set to injector pulse."},
    {SensorId::Timing,  45, false, -1000, 0,  110000, TextForm::Plain,      BarRule::Value,        "degrees",                 "TIMINGbar",   60,   "TIMINGLabel",   "DashTiming",  "Timing", "Timing",  "Timing",   "Timing Sensor",   ": Voice monitor set to Ignition Timing.",        "Voice monitor set to ignition timing."},
    {SensorId::IACV,    46, false, 500,   0,  0,     TextForm::Plain,       BarRule::Value,        "percent",                 "IACVbar",     100,  "IACVLabel",     "DashIACV",    "IACV",   "IACV",    "IACV",     "IACV Sensor",     ": Voice monitor set to Idle Air Control Valve.", "Voice monitor set to idle air control valve."},
    {SensorId::Water,   47, false, 1800,  50, 32000, TextForm::Plain,       BarRule::Value,        "degrees Fahrenheit",      "WATERbar",    240,  "WATERLabel",    "DashWater",   "Water",  "Water",   "Water",    "Water Srnsor",    ": Voice monitor set to Water Temperature.",      "Voice monitor set to Water Temperature."},
    {SensorId::Fuel,    48, false, 1800,  50, 32000, TextForm::Plain,       BarRule::Value,        "degrees Fahrenheit",      "FUELbar",     240,  "FUELLabel",     "DashFuel",    "Fuel",   "Fuel",    "Fuel",     "Fuel Sensor",     ": Voice monitor set to Fuel Temperature.",       "Voice monitor set to fuel temperature."},
    {SensorId::Battery, 49, false, 80,    0,  0,     TextForm::TwoDecimals, BarRule::TextTimesOne, "volts",                   "BATTERYbar",  20,   "BATTERYLabel",  "DashBattery", "Batt",   "Battery", "Battery",  "Battery Sensor",  ": Voice monitor set to Battery Voltage.",        "Voice monitor set to battery voltage."},
    {SensorId::AF,      50, false, 1000,  0,  0,     TextForm::Plain,       BarRule::Value,        "raw air/fuel alpha",      "AFbar",       200,  "AFLabel",       nullptr,       "A/F",    "A/F",     "A/F",      "A/F Sensor",      ": Voice monitor set to Air Fuel Alfa.",          "Voice monitor set to air fuel alfa."},
}};
// clang-format on

const std::array<SensorId, kSensorCount> kPanelOrder{
    SensorId::Speed, SensorId::RPM,    SensorId::TPS,  SensorId::MAF,   SensorId::O2L,  SensorId::O2R,    SensorId::AF,
    SensorId::INJ,   SensorId::Timing, SensorId::IACV, SensorId::Water, SensorId::Fuel, SensorId::Battery};

const char* unitSymbol(SensorId id)
{
    static const std::pair<std::string_view, const char*> symbols[] = {
        {"miles per hour", "mph"}, {"revolutions per minute", "rpm"}, {"volts", "V"},
        {"milliseconds", "ms"},    {"degrees", "\u00b0"},             {"percent", "%"},
        {"degrees Fahrenheit", "\u00b0F"}};
    for (const auto& [unit, symbol] : symbols)
        if (unit == spec(id).unit)
            return symbol;
    return "";
}

SensorReading convert(SensorId id, int hi, int lo, const NumberSymbols& symbols)
{
    const SensorSpec& s = spec(id);
    const std::int64_t raw = s.twoBytes ? std::int64_t(hi) * 256 + lo : lo;
    const Milli value((raw - s.rawOffset) * s.milliPerCount + s.milliOffset);

    SensorReading r;
    switch (s.form) {
    case TextForm::Plain:
        r.value = value.plainText(symbols);
        r.text = r.value;
        break;
    case TextForm::WholeNumber:
        r.value = value.plainText(symbols);
        r.text = std::to_string(std::int16_t(value.roundHalfEven()));
        break;
    case TextForm::TwoDecimals:
        r.text = twoDecimalText(value.hundredthsHalfUp(), symbols);
        r.value = r.text;
        r.numeric = false;
        break;
    }
    r.number = s.form == TextForm::TwoDecimals ? Milli(value.hundredthsHalfUp() * 10) : value;
    switch (s.barRule) {
    case BarRule::Value:
        r.barPosition = int(value.roundHalfEven());
        break;
    case BarRule::TextTimesOne:
        r.barPosition = int(divideHalfEven(value.hundredthsHalfUp(), 100));
        break;
    case BarRule::TextTimesTen:
        r.barPosition = int(divideHalfEven(value.hundredthsHalfUp(), 10));
        break;
    }
    return r;
}

SensorReading lowByteReading(int lo)
{
    SensorReading r;
    r.number = Milli(std::int64_t(lo) * 1000);
    r.value = std::to_string(lo);
    r.text = r.value;
    r.barPosition = lo;
    return r;
}

int byteViewerCellOf(int position)
{
    if (position >= 35 && position <= 49)
        return position - 34;
    return position == 50 ? 33 : 0;
}

}  // namespace vexorin::sensors
