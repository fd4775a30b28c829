// The Consult wire protocol as the simulated ECU speaks it.
#include "sim/ecu_simulator.h"
#include "sim_test_support.h"

#include <gtest/gtest.h>

#include <ostream>
#include <set>
#include <string>

using namespace vexorin::sim;
using namespace vexorin::sim::test;

namespace {

class Protocol : public ::testing::Test {
protected:
    void SetUp() override { handshake(ecu); }
    EcuSimulator ecu{7};
};

// ----- handshake ---------------------------------------------------------

TEST(Handshake, FfFfEfIsAnswered10)
{
    EcuSimulator ecu;
    EXPECT_FALSE(ecu.initialised());
    ecu.receive(Bytes{0xFF, 0xFF, 0xEF});
    EXPECT_EQ(drain(ecu), Bytes{0x10});
    EXPECT_TRUE(ecu.initialised());
}

TEST(Handshake, OneOrManyLeadingFfWillDo)
{
    for (int leads : {1, 2, 5}) {
        EcuSimulator ecu;
        Bytes b(std::size_t(leads), 0xFF);
        b.push_back(0xEF);
        ecu.receive(b);
        EXPECT_EQ(drain(ecu), Bytes{0x10}) << leads;
    }
}

TEST(Handshake, BytesArrivingOneAtATime)
{
    EcuSimulator ecu;
    for (std::uint8_t b : {0xFF, 0xFF, 0xEF})
        ecu.receive(&b, 1);
    EXPECT_EQ(drain(ecu), Bytes{0x10});
}

TEST(Handshake, EfWithoutFfIsNotAHandshake)
{
    EcuSimulator ecu;
    ecu.receive(Bytes{0xEF, 0xFE, 0xEF});
    EXPECT_EQ(ecu.pending(), 0u);
    EXPECT_FALSE(ecu.initialised());
}

TEST(Handshake, CommandsBeforeTheHandshakeAreIgnored)
{
    EcuSimulator ecu;
    ecu.receive(Bytes{0xD0, 0xF0, 0x5A, 0x00, 0xF0, 0x30, 0xD1, 0xF0, 0xC1, 0x0A, 0x88, 0x01});
    EXPECT_EQ(ecu.pending(), 0u);
    EXPECT_TRUE(ecu.transmit(100).empty());
    EXPECT_FALSE(ecu.streaming());
    EXPECT_EQ(ecu.activeTestValue(0x88), 0);
}

TEST_F(Protocol, HandshakeIsAnsweredAgainInASession)
{
    ecu.receive(Bytes{0xFF, 0xFF, 0xEF});
    EXPECT_EQ(drain(ecu), Bytes{0x10});
}

TEST_F(Protocol, SessionSurvivesAStop)
{
    ecu.receive(Bytes{0xD0, 0xF0});
    ecu.transmit(30);
    ecu.receive(Bytes{0x30});
    drain(ecu);
    EXPECT_TRUE(ecu.initialised());
    ecu.receive(Bytes{0xD1, 0xF0});
    EXPECT_EQ(ecu.transmit(5), (Bytes{0x2E, 0xFF, 0x02, 0x55, 0x00}));
}

TEST_F(Protocol, LoneFfThenACommandRunsTheCommand)
{
    ecu.receive(Bytes{0xFF, 0xD0});
    EXPECT_EQ(drain(ecu), Bytes{0x2F});
}

// ----- echoes ------------------------------------------------------------

struct EchoCase {
    Bytes request;
    Bytes echo;
};

std::string hex(const Bytes& b, const char* sep)
{
    static const char digits[] = "0123456789ABCDEF";
    std::string s;
    for (std::uint8_t c : b) {
        if (!s.empty())
            s += sep;
        s += digits[c >> 4];
        s += digits[c & 15];
    }
    return s;
}

void PrintTo(const EchoCase& c, std::ostream* os)
{
    *os << hex(c.request, " ") << " -> " << hex(c.echo, " ");
}

std::string echoName(const ::testing::TestParamInfo<EchoCase>& info)
{
    return "Req_" + hex(info.param.request, "_");
}

class Echo : public ::testing::TestWithParam<EchoCase> {};

TEST_P(Echo, CommandByteInvertedThenOperands)
{
    EcuSimulator ecu;
    handshake(ecu);
    ecu.receive(GetParam().request);
    EXPECT_EQ(drain(ecu), GetParam().echo);
    EXPECT_FALSE(ecu.streaming());
}

INSTANTIATE_TEST_SUITE_P(Forms, Echo,
    ::testing::Values(EchoCase{{0x5A, 0x0B}, {0xA5, 0x0B}}, EchoCase{{0x5A, 0x00}, {0xA5, 0x00}},
                      EchoCase{{0xD0}, {0x2F}}, EchoCase{{0xD1}, {0x2E}}, EchoCase{{0xC1}, {0x3E}},
                      EchoCase{{0xC9, 0x12, 0x34}, {0x36, 0x12, 0x34}},
                      EchoCase{{0x0A, 0x80, 0x6E}, {0xF5, 0x80, 0x6E}},
                      // Operands that look like commands are operands.
                      EchoCase{{0xC9, 0xFA, 0xF0}, {0x36, 0xFA, 0xF0}},
                      EchoCase{{0xC9, 0xFB, 0x30}, {0x36, 0xFB, 0x30}},
                      EchoCase{{0xC9, 0xFF, 0x2B}, {0x36, 0xFF, 0x2B}},
                      EchoCase{{0x0A, 0x30, 0xF0}, {0xF5, 0x30, 0xF0}},
                      // A register this ECU does not have.
                      EchoCase{{0x5A, 0x0E}, {0xFE, 0x0E}}, EchoCase{{0x5A, 0xFF}, {0xFE, 0xFF}},
                      EchoCase{{0x5A, 0x30}, {0xFE, 0x30}}),
    echoName);

TEST_F(Protocol, EchoComesOnlyWhenTheCommandIsComplete)
{
    ecu.receive(Bytes{0xC9, 0xFF});
    EXPECT_EQ(ecu.pending(), 0u);
    ecu.receive(Bytes{0x2B});
    EXPECT_EQ(drain(ecu), (Bytes{0x36, 0xFF, 0x2B}));
}

TEST_F(Protocol, UnknownBytesAreIgnored)
{
    ecu.receive(Bytes{0xFD, 0x0F, 0x01, 0x99});
    EXPECT_EQ(ecu.pending(), 0u);
    EXPECT_FALSE(ecu.streaming());
}

TEST_F(Protocol, ActivationByteTestSequence)
{
    // 0A FD 08 is an active test of an unknown code; FD and 0F are no commands; F0 has nothing to start.
    ecu.receive(Bytes{0x0A, 0xFD, 0x08, 0xFD, 0x0F, 0xF0});
    EXPECT_EQ(drain(ecu), (Bytes{0xF5, 0xFD, 0x08}));
    EXPECT_FALSE(ecu.streaming());
    EXPECT_EQ(ecu.activeTestValue(0xFD), 8);
}

TEST_F(Protocol, IncompleteCommandIsDroppedAfterAPause)
{
    ecu.receive(Bytes{0xC9, 0xFF});   // the third byte never comes
    ecu.advance(EcuSimulator::kCommandTimeoutMs + 50);
    ecu.receive(Bytes{0xFF, 0xFF, 0xEF});
    EXPECT_EQ(drain(ecu), Bytes{0x10});
}

TEST_F(Protocol, WithoutAPauseTheNextBytesAreOperands)
{
    ecu.receive(Bytes{0xC9, 0xFF});
    ecu.advance(EcuSimulator::kCommandTimeoutMs - 50);
    ecu.receive(Bytes{0xFF, 0xEF});
    EXPECT_EQ(drain(ecu), (Bytes{0x36, 0xFF, 0xFF}));
}

// ----- register stream ---------------------------------------------------

TEST_F(Protocol, AllSensorReplyLayout)
{
    ecu.receive(registerRequest(sensorRegisters()));
    EXPECT_TRUE(ecu.streaming());
    const Bytes r = ecu.transmit(50);
    ASSERT_EQ(r.size(), 50u);
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_EQ(r[2 * i], 0xA5) << i;
        EXPECT_EQ(r[2 * i + 1], sensorRegisters()[i]) << i;
    }
    EXPECT_EQ(r[32], 0xFF);   // position 33
    EXPECT_EQ(r[33], 16);     // position 34
    for (std::size_t i = 0; i < 16; ++i) {
        std::uint8_t v = 0;
        ASSERT_TRUE(ecu.registerValue(sensorRegisters()[i], v));
        EXPECT_EQ(r[34 + i], v) << "register " << int(sensorRegisters()[i]);
    }
}

