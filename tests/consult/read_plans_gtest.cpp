// Every reader's cycle as data, and its decode step on replies recorded from
// a session (tests/fixtures/identity_session.txt) and from the simulator.
#include "consult/fault_codes.h"
#include "consult/read_plans.h"

#include <gtest/gtest.h>

using namespace vexorin::consult;

namespace {
Bytes hex(const std::string& text)
{
    Bytes out;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2)
        out.push_back(std::uint8_t(std::stoi(text.substr(i, 2), nullptr, 16)));
    return out;
}
const Bytes kStopPair{0x30, 0x30};
}  // namespace

TEST(ReadPlans, PartNumberCycleAndItsRecordedReply)
{
    const Cycle c = partNumberCycle();
    EXPECT_EQ(c.send, hex("d0f0"));
    EXPECT_EQ(c.expect, 26u);
    EXPECT_EQ(c.after, kStopPair);
    EXPECT_TRUE(c.clearFirst);
    EXPECT_FALSE(c.settle);
    EXPECT_EQ(c.timeoutMs, 2000);
    const IdentityReply r = decodePartNumber(hex("2fff1600000000000000000000000000000000003330503030ff1600"));
    EXPECT_EQ(r.label, "30P00");
    EXPECT_EQ(r.cells[0], "2F");
    EXPECT_EQ(r.cells[1], "FF");
    EXPECT_EQ(r.cells[20], "33");
    EXPECT_EQ(r.cells[26], "0");  // past the 26 bytes waited for
}

TEST(ReadPlans, KValueCycleAndItsRecordedReply)
{
    const Cycle c = kValueCycle();
    EXPECT_EQ(c.send, hex("c9ff2bc9ff2cf0"));
    EXPECT_EQ(c.expect, 10u);
    EXPECT_EQ(c.after, kStopPair);
    const IdentityReply r = decodeKValue(hex("36ff2b36ff2cff021234ff02"));
    EXPECT_EQ(r.label, "4660");
    EXPECT_EQ(r.cells[0], "54");
    EXPECT_EQ(r.cells[8], "18");
    EXPECT_EQ(r.cells[9], "52");
    EXPECT_EQ(r.cells[10], "0");
}

TEST(ReadPlans, FaultCodesCycleAndAReplyOfTwoCodes)
{
    const Cycle c = faultCodesCycle();
    EXPECT_EQ(c.send, hex("d1f0"));
    EXPECT_EQ(c.expect, 32u);
    EXPECT_EQ(c.after, kStopPair);
    // Echo, frame start, length, code 11 seen 3 starts ago, code 34 seen once, then the next frame.
    Bytes reply = hex("2eff0411033401ff04");
    reply.resize(32, 0);
    const FaultScan scan = scanFaultReply(ReplyBuffer(reply, kFaultCodesReplyLength, 2));
    EXPECT_EQ(scan.bytes, (std::vector<int>{4, 0x11, 3, 0x34, 1}));
    EXPECT_TRUE(scan.endedAtFrameStart);
    EXPECT_NE(findFaultCode(0x11), nullptr);
    EXPECT_NE(findFaultCode(0x34), nullptr);
}

TEST(ReadPlans, AllSensorsCycleOfTheStreamAndTheActiveTest)
{
    const Cycle c = allSensorsCycle();
    EXPECT_EQ(c.send, registerStreamRequest(kAllSensorRegisters));
    EXPECT_EQ(c.send.size(), 33u);
    EXPECT_EQ(c.send.back(), CmdGo);
    EXPECT_EQ(c.expect, 50u);
    EXPECT_EQ(c.after, kStopPair);
    EXPECT_EQ(allSensorsCycle(300).timeoutMs, 300);
}

TEST(ReadPlans, BurstCycleSendsWhatCanGoOnTheWire)
{
    const Cycle c = burstCycle(burstRequest(0x80, 0x10), true);
    ASSERT_EQ(c.send.size(), 25u);
    EXPECT_EQ(c.send[0], 0xC9);
    EXPECT_EQ(c.send[1], 0x80);
    EXPECT_EQ(c.send[2], 0x10);
    EXPECT_EQ(c.send[23], 0x17);
    EXPECT_EQ(c.send.back(), CmdGo);
    EXPECT_EQ(c.expect, 34u);
    EXPECT_EQ(c.after, Bytes{0x30});
    EXPECT_TRUE(c.settle);
    // A value past 255 cannot be sent: it is left out.
    EXPECT_EQ(sendable({0xC9, 0x80, 255, 0xC9, 0x80, 256, -1}), hex("c980ffc980"));
}

TEST(ReadPlans, BurstDataAreTheEightBytesBehindTheFrameStart)
{
    Bytes reply(24, 0x36);
    reply.push_back(0xFF);
    reply.push_back(0x08);
    for (int i = 1; i <= 8; ++i)
        reply.push_back(std::uint8_t(i * 3));
    const auto data = burstData(reply);
    EXPECT_EQ(data[0], 3);
    EXPECT_EQ(data[7], 24);
    EXPECT_TRUE(echoOk(reply[0]));
    EXPECT_FALSE(echoOk(0xC9));
    // A short reply reads 0 where it does not reach.
    reply.resize(30);
    EXPECT_EQ(burstData(reply)[7], 0);
}
