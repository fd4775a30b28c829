// The eight analog channels of the DLP-IO8-G as the External Gauge Monitor
// reads them: the request letter of each, the gauge's default name, and the
// rule that turns a reading box's text into the position of its bar.
#pragma once

#include <QString>
#include <array>
#include <optional>

namespace vexorin::external {

struct ExternalChannel {
    int number;            // 1 to 8
    char letter;           // the one request byte
    const char* defaultName;
};

inline constexpr int kChannelCount = 8;
inline constexpr std::array<ExternalChannel, kChannelCount> kChannels{{
    {1, 'Z', "Fuel"},
    {2, 'X', "Boost PSI"},
    {3, 'C', "Oil PSI"},
    {4, 'V', "Wideband L"},
    {5, 'B', "Wideband R"},
    {6, 'N', "Spare"},
    {7, 'M', "Spare"},
    {8, ',', "Spare"},
}};

// A reading box's text at start and after Stop.
inline constexpr char kIdleReading[] = "0.00V";
// The bars run from 0 to 5 volts in whole steps.
inline constexpr int kBarMaximum = 5;

// The channel after `tracker` in the polling round (after 8 comes 1).
int nextChannel(int tracker);

// The whole number of the first three characters of a text ("2.34V" gives
// 2.3 and so 2), rounded to nearest with halves to even; empty when those
// characters are no number or the number is far out of range.
std::optional<int> leadingWholeNumber(const QString& text);

// The bar's new value after a channel's reading box changed to `text`, or
// empty when the bar keeps its value: the text is no number, or the number
// lies outside the bar's range. The first channel alone tests the whole text
// for "Fuel", "fuel" or "FUEL" and then counts down from 5; a reading never
// has that form.
std::optional<int> barValueFor(int channel, const QString& text);

}  // namespace vexorin::external
