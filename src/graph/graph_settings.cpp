#include "graph/graph_settings.h"

#include <cstring>

namespace vexorin::graph {

namespace {
template <typename T>
void put(ByteVector& out, T v)
{
    std::uint8_t b[sizeof(T)];
    std::memcpy(b, &v, sizeof(T));  // the machine is little-endian, as the format
    out.insert(out.end(), b, b + sizeof(T));
}

template <typename T>
T get(const ByteVector& in, std::size_t at)
{
    T v;
    std::memcpy(&v, in.data() + at, sizeof(T));
    return v;
}

std::int16_t vbBool(bool b)
{
    return b ? -1 : 0;
}
}  // namespace

static_assert(sizeof(float) == 4 && sizeof(double) == 8, "IEEE sizes");

ByteVector GraphControlRecord::bytes() const
{
    ByteVector out;
    put<std::int16_t>(out, vbBool(Redraw));
    put<std::int16_t>(out, Appearance);
    put<std::int16_t>(out, BorderStyle);
    return out;
}

bool GraphControlRecord::fromBytes(const ByteVector& b, GraphControlRecord& out)
{
    if (b.size() != 6)
        return false;
    out.Redraw = get<std::int16_t>(b, 0) != 0;
    out.Appearance = get<std::int16_t>(b, 2);
    out.BorderStyle = get<std::int16_t>(b, 4);
    return true;
}

ByteVector GraphSettings::bytes() const
{
    ByteVector out;
    for (std::uint32_t c : {BackColor, LineColor, BarColor, PointColor, AxisColor, GridColor})
        put(out, c);
    put(out, FixedPoints);
    put(out, XGridInc);
    put(out, YGridInc);
    put(out, MaxValue);
    put(out, MinValue);
    for (bool b : {FadeIn, ShowGrid, ShowAxis, ShowLines, ShowBars, ShowPoints})
        put<std::int16_t>(out, vbBool(b));
    put(out, BarWidth);
    return out;
}

bool GraphSettings::fromBytes(const ByteVector& b, GraphSettings& out)
{
    if (b.size() != kRecordSize)
        return false;
    GraphSettings s;
    std::uint32_t* colors[] = {&s.BackColor, &s.LineColor, &s.BarColor, &s.PointColor, &s.AxisColor, &s.GridColor};
    for (std::size_t i = 0; i < 6; ++i)
        *colors[i] = get<std::uint32_t>(b, 4 * i);
    s.FixedPoints = get<std::int32_t>(b, 24);
    s.XGridInc = get<std::int32_t>(b, 28);
    s.YGridInc = get<double>(b, 32);
    s.MaxValue = get<double>(b, 40);
    s.MinValue = get<double>(b, 48);
    bool* flags[] = {&s.FadeIn, &s.ShowGrid, &s.ShowAxis, &s.ShowLines, &s.ShowBars, &s.ShowPoints};
    for (std::size_t i = 0; i < 6; ++i)
        *flags[i] = get<std::int16_t>(b, 56 + 2 * i) != 0;
    s.BarWidth = get<float>(b, 68);
    out = s;
    return true;
}

GraphSettings GraphSettings::mainWindow()
{
    GraphSettings s;
    s.BackColor = 0;
    s.LineColor = 0x00FFFF80;
    s.BarColor = 0x00FF8080;
    s.PointColor = 0x00FFFF80;
    s.AxisColor = 0;
    s.GridColor = 0x00FF8080;
    s.FixedPoints = 60;
    s.XGridInc = 1;
    s.YGridInc = 10;
    s.MaxValue = 50;
    s.MinValue = 0;
    s.FadeIn = false;
    s.ShowGrid = false;
    s.ShowAxis = false;
    s.ShowLines = true;
    s.ShowBars = true;
    s.ShowPoints = true;
    s.BarWidth = 0.5f;
    return s;
}

}  // namespace vexorin::graph
