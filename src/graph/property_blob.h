// A bag of named values in one byte format, used by point series, graph
// settings and graph state files. Little-endian throughout:
//   header: magic 0x0000B293, total length
//   records on 4-byte boundaries, forming a ring by their distance fields:
//     type (3 int32, 8 text, 0x2011 byte array), name length in UTF-16 units,
//     name hash, distance to the next record, name in UTF-16, value, padding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vexorin::graph {

using ByteVector = std::vector<std::uint8_t>;

class PropertyBlob {
public:
    static constexpr std::uint32_t kMagic = 0x0000B293;
    enum Type : std::uint16_t { Int32 = 3, Text = 8, ByteArray = 0x2011 };

    struct Record {
        Type type;
        std::u16string name;
        std::int32_t integer = 0;
        std::u16string text;
        ByteVector bytes;
    };

    void writeInt(const std::u16string& name, std::int32_t value);
    void writeText(const std::u16string& name, const std::u16string& value);
    void writeBytes(const std::u16string& name, const ByteVector& value);

    // Missing names read as 0, empty text, an empty byte array. Names compare as they stand.
    std::int32_t readInt(const std::u16string& name) const;
    std::u16string readText(const std::u16string& name) const;
    ByteVector readBytes(const std::u16string& name) const;
    bool has(const std::u16string& name) const;

    const std::vector<Record>& records() const { return records_; }

    ByteVector serialize() const;
    // Every length and offset is checked against the buffer; a damaged blob gives the reason.
    static std::optional<PropertyBlob> parse(const std::uint8_t* data, std::size_t size, std::string* error);
    static std::optional<PropertyBlob> parse(const ByteVector& bytes, std::string* error)
    {
        return parse(bytes.data(), bytes.size(), error);
    }

    // The hash stored with each name: FNV-1a over the lower-cased name's UTF-16 code units.
    static std::uint32_t nameHash(const std::u16string& name);

private:
    const Record* find(const std::u16string& name) const;
    std::vector<Record> records_;
};

std::u16string u16(const char* ascii);

}  // namespace vexorin::graph
