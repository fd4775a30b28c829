// The standalone vexorin-ecu-sim tool, driven through its pseudo-terminal as
// the workstation drives a serial port.
#include <gtest/gtest.h>
#include "sim/ecu_simulator.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace {

using Bytes = std::vector<std::uint8_t>;
using Clock = std::chrono::steady_clock;

// The tool sits in the same build tree: <build>/src/vexorin-ecu-sim beside <build>/tests/sim_tests.
std::string toolPath()
{
    char buf[4096];
    const ssize_t n = ::readlink("/proc/self/exe", buf, sizeof buf - 1);
    if (n <= 0)
        return {};
    buf[n] = '\0';
    std::string dir(buf);
    dir = dir.substr(0, dir.rfind('/'));
    const std::string tool = dir + "/../src/vexorin-ecu-sim";
    return ::access(tool.c_str(), X_OK) == 0 ? tool : std::string();
}

std::string tempPath(const std::string& stem)
{
    const char* base = std::getenv("TMPDIR");
    return std::string(base && *base ? base : "/tmp") + "/" + stem + "-" + std::to_string(::getpid());
}

class SimTool {
public:
    ~SimTool() { stop(); }

    // Starts the tool; with a console its standard input is a pipe, else /dev/null.
    bool start(const std::vector<std::string>& extra, bool console)
    {
        const std::string tool = toolPath();
        if (tool.empty())
            return false;
        logPath_ = tempPath("vexorin-sim-log") + "-" + std::to_string(++counter_);
        int out[2], in[2] = {-1, -1};
        if (::pipe(out) != 0 || (console && ::pipe(in) != 0))
            return false;
        posix_spawn_file_actions_t fa;
        posix_spawn_file_actions_init(&fa);
        if (console)
            posix_spawn_file_actions_adddup2(&fa, in[0], 0);
        else
            posix_spawn_file_actions_addopen(&fa, 0, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&fa, out[1], 1);
        posix_spawn_file_actions_addopen(&fa, 2, logPath_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_addclose(&fa, out[0]);
        if (console)
            posix_spawn_file_actions_addclose(&fa, in[1]);
        std::vector<std::string> args = {tool};
        args.insert(args.end(), extra.begin(), extra.end());
        std::vector<char*> argv;
        for (std::string& a : args)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        const int rc = ::posix_spawn(&pid_, tool.c_str(), &fa, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&fa);
        ::close(out[1]);
        if (console) {
            ::close(in[0]);
            console_ = in[1];
        }
        stdout_ = out[0];
        if (rc != 0) {
            pid_ = -1;
            return false;
        }
        return readPtyLine();
    }

    const std::string& ptyPath() const { return pty_; }

    void say(const std::string& line)
    {
        const std::string s = line + "\n";
        ASSERT_EQ(::write(console_, s.data(), s.size()), ssize_t(s.size()));
    }

    std::string log() const
    {
        std::ifstream f(logPath_);
        std::stringstream ss;
        ss << f.rdbuf();
        return ss.str();
    }

    // Waits until the tool's log holds `text`.
    bool waitForLog(const std::string& text, int ms = 1000) const
    {
        const auto end = Clock::now() + std::chrono::milliseconds(ms);
        while (Clock::now() < end) {
            if (log().find(text) != std::string::npos)
                return true;
            ::poll(nullptr, 0, 2);
        }
        return false;
    }

    // Exit status after SIGTERM (or after it ended by itself), -1 if it had to be killed.
    int stop(int signal = SIGTERM)
    {
        if (pid_ <= 0)
            return -1;
        if (signal != 0)
            ::kill(pid_, signal);
        int status = 0;
        const auto end = Clock::now() + std::chrono::seconds(2);
        int result = -1;
        while (Clock::now() < end) {
            const pid_t r = ::waitpid(pid_, &status, WNOHANG);
            if (r == pid_) {
                result = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
                break;
            }
            ::poll(nullptr, 0, 2);
        }
        if (result < 0) {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, &status, 0);
        }
        pid_ = -1;
        if (console_ >= 0)
            ::close(console_);
        if (stdout_ >= 0)
            ::close(stdout_);
        console_ = stdout_ = -1;
        ::unlink(logPath_.c_str());
        return result;
    }

private:
    bool readPtyLine()
    {
        std::string line;
        const auto end = Clock::now() + std::chrono::seconds(2);
        while (Clock::now() < end) {
            pollfd p{stdout_, POLLIN, 0};
            if (::poll(&p, 1, 20) <= 0)
                continue;
            char c;
            if (::read(stdout_, &c, 1) != 1)
                return false;
            if (c == '\n')
                break;
            line += c;
        }
        if (line.rfind("PTY ", 0) != 0)
            return false;
        pty_ = line.substr(4);
        return true;
    }

