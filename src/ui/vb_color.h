// Colours are kept as 32-bit values in 0x00BBGGRR order.
#pragma once

#include <QColor>

inline QColor fromBgr(quint32 bgr)
{
    return QColor(int(bgr & 0xFF), int((bgr >> 8) & 0xFF), int((bgr >> 16) & 0xFF));
}

inline quint32 toBgr(const QColor& c)
{
    return quint32(c.red()) | (quint32(c.green()) << 8) | (quint32(c.blue()) << 16);
}
