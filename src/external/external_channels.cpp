#include "external/external_channels.h"

#include <QLocale>
#include <cmath>

namespace vexorin::external {

int nextChannel(int tracker)
{
    return tracker >= kChannelCount || tracker < 1 ? 1 : tracker + 1;
}

std::optional<int> leadingWholeNumber(const QString& text)
{
    const QString head = text.left(3).trimmed();
    bool ok = false;
    const double v = QLocale::c().toDouble(head, &ok);
    // A 16-bit whole number at most, as the bar's value is.
    if (!ok || !std::isfinite(v) || std::fabs(v) > 32767.0)
        return std::nullopt;
    // Halves go to the even neighbour: 2.5 gives 2, 3.5 gives 4.
    const double r = std::round(v);
    const int whole = std::fabs(v - std::trunc(v)) == 0.5 ? int(2.0 * std::round(v / 2.0)) : int(r);
    return whole;
}

std::optional<int> barValueFor(int channel, const QString& text)
{
    std::optional<int> value = leadingWholeNumber(text);
    if (channel == 1
        && (text == QLatin1String("Fuel") || text == QLatin1String("fuel") || text == QLatin1String("FUEL"))) {
        if (value)
            value = kBarMaximum - *value;
    }
    if (value && (*value < 0 || *value > kBarMaximum))
        return std::nullopt;
    return value;
}

}  // namespace vexorin::external