    static inline int counter_ = 0;
    pid_t pid_ = -1;
    int stdout_ = -1;
    int console_ = -1;
    std::string pty_;
    std::string logPath_;
};

class Port {
public:
    explicit Port(const std::string& path)
    {
        fd_ = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        if (fd_ < 0)
            return;
        termios t{};
        ::tcgetattr(fd_, &t);
        ::cfmakeraw(&t);
        t.c_cflag |= CLOCAL | CREAD;
        ::cfsetispeed(&t, B9600);
        ::cfsetospeed(&t, B9600);
        ::tcsetattr(fd_, TCSANOW, &t);
        ::tcflush(fd_, TCIOFLUSH);
    }
    ~Port() { close(); }
    void close()
    {
        if (fd_ >= 0)
            ::close(fd_);
        fd_ = -1;
    }
    bool ok() const { return fd_ >= 0; }

    void send(const Bytes& b)
    {
        // One byte per write, as the workstation sends.
        for (std::uint8_t c : b)
            ASSERT_EQ(::write(fd_, &c, 1), 1);
    }

    // Reads until n bytes have come or ms have passed.
    Bytes read(std::size_t n, int ms = 1000)
    {
        Bytes out;
        const auto end = Clock::now() + std::chrono::milliseconds(ms);
        while (out.size() < n) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
            if (left <= 0)
                break;
            pollfd p{fd_, POLLIN, 0};
            if (::poll(&p, 1, int(left)) <= 0)
                continue;
            std::uint8_t buf[256];
            const ssize_t r = ::read(fd_, buf, std::min(sizeof buf, n - out.size()));
            if (r > 0)
                out.insert(out.end(), buf, buf + r);
        }
        return out;
    }

    void clear() { ::tcflush(fd_, TCIFLUSH); }

private:
    int fd_ = -1;
};

#define REQUIRE_TOOL()                                                                  \
    do {                                                                                \
        if (toolPath().empty())                                                         \
            GTEST_SKIP() << "vexorin-ecu-sim not built beside the tests (../src/)";     \
    } while (0)

TEST(PtyTool, HandshakeAndPartNumber)
{
    REQUIRE_TOOL();
    const std::string link = tempPath("vexorin-ecu-link");
    SimTool tool;
    ASSERT_TRUE(tool.start({"--link", link, "--part-number", "12P34"}, false));
    EXPECT_EQ(tool.ptyPath().rfind("/dev/pts/", 0), 0u) << tool.ptyPath();

    char target[256] = {};
    ASSERT_GT(::readlink(link.c_str(), target, sizeof target - 1), 0);
    EXPECT_EQ(std::string(target), tool.ptyPath());

    Port port(link);   // through the link; standard input is already at its end
    ASSERT_TRUE(port.ok());
    port.send({0xFF, 0xFF, 0xEF});
    EXPECT_EQ(port.read(1), Bytes{0x10});

    port.send({0xD0, 0xF0});
    const Bytes r = port.read(26);
    port.send({0x30, 0x30});
    ASSERT_EQ(r.size(), 26u);
    EXPECT_EQ(r[0], 0x2F);
    EXPECT_EQ(r[1], 0xFF);
    EXPECT_EQ(r[2], 0x16);
    EXPECT_EQ(std::string(r.begin() + 20, r.begin() + 25), "12P34");

    EXPECT_EQ(tool.stop(), 0);
    struct stat st{};
    EXPECT_NE(::lstat(link.c_str(), &st), 0) << "link left behind";
}

