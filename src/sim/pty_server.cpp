#include "sim/pty_server.h"

#include "sim/console_lines.h"
#include "sim/dlp_pty_port.h"
#include "sim/pty_link.h"
#include "sim/simulated_car.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <poll.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace vexorin::sim {

namespace {

const char* phaseName(EnginePhase p)
{
    switch (p) {
    case EnginePhase::Off: return "off";
    case EnginePhase::Idle: return "idle";
    case EnginePhase::Rev: return "rev";
    case EnginePhase::Drive: return "drive";
    }
    return "?";
}

void logBytes(std::FILE* log, const char* dir, const std::uint8_t* b, std::size_t n)
{
    std::fprintf(log, "%s", dir);
    for (std::size_t i = 0; i < n; ++i)
        std::fprintf(log, " %02X", b[i]);
    std::fprintf(log, "\n");
}

class Server {
public:
    Server(const ToolOptions& o, const ServerIo& io)
        : opts_(o), io_(io), console_(io.commandFd), car_(o.seed, o.seed), sim_(car_.ecu()),
          dlp_(car_.dlp(), o.verbose, io.log), pace_(o.pace)
    {
        car_.setFuelError(o.fuelError);
        sim_.setFaults(o.faults);
        if (!o.partNumber.empty())
            sim_.setPartNumber(o.partNumber);
        if (o.faultCodesGiven)
            sim_.setFaultCodes(o.faultCodes);
    }

    int run(const volatile std::sig_atomic_t& stop);

private:
    bool open();
    void close();
    void readPty();
    void readCommands();
    void command(const std::string& line);
    void pump(double elapsedMs);
    void status();

