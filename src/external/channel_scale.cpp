#include "external/channel_scale.h"

#include "external/external_channels.h"

#include <QLocale>
#include <cmath>

namespace vexorin::external {

namespace {
// Numbers with '.' as the decimal mark and no thousands separators.
QLocale plainNumbers()
{
    QLocale c = QLocale::c();
    c.setNumberOptions(QLocale::OmitGroupSeparator | QLocale::RejectGroupSeparator);
    return c;
}

std::optional<double> finiteNumber(const QString& text)
{
    bool ok = false;
    const double v = plainNumbers().toDouble(text, &ok);
    if (!ok || !std::isfinite(v))
        return std::nullopt;
    return v;
}

// The largest rounded figure, in units of its last decimal: below it the
// allowance for binary noise stays far under a half.
constexpr double kLargestRounded = 1e12;
}  // namespace

std::optional<double> readingVolts(const QString& text)
{
    QString t = text.trimmed();
    if (t.endsWith(QLatin1Char('V')) || t.endsWith(QLatin1Char('v'))) {
        t.chop(1);
        t = t.trimmed();
    }
    if (t.isEmpty())
        return std::nullopt;
    return finiteNumber(t);
}

double figureAt(const ChannelScale& s, double volts)
{
    return s.figure1 + (volts - s.volts1) * (s.figure2 - s.figure1) / (s.volts2 - s.volts1);
}

QString roundedFigure(double value, int decimals)
{
    if (decimals < 0 || decimals > kMaxScaleDecimals || !std::isfinite(value))
        return {};
    const double scaled = value * std::pow(10.0, decimals);
    if (std::fabs(scaled) >= kLargestRounded)
        return {};
    // Half up: floor(x + 0.5). The sums and products before leave a few units
    // of the last binary place; a half that came out a hair short is still a half.
    const double noise = 1e-9 + std::fabs(scaled) * 1e-14;
    const auto whole = static_cast<long long>(std::floor(scaled + 0.5 + noise));
    QString digits = QString::number(whole < 0 ? -whole : whole);
    if (decimals > 0) {
        if (digits.size() <= decimals)
            digits = QString(decimals + 1 - digits.size(), QLatin1Char('0')) + digits;
        digits.insert(digits.size() - decimals, QLatin1Char('.'));
    }
    return whole < 0 ? QLatin1Char('-') + digits : digits;
}

QString scaledReading(const ChannelScale& scale, const QString& reading)
{
    const std::optional<double> volts = readingVolts(reading);
    if (!volts)
        return {};
    const QString figure = roundedFigure(figureAt(scale, *volts), scale.decimals);
    if (figure.isEmpty() || scale.unit.isEmpty())
        return figure;
    return figure + QLatin1Char(' ') + scale.unit;
}

std::array<QString, 2> spanTexts(const ChannelScale& scale)
{
    const auto at = [&scale](double volts) {
        const QString figure = roundedFigure(figureAt(scale, volts), scale.decimals);
        return scale.unit.isEmpty() ? figure : figure + QLatin1Char(' ') + scale.unit;
    };
    return {at(0.0), at(double(kBarMaximum))};
}

QString numberText(double value)
{
    if (value == 0.0)
        value = 0.0;  // no "-0"
    return plainNumbers().toString(value, 'f', QLocale::FloatingPointShortest);
}

std::optional<double> parseNumber(const QString& text)
{
    QString t = text.trimmed();
    if (!t.contains(QLatin1Char('.')))
        t.replace(QLatin1Char(','), QLatin1Char('.'));
    return finiteNumber(t);
}

QString fieldCaption(ScaleField field)
{
    switch (field) {
    case ScaleField::Volts1: return QStringLiteral("Volts 1");
    case ScaleField::Figure1: return QStringLiteral("Figure 1");
    case ScaleField::Volts2: return QStringLiteral("Volts 2");
    case ScaleField::Figure2: return QStringLiteral("Figure 2");
    case ScaleField::Unit: return QStringLiteral("Unit");
    case ScaleField::Decimals: return QStringLiteral("Decimals");
    }
    return {};
}

ScaleCheck checkEntry(const ScaleEntry& e)
{
    ChannelScale s;
    const struct {
        ScaleField field;
        const QString& text;
        double ChannelScale::*into;
        const char* example;
    } points[] = {
        {ScaleField::Volts1, e.volts1, &ChannelScale::volts1, "0.5"},
        {ScaleField::Figure1, e.figure1, &ChannelScale::figure1, "0"},
        {ScaleField::Volts2, e.volts2, &ChannelScale::volts2, "4.5"},
        {ScaleField::Figure2, e.figure2, &ChannelScale::figure2, "100"},
    };
    for (const auto& p : points) {
        const std::optional<double> v = parseNumber(p.text);
        if (!v)
            return {std::nullopt,
                    QStringLiteral("%1 must be a number, such as %2.").arg(fieldCaption(p.field), QLatin1String(p.example)),
                    p.field};
        if (std::fabs(*v) > kLargestPoint)
            return {std::nullopt,
                    QStringLiteral("%1 must lie between -%2 and %2.").arg(fieldCaption(p.field), numberText(kLargestPoint)),
                    p.field};
        s.*p.into = *v;
    }
    if (s.volts1 == s.volts2)
        return {std::nullopt,
                QStringLiteral("Volts 1 and Volts 2 are the same: the two points need two different voltages."),
                ScaleField::Volts2};
    if (e.decimals < 0 || e.decimals > kMaxScaleDecimals)
        return {std::nullopt, QStringLiteral("Decimals must be 0 to %1.").arg(kMaxScaleDecimals), ScaleField::Decimals};
    s.decimals = e.decimals;
    s.unit = e.unit.simplified().left(kMaxUnitLength).trimmed();
    return {s, QString(), ScaleField::Volts1};
}

ScaleEntry entryOf(const ChannelScale& s)
{
    return {numberText(s.volts1), numberText(s.figure1), numberText(s.volts2), numberText(s.figure2), s.unit,
            s.decimals};
}

}  // namespace vexorin::external
