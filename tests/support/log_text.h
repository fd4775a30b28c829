// Log frames as capture writes them, for tests: the date and time line and
// the thirteen values, each line ending in CR LF.
#pragma once

#include <QByteArray>
#include <QList>

// Speed 18.6, RPM 1012.5, TPS 0.46, MAF 1.01, O2 0.45 and 0.46, INJ 2.5,
// Timing -5, IACV 12.5, Water 176, Fuel 86, Battery 12.00, A/F 100.
inline const QList<QByteArray> kLogValues = {" 18.6 ", " 1012.5 ", "0.46", "1.01",  "0.45", "0.46", " 2.5 ",
                                             "-5 ",    " 12.5 ",   " 176 ", " 86 ", "12.00", " 100 "};

inline QByteArray logFrame(const QByteArray& stamp, const QList<QByteArray>& values = kLogValues)
{
    QByteArray out = stamp + "\r\n";
    for (const QByteArray& v : values)
        out += v + "\r\n";
    return out;
}
