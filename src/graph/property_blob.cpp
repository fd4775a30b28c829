#include "graph/property_blob.h"

#include <set>

namespace vexorin::graph {

namespace {
void put16(ByteVector& out, std::uint16_t v)
{
    out.push_back(std::uint8_t(v));
    out.push_back(std::uint8_t(v >> 8));
}

void put32(ByteVector& out, std::uint32_t v)
{
    for (int i = 0; i < 4; ++i)
        out.push_back(std::uint8_t(v >> (8 * i)));
}

void set32(ByteVector& out, std::size_t at, std::uint32_t v)
{
    for (int i = 0; i < 4; ++i)
        out[at + std::size_t(i)] = std::uint8_t(v >> (8 * i));
}

void putUnits(ByteVector& out, const std::u16string& s)
{
    for (char16_t c : s)
        put16(out, std::uint16_t(c));
}

// A bounds-checked little-endian reader over the blob.
class Reader {
public:
    Reader(const std::uint8_t* d, std::size_t n) : d_(d), n_(n) {}
    bool fits(std::size_t at, std::size_t len) const { return at <= n_ && len <= n_ - at; }
    std::uint16_t u16(std::size_t at) const { return std::uint16_t(d_[at] | (d_[at + 1] << 8)); }
    std::uint32_t u32(std::size_t at) const
    {
        return std::uint32_t(d_[at]) | (std::uint32_t(d_[at + 1]) << 8) | (std::uint32_t(d_[at + 2]) << 16) |
               (std::uint32_t(d_[at + 3]) << 24);
    }
    std::u16string units(std::size_t at, std::size_t count) const
    {
        std::u16string s(count, u'\0');
        for (std::size_t i = 0; i < count; ++i)
            s[i] = char16_t(u16(at + 2 * i));
        return s;
    }
    const std::uint8_t* at(std::size_t a) const { return d_ + a; }

private:
    const std::uint8_t* d_;
    std::size_t n_;
};

bool fail(std::string* error, const std::string& why)
{
    if (error)
        *error = why;
    return false;
}

// Reads the record at `at`; on success `r` holds it and `distance` its link.
bool readRecord(const Reader& in, std::size_t at, PropertyBlob::Record& r, std::int32_t& distance, std::string* error)
{
    if (!in.fits(at, 12))
        return fail(error, "record header runs past the end of the data");
    const std::uint16_t type = in.u16(at);
    const std::size_t nameLen = in.u16(at + 2);
    distance = std::int32_t(in.u32(at + 8));
    std::size_t p = at + 12;
    if (!in.fits(p, 2 * nameLen))
        return fail(error, "record name runs past the end of the data");
    r.name = in.units(p, nameLen);
    p += 2 * nameLen;
    switch (type) {
    case PropertyBlob::Int32:
        if (!in.fits(p, 4))
            return fail(error, "integer value runs past the end of the data");
        r.type = PropertyBlob::Int32;
        r.integer = std::int32_t(in.u32(p));
        break;
    case PropertyBlob::Text: {
        if (!in.fits(p, 4))
            return fail(error, "text length runs past the end of the data");
        const std::size_t len = in.u32(p);
        if (len > (std::size_t(1) << 30) || !in.fits(p + 4, 2 * len))
            return fail(error, "text value runs past the end of the data");
        r.type = PropertyBlob::Text;
        r.text = in.units(p + 4, len);
        break;
    }
    case PropertyBlob::ByteArray: {
        if (!in.fits(p, 10))
            return fail(error, "byte array header runs past the end of the data");
        if (in.u16(p) != 1)
            return fail(error, "byte array with other than one dimension");
        const std::size_t count = in.u32(p + 2);
        if (!in.fits(p + 10, count))
            return fail(error, "byte array runs past the end of the data");
        r.type = PropertyBlob::ByteArray;
        r.bytes.assign(in.at(p + 10), in.at(p + 10) + count);
        break;
    }
    default:
        return fail(error, "unknown value type " + std::to_string(type));
    }
    return true;
}
}  // namespace

std::u16string u16(const char* ascii)
{
    std::u16string s;
    for (; *ascii; ++ascii)
        s.push_back(char16_t(static_cast<unsigned char>(*ascii)));
    return s;
}

std::uint32_t PropertyBlob::nameHash(const std::u16string& name)
{
    std::uint32_t h = 0x811C9DC5u;
    for (char16_t c : name) {
        if (c >= u'A' && c <= u'Z')
            c = char16_t(c - u'A' + u'a');
        h = (h ^ std::uint8_t(c)) * 0x01000193u;
        h = (h ^ std::uint8_t(c >> 8)) * 0x01000193u;
    }
    return h;
}

void PropertyBlob::writeInt(const std::u16string& name, std::int32_t value)
{
    Record r{Int32, name, value, {}, {}};
    records_.push_back(std::move(r));
}

void PropertyBlob::writeText(const std::u16string& name, const std::u16string& value)
{
    Record r{Text, name, 0, value, {}};
    records_.push_back(std::move(r));
}

void PropertyBlob::writeBytes(const std::u16string& name, const ByteVector& value)
{
    Record r{ByteArray, name, 0, {}, value};
    records_.push_back(std::move(r));
}

const PropertyBlob::Record* PropertyBlob::find(const std::u16string& name) const
{
    for (const Record& r : records_)
        if (r.name == name)
            return &r;
    return nullptr;
}

bool PropertyBlob::has(const std::u16string& name) const
{
    return find(name) != nullptr;
}

std::int32_t PropertyBlob::readInt(const std::u16string& name) const
{
    const Record* r = find(name);
    return r && r->type == Int32 ? r->integer : 0;
}

std::u16string PropertyBlob::readText(const std::u16string& name) const
{
    const Record* r = find(name);
    return r && r->type == Text ? r->text : std::u16string();
}

ByteVector PropertyBlob::readBytes(const std::u16string& name) const
{
    const Record* r = find(name);
    return r && r->type == ByteArray ? r->bytes : ByteVector();
}

ByteVector PropertyBlob::serialize() const
{
    ByteVector out;
    put32(out, kMagic);
    put32(out, 0);
    std::vector<std::size_t> starts;
    for (const Record& r : records_) {
        starts.push_back(out.size());
        put16(out, r.type);
        put16(out, std::uint16_t(r.name.size()));
        put32(out, nameHash(r.name));
        put32(out, 0);  // distance, linked below
        putUnits(out, r.name);
        switch (r.type) {
        case Int32:
            put32(out, std::uint32_t(r.integer));
            break;
        case Text:
            put32(out, std::uint32_t(r.text.size()));
            putUnits(out, r.text);
            break;
        case ByteArray:
            put16(out, 1);
            put32(out, std::uint32_t(r.bytes.size()));
            put32(out, 0);
            out.insert(out.end(), r.bytes.begin(), r.bytes.end());
            break;
        }
        while (out.size() % 4)
            out.push_back(0);
    }
    for (std::size_t i = 0; i < starts.size(); ++i) {
        const std::size_t next = i + 1 < starts.size() ? starts[i + 1] : starts.front();
        set32(out, starts[i] + 8, std::uint32_t(std::int64_t(next) - std::int64_t(starts[i])));
    }
    set32(out, 4, std::uint32_t(out.size()));
    return out;
}

std::optional<PropertyBlob> PropertyBlob::parse(const std::uint8_t* data, std::size_t size, std::string* error)
{
    const Reader in(data, size);
    if (!in.fits(0, 8)) {
        fail(error, "too short for a property bag");
        return std::nullopt;
    }
    if (in.u32(0) != kMagic) {
        fail(error, "not a property bag (wrong magic number)");
        return std::nullopt;
    }
    const std::size_t total = in.u32(4);
    if (total < 8 || total > size) {
        fail(error, "the stated length does not match the data");
        return std::nullopt;
    }
    PropertyBlob blob;
    if (total == 8)
        return blob;  // no records at all
    const Reader body(data, total);
    std::set<std::size_t> seen;
    std::size_t at = 8;
    while (true) {
        if (at % 4 || at < 8 || at >= total || !seen.insert(at).second) {
            fail(error, "record links are broken");
            return std::nullopt;
        }
        Record r{Int32, {}, 0, {}, {}};
        std::int32_t distance = 0;
        if (!readRecord(body, at, r, distance, error))
            return std::nullopt;
        blob.records_.push_back(std::move(r));
        const std::int64_t next = std::int64_t(at) + distance;
        if (next == 8)
            break;  // back at the first record: the ring is closed
        if (next < 0) {
            fail(error, "record links are broken");
            return std::nullopt;
        }
        at = std::size_t(next);
    }
    return blob;
}

}  // namespace vexorin::graph
