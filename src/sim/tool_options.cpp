#include "sim/tool_options.h"

#include "sim/simulated_car.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <locale>
#include <sstream>

namespace vexorin::sim {

bool parseUnsigned(const std::string& text, int base, unsigned long max, unsigned long& out)
{
    if (text.empty())
        return false;
    for (char c : text) {
        if (!std::isxdigit(static_cast<unsigned char>(c)) || (base == 10 && !std::isdigit(static_cast<unsigned char>(c))))
            return false;
    }
    char* end = nullptr;
    errno = 0;
    const unsigned long v = std::strtoul(text.c_str(), &end, base);
    if (errno != 0 || end == nullptr || *end != '\0' || v > max)
        return false;
    out = v;
    return true;
}

std::string trim(const std::string& s)
{
    std::size_t a = 0, b = s.size();
    while (a < b && std::isspace(static_cast<unsigned char>(s[a])))
        ++a;
    while (b > a && std::isspace(static_cast<unsigned char>(s[b - 1])))
        --b;
    return s.substr(a, b - a);
}

bool parseOnOff(const std::string& word, bool& on)
{
    if (word == "on" || word == "1" || word == "yes") {
        on = true;
        return true;
    }
    if (word == "off" || word == "0" || word == "no") {
        on = false;
        return true;
    }
    return false;
}

bool parseFaultList(const std::string& text, std::vector<EcuSimulator::Fault>& out, std::string* error)
{
    out.clear();
    const std::string all = trim(text);
    if (all.empty() || all == "none")
        return true;
    std::size_t pos = 0;
    while (pos <= all.size()) {
        const std::size_t comma = std::min(all.find(',', pos), all.size());
        std::string item = trim(all.substr(pos, comma - pos));
        pos = comma + 1;
        const std::size_t colon = item.find(':');
        unsigned long code = 0, count = 0;
        if (colon == std::string::npos || !parseUnsigned(item.substr(0, colon), 16, 0xFF, code)
            || !parseUnsigned(item.substr(colon + 1), 10, 255, count)) {
            if (error)
                *error = "bad fault \"" + item + "\" (expected CODE:COUNT, e.g. 11:3)";
            return false;
        }
        out.push_back({std::uint8_t(code), std::uint8_t(count)});
    }
    return true;
}

bool parsePercent(const std::string& text, double limit, double& out)
{
    // Digits with at most one '.', an optional sign in front; no exponent, no locale.
    std::size_t i = text.empty() || (text[0] != '-' && text[0] != '+') ? 0 : 1;
    bool digit = false, point = false;
    for (; i < text.size(); ++i) {
        if (std::isdigit(static_cast<unsigned char>(text[i])))
            digit = true;
        else if (text[i] == '.' && !point)
            point = true;
        else
            return false;
    }
    if (!digit)
        return false;
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    double v = 0;
    if (!(in >> v) || !std::isfinite(v) || std::fabs(v) > limit)
        return false;
    out = v;
    return true;
}

ParseResult parseToolOptions(const std::vector<std::string>& args, ToolOptions& out, std::string* error)
{
    auto value = [&](std::size_t& i, const std::string& name, std::string& v) {
        if (i + 1 >= args.size()) {
            if (error)
                *error = name + " needs a value";
            return false;
        }
        v = args[++i];
        return true;
    };
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        std::string v;
        if (a == "--help" || a == "-h") {
            return ParseResult::Help;
        } else if (a == "--pace") {
            out.pace = true;
        } else if (a == "--silent") {
            out.faults.silent = true;
        } else if (a == "--half-reply") {
            out.faults.halfReply = true;
        } else if (a == "--corrupt-echo") {
            out.faults.corruptEcho = true;
        } else if (a == "--verbose" || a == "-v") {
            out.verbose = true;
        } else if (a == "--seed") {
            unsigned long n = 0;
            if (!value(i, a, v))
                return ParseResult::Error;
            if (!parseUnsigned(v, 10, 0xFFFFFFFFul, n)) {
                if (error)
                    *error = "--seed needs a whole number from 0 to 4294967295";
                return ParseResult::Error;
            }
            out.seed = std::uint32_t(n);
        } else if (a == "--part-number") {
            if (!value(i, a, v))
                return ParseResult::Error;
            bool printable = v.size() == 5;
            for (char c : v)
                printable = printable && c >= 0x20 && c < 0x7F;
            if (!printable) {
                if (error)
                    *error = "--part-number needs exactly five printable ASCII characters";
                return ParseResult::Error;
            }
            out.partNumber = v;
        } else if (a == "--faults") {
            if (!value(i, a, v) || !parseFaultList(v, out.faultCodes, error))
                return ParseResult::Error;
            out.faultCodesGiven = true;
        } else if (a == "--fuel-error") {
            if (!value(i, a, v))
                return ParseResult::Error;
            if (!parsePercent(v, SimulatedCar::kMaxFuelError, out.fuelError)) {
                if (error)
                    *error = "--fuel-error needs a number of percent from -50 to 50, such as 8 or -2.5";
                return ParseResult::Error;
            }
        } else if (a == "--write-rom" || a == "--link" || a == "--rom" || a == "--dlp-link") {
            if (!value(i, a, v))
                return ParseResult::Error;
            if (v.empty()) {
                if (error)
                    *error = a + " needs a path";
                return ParseResult::Error;
            }
            (a == "--link" ? out.linkPath : a == "--rom" ? out.romPath : a == "--dlp-link" ? out.dlpLinkPath
                                                                                          : out.writeRomPath) = v;
        } else {
            if (error)
                *error = "unknown option " + a;
            return ParseResult::Error;
        }
    }
    return ParseResult::Ok;
}

