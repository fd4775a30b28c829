// A device class identifier: Data1 (32 bits), Data2 and Data3 (16 bits), Data4 (8 bytes).
#pragma once

#include <QString>
#include <array>
#include <cstdint>

class GUID_Storage {
public:
    GUID_Storage() = default;
    GUID_Storage(std::uint32_t d1, std::uint16_t d2, std::uint16_t d3, std::array<std::uint8_t, 8> d4);

    // Copies 16 bytes in memory layout from or to the pointer.
    void CopyFromThisPTR(const void* pointer);
    void CopyToThisPTR(void* pointer) const;
    void CopyFromThisClass(const GUID_Storage& other);
    bool IsEqual(const GUID_Storage& other) const;
    const void* Ptr() const { return &raw_; }
    void Clear();
    // Data1 as 8, Data2 and Data3 as 4 and each byte of Data4 as 2 hexadecimal digits, joined by ":".
    QString ToString() const;

    std::uint32_t Data1() const { return raw_.data1; }
    void setData1(std::uint32_t v) { raw_.data1 = v; }
    std::uint16_t Data2() const { return raw_.data2; }
    void setData2(std::uint16_t v) { raw_.data2 = v; }
    std::uint16_t Data3() const { return raw_.data3; }
    void setData3(std::uint16_t v) { raw_.data3 = v; }
    std::array<std::uint8_t, 8> Data4() const;
    void setData4(const std::array<std::uint8_t, 8>& v);

    // Pads on the left to the length with the pad character.
    static QString PadStr(const QString& text, int length, QChar pad);

private:
    struct Raw {
        std::uint32_t data1 = 0;
        std::uint16_t data2 = 0;
        std::uint16_t data3 = 0;
        std::uint8_t data4[8] = {};
    } raw_;
    static_assert(sizeof(Raw) == 16, "a GUID is 16 bytes");
};
