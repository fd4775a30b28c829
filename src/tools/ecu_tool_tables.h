// The plain tables and arithmetic of the ECU tools: the Downloader's delay
// items and binary text, 16-bit counters that stop at their limit, the
// Active Test's control codes and position tables, and the conversions of
// the Register Viewer's named regions. No Qt, so it is unit-tested alone.
#pragma once

#include "consult/read_plans.h"
#include "rom/region_views.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vexorin::tools {

// ---- BIN File Downloader -------------------------------------------------

// Binary digits, most significant first, no leading zeros; 0 gives "0".
std::string DecimalToBinary(long value);

// A 16-bit signed counter: an addition that would leave the range fails and
// leaves the value as it was.
constexpr int addInt16(int value, int delta)
{
    const long sum = long(value) + delta;
    return sum > 32767 || sum < -32768 ? value : int(sum);
}

struct DelayItem {
    const char* name;       // the menu item's objectName
    const char* caption;
    int intervalMs;
    const char* estimate;   // null: the item leaves the estimate label alone
};

constexpr int kDelayCount = 12;
extern const std::array<DelayItem, kDelayCount> kDelayItems;
// The one item that also sets SwitchLabel at Start.
constexpr int kSwitchingDelay = 5;

// The eight-address bursts of memory reads go through the Consult link's
// shared burst routine.
using consult::burstStreamEnded;
using consult::kBurstAddresses;
using consult::kBurstFirstData;
using consult::kBurstFrameLength;
using consult::kBurstReplyLength;
using consult::kCmdGo;
using consult::kCmdReadMemory;
using consult::kCmdStop;
using consult::kFirstEchoByte;
using consult::kStopReply;

// ---- E.C.U. Register Viewer -------------------------------------------------

// The region list's paints and conversions are the BIN File Viewer/Editor's.
using rom::Conversion;
using rom::convertRegion;
using rom::kRegionViews;
using rom::RegionView;

// Bank headings: " FD10-FD1F" for the row that starts at low byte 0x10 of bank 253.
std::string bankRowHeading(int shownBank, int firstLow);

// ---- Active Test -------------------------------------------------------------

constexpr int kTrimPositions = 13;
constexpr int kTrimMiddle = 6;

enum class Trim { InjectorFuel, Timing, Iacv };

struct TrimSpec {
    const char* scrollName;
    const char* group;
    const char* left;
    const char* right;
    int code;
};
extern const std::array<TrimSpec, 3> kTrims;

// The value byte of a trim at a scroll position 0..12.
int trimByte(Trim trim, int position);
// The label of a trim: "-6*" … "+6*" for the timing, "94%" … "106%" for the others.
std::string trimLabel(Trim trim, int position);

constexpr int kWaterTempCode = 128;
constexpr int kWaterTempMax = 400;
// (°F − 32) × 5/9 + 50, rounded half to even.
int waterTempByte(int degreesF);

constexpr int kCylinderCode = 136;
constexpr int kSelfLearnCode = 139;
constexpr int kCylinders = 6;

struct OnOffSpec {
    const char* row;       // the row caption ("P/REG"), or the group for the fuel pump
    const char* label;     // the label's name
    int code;
    bool dashAtOpen;       // the solenoids start at "-", the fuel pump at "ON"
};
// The five solenoids, then the fuel pump relay.
constexpr int kOnOffCount = 6;
constexpr int kFuelPump = 5;
extern const std::array<OnOffSpec, kOnOffCount> kOnOffs;

// The label's next text and the value byte a press sends.
struct OnOffStep {
    std::string label;
    int value;
};
// "ON" (and "-") turn off with 0, "OFF" turns on with 1; nothing for any other text.
std::optional<OnOffStep> pressOnOff(const std::string& label);

}  // namespace vexorin::tools
