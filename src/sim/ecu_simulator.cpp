// The Consult side of the simulated ECU: the receive state machine, the
// pending request, the stream and the output queue.
#include "sim/ecu_simulator.h"

#include "sim/consult_registers.h"
#include "sim/engine_model.h"
#include "sim/rom_layout.h"

#include <deque>

namespace vexorin::sim {

namespace {

constexpr std::uint8_t kCmdInitLead = 0xFF;
constexpr std::uint8_t kCmdInitTail = 0xEF;
constexpr std::uint8_t kCmdGo = 0xF0;
constexpr std::uint8_t kCmdStop = 0x30;
constexpr std::uint8_t kCmdRegister = 0x5A;
constexpr std::uint8_t kCmdPartNumber = 0xD0;
constexpr std::uint8_t kCmdFaults = 0xD1;
constexpr std::uint8_t kCmdClearFaults = 0xC1;
constexpr std::uint8_t kCmdMemory = 0xC9;
constexpr std::uint8_t kCmdActiveTest = 0x0A;
constexpr std::uint8_t kFrameStart = 0xFF;
constexpr std::uint8_t kNoFaultCode = 0x55;
constexpr std::size_t kMaxFrameData = 255;

// The part number reply carries 22 data bytes; the five characters of the
// part number are the last five. What stands before them: the ECU family
// (23710 as BCD), a hardware and a program revision, then reserved bytes.
constexpr std::size_t kPartFrameData = 22;
constexpr std::size_t kPartNumberAt = 17;
constexpr std::uint8_t kIdentityBlock[kPartNumberAt] = {
    0x23, 0x71, 0x00, 0x03, 0x0A, 0x01, 0x00, 0x00, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00};

int operandCount(std::uint8_t cmd)
{
    switch (cmd) {
    case kCmdRegister: return 1;
    case kCmdMemory: return 2;
    case kCmdActiveTest: return 2;
    default: return 0;
    }
}

}  // namespace

struct EcuSimulator::Impl {
    enum class Rx { Command, SawInitLead, Operands };
    enum class Request { None, Registers, Memory, PartNumber, Faults };

    explicit Impl(std::uint32_t seed) : engine(seed), image(makeSyntheticRom(seed)) {}

    EngineModel engine;
    std::array<std::uint8_t, kRomSize> image;
    std::uint64_t romRevision = 0;
    std::string part = "30P00";
    std::vector<Fault> stored;
    std::array<std::uint8_t, 256> tests{};
    SimFaults faults;
    std::int64_t nowMs = 0;

    // Receive side.
    bool initialised = false;
    Rx rx = Rx::Command;
    std::uint8_t cmd = 0;
    std::uint8_t operands[2] = {0, 0};
    int have = 0;
    int need = 0;
    std::int64_t lastByteMs = 0;

    // The request being built, up to its Go.
    Request request = Request::None;
    std::vector<std::uint8_t> registers;
    std::vector<std::uint16_t> addresses;

    // The stream started by the last Go.
    bool streaming = false;
    bool dry = false;   // a halved reply: the stream sends nothing more
    Request streamKind = Request::None;
    std::vector<std::uint8_t> streamRegisters;
    std::vector<std::uint16_t> streamAddresses;

    std::deque<std::uint8_t> out;
    std::vector<std::uint8_t> heldEcho;   // echoes kept back while replies are halved

