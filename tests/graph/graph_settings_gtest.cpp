#include "graph/graph_settings.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace vexorin::graph;

TEST(GraphSettingsTest, RecordLayout)
{
    GraphSettings s;
    const ByteVector b = s.bytes();
    ASSERT_EQ(b.size(), 72u);
    auto u32 = [&](std::size_t at) { std::uint32_t v; std::memcpy(&v, &b[at], 4); return v; };
    auto dbl = [&](std::size_t at) { double v; std::memcpy(&v, &b[at], 8); return v; };
    auto i16 = [&](std::size_t at) { std::int16_t v; std::memcpy(&v, &b[at], 2); return v; };
    float bw;
    std::memcpy(&bw, &b[68], 4);
    EXPECT_EQ(u32(0), 0x00FFFFFFu);
    EXPECT_EQ(u32(4), 0x00A98354u);
    EXPECT_EQ(u32(8), 0x00DEA68Du);
    EXPECT_EQ(u32(12), 0x00FFFFC0u);
    EXPECT_EQ(u32(16), 0u);
    EXPECT_EQ(u32(20), 0x00DFDFDFu);
    EXPECT_EQ(u32(24), 20u);
    EXPECT_EQ(u32(28), 1u);
    EXPECT_EQ(dbl(32), 10.0);
    EXPECT_EQ(dbl(40), 100.0);
    EXPECT_EQ(dbl(48), 0.0);
    EXPECT_EQ(i16(56), 0);   // FadeIn
    EXPECT_EQ(i16(58), -1);  // ShowGrid
    EXPECT_EQ(i16(60), 0);   // ShowAxis
    EXPECT_EQ(i16(62), -1);
    EXPECT_EQ(i16(64), -1);
    EXPECT_EQ(i16(66), -1);
    EXPECT_FLOAT_EQ(bw, 0.8f);
}

TEST(GraphSettingsTest, RoundTripAndMainWindowValues)
{
    const GraphSettings m = GraphSettings::mainWindow();
    GraphSettings back;
    ASSERT_TRUE(GraphSettings::fromBytes(m.bytes(), back));
    EXPECT_EQ(back.bytes(), m.bytes());
    EXPECT_EQ(back.FixedPoints, 60);
    EXPECT_EQ(back.MaxValue, 50);
    EXPECT_EQ(back.BarColor, 0x00FF8080u);
    EXPECT_FALSE(back.ShowGrid);
    EXPECT_FLOAT_EQ(back.BarWidth, 0.5f);
    EXPECT_FALSE(GraphSettings::fromBytes(ByteVector(71), back));
    EXPECT_FALSE(GraphSettings::fromBytes(ByteVector(73), back));
}

TEST(GraphSettingsTest, ControlRecord)
{
    GraphControlRecord c;
    const ByteVector b = c.bytes();
    EXPECT_EQ(b, (ByteVector{0xFF, 0xFF, 1, 0, 1, 0}));
    GraphControlRecord back;
    back.Redraw = false;
    ASSERT_TRUE(GraphControlRecord::fromBytes(b, back));
    EXPECT_TRUE(back.Redraw);
    EXPECT_FALSE(GraphControlRecord::fromBytes(ByteVector(5), back));
}
