// The switchable faults of the simulated ECU: silent, halved replies, corrupt echoes, one corrupt echo.
#include "sim/ecu_simulator.h"
#include "sim_test_support.h"

#include <gtest/gtest.h>

#include <string>

using namespace vexorin::sim;
using namespace vexorin::sim::test;

namespace {

SimFaults silent()
{
    SimFaults f;
    f.silent = true;
    return f;
}

SimFaults half()
{
    SimFaults f;
    f.halfReply = true;
    return f;
}

SimFaults corrupt()
{
    SimFaults f;
    f.corruptEcho = true;
    return f;
}

TEST(Silent, NotEvenTheHandshakeIsAnswered)
{
    EcuSimulator ecu;
    ecu.setFaults(silent());
    EXPECT_TRUE(ecu.faults().silent);
    ecu.receive(Bytes{0xFF, 0xFF, 0xEF, 0xD0, 0xF0, 0x30});
    EXPECT_EQ(ecu.pending(), 0u);
    EXPECT_TRUE(ecu.transmit(1000).empty());
    EXPECT_FALSE(ecu.initialised());
}

TEST(Silent, SwitchedOffTheEcuAnswersAgain)
{
    EcuSimulator ecu;
    ecu.setFaults(silent());
    ecu.receive(Bytes{0xFF, 0xFF, 0xEF});
    ecu.setFaults(SimFaults{});
    ecu.receive(Bytes{0xFF, 0xFF, 0xEF});
    EXPECT_EQ(drain(ecu), Bytes{0x10});
}

TEST(Silent, StreamFallsSilentAndComesBack)
{
    EcuSimulator ecu;
    handshake(ecu);
    ecu.receive(registerRequest({0, 1}));
    ecu.transmit(5);
    ecu.setFaults(silent());
    EXPECT_EQ(ecu.pending(), 0u);
    EXPECT_TRUE(ecu.transmit(100).empty());
    ecu.receive(Bytes{0x30});   // unheard
    ecu.setFaults(SimFaults{});
    EXPECT_TRUE(ecu.streaming());
    const Bytes f = ecu.transmit(4);
    EXPECT_EQ(f[0], 0xFF);
    EXPECT_EQ(f[1], 2);
}

TEST(HalfReply, SensorReplyStopsHalfway)
{
    EcuSimulator ecu;
    handshake(ecu);
    ecu.setFaults(half());
    ecu.receive(registerRequest(sensorRegisters()));
    const Bytes r = ecu.transmit(1000);
    ASSERT_EQ(r.size(), 16u + 9u);   // half of 32 echo bytes, half of the 18-byte frame
    for (std::size_t i = 0; i < 16; i += 2)
        EXPECT_EQ(r[i], 0xA5);
    EXPECT_EQ(r[16], 0xFF);
    EXPECT_EQ(r[17], 16);
    EXPECT_TRUE(ecu.streaming());
    EXPECT_TRUE(ecu.transmit(1000).empty());   // the stream has dried up
    ecu.receive(Bytes{0x30});
    EXPECT_EQ(ecu.transmit(10), Bytes{0xCF});
    EXPECT_FALSE(ecu.streaming());
}

TEST(HalfReply, EveryRequestIsHalved)
{
    EcuSimulator ecu;
    handshake(ecu);
    ecu.setFaults(half());
    ecu.receive(Bytes{0xD0, 0xF0});
    EXPECT_EQ(ecu.transmit(100).size(), 0u + 12u);   // one echo byte halves to none; 24 frame bytes to 12
    ecu.receive(Bytes{0x30, 0x30});
    drain(ecu);
    ecu.receive(memoryRequest(0xFF2B, 2));
    const Bytes r = ecu.transmit(100);
    EXPECT_EQ(r, (Bytes{0x36, 0xFF, 0x2B, 0xFF, 0x02}));
    ecu.receive(Bytes{0x30});
    drain(ecu);
    ecu.receive(Bytes{0x0A, 0x88, 0x01});
    EXPECT_EQ(drain(ecu), Bytes{0xF5});
    EXPECT_EQ(ecu.activeTestValue(0x88), 1);   // the request itself was heard
}

TEST(HalfReply, HandshakeAndStopRepliesAreWhole)
{
    EcuSimulator ecu;
    ecu.setFaults(half());
    ecu.receive(Bytes{0xFF, 0xFF, 0xEF});
    EXPECT_EQ(drain(ecu), Bytes{0x10});
    ecu.receive(Bytes{0x30});
    EXPECT_EQ(drain(ecu), Bytes{0xCF});
}

TEST(HalfReply, SwitchedOffRepliesAreWholeAgain)
{
    EcuSimulator ecu;
    handshake(ecu);
    ecu.setFaults(half());
    ecu.receive(registerRequest({0, 1}, false));
    ecu.setFaults(SimFaults{});
    ecu.receive(Bytes{0xF0});
    EXPECT_EQ(drain(ecu).size(), 4u + 4u);
}

TEST(CorruptEcho, EchoBitsAreFlippedFramesAreNot)
{
    EcuSimulator ecu;
    handshake(ecu);
    ecu.setFaults(corrupt());
    ecu.receive(Bytes{0xC9, 0xFF, 0x2B, 0xF0});
    EXPECT_EQ(ecu.transmit(6), (Bytes{0xC9, 0x00, 0xD4, 0xFF, 0x01, 0x12}));
}

TEST(CorruptEcho, EveryEchoForm)
{
    EcuSimulator ecu;
    handshake(ecu);
    ecu.setFaults(corrupt());
    ecu.receive(Bytes{0x5A, 0x0B});
    EXPECT_EQ(drain(ecu), (Bytes{0x5A, 0xF4}));
    ecu.receive(Bytes{0x5A, 0x0E});
    EXPECT_EQ(drain(ecu), (Bytes{0x01, 0xF1}));
    ecu.receive(Bytes{0xC1});
    EXPECT_EQ(drain(ecu), Bytes{0xC1});
    ecu.receive(Bytes{0x0A, 0x89, 0x01});
    EXPECT_EQ(drain(ecu), (Bytes{0x0A, 0x76, 0xFE}));
}

TEST(CorruptNextEcho, OneEchoIsFlippedThenTheSwitchIsOff)
{
    EcuSimulator ecu;
    handshake(ecu);
    SimFaults f;
    f.corruptNextEcho = true;
    ecu.setFaults(f);
    ecu.receive(Bytes{0xC9, 0xFF, 0x2B, 0xC9, 0xFF, 0x2C, 0xF0});
    const Bytes reply = ecu.transmit(10);
    EXPECT_EQ(reply, (Bytes{0xC9, 0x00, 0xD4, 0x36, 0xFF, 0x2C, 0xFF, 0x02, reply[8], reply[9]}));
    EXPECT_EQ(reply[8], ecu.memoryByte(0xFF2B));
    EXPECT_FALSE(ecu.faults().corruptNextEcho);
    ecu.receive(Bytes{0x30});
    drain(ecu);
    ecu.receive(Bytes{0xC9, 0xFF, 0x2B, 0xF0});
    EXPECT_EQ(ecu.transmit(3), (Bytes{0x36, 0xFF, 0x2B}));
}

TEST(CorruptEcho, HandshakeAndStopRepliesAreNotEchoes)
{
    EcuSimulator ecu;
    ecu.setFaults(corrupt());
    ecu.receive(Bytes{0xFF, 0xFF, 0xEF});
    EXPECT_EQ(drain(ecu), Bytes{0x10});
    ecu.receive(Bytes{0xD0, 0xF0});
    const Bytes r = ecu.transmit(26);
    EXPECT_EQ(r[0], 0xD0);
    EXPECT_EQ(r[1], 0xFF);
    EXPECT_EQ(std::string(r.begin() + 20, r.begin() + 25), "30P00");
    ecu.receive(Bytes{0x30});
    EXPECT_EQ(ecu.transmit(100).back(), 0xCF);
}

TEST(Faults, CanBeCombined)
{
    EcuSimulator ecu;
    handshake(ecu);
    SimFaults f;
    f.halfReply = true;
    f.corruptEcho = true;
    ecu.setFaults(f);
    ecu.receive(memoryRequest(0xFF2B, 2));
    EXPECT_EQ(ecu.transmit(100), (Bytes{0xC9, 0x00, 0xD4, 0xFF, 0x02}));
}

}  // namespace
