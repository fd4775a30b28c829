// Fast Logging's bytes: the one request and the stop pair, frames laid out as
// the read's 50-byte reply, a frame held until the next frame start confirms
// it, and the frames around a lost or an extra byte dropped, not shifted.
#include "sensors/fast_logging_frames.h"

#include <gtest/gtest.h>

using namespace vexorin::consult;
using namespace vexorin::sensors;

namespace {
// What the ECU sends back first: the request echoed, 32 bytes.
Bytes echoes()
{
    Bytes e;
    for (std::uint8_t r : kAllSensorRegisters)
        e.insert(e.end(), {0xA5, r});
    return e;
}

// Sixteen data bytes that tell frame `n` apart, none of them FF.
Bytes data(std::uint8_t n)
{
    Bytes d;
    for (std::uint8_t i = 0; i < 16; ++i)
        d.push_back(std::uint8_t(n * 16 + i));
    return d;
}

void appendFrame(Bytes& line, const Bytes& d)
{
    line.insert(line.end(), {0xFF, 16});
    line.insert(line.end(), d.begin(), d.end());
}

// The data bytes of each reply (positions 35 to 50).
std::vector<Bytes> dataOf(const std::vector<Bytes>& replies)
{
    std::vector<Bytes> out;
    for (const Bytes& r : replies)
        out.emplace_back(r.begin() + 34, r.end());
    return out;
}
}  // namespace

TEST(FastLoggingFrames, PlanAsksOnceForTheSixteenRegistersAndStopsWithThePair)
{
    const StreamPlan plan = fastLoggingPlan();
    ASSERT_EQ(plan.request.size(), 33u);
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_EQ(plan.request[2 * i], 90);
        EXPECT_EQ(plan.request[2 * i + 1], kAllSensorRegisters[i]);
    }
    EXPECT_EQ(plan.request.back(), 240);
    EXPECT_EQ(plan.stop, (Bytes{48, 48}));
}

TEST(FastLoggingFrames, AFrameIsLaidOutAsTheReadsReply)
{
    const Bytes reply = allSensorsReplyOf(data(3));
    ASSERT_EQ(reply.size(), 50u);
    for (std::size_t i = 0; i < 32; ++i)
        EXPECT_EQ(reply[i], 0);
    EXPECT_EQ(reply[32], 255);  // position 33
    EXPECT_EQ(reply[33], 16);
    EXPECT_EQ(Bytes(reply.begin() + 34, reply.end()), data(3));
}

TEST(FastLoggingFrames, EveryFrameBehindTheEchoesOnceTheNextOneStarts)
{
    FastLoggingFrames frames;
    Bytes line = echoes();
    for (std::uint8_t n = 1; n <= 3; ++n)
        appendFrame(line, data(n));
    // The third waits for the byte behind it.
    EXPECT_EQ(dataOf(frames.feed(line)), (std::vector<Bytes>{data(1), data(2)}));
    EXPECT_EQ(dataOf(frames.feed(Bytes{0xFF})), std::vector<Bytes>{data(3)});
    EXPECT_EQ(frames.dropped(), 0u);
    EXPECT_EQ(frames.skipped(), 0u);
}

TEST(FastLoggingFrames, ByteByByteGivesTheSameFrames)
{
    Bytes line = echoes();
    for (std::uint8_t n = 1; n <= 4; ++n)
        appendFrame(line, data(n));
    FastLoggingFrames whole, cut;
    const std::vector<Bytes> expected = whole.feed(line);
    std::vector<Bytes> got;
    for (std::uint8_t b : line)
        for (const Bytes& r : cut.feed(&b, 1))
            got.push_back(r);
    EXPECT_EQ(got, expected);
    EXPECT_EQ(got.size(), 3u);
}

TEST(FastLoggingFrames, ALostByteDropsItsFrameAndTheNextUpToTheNextFrameStart)
{
    FastLoggingFrames frames;
    Bytes line = echoes();
    appendFrame(line, data(1));
    Bytes short2 = data(2);
    short2.erase(short2.begin() + 5);  // one byte lost on the line
    appendFrame(line, short2);
    for (std::uint8_t n = 3; n <= 5; ++n)
        appendFrame(line, data(n));
    line.push_back(0xFF);
    // Frame 2 borrowed frame 3's start and frame 3 lost it: neither is decoded shifted.
    EXPECT_EQ(dataOf(frames.feed(line)), (std::vector<Bytes>{data(1), data(4), data(5)}));
    EXPECT_EQ(frames.dropped(), 1u);
    EXPECT_EQ(frames.skipped(), 17u);  // frame 3's length and its sixteen data bytes
}

TEST(FastLoggingFrames, AnExtraByteDropsItsFrame)
{
    FastLoggingFrames frames;
    Bytes line = echoes();
    appendFrame(line, data(1));
    Bytes long2 = data(2);
    long2.insert(long2.begin() + 8, 0x55);
    appendFrame(line, long2);
    appendFrame(line, data(3));
    line.push_back(0xFF);
    EXPECT_EQ(dataOf(frames.feed(line)), (std::vector<Bytes>{data(1), data(3)}));
    EXPECT_EQ(frames.dropped(), 1u);
    EXPECT_EQ(frames.skipped(), 1u);  // its last byte, standing where frame 3 should have started
}

TEST(FastLoggingFrames, GarbageBeforeAFrameStartIsPassedOver)
{
    FastLoggingFrames frames;
    Bytes line = echoes();
    line.insert(line.end(), {0x12, 0xFF, 0x07, 0xFF, 0xFF});
    line.push_back(16);
    const Bytes d = data(6);
    line.insert(line.end(), d.begin(), d.end());
    line.push_back(0xFF);
    EXPECT_EQ(dataOf(frames.feed(line)), std::vector<Bytes>{data(6)});
    EXPECT_EQ(frames.skipped(), 4u);  // 12, FF 07, the first FF of FF FF
}

TEST(FastLoggingFrames, TheStopReplyBehindTheLastFrameDropsIt)
{
    FastLoggingFrames frames;
    Bytes line = echoes();
    appendFrame(line, data(1));
    appendFrame(line, data(2));
    line.push_back(0xCF);
    EXPECT_EQ(dataOf(frames.feed(line)), std::vector<Bytes>{data(1)});
    EXPECT_EQ(frames.dropped(), 1u);
}