TEST(PtyTool, SensorStreamAndStop)
{
    REQUIRE_TOOL();
    SimTool tool;
    ASSERT_TRUE(tool.start({"--seed", "3"}, false));
    Port port(tool.ptyPath());
    ASSERT_TRUE(port.ok());
    port.send({0xFF, 0xFF, 0xEF});
    ASSERT_EQ(port.read(1), Bytes{0x10});

    const Bytes regs = {11, 0, 1, 13, 4, 5, 9, 10, 20, 21, 22, 23, 8, 15, 12, 26};
    for (int cycle = 0; cycle < 3; ++cycle) {
        port.clear();
        Bytes req;
        for (std::uint8_t r : regs) {
            req.push_back(0x5A);
            req.push_back(r);
        }
        req.push_back(0xF0);
        port.send(req);
        const Bytes r = port.read(50);
        port.send({0x30, 0x30});
        ASSERT_EQ(r.size(), 50u);
        EXPECT_EQ(r[0], 0xA5);
        EXPECT_EQ(r[32], 0xFF);
        EXPECT_EQ(r[33], 16);
        const double rpm = (r[35] * 256 + r[36]) * 12.5;
        EXPECT_GT(rpm, 500);
        EXPECT_LT(rpm, 1200);
        // After the stop the line falls quiet: what was queued, the rest of a frame, the stop replies.
        const Bytes tail = port.read(1000, 60);
        EXPECT_LE(tail.size(), 64u + 18u + 2u);
        ASSERT_FALSE(tail.empty());
        EXPECT_EQ(tail.back(), 0xCF);
        EXPECT_TRUE(port.read(1, 30).empty());
    }
}

TEST(PtyTool, ClosingAndReopeningThePort)
{
    REQUIRE_TOOL();
    SimTool tool;
    ASSERT_TRUE(tool.start({}, false));
    for (int i = 0; i < 3; ++i) {
        Port port(tool.ptyPath());
        ASSERT_TRUE(port.ok());
        port.send({0xFF, 0xFF, 0xEF});
        EXPECT_EQ(port.read(1), Bytes{0x10}) << i;
        port.send({0xC9, 0xFF, 0x2B, 0xC9, 0xFF, 0x2C, 0xF0});
        EXPECT_EQ(port.read(10), (Bytes{0x36, 0xFF, 0x2B, 0x36, 0xFF, 0x2C, 0xFF, 0x02, 0x12, 0x34}));
        port.send({0x30});
        port.read(200, 20);
    }
    EXPECT_EQ(tool.stop(), 0);
}

TEST(PtyTool, ConsoleSwitchesFaults)
{
    REQUIRE_TOOL();
    SimTool tool;
    ASSERT_TRUE(tool.start({"--silent"}, true));
    Port port(tool.ptyPath());
    ASSERT_TRUE(port.ok());
    port.send({0xFF, 0xFF, 0xEF});
    EXPECT_TRUE(port.read(1, 60).empty());

    tool.say("silent off");
    ASSERT_TRUE(tool.waitForLog("ok: silent off"));
    port.send({0xFF, 0xFF, 0xEF});
    EXPECT_EQ(port.read(1), Bytes{0x10});

    tool.say("corrupt on");
    ASSERT_TRUE(tool.waitForLog("ok: corrupt on"));
    port.send({0xD1, 0xF0});
    EXPECT_EQ(port.read(5), (Bytes{0xD1, 0xFF, 0x02, 0x55, 0x00}));
    port.send({0x30, 0x30});
    port.read(200, 30);

    tool.say("bogus");
    ASSERT_TRUE(tool.waitForLog("error:"));
    tool.say("quit");
    EXPECT_EQ(tool.stop(0), 0);
}

TEST(PtyTool, PacedOutputRunsAtTheLineRate)
{
    REQUIRE_TOOL();
    SimTool tool;
    ASSERT_TRUE(tool.start({"--pace", "--faults", "11:3"}, false));
    Port port(tool.ptyPath());
    ASSERT_TRUE(port.ok());
    port.send({0xFF, 0xFF, 0xEF});
    ASSERT_EQ(port.read(1), Bytes{0x10});
    const auto t0 = Clock::now();
    port.send({0xD1, 0xF0});
    const Bytes r = port.read(1 + 4 * 5);
    const double ms = std::chrono::duration<double, std::milli>(Clock::now() - t0).count();
    port.send({0x30, 0x30});
    ASSERT_EQ(r.size(), 21u);
    EXPECT_EQ((Bytes{r.begin(), r.begin() + 5}), (Bytes{0x2E, 0xFF, 0x02, 0x11, 0x03}));
    EXPECT_GT(ms, 15.0);    // 21 bytes at 960 bytes/s take about 22 ms
    EXPECT_LT(ms, 200.0);
}

