// The simulated DLP-IO8-G: request letters, readings, time, and its faults.
#include "sim/dlp_pty_server.h"
#include "sim/dlp_simulator.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>

namespace vexorin::sim {
namespace {

std::string ask(DlpSimulator& dlp, char letter)
{
    const auto b = std::uint8_t(letter);
    dlp.receive(&b, 1);
    const std::vector<std::uint8_t> out = dlp.transmit(dlp.pending());
    return std::string(out.begin(), out.end());
}

bool isReading(const std::string& s)
{
    return std::regex_match(s, std::regex("[0-5]\\.[0-9][0-9]V"));
}

TEST(DlpSimulator, EveryRequestLetterGetsAReading)
{
    DlpSimulator dlp(7);
    const std::string letters = "ZXCVBNM,";
    for (std::size_t i = 0; i < letters.size(); ++i) {
        EXPECT_EQ(DlpSimulator::channelOf(std::uint8_t(letters[i])), int(i) + 1);
        EXPECT_EQ(DlpSimulator::letterOf(int(i) + 1), std::uint8_t(letters[i]));
        const std::string r = ask(dlp, letters[i]);
        EXPECT_TRUE(isReading(r)) << r;
        EXPECT_EQ(r, DlpSimulator::formatReading(dlp.volts(int(i) + 1)));
    }
}

TEST(DlpSimulator, OtherBytesAreIgnored)
{
    DlpSimulator dlp;
    for (char c : std::string("1Q\r\nzA"))
        EXPECT_EQ(ask(dlp, c), "");
}

TEST(DlpSimulator, ReadingsMoveOverTime)
{
    DlpSimulator dlp(3);
    std::set<std::string> boost;
    for (int i = 0; i < 40; ++i) {
        boost.insert(ask(dlp, 'X'));
        dlp.advance(250);
    }
    EXPECT_GE(boost.size(), 10u);
    for (const std::string& r : boost)
        EXPECT_TRUE(isReading(r)) << r;
}

TEST(DlpSimulator, FormatClampsToTheInputRange)
{
    EXPECT_EQ(DlpSimulator::formatReading(2.344), "2.34V");
    EXPECT_EQ(DlpSimulator::formatReading(0.0), "0.00V");
    EXPECT_EQ(DlpSimulator::formatReading(7.0), "5.00V");
    EXPECT_EQ(DlpSimulator::formatReading(-1.0), "0.00V");
}

TEST(DlpSimulator, HeldChannelKeepsItsVoltage)
{
    DlpSimulator dlp;
    dlp.holdVolts(3, 2.5);
    EXPECT_EQ(ask(dlp, 'C'), "2.50V");
    dlp.advance(5000);
    EXPECT_EQ(ask(dlp, 'C'), "2.50V");
    dlp.holdVolts(3, -1);
    dlp.advance(3000);
    EXPECT_TRUE(isReading(ask(dlp, 'C')));
}

TEST(DlpSimulator, ChannelCanFollowASourceOutside)
{
    DlpSimulator dlp(5);
    DlpSimulator alone(5);
    double sensor = 3.456;
    dlp.setVoltsSource(1, [&sensor] { return sensor; });
    EXPECT_EQ(ask(dlp, 'Z'), "3.46V");
    sensor = 7.0;
    EXPECT_EQ(ask(dlp, 'Z'), "5.00V");
    sensor = -1.0;
    EXPECT_EQ(ask(dlp, 'Z'), "0.00V");
    EXPECT_EQ(ask(dlp, 'X'), ask(alone, 'X'));
    dlp.holdVolts(1, 1.5);
    EXPECT_EQ(ask(dlp, 'Z'), "1.50V");
    dlp.holdVolts(1, -1);
    dlp.setVoltsSource(1, {});
    EXPECT_EQ(ask(dlp, 'Z'), ask(alone, 'Z'));
}

TEST(DlpSimulator, LateAnswersWaitForTheirTime)
{
    DlpSimulator dlp;
    dlp.setFaults({false, 80, false});
    EXPECT_EQ(ask(dlp, 'Z'), "");
    EXPECT_TRUE(dlp.waiting());
    dlp.advance(79);
    EXPECT_EQ(dlp.pending(), 0u);
    dlp.advance(1);
    EXPECT_EQ(dlp.pending(), 5u);
    const std::vector<std::uint8_t> out = dlp.transmit(3);
    EXPECT_EQ(std::string(out.begin(), out.end()).size(), 3u);
    EXPECT_EQ(dlp.pending(), 2u);
}

TEST(DlpSimulator, SilentAnswersNothingAndGarbageAnswersBytes)
{
    DlpSimulator dlp;
    dlp.setFaults({true, 0, false});
    EXPECT_EQ(ask(dlp, 'Z'), "");
    EXPECT_FALSE(dlp.waiting());
    dlp.setFaults({false, 0, true});
    for (int i = 0; i < 20; ++i) {
        const std::string g = ask(dlp, 'V');
        EXPECT_GE(g.size(), 1u);
        EXPECT_LE(g.size(), 12u);
    }
}

TEST(DlpTool, OptionsAndConsoleCommands)
{
    DlpToolOptions o;
    std::string error;
    EXPECT_EQ(parseDlpToolOptions({"--late", "120", "--garbage", "--seed", "9", "--link", "/tmp/x"}, o, &error),
              ParseResult::Ok);
    EXPECT_EQ(o.faults.lateMs, 120);
    EXPECT_TRUE(o.faults.garbage);
    EXPECT_FALSE(o.faults.silent);
    EXPECT_EQ(o.seed, 9u);
    EXPECT_EQ(o.linkPath, "/tmp/x");
    EXPECT_EQ(parseDlpToolOptions({"--late"}, o, &error), ParseResult::Error);
    EXPECT_EQ(parseDlpToolOptions({"--late", "x"}, o, &error), ParseResult::Error);
    EXPECT_EQ(parseDlpToolOptions({"--bogus"}, o, &error), ParseResult::Error);
    EXPECT_EQ(parseDlpToolOptions({"-h"}, o, &error), ParseResult::Help);

    DlpSimulator dlp;
    bool quit = false;
    std::string reply;
    EXPECT_TRUE(applyDlpCommand("silent on", dlp, quit, &reply));
    EXPECT_TRUE(dlp.faults().silent);
    EXPECT_TRUE(applyDlpCommand("late 50", dlp, quit, &reply));
    EXPECT_EQ(dlp.faults().lateMs, 50);
    EXPECT_TRUE(applyDlpCommand("late off", dlp, quit, &reply));
    EXPECT_EQ(dlp.faults().lateMs, 0);
    EXPECT_TRUE(applyDlpCommand("hold 2 1.25", dlp, quit, &reply));
    EXPECT_TRUE(applyDlpCommand("silent off", dlp, quit, &reply));
    EXPECT_EQ(ask(dlp, 'X'), "1.25V");
    EXPECT_TRUE(applyDlpCommand("status", dlp, quit, &reply));
    EXPECT_NE(reply.find("status: silent off"), std::string::npos);
    EXPECT_FALSE(applyDlpCommand("hold 9 1", dlp, quit, &reply));
    EXPECT_FALSE(applyDlpCommand("garbage maybe", dlp, quit, &reply));
    EXPECT_FALSE(applyDlpCommand("jump", dlp, quit, &reply));
    EXPECT_FALSE(quit);
    EXPECT_TRUE(applyDlpCommand("quit", dlp, quit, &reply));
    EXPECT_TRUE(quit);
}

}  // namespace
}  // namespace vexorin::sim
