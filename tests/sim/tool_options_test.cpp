// Command line and console commands of the standalone simulator.
#include "sim/tool_options.h"

#include <gtest/gtest.h>

using namespace vexorin::sim;

namespace {

ParseResult parse(std::vector<std::string> args, ToolOptions& o, std::string* error = nullptr)
{
    return parseToolOptions(args, o, error);
}

TEST(ToolOptions, Defaults)
{
    ToolOptions o;
    EXPECT_EQ(parse({}, o), ParseResult::Ok);
    EXPECT_FALSE(o.pace);
    EXPECT_FALSE(o.faults.silent);
    EXPECT_FALSE(o.faults.halfReply);
    EXPECT_FALSE(o.faults.corruptEcho);
    EXPECT_EQ(o.seed, 1u);
    EXPECT_TRUE(o.partNumber.empty());
    EXPECT_FALSE(o.faultCodesGiven);
    EXPECT_TRUE(o.linkPath.empty());
}

TEST(ToolOptions, Everything)
{
    ToolOptions o;
    EXPECT_EQ(parse({"--pace", "--silent", "--half-reply", "--corrupt-echo", "--seed", "4242", "--part-number",
                     "51P10", "--faults", "11:3,34:1", "--link", "/tmp/ecu", "-v"},
                    o),
              ParseResult::Ok);
    EXPECT_TRUE(o.pace);
    EXPECT_TRUE(o.faults.silent);
    EXPECT_TRUE(o.faults.halfReply);
    EXPECT_TRUE(o.faults.corruptEcho);
    EXPECT_EQ(o.seed, 4242u);
    EXPECT_EQ(o.partNumber, "51P10");
    ASSERT_TRUE(o.faultCodesGiven);
    ASSERT_EQ(o.faultCodes.size(), 2u);
    EXPECT_EQ(o.faultCodes[0].code, 0x11);
    EXPECT_EQ(o.faultCodes[0].count, 3);
    EXPECT_EQ(o.faultCodes[1].code, 0x34);
    EXPECT_EQ(o.faultCodes[1].count, 1);
    EXPECT_EQ(o.linkPath, "/tmp/ecu");
    EXPECT_TRUE(o.verbose);
    EXPECT_TRUE(o.writeRomPath.empty());
    EXPECT_EQ(parse({"--write-rom", "/tmp/sim.bin"}, o), ParseResult::Ok);
    EXPECT_EQ(o.writeRomPath, "/tmp/sim.bin");
    EXPECT_EQ(parse({"--write-rom", ""}, o), ParseResult::Error);
}

TEST(ToolOptions, Help)
{
    ToolOptions o;
    EXPECT_EQ(parse({"--help"}, o), ParseResult::Help);
    EXPECT_EQ(parse({"-h"}, o), ParseResult::Help);
    const std::string usage = toolUsage("vexorin-ecu-sim");
    for (const char* word : {"--pace", "--silent", "--half-reply", "--corrupt-echo", "--seed", "--part-number",
                             "--faults", "--link", "phase", "quit"})
        EXPECT_NE(usage.find(word), std::string::npos) << word;
}

TEST(ToolOptions, Errors)
{
    const std::vector<std::vector<std::string>> bad = {
        {"--bogus"}, {"--seed"}, {"--seed", "x"}, {"--seed", "-1"}, {"--seed", "99999999999"},
        {"--part-number", "1234"}, {"--part-number", "123456"}, {"--faults", "11"}, {"--faults", "11:300"},
        {"--faults", "1G:1"}, {"--link"}, {"--link", ""}};
    for (const auto& args : bad) {
        ToolOptions o;
        std::string error;
        EXPECT_EQ(parse(args, o, &error), ParseResult::Error) << args[0];
        EXPECT_FALSE(error.empty()) << args[0];
    }
}

TEST(ToolOptions, WidebandEngineAndServedRom)
{
    ToolOptions o;
    EXPECT_EQ(parse({}, o), ParseResult::Ok);
    EXPECT_EQ(o.fuelError, 0.0);
    EXPECT_TRUE(o.romPath.empty());
    EXPECT_TRUE(o.dlpLinkPath.empty());

    EXPECT_EQ(parse({"--fuel-error", "8", "--rom", "/tmp/tuned.bin", "--dlp-link", "/tmp/dlp"}, o), ParseResult::Ok);
    EXPECT_EQ(o.fuelError, 8.0);
    EXPECT_EQ(o.romPath, "/tmp/tuned.bin");
    EXPECT_EQ(o.dlpLinkPath, "/tmp/dlp");
    EXPECT_TRUE(o.linkPath.empty());

    for (const auto& [text, value] : std::vector<std::pair<std::string, double>>{
             {"-2.5", -2.5}, {"+0.5", 0.5}, {"50", 50.0}, {"-50", -50.0}, {"0", 0.0}, {".5", 0.5}, {"12.", 12.0}}) {
        ToolOptions p;
        EXPECT_EQ(parse({"--fuel-error", text}, p), ParseResult::Ok) << text;
        EXPECT_DOUBLE_EQ(p.fuelError, value) << text;
    }

    const std::string usage = toolUsage("vexorin-ecu-sim");
    for (const char* word : {"--fuel-error PCT", "--rom FILE", "--dlp-link PATH", "wideband"})
        EXPECT_NE(usage.find(word), std::string::npos) << word;
}

TEST(ToolOptions, WidebandOptionErrors)
{
    const std::vector<std::vector<std::string>> bad = {
        {"--fuel-error"}, {"--fuel-error", ""}, {"--fuel-error", "abc"}, {"--fuel-error", "8%"},
        {"--fuel-error", "1e1"}, {"--fuel-error", "50.5"}, {"--fuel-error", "-51"}, {"--fuel-error", "8,5"},
        {"--fuel-error", "1.2.3"}, {"--fuel-error", "-"}, {"--fuel-error", "nan"}, {"--rom"}, {"--rom", ""},
        {"--dlp-link"}, {"--dlp-link", ""}};
    for (const auto& args : bad) {
        ToolOptions o;
        std::string error;
        EXPECT_EQ(parse(args, o, &error), ParseResult::Error) << args[0] << " " << (args.size() > 1 ? args[1] : "");
        EXPECT_NE(error.find(args[0]), std::string::npos) << error;
    }
}

TEST(FaultList, Forms)
{
    std::vector<EcuSimulator::Fault> f;
    EXPECT_TRUE(parseFaultList("none", f, nullptr));
    EXPECT_TRUE(f.empty());
    EXPECT_TRUE(parseFaultList("", f, nullptr));
    EXPECT_TRUE(f.empty());
    EXPECT_TRUE(parseFaultList("55:0", f, nullptr));
    ASSERT_EQ(f.size(), 1u);
    EXPECT_EQ(f[0].code, 0x55);
    EXPECT_TRUE(parseFaultList(" 11:3 , 21:0,45:12 ", f, nullptr));
    ASSERT_EQ(f.size(), 3u);
    EXPECT_EQ(f[2].code, 0x45);
    EXPECT_EQ(f[2].count, 12);
    EXPECT_FALSE(parseFaultList("11:3,", f, nullptr));
    EXPECT_FALSE(parseFaultList(":3", f, nullptr));
}

TEST(ConsoleCommands, Switches)
{
    using K = ConsoleCommand::Kind;
    EXPECT_EQ(parseConsoleCommand("silent on").kind, K::Silent);
    EXPECT_TRUE(parseConsoleCommand("silent on").on);
    EXPECT_FALSE(parseConsoleCommand("silent off").on);
    EXPECT_EQ(parseConsoleCommand("half on").kind, K::Half);
    EXPECT_EQ(parseConsoleCommand("corrupt off").kind, K::Corrupt);
    EXPECT_EQ(parseConsoleCommand("  PACE On \r").kind, K::Pace);
    EXPECT_TRUE(parseConsoleCommand("pace on").on);
    EXPECT_EQ(parseConsoleCommand("quit").kind, K::Quit);
    EXPECT_EQ(parseConsoleCommand("status").kind, K::Status);
    EXPECT_EQ(parseConsoleCommand("").kind, K::Empty);
    EXPECT_EQ(parseConsoleCommand("   ").kind, K::Empty);
}

TEST(ConsoleCommands, Phases)
{
    EXPECT_EQ(parseConsoleCommand("phase idle").phase, EnginePhase::Idle);
    EXPECT_EQ(parseConsoleCommand("phase rev").phase, EnginePhase::Rev);
    EXPECT_EQ(parseConsoleCommand("phase drive").phase, EnginePhase::Drive);
    EXPECT_EQ(parseConsoleCommand("phase off").phase, EnginePhase::Off);
    EXPECT_TRUE(parseConsoleCommand("phase auto").autoPhase);
    EXPECT_FALSE(parseConsoleCommand("phase idle").autoPhase);
}

TEST(ConsoleCommands, Faults)
{
    const ConsoleCommand c = parseConsoleCommand("faults 11:3,34:1");
    EXPECT_EQ(c.kind, ConsoleCommand::Kind::Faults);
    ASSERT_EQ(c.faultCodes.size(), 2u);
    EXPECT_EQ(parseConsoleCommand("faults none").faultCodes.size(), 0u);
    EXPECT_EQ(parseConsoleCommand("faults none").kind, ConsoleCommand::Kind::Faults);
}

TEST(ConsoleCommands, Invalid)
{
    for (const char* line : {"silent", "silent maybe", "phase", "phase cruise", "faults", "faults 1:x", "quit now",
                             "launch", "half on off"}) {
        const ConsoleCommand c = parseConsoleCommand(line);
        EXPECT_EQ(c.kind, ConsoleCommand::Kind::Invalid) << line;
        EXPECT_FALSE(c.error.empty()) << line;
    }
}

}  // namespace