TEST(PtyTool, WritesItsRomAsABinFile)
{
    REQUIRE_TOOL();
    const std::string path = ::testing::TempDir() + "vexorin-sim-rom.bin";
    const std::string command = toolPath() + " --seed 9 --write-rom " + path + " >/dev/null";
    ASSERT_EQ(std::system(command.c_str()), 0);
    std::FILE* f = std::fopen(path.c_str(), "rb");
    ASSERT_NE(f, nullptr);
    std::vector<std::uint8_t> bytes(40000);
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), f));
    std::fclose(f);
    std::remove(path.c_str());
    const auto rom = vexorin::sim::makeSyntheticRom(9);
    EXPECT_EQ(bytes, std::vector<std::uint8_t>(rom.begin(), rom.end()));
}

TEST(PtyTool, RomFileThatCannotBeServedEndsTheTool)
{
    REQUIRE_TOOL();
    const std::string path = tempPath("vexorin-short-rom") + ".bin";
    {
        std::ofstream f(path, std::ios::binary);
        f << std::string(1000, 'x');
    }
    SimTool tool;
    EXPECT_FALSE(tool.start({"--rom", path}, false));
    EXPECT_TRUE(tool.waitForLog("is 1000 bytes long, not the 32768 of a ROM image")) << tool.log();
    EXPECT_EQ(tool.stop(0), 1);
    std::remove(path.c_str());

    SimTool missing;
    EXPECT_FALSE(missing.start({"--rom", path + ".missing"}, false));
    EXPECT_TRUE(missing.waitForLog("cannot read the ROM file")) << missing.log();
    EXPECT_EQ(missing.stop(0), 1);
}

TEST(PtyTool, ServesTheDlpOfItsEngine)
{
    REQUIRE_TOOL();
    const std::string romPath = tempPath("vexorin-served-rom") + ".bin";
    auto rom = vexorin::sim::makeSyntheticRom(5);
    {
        std::ofstream f(romPath, std::ios::binary);
        f.write(reinterpret_cast<const char*>(rom.data()), std::streamsize(rom.size()));
    }
    const std::string dlpLink = tempPath("vexorin-dlp-link");
    SimTool tool;
    ASSERT_TRUE(tool.start({"--rom", romPath, "--fuel-error", "8", "--dlp-link", dlpLink}, false));
    ASSERT_TRUE(tool.waitForLog("DLP-IO8-G on")) << tool.log();
    EXPECT_NE(tool.log().find("fuel error 8.0 %"), std::string::npos) << tool.log();

    // The ECU serves the file's ROM.
    Port ecu(tool.ptyPath());
    ASSERT_TRUE(ecu.ok());
    ecu.send({0xFF, 0xFF, 0xEF});
    ASSERT_EQ(ecu.read(1), Bytes{0x10});
    ecu.send({0xC9, 0xFD, 0x00, 0xF0});
    const Bytes cell = ecu.read(6);
    ecu.send({0x30, 0x30});
    ASSERT_EQ(cell.size(), 6u);
    EXPECT_EQ(cell[5], rom[0x7D00]);

    // The DLP-IO8-G answers on its own pseudo-terminal.
    Port dlp(dlpLink);
    ASSERT_TRUE(dlp.ok());
    dlp.send({'Z', 'X'});
    const Bytes r = dlp.read(10);
    const std::string text(r.begin(), r.end());
    ASSERT_EQ(text.size(), 10u) << text;
    EXPECT_EQ(text[1], '.');
    EXPECT_EQ(text[4], 'V');
    EXPECT_EQ(text[9], 'V');

    EXPECT_EQ(tool.stop(), 0);
    struct stat st{};
    EXPECT_NE(::lstat(dlpLink.c_str(), &st), 0) << "DLP link left behind";
    std::remove(romPath.c_str());
}

TEST(PtyTool, BadOptionIsRefused)
{
    REQUIRE_TOOL();
    SimTool tool;
    EXPECT_FALSE(tool.start({"--no-such-option"}, false));
    EXPECT_EQ(tool.stop(0), 2);
}

}  // namespace