TEST_F(Protocol, FrameRepeatsUntilStopped)
{
    ecu.receive(registerRequest({0, 1, 8}));
    EXPECT_EQ(drain(ecu).size(), 6u + 5u);   // echoes and the first frame, nothing more queued
    for (int i = 0; i < 20; ++i) {
        const Bytes f = ecu.transmit(5);
        ASSERT_EQ(f.size(), 5u);
        EXPECT_EQ(f[0], 0xFF);
        EXPECT_EQ(f[1], 3);
        ecu.advance(50);
    }
    EXPECT_TRUE(ecu.streaming());
}

TEST_F(Protocol, FramesCarryFreshValues)
{
    ecu.receive(registerRequest({9}));   // left O2 switches about every half second
    drain(ecu);
    std::set<int> seen;
    for (int i = 0; i < 40; ++i) {
        ecu.advance(100);
        const Bytes f = ecu.transmit(3);
        ASSERT_EQ(f.size(), 3u);
        seen.insert(f[2]);
    }
    EXPECT_GT(seen.size(), 5u);
}

TEST_F(Protocol, TwoByteValueIsHighThenLow)
{
    ecu.receive(registerRequest({0, 1}));
    const Bytes r = drain(ecu);
    ASSERT_EQ(r.size(), 8u);
    const double rpm = (r[6] * 256 + r[7]) * 12.5;
    EXPECT_NEAR(rpm, ecu.engine().rpm, 12.5);
    EXPECT_LE(r[6], 3);
}