    void receiveByte(std::uint8_t b);
    void command(std::uint8_t b);
    void execute();
    void go();
    void stopIdle();
    void echo(std::initializer_list<std::uint8_t> bytes);
    void endOfRequest();
    void startRequest(Request kind);
    std::vector<std::uint8_t> frame() const;
    std::uint8_t memory(std::uint16_t address) const;
};

void EcuSimulator::Impl::receiveByte(std::uint8_t b)
{
    if (rx == Rx::Operands && nowMs - lastByteMs > kCommandTimeoutMs)
        rx = Rx::Command;   // the rest of the last command never came
    lastByteMs = nowMs;

    if (streaming) {
        // While a stream runs the ECU only listens for the stop byte: the
        // frame in progress is finished, then the stop reply follows.
        if (b == kCmdStop) {
            streaming = false;
            dry = false;
            streamKind = Request::None;
            out.push_back(kStopReply);
        }
        return;
    }

    switch (rx) {
    case Rx::Operands:
        operands[have++] = b;
        if (have == need) {
            rx = Rx::Command;
            execute();
        }
        return;
    case Rx::SawInitLead:
        if (b == kCmdInitLead)
            return;
        rx = Rx::Command;
        if (b == kCmdInitTail) {
            initialised = true;
            request = Request::None;
            registers.clear();
            addresses.clear();
            heldEcho.clear();
            out.push_back(kHandshakeReply);
            return;
        }
        command(b);
        return;
    case Rx::Command:
        command(b);
        return;
    }
}

void EcuSimulator::Impl::command(std::uint8_t b)
{
    if (b == kCmdInitLead) {
        rx = Rx::SawInitLead;
        return;
    }
    if (!initialised)
        return;
    switch (b) {
    case kCmdGo:
        go();
        return;
    case kCmdStop:
        stopIdle();
        return;
    case kCmdRegister:
    case kCmdMemory:
    case kCmdActiveTest:
    case kCmdPartNumber:
    case kCmdFaults:
    case kCmdClearFaults:
        cmd = b;
        have = 0;
        need = operandCount(b);
        if (need > 0)
            rx = Rx::Operands;
        else
            execute();
        return;
    default:
        return;   // no command of this ECU: no answer
    }
}

void EcuSimulator::Impl::startRequest(Request kind)
{
    if (request != kind) {
        request = kind;
        registers.clear();
        addresses.clear();
    }
}

void EcuSimulator::Impl::execute()
{
    const std::uint8_t inverted = std::uint8_t(~cmd);
    switch (cmd) {
    case kCmdRegister: {
        startRequest(Request::Registers);
        const std::uint8_t r = operands[0];
        if (reg::supported(r) && registers.size() < kMaxFrameData) {
            registers.push_back(r);
            echo({inverted, r});
        } else {
            echo({kBadRegister, r});
        }
        return;
    }
    case kCmdMemory:
        startRequest(Request::Memory);
        if (addresses.size() < kMaxFrameData)
            addresses.push_back(std::uint16_t(operands[0] << 8 | operands[1]));
        echo({inverted, operands[0], operands[1]});
        return;
    case kCmdPartNumber:
        startRequest(Request::PartNumber);
        echo({inverted});
        return;
    case kCmdFaults:
        startRequest(Request::Faults);
        echo({inverted});
        return;
    case kCmdClearFaults:
        stored.clear();
        startRequest(Request::None);
        echo({inverted});
        endOfRequest();
        return;
    case kCmdActiveTest:
        tests[operands[0]] = operands[1];
        engine.activeTest(operands[0], operands[1]);
        startRequest(Request::None);
        echo({inverted, operands[0], operands[1]});
        endOfRequest();
        return;
    default:
        return;
    }
}

void EcuSimulator::Impl::echo(std::initializer_list<std::uint8_t> bytes)
{
    const bool flip = faults.corruptEcho || faults.corruptNextEcho;
    faults.corruptNextEcho = false;
    for (std::uint8_t b : bytes) {
        const std::uint8_t sent = flip ? std::uint8_t(b ^ 0xFF) : b;
        if (faults.halfReply)
            heldEcho.push_back(sent);
        else
            out.push_back(sent);
    }
}

void EcuSimulator::Impl::endOfRequest()
{
    // A halved reply lets out only the first half of the request's echoes.
    const std::size_t n = faults.halfReply ? heldEcho.size() / 2 : heldEcho.size();
    out.insert(out.end(), heldEcho.begin(), heldEcho.begin() + std::ptrdiff_t(n));
    heldEcho.clear();
}

void EcuSimulator::Impl::go()
{
    endOfRequest();
    const Request kind = request;
    const bool empty = (kind == Request::Registers && registers.empty())
        || (kind == Request::Memory && addresses.empty()) || kind == Request::None;
    if (empty) {
        startRequest(Request::None);
        return;
    }
    streaming = true;
    streamKind = kind;
    streamRegisters = registers;
    streamAddresses = addresses;
    startRequest(Request::None);

    // The first frame starts at once.
    std::vector<std::uint8_t> f = frame();
    if (faults.halfReply) {
        f.resize(f.size() / 2);
        dry = true;
    }
    out.insert(out.end(), f.begin(), f.end());
}

void EcuSimulator::Impl::stopIdle()
{
    // A stop with no stream running cancels whatever was being asked and is
    // answered on its own.
    endOfRequest();
    startRequest(Request::None);
    out.push_back(kStopReply);
}

std::uint8_t EcuSimulator::Impl::memory(std::uint16_t address) const
{
    if (address >= rom::kBase)
        return image[rom::offset(address)];
    // RAM: the first page mirrors the live register values; the rest reads 0.
    if (address < 0x100) {
        std::uint8_t v = 0;
        if (reg::encode(engine.snapshot(), std::uint8_t(address), v))
            return v;
    }
    return 0;
}

std::vector<std::uint8_t> EcuSimulator::Impl::frame() const
{
    std::vector<std::uint8_t> data;
    switch (streamKind) {
    case Request::Registers: {
        const EngineSnapshot snap = engine.snapshot();
        for (std::uint8_t r : streamRegisters) {
            std::uint8_t v = 0;
            reg::encode(snap, r, v);
            data.push_back(v);
        }
        break;
    }
    case Request::Memory:
        for (std::uint16_t a : streamAddresses)
            data.push_back(memory(a));
        break;
    case Request::PartNumber:
        data.assign(std::begin(kIdentityBlock), std::end(kIdentityBlock));
        for (char c : part)
            data.push_back(std::uint8_t(c));
        data.resize(kPartFrameData, 0x20);
        break;
    case Request::Faults:
        if (stored.empty()) {
            data = {kNoFaultCode, 0x00};
        } else {
            for (const Fault& f : stored) {
                if (data.size() + 2 > kMaxFrameData)
                    break;
                data.push_back(f.code);
                data.push_back(f.count);
            }
        }
        break;
    case Request::None:
        break;
    }
    std::vector<std::uint8_t> f;
    f.reserve(data.size() + 2);
    f.push_back(kFrameStart);
    f.push_back(std::uint8_t(data.size()));
    f.insert(f.end(), data.begin(), data.end());
    return f;
}

// ---------------------------------------------------------------------------

EcuSimulator::EcuSimulator(std::uint32_t seed) : d(std::make_unique<Impl>(seed)) {}
EcuSimulator::~EcuSimulator() = default;
EcuSimulator::EcuSimulator(const EcuSimulator& other) : d(std::make_unique<Impl>(*other.d)) {}
EcuSimulator& EcuSimulator::operator=(const EcuSimulator& other)
{
    if (this != &other)
        d = std::make_unique<Impl>(*other.d);
    return *this;
}
EcuSimulator::EcuSimulator(EcuSimulator&&) noexcept = default;
EcuSimulator& EcuSimulator::operator=(EcuSimulator&&) noexcept = default;

void EcuSimulator::receive(const std::uint8_t* data, std::size_t n)
{
    if (d->faults.silent || data == nullptr)
        return;   // a silent ECU is as good as unplugged: it hears nothing either
    for (std::size_t i = 0; i < n; ++i)
        d->receiveByte(data[i]);
}

std::vector<std::uint8_t> EcuSimulator::transmit(std::size_t max)
{
    std::vector<std::uint8_t> result;
    if (d->faults.silent)
        return result;
    while (result.size() < max) {
        if (d->out.empty()) {
            if (!d->streaming || d->dry)
                break;
            const std::vector<std::uint8_t> f = d->frame();
            d->out.insert(d->out.end(), f.begin(), f.end());
        }
        const std::size_t n = std::min(max - result.size(), d->out.size());
        result.insert(result.end(), d->out.begin(), d->out.begin() + std::ptrdiff_t(n));
        d->out.erase(d->out.begin(), d->out.begin() + std::ptrdiff_t(n));
    }
    return result;
}

std::size_t EcuSimulator::pending() const
{
    return d->faults.silent ? 0 : d->out.size();
}

bool EcuSimulator::streaming() const { return d->streaming; }
bool EcuSimulator::initialised() const { return d->initialised; }

void EcuSimulator::advance(int ms)
{
    if (ms <= 0)
        return;
    d->nowMs += ms;
    d->engine.advance(ms);
}

std::int64_t EcuSimulator::elapsedMs() const { return d->nowMs; }

void EcuSimulator::setFaults(const SimFaults& f)
{
    if (f.silent && !d->faults.silent) {
        d->out.clear();
        d->heldEcho.clear();
    }
    if (!f.halfReply && d->faults.halfReply) {
        d->out.insert(d->out.end(), d->heldEcho.begin(), d->heldEcho.end());
        d->heldEcho.clear();
    }
    d->faults = f;
}

SimFaults EcuSimulator::faults() const { return d->faults; }

void EcuSimulator::forcePhase(EnginePhase p) { d->engine.forcePhase(p); }
void EcuSimulator::releasePhase() { d->engine.releasePhase(); }
EnginePhase EcuSimulator::phase() const { return d->engine.phase(); }
bool EcuSimulator::phaseForced() const { return d->engine.phaseForced(); }
EngineSnapshot EcuSimulator::engine() const { return d->engine.snapshot(); }

bool EcuSimulator::registerValue(std::uint8_t reg, std::uint8_t& value) const
{
    return reg::encode(d->engine.snapshot(), reg, value);
}

bool EcuSimulator::registerSupported(std::uint8_t reg) { return reg::supported(reg); }

std::uint8_t EcuSimulator::memoryByte(std::uint16_t address) const { return d->memory(address); }

std::string EcuSimulator::partNumber() const { return d->part; }

void EcuSimulator::setPartNumber(const std::string& five)
{
    std::string p = five.substr(0, 5);
    p.resize(5, ' ');
    d->part = p;
}

std::uint16_t EcuSimulator::kValueWord() const
{
    const std::size_t at = rom::offset(rom::kKValue);
    return std::uint16_t(d->image[at] << 8 | d->image[at + 1]);
}

std::vector<EcuSimulator::Fault> EcuSimulator::faultCodes() const { return d->stored; }
void EcuSimulator::setFaultCodes(const std::vector<Fault>& codes) { d->stored = codes; }

std::uint8_t EcuSimulator::activeTestValue(std::uint8_t code) const { return d->tests[code]; }

const std::array<std::uint8_t, EcuSimulator::kRomSize>& EcuSimulator::rom() const { return d->image; }
void EcuSimulator::setRom(const std::array<std::uint8_t, kRomSize>& image)
{
    d->image = image;
    ++d->romRevision;
}
std::uint64_t EcuSimulator::romRevision() const { return d->romRevision; }

}  // namespace vexorin::sim
