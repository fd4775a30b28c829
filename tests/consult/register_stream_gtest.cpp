// The register stream reader: echoes passed over, frames whole whatever the
// pieces they arrive in, a lost frame start found again.
#include "consult/register_stream.h"

#include <gtest/gtest.h>

using namespace vexorin::consult;

namespace {
const Bytes kEchoes{0xA5, 0x00, 0xA5, 0x01, 0xA5, 0x04, 0xA5, 0x05};
}

TEST(RegisterStream, PlanAsksForTheRegistersAndEndsWithOneStop)
{
    const StreamPlan plan = registerStreamPlan({0x00, 0x01, 0x04, 0x05});
    EXPECT_EQ(plan.request, (Bytes{0x5A, 0x00, 0x5A, 0x01, 0x5A, 0x04, 0x5A, 0x05, 0xF0}));
    EXPECT_EQ(plan.stop, Bytes{48});
}

TEST(RegisterStream, FramesBehindTheEchoes)
{
    RegisterStreamReader reader(4);
    Bytes in = kEchoes;
    for (const Bytes& f : {Bytes{0, 60, 1, 44}, Bytes{0, 61, 1, 45}})
        in.insert(in.end(), {0xFF, 0x04, f[0], f[1], f[2], f[3]});
    const auto frames = reader.feed(in);
    ASSERT_EQ(frames.size(), 2u);
    EXPECT_EQ(frames[0], (Bytes{0, 60, 1, 44}));
    EXPECT_EQ(frames[1], (Bytes{0, 61, 1, 45}));
    EXPECT_EQ(reader.skipped(), 0u);
}

TEST(RegisterStream, ByteByByteGivesTheSameFrames)
{
    RegisterStreamReader reader(4);
    Bytes in = kEchoes;
    in.insert(in.end(), {0xFF, 0x04, 0xFF, 0xFF, 0x03, 0xFF, 0xFF, 0x04, 1, 2, 3, 4});
    std::vector<Bytes> frames;
    for (std::uint8_t b : in)
        for (const Bytes& f : reader.feed(&b, 1))
            frames.push_back(f);
    ASSERT_EQ(frames.size(), 2u);
    EXPECT_EQ(frames[0], (Bytes{0xFF, 0xFF, 0x03, 0xFF}));  // a data byte may be FF
    EXPECT_EQ(frames[1], (Bytes{1, 2, 3, 4}));
}

TEST(RegisterStream, GarbageIsPassedOverToTheNextFrameStart)
{
    RegisterStreamReader reader(4);
    reader.feed(kEchoes);
    const Bytes in{0x12, 0x34, 0xFF, 0x09, 0xFF, 0xFF, 0x04, 7, 8, 9, 10, 0xCF};
    const auto frames = reader.feed(in);
    ASSERT_EQ(frames.size(), 1u);
    EXPECT_EQ(frames[0], (Bytes{7, 8, 9, 10}));
    EXPECT_EQ(reader.skipped(), 6u);  // 12 34, FF 09, the first FF, and the stop reply
}

TEST(RegisterStream, NothingBeforeTheEchoesAreThrough)
{
    RegisterStreamReader reader(4);
    EXPECT_TRUE(reader.feed(Bytes{0xFF, 0x04, 1, 2, 3, 4, 0xFF, 0x04}).empty());
}