TEST_F(Protocol, UnsupportedRegisterIsLeftOutOfTheFrame)
{
    ecu.receive(registerRequest({0, 0x0E, 1}));
    const Bytes r = drain(ecu);
    ASSERT_EQ(r.size(), 6u + 4u);
    EXPECT_EQ((Bytes{r.begin(), r.begin() + 6}), (Bytes{0xA5, 0x00, 0xFE, 0x0E, 0xA5, 0x01}));
    EXPECT_EQ(r[6], 0xFF);
    EXPECT_EQ(r[7], 2);
}

TEST_F(Protocol, RequestOfOnlyUnsupportedRegistersStartsNothing)
{
    ecu.receive(registerRequest({0x0E, 0x40}));
    EXPECT_EQ(drain(ecu), (Bytes{0xFE, 0x0E, 0xFE, 0x40}));
    EXPECT_FALSE(ecu.streaming());
}

TEST_F(Protocol, EverySensorRegisterIsSupported)
{
    for (std::uint8_t r : sensorRegisters()) {
        std::uint8_t v;
        EXPECT_TRUE(EcuSimulator::registerSupported(r)) << int(r);
        EXPECT_TRUE(ecu.registerValue(r, v)) << int(r);
    }
    std::uint8_t v;
    EXPECT_FALSE(ecu.registerValue(0x0E, v));
    EXPECT_FALSE(ecu.registerValue(0x80, v));
}

TEST_F(Protocol, NewKindOfRequestReplacesThePendingOne)
{
    ecu.receive(registerRequest({0, 1}, false));
    ecu.receive(memoryRequest(0xFF2B, 1));
    const Bytes r = drain(ecu);
    EXPECT_EQ(r, (Bytes{0xA5, 0x00, 0xA5, 0x01, 0x36, 0xFF, 0x2B, 0xFF, 0x01, 0x12}));
}

TEST_F(Protocol, GoWithNothingPendingDoesNothing)
{
    ecu.receive(Bytes{0xF0});
    EXPECT_EQ(ecu.pending(), 0u);
    EXPECT_FALSE(ecu.streaming());
    ecu.receive(Bytes{0x0A, 0x88, 0x00, 0xF0});
    EXPECT_EQ(drain(ecu), (Bytes{0xF5, 0x88, 0x00}));
    EXPECT_FALSE(ecu.streaming());
}

