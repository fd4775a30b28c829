// The lines of a log file: fourteen per frame, each ending in CR LF.
//   1      date "mm/dd/yyyy" then time "hh:mm:ss", with the locale's separators
//   2..14  Speed, RPM, TPS, MAF, O2 (L), O2 (R), Injector, Timing, IACV, Water,
//          Fuel, Battery, A/F; numbers as " 62 " or "-5 ", two-decimal texts as "1.26"
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QLocale>
#include <QString>

namespace vexorin::logging {

constexpr int kLinesPerFrame = 14;
inline const QByteArray kLineEnd = QByteArrayLiteral("\r\n");

// A number as the log writes it: a blank or the minus sign, the digits, a blank.
QString numberLine(const QString& plainNumber);

// The date and time line of a frame.
QString dateTimeLine(const QDateTime& when, const QLocale& locale = QLocale());

// The separators of the locale's short date and time forms.
QChar dateSeparator(const QLocale& locale);
QChar timeSeparator(const QLocale& locale);

}  // namespace vexorin::logging
