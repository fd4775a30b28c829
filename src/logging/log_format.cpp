#include "logging/log_format.h"

namespace vexorin::logging {

namespace {
QChar firstSeparator(const QString& format, QChar fallback)
{
    for (QChar c : format)
        if (!c.isLetter() && !c.isSpace() && c != QLatin1Char('\''))
            return c;
    return fallback;
}
}  // namespace

QString numberLine(const QString& plainNumber)
{
    if (plainNumber.startsWith(QLatin1Char('-')))
        return plainNumber + QLatin1Char(' ');
    return QLatin1Char(' ') + plainNumber + QLatin1Char(' ');
}

QChar dateSeparator(const QLocale& locale)
{
    return firstSeparator(locale.dateFormat(QLocale::ShortFormat), QLatin1Char('/'));
}

QChar timeSeparator(const QLocale& locale)
{
    return firstSeparator(locale.timeFormat(QLocale::ShortFormat), QLatin1Char(':'));
}

QString dateTimeLine(const QDateTime& when, const QLocale& locale)
{
    const QChar d = dateSeparator(locale);
    const QChar t = timeSeparator(locale);
    const QDate date = when.date();
    const QTime time = when.time();
    auto two = [](int v) { return QStringLiteral("%1").arg(v, 2, 10, QLatin1Char('0')); };
    return two(date.month()) + d + two(date.day()) + d + QStringLiteral("%1").arg(date.year(), 4, 10, QLatin1Char('0')) +
           two(time.hour()) + t + two(time.minute()) + t + two(time.second());
}

}  // namespace vexorin::logging
