// Command line and console commands of the standalone simulator tool.
#pragma once

#include "sim/ecu_simulator.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vexorin::sim {

struct ToolOptions {
    bool pace = false;                 // 960 bytes/s, the Consult line rate
    SimFaults faults;
    std::uint32_t seed = kDefaultSeed;
    std::string partNumber;            // empty: the simulator's own
    bool faultCodesGiven = false;
    std::vector<EcuSimulator::Fault> faultCodes;
    std::string linkPath;              // empty: no symbolic link
    bool verbose = false;              // log every byte in and out on stderr
    std::string writeRomPath;          // not empty: write the ROM image there and exit
    double fuelError = 0;              // percent of fuel the engine lacks (8 runs 8 % lean)
    std::string romPath;               // not empty: serve this BIN file as the ROM
    std::string dlpLinkPath;           // not empty: also serve the DLP-IO8-G, linked here
};

enum class ParseResult { Ok, Help, Error };

// Words of the tools' command lines and consoles.
// A whole number in the base (10 or 16) up to `max`, digits only.
bool parseUnsigned(const std::string& text, int base, unsigned long max, unsigned long& out);
// A number of percent such as 8, -2.5 or +0.5 ('.' as the decimal mark), within -limit..limit.
bool parsePercent(const std::string& text, double limit, double& out);
// "on", "1", "yes" or "off", "0", "no".
bool parseOnOff(const std::string& word, bool& on);
std::string trim(const std::string& s);

// args without the program name.
ParseResult parseToolOptions(const std::vector<std::string>& args, ToolOptions& out, std::string* error);
std::string toolUsage(const std::string& program);

// "11:3,34:1": fault code as printed in the service manual (its hex digits
// are the byte, so 11 is 0x11), a colon, the count in decimal. "none" or an
// empty text gives an empty list.
bool parseFaultList(const std::string& text, std::vector<EcuSimulator::Fault>& out, std::string* error);

// One line typed on the tool's standard input.
struct ConsoleCommand {
    enum class Kind { Empty, Invalid, Silent, Half, Corrupt, Pace, Phase, Faults, Status, Quit };
    Kind kind = Kind::Empty;
    bool on = false;                   // Silent, Half, Corrupt, Pace
    bool autoPhase = false;            // Phase: back to the automatic cycle
    EnginePhase phase = EnginePhase::Idle;
    std::vector<EcuSimulator::Fault> faultCodes;
    std::string error;                 // Invalid
};

ConsoleCommand parseConsoleCommand(const std::string& line);
std::string consoleHelp();

}  // namespace vexorin::sim
