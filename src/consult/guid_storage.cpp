#include "consult/guid_storage.h"

#include <QStringList>
#include <cstring>

GUID_Storage::GUID_Storage(std::uint32_t d1, std::uint16_t d2, std::uint16_t d3, std::array<std::uint8_t, 8> d4)
{
    raw_.data1 = d1;
    raw_.data2 = d2;
    raw_.data3 = d3;
    setData4(d4);
}

void GUID_Storage::CopyFromThisPTR(const void* pointer)
{
    if (pointer)
        std::memcpy(&raw_, pointer, sizeof raw_);
}

void GUID_Storage::CopyToThisPTR(void* pointer) const
{
    if (pointer)
        std::memcpy(pointer, &raw_, sizeof raw_);
}

void GUID_Storage::CopyFromThisClass(const GUID_Storage& other)
{
    raw_ = other.raw_;
}

bool GUID_Storage::IsEqual(const GUID_Storage& other) const
{
    return std::memcmp(&raw_, &other.raw_, sizeof raw_) == 0;
}

void GUID_Storage::Clear()
{
    raw_ = Raw{};
}

std::array<std::uint8_t, 8> GUID_Storage::Data4() const
{
    std::array<std::uint8_t, 8> out{};
    std::memcpy(out.data(), raw_.data4, 8);
    return out;
}

void GUID_Storage::setData4(const std::array<std::uint8_t, 8>& v)
{
    std::memcpy(raw_.data4, v.data(), 8);
}

QString GUID_Storage::PadStr(const QString& text, int length, QChar pad)
{
    return text.size() >= length ? text : QString(length - text.size(), pad) + text;
}

QString GUID_Storage::ToString() const
{
    QStringList parts;
    parts << PadStr(QString::number(raw_.data1, 16).toUpper(), 8, QLatin1Char('0'))
          << PadStr(QString::number(raw_.data2, 16).toUpper(), 4, QLatin1Char('0'))
          << PadStr(QString::number(raw_.data3, 16).toUpper(), 4, QLatin1Char('0'));
    for (std::uint8_t b : raw_.data4)
        parts << PadStr(QString::number(b, 16).toUpper(), 2, QLatin1Char('0'));
    return parts.join(QLatin1Char(':'));
}