TEST_F(Protocol, RequestListIsForgottenAfterItsStream)
{
    ecu.receive(registerRequest({0}));
    drain(ecu);
    ecu.receive(Bytes{0x30});
    drain(ecu);
    ecu.receive(Bytes{0xF0});
    EXPECT_EQ(ecu.pending(), 0u);
    EXPECT_FALSE(ecu.streaming());
}

// ----- stop --------------------------------------------------------------

TEST_F(Protocol, StopFinishesTheFrameInProgressThenCf)
{
    ecu.receive(registerRequest(sensorRegisters()));
    const Bytes head = ecu.transmit(32 + 5);   // echoes and five bytes of the frame
    ASSERT_EQ(head.size(), 37u);
    ecu.receive(Bytes{0x30});
    EXPECT_FALSE(ecu.streaming());
    const Bytes rest = ecu.transmit(1000);
    ASSERT_EQ(rest.size(), 18u - 5u + 1u);
    EXPECT_EQ(rest.back(), 0xCF);
    EXPECT_TRUE(ecu.transmit(1000).empty());
}

TEST_F(Protocol, StopBetweenFramesIsAnsweredAtOnce)
{
    ecu.receive(registerRequest({0, 1}));
    ecu.transmit(4 + 4 + 4);   // echoes, first frame, second frame
    ecu.receive(Bytes{0x30});
    EXPECT_EQ(ecu.transmit(100), Bytes{0xCF});
}

TEST_F(Protocol, PairOfStopsIntoAStreamGivesTwoCf)
{
    // The first stop ends the stream after the frame in progress; the second
    // finds the ECU idle and is answered on its own.
    ecu.receive(registerRequest(sensorRegisters()));
    ecu.transmit(40);
    ecu.receive(Bytes{0x30, 0x30});
    const Bytes rest = ecu.transmit(1000);
    ASSERT_EQ(rest.size(), 10u + 2u);
    EXPECT_EQ(rest[10], 0xCF);
    EXPECT_EQ(rest[11], 0xCF);
}

TEST_F(Protocol, StopWhileIdleIsAnsweredCfEachTime)
{
    ecu.receive(Bytes{0x30});
    EXPECT_EQ(drain(ecu), Bytes{0xCF});
    ecu.receive(Bytes{0x30, 0x30});
    EXPECT_EQ(drain(ecu), (Bytes{0xCF, 0xCF}));
}

TEST_F(Protocol, ClearSequenceOfThePc)
{
    ecu.setFaultCodes({{0x11, 2}});
    ecu.receive(Bytes{0x30, 0x30, 0xC1, 0xF0});
    EXPECT_EQ(drain(ecu), (Bytes{0xCF, 0xCF, 0x3E}));
    EXPECT_FALSE(ecu.streaming());
    EXPECT_TRUE(ecu.faultCodes().empty());
}

TEST_F(Protocol, WhileStreamingOnlyStopIsHeard)
{
    ecu.receive(registerRequest({0, 1}));
    drain(ecu);
    ecu.receive(Bytes{0xD0, 0xF0, 0xFF, 0xFF, 0xEF, 0x0A, 0x88, 0x02, 0xC1});
    EXPECT_EQ(ecu.pending(), 0u);
    EXPECT_EQ(ecu.activeTestValue(0x88), 0);
    const Bytes f = ecu.transmit(4);
    EXPECT_EQ(f[0], 0xFF);
    EXPECT_EQ(f[1], 2);
    ecu.receive(Bytes{0x30});
    EXPECT_EQ(ecu.transmit(100), Bytes{0xCF});
}

TEST_F(Protocol, RequestRightAfterStopIsServed)
{
    ecu.receive(registerRequest(sensorRegisters()));
    ecu.transmit(50);
    ecu.receive(Bytes{0x30, 0x30});
    ecu.receive(Bytes{0xD0, 0xF0});
    const Bytes r = ecu.transmit(3 + 25);
    EXPECT_EQ((Bytes{r.begin(), r.begin() + 3}), (Bytes{0xCF, 0xCF, 0x2F}));
    EXPECT_EQ(r[3], 0xFF);
    EXPECT_EQ(r[4], 22);
}