    ToolOptions opts_;
    ServerIo io_;
    ConsoleLines console_;
    SimulatedCar car_;
    EcuSimulator& sim_;
    DlpPtyPort dlp_;   // open with --dlp-link only
    PtyLink pty_;
    bool pace_;
    bool quit_ = false;
    std::vector<std::uint8_t> outBuf_;
    std::size_t outPos_ = 0;
    double credit_ = 0;
};

// The ROM file first: a file that cannot be served ends the tool before any
// pseudo-terminal appears. The DLP-IO8-G's pty is made before the ECU's, so
// that both are there once the "PTY" line has been printed.
bool Server::open()
{
    std::string error;
    if (!opts_.romPath.empty() && !car_.serveRomFile(opts_.romPath, &error)) {
        std::fprintf(io_.log, "vexorin-ecu-sim: %s\n", error.c_str());
        return false;
    }
    if (!opts_.dlpLinkPath.empty() && !openPty(dlp_.pty(), opts_.dlpLinkPath, "vexorin-ecu-sim", io_))
        return false;
    if (!openToolPty(pty_, opts_.linkPath, "vexorin-ecu-sim", io_)) {
        if (dlp_.pty().isOpen())
            removeLink(opts_.dlpLinkPath, dlp_.pty().slavePath());
        return false;
    }
    const std::string slave = pty_.slavePath();
    std::fprintf(io_.log, "vexorin-ecu-sim: ECU on %s%s%s, seed %u, part number %s%s\n", slave.c_str(),
                 opts_.linkPath.empty() ? "" : " via ", opts_.linkPath.c_str(), opts_.seed,
                 sim_.partNumber().c_str(), pace_ ? ", paced" : "");
    if (!opts_.romPath.empty())
        std::fprintf(io_.log, "vexorin-ecu-sim: ROM from %s, read again when it changes\n", opts_.romPath.c_str());
    if (dlp_.pty().isOpen()) {
        std::fprintf(io_.out, "DLP %s\n", dlp_.pty().slavePath().c_str());
        std::fflush(io_.out);
        std::fprintf(io_.log,
                     "vexorin-ecu-sim: DLP-IO8-G on %s via %s, channel 1 a 0-5 V wideband (fuel error %.1f %%)\n",
                     dlp_.pty().slavePath().c_str(), opts_.dlpLinkPath.c_str(), car_.fuelError());
    }
    std::fflush(io_.log);
    return true;
}

void Server::close()
{
    if (dlp_.pty().isOpen()) {
        removeLink(opts_.dlpLinkPath, dlp_.pty().slavePath());
        dlp_.pty().close();
    }
    closeToolPty(pty_, opts_.linkPath, "vexorin-ecu-sim", io_);
}

int Server::run(const volatile std::sig_atomic_t& stop)
{
    if (!open())
        return 1;

    using Clock = std::chrono::steady_clock;
    auto last = Clock::now();
    double carryMs = 0;
    while (stop == 0 && !quit_) {
        const bool busy = sim_.streaming() || sim_.pending() > 0 || outPos_ < outBuf_.size() || dlp_.waiting();
        // The DLP-IO8-G's descriptor is -1 without --dlp-link: poll passes it by.
        pollfd fds[3] = {{pty_.masterFd(), POLLIN, 0}, {dlp_.fd(), POLLIN, 0}, {io_.commandFd, POLLIN, 0}};
        const nfds_t n = console_.readable() ? 3 : 2;
        const int r = ::poll(fds, n, busy ? 1 : 10);
        if (r < 0 && errno != EINTR) {
            std::fprintf(io_.log, "vexorin-ecu-sim: poll: %s\n", std::strerror(errno));
            break;
        }

        const auto now = Clock::now();
        const double elapsedMs = std::chrono::duration<double, std::milli>(now - last).count();
        last = now;
        carryMs += elapsedMs;
        const int wholeMs = int(std::min(carryMs, 60000.0));
        if (wholeMs > 0) {
            car_.advance(wholeMs);
            carryMs -= wholeMs;
        }

        // Console commands first: a switch typed before the PC's bytes arrived applies to them.
        if (n == 3 && r > 0 && (fds[2].revents & (POLLIN | POLLHUP | POLLERR)) != 0)
            readCommands();
        if (r > 0 && (fds[0].revents & POLLIN) != 0)
            readPty();
        else if (r > 0 && (fds[0].revents & (POLLHUP | POLLERR)) != 0)
            ::usleep(1000);   // nobody on the other side; do not spin
        if (dlp_.pty().isOpen()) {
            if (r > 0)
                dlp_.read(fds[1].revents);
            dlp_.write();
        }
        pump(elapsedMs);
    }

    close();
    return 0;
}

void Server::readPty()
{
    std::uint8_t buf[512];
    for (;;) {
        const long n = pty_.read(buf, sizeof buf);
        if (n <= 0)
            return;
        if (opts_.verbose)
            logBytes(io_.log, "pc ->", buf, std::size_t(n));
        sim_.receive(buf, std::size_t(n));
    }
}

void Server::readCommands()
{
    for (const std::string& line : console_.read())
        command(line);
}

void Server::command(const std::string& line)
{
    const ConsoleCommand c = parseConsoleCommand(line);
    SimFaults f = sim_.faults();
    switch (c.kind) {
    case ConsoleCommand::Kind::Empty:
        return;
    case ConsoleCommand::Kind::Invalid:
        std::fprintf(io_.log, "error: %s\n%s", c.error.c_str(), consoleHelp().c_str());
        std::fflush(io_.log);
        return;
    case ConsoleCommand::Kind::Silent: f.silent = c.on; sim_.setFaults(f); break;
    case ConsoleCommand::Kind::Half: f.halfReply = c.on; sim_.setFaults(f); break;
    case ConsoleCommand::Kind::Corrupt: f.corruptEcho = c.on; sim_.setFaults(f); break;
    case ConsoleCommand::Kind::Pace: pace_ = c.on; credit_ = 0; break;
    case ConsoleCommand::Kind::Phase:
        if (c.autoPhase)
            sim_.releasePhase();
        else
            sim_.forcePhase(c.phase);
        break;
    case ConsoleCommand::Kind::Faults: sim_.setFaultCodes(c.faultCodes); break;
    case ConsoleCommand::Kind::Status: status(); return;
    case ConsoleCommand::Kind::Quit: quit_ = true; break;
    }
    std::fprintf(io_.log, "ok: %s\n", line.c_str());
    std::fflush(io_.log);
}

void Server::status()
{
    const SimFaults f = sim_.faults();
    const EngineSnapshot e = sim_.engine();
    std::fprintf(io_.log,
                 "status: %s, phase %s%s, %.0f rpm, %.0f km/h, coolant %.1f C, silent %s, half %s, corrupt %s, "
                 "pace %s, %zu stored fault(s), wideband %.2f AFR, fuel error %.1f %%\n",
                 sim_.initialised() ? (sim_.streaming() ? "streaming" : "initialised") : "waiting for FF FF EF",
                 phaseName(sim_.phase()), sim_.phaseForced() ? " (forced)" : "", e.rpm, e.speedKmh, e.coolantC,
                 f.silent ? "on" : "off", f.halfReply ? "on" : "off", f.corruptEcho ? "on" : "off",
                 pace_ ? "on" : "off", sim_.faultCodes().size(), car_.widebandRatio(), car_.fuelError());
    std::fflush(io_.log);
}

void Server::pump(double elapsedMs)
{
    if (outPos_ >= outBuf_.size()) {
        outBuf_.clear();
        outPos_ = 0;
        const std::size_t queued = pty_.queuedForPeer();
        std::size_t room = queued < kMaxQueued ? kMaxQueued - queued : 0;
        if (pace_) {
            credit_ = std::min(credit_ + elapsedMs * kLineBytesPerSecond / 1000.0, 2.0);
            room = std::min(room, std::size_t(std::max(0.0, credit_)));
        }
        if (room > 0) {
            outBuf_ = sim_.transmit(room);
            credit_ -= double(outBuf_.size());
            if (opts_.verbose && !outBuf_.empty())
                logBytes(io_.log, "ecu ->", outBuf_.data(), outBuf_.size());
        }
    }
    if (outPos_ < outBuf_.size())
        outPos_ += pty_.write(outBuf_.data() + outPos_, outBuf_.size() - outPos_);
}

}  // namespace

bool openPty(PtyLink& pty, const std::string& linkPath, const char* tool, const ServerIo& io)
{
    std::string error;
    if (!pty.open(&error)) {
        std::fprintf(io.log, "%s: cannot open a pseudo-terminal: %s\n", tool, error.c_str());
        return false;
    }
    if (!linkPath.empty() && !createLink(linkPath, pty.slavePath(), &error)) {
        std::fprintf(io.log, "%s: %s\n", tool, error.c_str());
        return false;
    }
    return true;
}

bool openToolPty(PtyLink& pty, const std::string& linkPath, const char* tool, const ServerIo& io)
{
    if (!openPty(pty, linkPath, tool, io))
        return false;
    std::fprintf(io.out, "PTY %s\n", pty.slavePath().c_str());
    std::fflush(io.out);
    return true;
}

void closeToolPty(PtyLink& pty, const std::string& linkPath, const char* tool, const ServerIo& io)
{
    if (!linkPath.empty())
        removeLink(linkPath, pty.slavePath());
    pty.close();
    std::fprintf(io.log, "%s: stopped\n", tool);
}

int runPtyServer(const ToolOptions& options, const volatile std::sig_atomic_t& stop, const ServerIo& io)
{
    Server server(options, io);
    return server.run(stop);
}

}  // namespace vexorin::sim
