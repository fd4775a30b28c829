#include "consult/wire.h"

#include <gtest/gtest.h>

using namespace vexorin::consult;

namespace {
ReplyBuffer partNumberReply(const std::string& five)
{
    Bytes r(26, 0);
    r[0] = 0x2F;
    r[1] = 0xFF;
    r[2] = 22;
    for (int i = 0; i < 5; ++i)
        r[std::size_t(20 + i)] = static_cast<std::uint8_t>(five[std::size_t(i)]);
    return ReplyBuffer(r, kPartNumberReplyLength);
}
}  // namespace

TEST(Wire, CommandBytes)
{
    EXPECT_EQ(CmdInit, (Bytes{0xFF, 0xFF, 0xEF}));
    EXPECT_EQ(CmdGo, 0xF0);
    EXPECT_EQ(CmdStop, 0x30);
    EXPECT_EQ(CmdRegisterStream, 0x5A);
    EXPECT_EQ(CmdReadPartNumber, 0xD0);
    EXPECT_EQ(CmdReadFaults, 0xD1);
    EXPECT_EQ(CmdClearFaults, 0xC1);
    EXPECT_EQ(CmdReadMemory, 0xC9);
    EXPECT_EQ(CmdActiveTest, 0x0A);
}

TEST(Wire, Requests)
{
    EXPECT_EQ(partNumberRequest(), (Bytes{0xD0, 0xF0}));
    EXPECT_EQ(faultCodesRequest(), (Bytes{0xD1, 0xF0}));
    EXPECT_EQ(kValueRequest(), (Bytes{201, 255, 43, 201, 255, 44, 240}));
    const Bytes all = registerStreamRequest(kAllSensorRegisters);
    ASSERT_EQ(all.size(), 33u);
    EXPECT_EQ(all[0], 90);
    EXPECT_EQ(all[1], 11);
    EXPECT_EQ(all[30], 90);
    EXPECT_EQ(all[31], 26);
    EXPECT_EQ(all[32], 240);
    EXPECT_EQ(memoryReadRequest({0x8000, 0x80FF}), (Bytes{0xC9, 0x80, 0x00, 0xC9, 0x80, 0xFF, 0xF0}));
}

TEST(ReplyBufferTest, PositionsCountFromOneAndUnreachedReadZero)
{
    const ReplyBuffer b(Bytes{7, 8, 9}, 10);
    EXPECT_EQ(b(1), 7);
    EXPECT_EQ(b(3), 9);
    EXPECT_EQ(b(4), 0);
    EXPECT_EQ(b(10), 0);
    EXPECT_EQ(b(11), 0);
    EXPECT_EQ(b(0), 0);
    EXPECT_EQ(b(-5), 0);
}

TEST(ReplyBufferTest, OnlyTheFirstNAreCopied)
{
    const ReplyBuffer b(Bytes{1, 2, 3, 4, 5}, 3);
    EXPECT_EQ(b(3), 3);
    EXPECT_EQ(b(4), 0);
}

TEST(ReplyBufferTest, SkipStartsLater)
{
    const ReplyBuffer b(Bytes{0x2E, 0xFF, 2, 0x55, 0}, 32, 2);
    EXPECT_EQ(b(1), 2);
    EXPECT_EQ(b(2), 0x55);
    EXPECT_EQ(b(3), 0);
}

TEST(ReplyBufferTest, LimitHolds)
{
    const ReplyBuffer b(Bytes(40000, 1), 40000);
    EXPECT_EQ(b.size(), ReplyBuffer::kLimit);
    EXPECT_EQ(b(35000), 1);
    EXPECT_EQ(b(35001), 0);
}

TEST(HexText, UpperCaseWithoutLeadingZero)
{
    EXPECT_EQ(hexText(0), "0");
    EXPECT_EQ(hexText(10), "A");
    EXPECT_EQ(hexText(0x0F), "F");
    EXPECT_EQ(hexText(0x10), "10");
    EXPECT_EQ(hexText(0xFF), "FF");
}

TEST(Hex2AsciiTest, AccumulatesAcrossCalls)
{
    Hex2Ascii h;
    h("33");
    h("30");
    EXPECT_EQ(h("50"), "30P");
    h.clear();
    EXPECT_EQ(h("41"), "A");
}

TEST(Hex2AsciiTest, SingleDigitIsOnePieceWithItsValue)
{
    Hex2Ascii h;
    EXPECT_EQ(h("A"), std::string(1, '\n'));
    Hex2Ascii z;
    EXPECT_EQ(z("0"), std::string(1, '\0'));
}

TEST(PartNumber, SpellsThirtyP00)
{
    EXPECT_EQ(partNumberText(partNumberReply("30P00")), "23710 - 30P00");
}

TEST(PartNumber, ZeroByteAddsCharacterOfCodeZero)
{
    std::string five = "30P00";
    five[1] = '\0';
    const std::string text = partNumberText(partNumberReply(five));
    EXPECT_EQ(text.size(), std::string("23710 - 30P00").size());
    EXPECT_EQ(text, std::string("23710 - 3") + '\0' + "P00");
}

TEST(KValue, DoubleConversion)
{
    EXPECT_EQ(kValueFromBytes(0x12, 0x34), 4660);
    EXPECT_EQ(kValueFromBytes(0x01, 0x34), 308);  // text 134, not 0x0134
    EXPECT_EQ(kValueFromBytes(0x0A, 0x10), 0);    // A10 is no number
    EXPECT_EQ(kValueFromBytes(0x00, 0x00), 0);    // text 00
    EXPECT_EQ(kValueFromBytes(0x99, 0x99), 0x9999 - 0x10000);  // four digits read as a signed 16-bit number
    EXPECT_EQ(kValueFromBytes(0x32, 0x76), 0x3276);
    EXPECT_EQ(kValueFromBytes(0x40, 0x00), 0x400);  // text 400: the low byte's lone 0 is one digit
    EXPECT_EQ(kValueFromBytes(0x05, 0x07), 0x57);
}
