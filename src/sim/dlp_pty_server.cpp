#include "sim/dlp_pty_server.h"

#include "sim/console_lines.h"
#include "sim/dlp_pty_port.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <sstream>

namespace vexorin::sim {

namespace {

bool parseLate(const std::string& v, int& ms)
{
    unsigned long n = 0;
    if (v == "off") {
        ms = 0;
        return true;
    }
    if (!parseUnsigned(v, 10, 60000, n))
        return false;
    ms = int(n);
    return true;
}

std::string statusLine(const DlpSimulator& sim)
{
    std::ostringstream s;
    s << "status: silent " << (sim.faults().silent ? "on" : "off") << ", late " << sim.faults().lateMs
      << " ms, garbage " << (sim.faults().garbage ? "on" : "off") << ", readings";
    for (int ch = 1; ch <= DlpSimulator::kChannels; ++ch)
        s << ' ' << DlpSimulator::formatReading(sim.volts(ch));
    return s.str();
}

}  // namespace

ParseResult parseDlpToolOptions(const std::vector<std::string>& args, DlpToolOptions& out, std::string* error)
{
    auto fail = [error](const std::string& why) {
        if (error)
            *error = why;
        return ParseResult::Error;
    };
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if (a == "--help" || a == "-h")
            return ParseResult::Help;
        if (a == "--silent") {
            out.faults.silent = true;
        } else if (a == "--garbage") {
            out.faults.garbage = true;
        } else if (a == "--verbose" || a == "-v") {
            out.verbose = true;
        } else if (a == "--late") {
            if (!hasValue || !parseLate(args[++i], out.faults.lateMs))
                return fail("--late needs a number of milliseconds from 0 to 60000");
        } else if (a == "--seed") {
            unsigned long n = 0;
            if (!hasValue || !parseUnsigned(args[++i], 10, 0xFFFFFFFFul, n))
                return fail("--seed needs a whole number from 0 to 4294967295");
            out.seed = std::uint32_t(n);
        } else if (a == "--link") {
            if (!hasValue || args[i + 1].empty())
                return fail("--link needs a path");
            out.linkPath = args[++i];
        } else {
            return fail("unknown option " + a);
        }
    }
    return ParseResult::Ok;
}

std::string dlpToolUsage(const std::string& program)
{
    return "Usage: " + program + " [options]\n"
        "A simulated DLP-IO8-G data-acquisition device behind a pseudo-terminal.\n"
        "The first line on standard output is \"PTY <slave path>\"; open that path\n"
        "as the external sensor port. Each request letter Z X C V B N M , (channels\n"
        "1 to 8) is answered with a reading such as 2.34V. For a DLP-IO8-G whose\n"
        "channel 1 reads the wideband of a simulated engine, see vexorin-ecu-sim --dlp-link.\n"
        "\n"
        "Options:\n"
        "  --late MS        answer MS milliseconds after each request\n"
        "  --silent         answer nothing at all\n"
        "  --garbage        answer random bytes instead of readings\n"
        "  --seed N         where the voltages start in their cycles (default 1)\n"
        "  --link PATH      also make PATH a symbolic link to the slave; removed at exit\n"
        "  --verbose, -v    log every request and answer on standard error\n"
        "  --help, -h       this text\n"
        "\n"
        "Commands on standard input, one per line:\n"
        "  silent on|off   garbage on|off   late MS|off\n"
        "  hold CHANNEL VOLTS|off   status   quit\n"
        "End of input leaves the simulator running; SIGINT or SIGTERM end it.\n";
}

bool applyDlpCommand(const std::string& line, DlpSimulator& sim, bool& quit, std::string* reply)
{
    std::istringstream ss(trim(line));
    std::string word, arg, arg2, extra;
    ss >> word >> arg >> arg2 >> extra;
    DlpFaults f = sim.faults();
    bool ok = extra.empty();
    if (word.empty()) {
        return true;
    } else if (word == "silent" || word == "garbage") {
        ok = ok && arg2.empty() && parseOnOff(arg, word == "silent" ? f.silent : f.garbage);
    } else if (word == "late") {
        ok = ok && arg2.empty() && parseLate(arg, f.lateMs);
    } else if (word == "hold") {
        unsigned long ch = 0;
        char* end = nullptr;
        const double v = arg2 == "off" ? -1.0 : std::strtod(arg2.c_str(), &end);
        ok = ok && parseUnsigned(arg, 10, DlpSimulator::kChannels, ch) && ch >= 1
             && (arg2 == "off" || (end && *end == '\0' && !arg2.empty() && v >= 0.0));
        if (ok)
            sim.holdVolts(int(ch), v);
    } else if (word == "status" && arg.empty()) {
        if (reply)
            *reply = statusLine(sim);
        return true;
    } else if ((word == "quit" || word == "exit") && arg.empty()) {
        quit = true;
    } else {
        ok = false;
    }
    if (!ok) {
        if (reply)
            *reply = "error: cannot use \"" + trim(line) + "\"";
        return false;
    }
    sim.setFaults(f);
    if (reply)
        *reply = "ok: " + trim(line);
    return true;
}

int runDlpPtyServer(const DlpToolOptions& options, const volatile std::sig_atomic_t& stop, const ServerIo& io)
{
    DlpSimulator sim(options.seed);
    sim.setFaults(options.faults);
    DlpPtyPort port(sim, options.verbose, io.log);
    ConsoleLines console(io.commandFd);
    if (!openToolPty(port.pty(), options.linkPath, "vexorin-dlp-sim", io))
        return 1;
    const std::string slave = port.pty().slavePath();
    std::fprintf(io.log, "vexorin-dlp-sim: DLP-IO8-G on %s%s%s, seed %u\n", slave.c_str(),
                 options.linkPath.empty() ? "" : " via ", options.linkPath.c_str(), options.seed);
    std::fflush(io.log);

    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    std::uint64_t simMs = 0;
    bool quit = false;
    while (stop == 0 && !quit) {
        pollfd fds[2] = {{port.fd(), POLLIN, 0}, {io.commandFd, POLLIN, 0}};
        const nfds_t n = console.readable() ? 2 : 1;
        const int r = ::poll(fds, n, port.waiting() ? 1 : 10);
        if (r < 0 && errno != EINTR) {
            std::fprintf(io.log, "vexorin-dlp-sim: poll: %s\n", std::strerror(errno));
            break;
        }
        const auto nowMs = std::uint64_t(std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count());
        sim.advance(int(nowMs - simMs));
        simMs = nowMs;

        if (n == 2 && r > 0 && (fds[1].revents & (POLLIN | POLLHUP | POLLERR)) != 0) {
            for (const std::string& line : console.read()) {
                std::string reply;
                applyDlpCommand(line, sim, quit, &reply);
                if (!reply.empty())
                    std::fprintf(io.log, "%s\n", reply.c_str());
            }
            std::fflush(io.log);
        }
        if (r > 0)
            port.read(fds[0].revents);
        port.write();
    }

    closeToolPty(port.pty(), options.linkPath, "vexorin-dlp-sim", io);
    return 0;
}

}  // namespace vexorin::sim