// ----- part number -------------------------------------------------------

TEST_F(Protocol, PartNumberAtPositions21To25)
{
    EXPECT_EQ(ecu.partNumber(), "30P00");
    ecu.receive(Bytes{0xD0, 0xF0});
    const Bytes r = ecu.transmit(26);
    ASSERT_EQ(r.size(), 26u);
    EXPECT_EQ(r[0], 0x2F);   // position 1
    EXPECT_EQ(r[1], 0xFF);   // position 2
    EXPECT_EQ(r[2], 0x16);   // position 3: 22 data bytes
    EXPECT_EQ(std::string(r.begin() + 20, r.begin() + 25), "30P00");   // positions 21..25
    EXPECT_EQ(r[25], 0xFF);  // position 26: the next frame
}

TEST_F(Protocol, PartNumberIsSettable)
{
    ecu.setPartNumber("51P10");
    EXPECT_EQ(ecu.partNumber(), "51P10");
    ecu.receive(Bytes{0xD0, 0xF0});
    const Bytes r = ecu.transmit(25 + 25);
    EXPECT_EQ(std::string(r.begin() + 20, r.begin() + 25), "51P10");
    EXPECT_EQ(std::string(r.begin() + 44, r.begin() + 49), "51P10");   // and in the repeat
}

TEST(PartNumber, IsCutOrPaddedToFive)
{
    EcuSimulator ecu;
    ecu.setPartNumber("ABCDEFG");
    EXPECT_EQ(ecu.partNumber(), "ABCDE");
    ecu.setPartNumber("AB");
    EXPECT_EQ(ecu.partNumber(), "AB   ");
}

// ----- fault codes -------------------------------------------------------

TEST_F(Protocol, NoStoredFaultsIsCode55CountZero)
{
    ecu.receive(Bytes{0xD1, 0xF0});
    EXPECT_EQ(ecu.transmit(13), (Bytes{0x2E, 0xFF, 0x02, 0x55, 0x00, 0xFF, 0x02, 0x55, 0x00, 0xFF, 0x02, 0x55, 0x00}));
}

TEST_F(Protocol, StoredFaultsAreCodeCountPairs)
{
    ecu.setFaultCodes({{0x11, 3}, {0x34, 1}});
    ecu.receive(Bytes{0xD1, 0xF0});
    const Bytes r = ecu.transmit(1 + 6 + 6);
    EXPECT_EQ(r, (Bytes{0x2E, 0xFF, 0x04, 0x11, 0x03, 0x34, 0x01, 0xFF, 0x04, 0x11, 0x03, 0x34, 0x01}));
}

TEST_F(Protocol, PcFaultReadOf32Bytes)
{
    // The PC waits for 32 bytes and reads from the third on up to the next FF.
    ecu.setFaultCodes({{0x21, 0}, {0x45, 7}, {0x13, 2}});
    ecu.receive(Bytes{0xD1, 0xF0});
    const Bytes r = ecu.transmit(32);
    ASSERT_EQ(r.size(), 32u);
    EXPECT_EQ(r[2], 6);
    EXPECT_EQ((Bytes{r.begin() + 3, r.begin() + 9}), (Bytes{0x21, 0x00, 0x45, 0x07, 0x13, 0x02}));
    EXPECT_EQ(r[9], 0xFF);
}

TEST_F(Protocol, ClearEmptiesTheFaultMemory)
{
    ecu.setFaultCodes({{0x11, 3}});
    ecu.receive(Bytes{0xC1});
    EXPECT_EQ(drain(ecu), Bytes{0x3E});
    EXPECT_FALSE(ecu.streaming());
    EXPECT_TRUE(ecu.faultCodes().empty());
    ecu.receive(Bytes{0xD1, 0xF0});
    EXPECT_EQ(ecu.transmit(5), (Bytes{0x2E, 0xFF, 0x02, 0x55, 0x00}));
}

// ----- memory reads ------------------------------------------------------

