#include "tools/ecu_tool_tables.h"

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

bool burstStreamEnded(const std::vector<std::uint8_t>& received)
{
    constexpr std::size_t echoes = kBurstFirstData - 2;
    for (std::size_t slot = echoes + kBurstFrameLength; slot < received.size(); slot += kBurstFrameLength)
        if (received[slot] != 0xFF)
            return true;
    return false;
}

// ---- Register Viewer ---------------------------------------------------------

namespace {
constexpr RegionView cells(int bank, int row, int lastRow, int first, int last, Conversion c = Conversion::None)
{
    return {bank, row, lastRow, first, last, c, nullptr};
}
constexpr RegionView page(int bank, const char* message)
{
    return {bank, 0, 0, 0, 0, Conversion::Message, message};
}

std::string shortest(double v)
{
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.15g", v);
    return buf;
}

// A blank text reads as 0, as does one that is no hexadecimal number.
long hexValue(const std::string& text)
{
    if (text.empty())
        return 0;
    char* end = nullptr;
    const long v = std::strtol(text.c_str(), &end, 16);
    return end && *end == '\0' ? v : 0;
}

std::string hexDigits(int value)
{
    char buf[8];
    std::snprintf(buf, sizeof buf, "%02X", value & 0xFF);
    return buf;
}
}  // namespace

const std::array<RegionView, 24> kRegionViews{{
    cells(255, 10, 10, 2, 2, Conversion::Msec),
    cells(255, 15, 15, 1, 9),
    cells(255, 12, 12, 5, 5, Conversion::Rpm),
    cells(255, 11, 11, 6, 6, Conversion::Speed),
    cells(255, 9, 9, 9, 9, Conversion::Msec),
    cells(255, 3, 3, 12, 13, Conversion::KValue),
    cells(254, 9, 9, 1, 16),
    cells(254, 10, 10, 1, 16),
    cells(254, 3, 3, 1, 16),
    page(253, "Currently viewing the Primary Fuel Map."),
    page(252, "Currently viewing the Secondary Timing Map (Knock)."),
    cells(251, 2, 2, 1, 16),
    cells(251, 1, 1, 1, 16),
    cells(251, 7, 8, 1, 16),
    cells(251, 4, 5, 1, 16),
    cells(250, 8, 15, 1, 16),
    cells(250, 16, 16, 1, 16),
    cells(249, 16, 16, 7, 7, Conversion::Rpm),
    // The Knock Limit's range runs to F9EF, but the paint stops at column 12.
    cells(249, 15, 15, 4, 12),
    cells(249, 7, 7, 1, 16),
    page(248, "Currently viewing the Primary Timing Map."),
    page(242, "Currently viewing the Secondary Fuel Map."),
    page(241, "Currently viewing the High Octane High Gear Fuel Map."),
    page(240, "Currently viewing the Low Octane High Gear Fuel Map."),
}};

std::string convertRegion(Conversion conversion, const std::string& firstCell, const std::string& secondCell)
{
    const long byte = hexValue(firstCell);
    switch (conversion) {
    case Conversion::Msec:
        return shortest(double(byte) / 100.0) + " msec";
    case Conversion::Rpm:
        return std::to_string(byte * 50) + " RPM";
    case Conversion::Speed: {
        const long kmh = byte * 2;
        const long mph = long(std::nearbyint(double(kmh) * 0.621371192));
        return std::to_string(kmh) + " km/h" + " or " + std::to_string(mph) + " MPH";
    }
    case Conversion::KValue: {
        const std::string joined = firstCell + secondCell;
        return joined.empty() ? std::string() : std::to_string(hexValue(joined));
    }
    case Conversion::None:
    case Conversion::Message:
        break;
    }
    return {};
}

std::string bankRowHeading(int shownBank, int firstLow)
{
    return " " + hexDigits(shownBank) + hexDigits(firstLow) + "-" + hexDigits(shownBank) + hexDigits(firstLow + 15);
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
