#include "graph/points.h"

#include "ui/binary_files.h"

#include <cstring>

namespace vexorin::graph {

std::u16string Point::state() const
{
    std::uint8_t b[8];
    std::memcpy(b, &Value, 8);
    std::u16string s;
    for (int i = 0; i < 4; ++i)
        s.push_back(char16_t(b[2 * i] | (b[2 * i + 1] << 8)));
    return s;
}

void Point::setState(const std::u16string& s)
{
    std::uint8_t b[8] = {};
    for (std::size_t i = 0; i < 4 && i < s.size(); ++i) {
        b[2 * i] = std::uint8_t(s[i] & 0xFF);
        b[2 * i + 1] = std::uint8_t(s[i] >> 8);
    }
    std::memcpy(&Value, b, 8);
}

PropertyBlob Point::blob() const
{
    PropertyBlob b;
    b.writeText(u16("State"), state());
    return b;
}

Points::Points()
{
    Clear();  // fires Changed before anyone listens
}

Point& Points::Add(double value)
{
    items_.push_back(Point{value});
    fire();
    return items_.back();
}

bool Points::Remove(int index)
{
    if (index < 1 || index > Count())
        return false;
    items_.erase(items_.begin() + (index - 1));
    fire();
    return true;
}

void Points::Clear()
{
    items_ = {};
    fire();
}

std::vector<double> Points::values() const
{
    std::vector<double> v;
    v.reserve(items_.size());
    for (const Point& p : items_)
        v.push_back(p.Value);
    return v;
}

PropertyBlob Points::blob() const
{
    PropertyBlob b;
    int k = 0;
    for (const Point& p : items_)
        b.writeBytes(u16(("Item" + std::to_string(++k)).c_str()), p.blob().serialize());
    b.writeInt(u16("Count"), k);
    return b;
}

bool Points::fromBlob(const PropertyBlob& blob, std::string* error)
{
    Clear();
    const std::int32_t count = blob.readInt(u16("Count"));
    if (count < 0) {
        if (error)
            *error = "negative point count";
        return false;
    }
    for (std::int32_t k = 1; k <= count; ++k) {
        const ByteVector bytes = blob.readBytes(u16(("Item" + std::to_string(k)).c_str()));
        const auto item = PropertyBlob::parse(bytes, error);
        if (!item)
            return false;
        Point p;
        p.setState(item->readText(u16("State")));
        items_.push_back(p);
    }
    return true;
}

bool Points::Save(const std::string& path, std::string* error) const
{
    return files::WriteBytes(path, blob().serialize(), error);
}

bool Points::Load(const std::string& path, std::string* error)
{
    ByteVector bytes;
    if (!files::ReadBytes(path, bytes, error))
        return false;
    const auto b = PropertyBlob::parse(bytes, error);
    if (!b) {
        Clear();  // the collection is cleared before the bag fails
        return false;
    }
    return fromBlob(*b, error);
}

}  // namespace vexorin::graph
