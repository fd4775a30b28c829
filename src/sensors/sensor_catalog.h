// The thirteen values Vexorin watches: registers, frame positions,
// conversions, text forms, bars, labels and the words by which the rest of
// the program finds each one. One table; a sensor is a row.
#pragma once

#include "sensors/sensor_value.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace vexorin::sensors {

// In frame order, which is also the order of the log file and the displays.
enum class SensorId { Speed, RPM, TPS, MAF, O2L, O2R, INJ, Timing, IACV, Water, Fuel, Battery, AF };
constexpr int kSensorCount = 13;

enum class TextForm { Plain, WholeNumber, TwoDecimals };
// How the bar position comes from the reading.
enum class BarRule { Value, TextTimesOne, TextTimesTen };

struct SensorSpec {
    SensorId id;
    int position;    // frame position of the byte, or of the low byte of a two-byte value
    bool twoBytes;   // the high byte stands one position earlier
    std::int64_t milliPerCount;  // the conversion: value = raw x this / 1000 + offset
    std::int64_t rawOffset;      // subtracted from the raw value first
    std::int64_t milliOffset;    // added after
    TextForm form;
    BarRule barRule;
    const char* unit;
    const char* barName;
    int barMax;
    const char* labelName;
    const char* dashLabel;       // nullptr: not on the Dash
    // Words set by the sensor's button.
    const char* buttonCaption;
    const char* largeWord;       // LargeSensorWord
    const char* selectedWord;    // SelectedSensor
    const char* graphTitle;      // GraphSensorLabel
    const char* logMessage;
    const char* spokenText;
};

extern const std::array<SensorSpec, kSensorCount> kSensors;

inline const SensorSpec& spec(SensorId id)
{
    return kSensors[std::size_t(id)];
}

// The unit as a short caption beside a value ("mph", "V", "°F"); empty for the A/F alpha.
const char* unitSymbol(SensorId id);

// The order in which the main window's panel lists, colours and blanks its sensors.
extern const std::array<SensorId, kSensorCount> kPanelOrder;

// What one conversion gives.
struct SensorReading {
    std::string value;   // the exact number as plain text, or the finished text of a two-decimal sensor
    std::string text;    // what the sensor's label shows
    int barPosition = 0;
    Milli number;        // `value` as a number (the rounded one for a two-decimal sensor)
    bool numeric = true; // false when `value` is the finished two-decimal text
};

// The reading of a two-byte sensor whose high byte is above 3: nothing is
// shown, and its value is the plain low byte.
SensorReading lowByteReading(int lo);

// Converts the raw frame bytes of one sensor (hi is ignored for a one-byte sensor).
SensorReading convert(SensorId id, int hi, int lo, const NumberSymbols& symbols = {});

// A two-byte value is formed only for a high byte of 0 to 3.
inline bool highByteUsable(int hi) { return hi >= 0 && hi <= 3; }

// Byte Viewer cell of a frame position 35..50 (cells 1..15, then 33); 0 for any other.
int byteViewerCellOf(int position);

}  // namespace vexorin::sensors