TEST_F(Protocol, KValueRead)
{
    EXPECT_EQ(ecu.kValueWord(), 0x1234);
    ecu.receive(Bytes{0xC9, 0xFF, 0x2B, 0xC9, 0xFF, 0x2C, 0xF0});
    const Bytes r = ecu.transmit(10);
    EXPECT_EQ(r, (Bytes{0x36, 0xFF, 0x2B, 0x36, 0xFF, 0x2C, 0xFF, 0x02, 0x12, 0x34}));
}

TEST_F(Protocol, EightAddressBurstOfAMap)
{
    ecu.receive(memoryRequest(0xFD00, 8));
    const Bytes r = ecu.transmit(34);
    ASSERT_EQ(r.size(), 34u);
    EXPECT_EQ(r[0], 0x36);
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(r[std::size_t(3 * i)], 0x36);
        EXPECT_EQ(r[std::size_t(3 * i + 1)], 0xFD);
        EXPECT_EQ(r[std::size_t(3 * i + 2)], i);
    }
    EXPECT_EQ(r[24], 0xFF);
    EXPECT_EQ(r[25], 8);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(r[std::size_t(26 + i)], ecu.rom()[0x7D00 + std::size_t(i)]);
}

TEST_F(Protocol, WholeBankReadsBackTheRom)
{
    for (int burst = 0; burst < 32; ++burst) {
        const std::uint16_t first = std::uint16_t(0xFB00 + burst * 8);
        ecu.receive(memoryRequest(first, 8));
        const Bytes r = ecu.transmit(34);
        ecu.receive(Bytes{0x30});
        drain(ecu);
        for (int i = 0; i < 8; ++i)
            ASSERT_EQ(r[std::size_t(26 + i)], ecu.rom()[std::size_t(first - 0x8000 + i)]) << burst;
    }
}

TEST_F(Protocol, RamMirrorsLiveRegisters)
{
    std::uint8_t coolant = 0;
    ASSERT_TRUE(ecu.registerValue(8, coolant));
    EXPECT_EQ(ecu.memoryByte(0x0008), coolant);
    EXPECT_EQ(ecu.memoryByte(0x000E), 0);
    EXPECT_EQ(ecu.memoryByte(0x1234), 0);
    ecu.receive(Bytes{0xC9, 0x00, 0x08, 0xF0});
    const Bytes r = ecu.transmit(6);
    EXPECT_EQ(r[5], coolant);
}

TEST_F(Protocol, SetRomChangesWhatIsRead)
{
    std::array<std::uint8_t, EcuSimulator::kRomSize> image{};
    image[0x7F2B] = 0x01;
    image[0x7F2C] = 0x34;
    image[0] = 0xAB;
    ecu.setRom(image);
    EXPECT_EQ(ecu.kValueWord(), 0x0134);
    EXPECT_EQ(ecu.memoryByte(0x8000), 0xAB);
}

// ----- active tests ------------------------------------------------------

TEST_F(Protocol, ActiveTestRecordsTheLastValuePerCode)
{
    EXPECT_EQ(ecu.activeTestValue(0x81), 0);
    ecu.receive(Bytes{0x0A, 0x81, 94, 0x0A, 0x81, 104, 0x0A, 0x82, 250});
    EXPECT_EQ(drain(ecu), (Bytes{0xF5, 0x81, 94, 0xF5, 0x81, 104, 0xF5, 0x82, 250}));
    EXPECT_EQ(ecu.activeTestValue(0x81), 104);
    EXPECT_EQ(ecu.activeTestValue(0x82), 250);
    EXPECT_EQ(ecu.activeTestValue(0x84), 0);
}

// ----- copies ------------------------------------------------------------

TEST_F(Protocol, CopyIsIndependent)
{
    ecu.receive(registerRequest({0}));
    EcuSimulator copy = ecu;
    copy.receive(Bytes{0x30});
    EXPECT_TRUE(ecu.streaming());
    EXPECT_FALSE(copy.streaming());
    EXPECT_EQ(ecu.transmit(5), copy.transmit(5));   // the same echo and first frame
    EcuSimulator moved = std::move(copy);
    EXPECT_TRUE(moved.initialised());
}

}  // namespace