std::string toolUsage(const std::string& program)
{
    return "Usage: " + program + " [options]\n"
        "A simulated Z32 Consult ECU behind a pseudo-terminal. The first line on\n"
        "standard output is \"PTY <slave path>\"; open that path as the serial port.\n"
        "With --dlp-link a second line, \"DLP <slave path>\", names the DLP-IO8-G's pty.\n"
        "\n"
        "Options:\n"
        "  --pace               send at the Consult line rate, 960 bytes/s\n"
        "  --silent             answer nothing at all\n"
        "  --half-reply         every reply stops halfway\n"
        "  --corrupt-echo       echoes come back with their bits flipped\n"
        "  --seed N             engine model and ROM filler seed (default 1)\n"
        "  --part-number XXXXX  the five characters of the part number (default 30P00)\n"
        "  --faults LIST        stored fault codes, e.g. 11:3,34:1 (code:count)\n"
        "  --link PATH          also make PATH a symbolic link to the slave; removed at exit\n"
        "  --verbose, -v        log every byte in and out on standard error\n"
        "  --write-rom FILE     write the simulator's 32 KB ROM (of --seed) to FILE as a BIN file and exit\n"
        "  --rom FILE           serve FILE (32768 bytes) as the ROM; read again when it changes\n"
        "  --fuel-error PCT     the engine lacks PCT percent of fuel (8 runs 8 % lean; default 0)\n"
        "  --dlp-link PATH      also serve a DLP-IO8-G on a second pseudo-terminal, PATH a symbolic\n"
        "                       link to it; its channel 1 reads a 0-5 V wideband in this engine's exhaust\n"
        "  --help, -h           this text\n"
        "\n" + consoleHelp();
}

std::string consoleHelp()
{
    return "Commands on standard input, one per line:\n"
        "  silent on|off   half on|off   corrupt on|off   pace on|off\n"
        "  phase idle|rev|drive|off|auto\n"
        "  faults LIST|none\n"
        "  status\n"
        "  quit\n"
        "End of input leaves the simulator running; SIGINT or SIGTERM end it.\n";
}

ConsoleCommand parseConsoleCommand(const std::string& line)
{
    ConsoleCommand c;
    std::stringstream ss(trim(line));
    std::string word, arg, extra;
    ss >> word;
    if (word.empty())
        return c;
    ss >> arg;
    ss >> extra;
    for (char& ch : word)
        ch = char(std::tolower(static_cast<unsigned char>(ch)));
    for (char& ch : arg)
        ch = char(std::tolower(static_cast<unsigned char>(ch)));

    auto invalid = [&](const std::string& why) {
        c.kind = ConsoleCommand::Kind::Invalid;
        c.error = why;
        return c;
    };
    if (!extra.empty())
        return invalid("too many words");

    if (word == "silent" || word == "half" || word == "corrupt" || word == "pace") {
        if (!parseOnOff(arg, c.on))
            return invalid(word + " needs on or off");
        c.kind = word == "silent" ? ConsoleCommand::Kind::Silent
            : word == "half"      ? ConsoleCommand::Kind::Half
            : word == "corrupt"   ? ConsoleCommand::Kind::Corrupt
                                  : ConsoleCommand::Kind::Pace;
        return c;
    }
    if (word == "phase") {
        c.kind = ConsoleCommand::Kind::Phase;
        if (arg == "idle")
            c.phase = EnginePhase::Idle;
        else if (arg == "rev")
            c.phase = EnginePhase::Rev;
        else if (arg == "drive")
            c.phase = EnginePhase::Drive;
        else if (arg == "off")
            c.phase = EnginePhase::Off;
        else if (arg == "auto")
            c.autoPhase = true;
        else
            return invalid("phase needs idle, rev, drive, off or auto");
        return c;
    }
    if (word == "faults") {
        std::string why;
        if (arg.empty() || !parseFaultList(arg, c.faultCodes, &why))
            return invalid(arg.empty() ? "faults needs a list such as 11:3,34:1 or none" : why);
        c.kind = ConsoleCommand::Kind::Faults;
        return c;
    }
    if (!arg.empty())
        return invalid(word + " takes no argument");
    if (word == "status") {
        c.kind = ConsoleCommand::Kind::Status;
        return c;
    }
    if (word == "quit" || word == "exit") {
        c.kind = ConsoleCommand::Kind::Quit;
        return c;
    }
    return invalid("unknown command \"" + word + "\"");
}

}  // namespace vexorin::sim
