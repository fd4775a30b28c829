#include "tools/ecu_tool_tables.h"

#include "rom/rom_image.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace vexorin::tools {

std::string DecimalToBinary(long value)
{
    if (value <= 0)
        return "0";
    std::string digits;
    for (unsigned long v = static_cast<unsigned long>(value); v != 0; v >>= 1)
        digits.insert(digits.begin(), char('0' + (v & 1)));
    return digits;
}

const std::array<DelayItem, kDelayCount> kDelayItems{{
    {"tenmilliseconds", "10 milliseconds", 10, "Estimated Time : 5 min 38 sec"},
    {"fiftymilliseconds", "50 milliseconds", 50, "Estimated Time : 8 min 38 sec"},
    {"ohmilliseconds", "100 milliseconds", 100, "Estimated Time : 11 min 50 sec"},
    {"ohfiftymilliseconds", "150 milliseconds", 150, "Estimated Time : 15 min 19 sec"},
    {"twohunmilliseconds", "200 milliseconds", 200, "Estimated Time : 18 min 36 sec"},
    {"twohunfiftymilliseconds", "250 milliseconds", 250, "Estimated Time : 21 min 46 sec"},
    {"threehunmilliseconds", "300 milliseconds", 300, nullptr},
    {"threhunfiftymilliseconds", "350 milliseconds", 350, nullptr},
    {"fourhunmilliseconds", "400 milliseconds", 400, nullptr},
    {"fourhunfiftymilliseconds", "450 milliseconds", 450, nullptr},
    {"fivrhunmilliseconds", "500 milliseconds", 500, nullptr},
    {"onethoumilliseconds", "1000 milliseconds", 1000, nullptr},
}};

// ---- Register Viewer ---------------------------------------------------------

std::string bankRowHeading(int shownBank, int firstLow)
{
    using rom::hexByte;
    return " " + hexByte(shownBank) + hexByte(firstLow) + "-" + hexByte(shownBank) + hexByte(firstLow + 15);
}

// ---- Active Test -----------------------------------------------------------

const std::array<TrimSpec, 3> kTrims{{
    {"InjectorFuelScroll", "Injector Fuel", "Lean", "Rich", 129},
    {"TimingScroll", "Ignition Timing", "Retard", "Advance", 130},
    {"IacvScroll", "IACV Valve Opening", "Close", "Open", 132},
}};

int trimByte(Trim trim, int position)
{
    switch (trim) {
    case Trim::Timing:
        // Degrees as a signed byte: 250..255 for -6..-1.
        return (position - kTrimMiddle) & 0xFF;
    case Trim::Iacv:
        // The idle air test has its neutral at 0.
        return position == kTrimMiddle ? 0 : 94 + position;
    case Trim::InjectorFuel:
        break;
    }
    return 94 + position;
}

std::string trimLabel(Trim trim, int position)
{
    if (trim != Trim::Timing)
        return std::to_string(94 + position) + "%";
    const int degrees = position - kTrimMiddle;
    return (degrees > 0 ? "+" : "") + std::to_string(degrees) + "*";
}

int waterTempByte(int degreesF)
{
    return int(std::nearbyint((double(degreesF) - 32.0) * 5.0 / 9.0 + 50.0));
}

const std::array<OnOffSpec, kOnOffCount> kOnOffs{{
    {"P/REG", "OnOffLabel1", 138, true},
    {"MAP SW", "OnOffLabel2", 144, true},
    {"IACV/FICD", "OnOffLabel3", 135, true},
    {"IACV-AAC/V", "OnOffLabel4", 140, true},
    {"VALVE TIMING", "OnOffLabel5", 143, true},
    {"Fuel Pump Relay", "FuelPumpLabel", 137, false},
}};

std::optional<OnOffStep> pressOnOff(const std::string& label)
{
    if (label == "ON" || label == "-")
        return OnOffStep{"OFF", 0};
    if (label == "OFF")
        return OnOffStep{"ON", 1};
    return std::nullopt;
}

}  // namespace vexorin::tools
