// A Z32-like engine control unit that speaks the Consult wire protocol.
//
// Pure C++ (no Qt). The PC side feeds bytes in with receive(); what the ECU
// sends back is pulled with transmit(). While a stream runs (register
// stream, part number, fault codes, memory read) frames are produced on
// demand, so transmit() never runs dry until a stop byte (0x30) arrives.
// advance() moves simulated engine time; nothing here reads a clock.
//
// Wire behaviour in short:
//  - FF FF EF (any number of FF before the EF) opens the session; the ECU
//    answers 0x10. Until then every other byte is ignored. The session stays
//    open after a stop; a new FF FF EF is answered again.
//  - A command is echoed as a whole once its last operand has arrived: the
//    command byte inverted, then the operands as received (5A r -> A5 r,
//    C9 hi lo -> 36 hi lo, 0A code value -> F5 code value, D0 -> 2F, D1 -> 2E,
//    C1 -> 3E). A register this ECU does not have is echoed FE r and left out
//    of the frame. Bytes that are no command are ignored without an answer.
//  - 5A r, C9 hi lo, D0 and D1 build the pending request; F0 starts its
//    stream. A command of another kind than the pending one starts a new
//    request. C1 (clear faults) and 0A (active test) act at once; F0 after
//    them, or with nothing pending, does nothing.
//  - Every frame is FF, length, data. The first frame goes out right after
//    the F0; the next one is made only when the previous one has been pulled
//    completely, so values are fresh and a stop never waits long.
//  - While a stream runs only 0x30 is listened to: the frame in progress is
//    finished, then 0xCF follows and the stream ends. Every further 0x30
//    that arrives while no stream runs is answered by one 0xCF of its own,
//    so the PC's usual pair of stop bytes sent into a stream gives the rest
//    of the frame, CF, CF.
//  - A command whose operands do not all arrive within 200 ms of simulated
//    time is dropped.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vexorin::sim {

// Faults can be switched at any time.
//  - silent: the ECU is as good as unplugged. Nothing goes out, not even the
//    handshake reply, and what comes in is not heard either; what was queued
//    is dropped. A stream that was running goes on once silent is off again.
//  - halfReply: the echoes of a request are held back until the request is
//    complete (its F0, or the end of a C1 or 0A command); then only the first
//    half of them goes out, and only the first half of the first frame. After
//    that the stream sends nothing until a stop. The one-byte replies to the
//    handshake (10) and to a stop (CF) still come whole, so that the session
//    can be opened and a stream ended. Applies from the next request on.
//  - corruptEcho: every echo byte (including FE) comes back XOR 0xFF; frames,
//    10 and CF are unchanged. Applies to echoes made after it is switched on.
//  - corruptNextEcho: once only, the echo of the next command that arrives
//    comes back XOR 0xFF (all of its bytes); then the switch turns itself off.
struct SimFaults {
    bool silent = false;       // answer nothing at all
    bool halfReply = false;    // every reply stops halfway: frames are cut and the stream dries up
    bool corruptEcho = false;  // echoes of request bytes come back with their bits flipped
    bool corruptNextEcho = false;  // one echo comes back flipped, then the ECU is well again
};

// What the engine is doing; the engine model moves through these by itself
// unless one is forced.
enum class EnginePhase { Off, Idle, Rev, Drive };

// Engine quantities in engineering units, as the engine model holds them.
struct EngineSnapshot {
    EnginePhase phase = EnginePhase::Idle;
    bool running = false;         // firing (not stopped, stalled or cranking)
    bool cranking = false;        // starter turning
    bool fuelPumpOn = true;
    bool fuelCut = false;         // closed-throttle overrun: injectors off
    double rpm = 0;
    double speedKmh = 0;
    int gear = 0;                 // 0 neutral or clutch in, 1..5
    double tpsVolts = 0;
    double mafLeftVolts = 0;
    double mafRightVolts = 0;
    double coolantC = 0;          // what the ECU reports (a substituted value while that test runs)
    double fuelTempC = 0;
    double o2LeftVolts = 0;
    double o2RightVolts = 0;
    double batteryVolts = 0;
    double injectorMs = 0;
    double timingDeg = 0;         // degrees BTDC
    double iacvPercent = 0;
    double alphaLeft = 100;       // A/F alpha, percent
    double alphaRight = 100;
    double selfLearn = 100;       // learned A/F correction, percent
    double egtVolts = 0;          // exhaust gas temperature sensor
};

// The one seed of the built-in simulator and of vexorin-ecu-sim without
// --seed: both serve the same ROM.
constexpr std::uint32_t kDefaultSeed = 1;

class EcuSimulator {
public:
    static constexpr std::size_t kRomSize = 32768;   // ECU addresses 0x8000..0xFFFF
    static constexpr std::uint8_t kHandshakeReply = 0x10;
    static constexpr std::uint8_t kStopReply = 0xCF;
    static constexpr std::uint8_t kBadRegister = 0xFE;
    static constexpr int kCommandTimeoutMs = 200;    // an incomplete command is dropped after this

    explicit EcuSimulator(std::uint32_t seed = kDefaultSeed);
    ~EcuSimulator();
    EcuSimulator(const EcuSimulator& other);
    EcuSimulator& operator=(const EcuSimulator& other);
    EcuSimulator(EcuSimulator&&) noexcept;
    EcuSimulator& operator=(EcuSimulator&&) noexcept;

    // Bytes from the PC.
    void receive(const std::uint8_t* data, std::size_t n);
    void receive(const std::vector<std::uint8_t>& bytes) { receive(bytes.data(), bytes.size()); }

    // Up to max bytes of what the ECU sends next, generating stream frames as needed.
    std::vector<std::uint8_t> transmit(std::size_t max);
    // Bytes queued that need no new stream frame (echoes, the rest of a frame, a stop reply).
    std::size_t pending() const;
    bool streaming() const;
    // True once FF FF EF has been answered.
    bool initialised() const;

    // Move the engine model on by ms milliseconds of simulated time.
    void advance(int ms);
    // Simulated time since construction, in milliseconds.
    std::int64_t elapsedMs() const;

    void setFaults(const SimFaults& f);
    SimFaults faults() const;

    // Engine model controls.
    void forcePhase(EnginePhase p);   // stops the automatic idle/rev/drive cycle
    void releasePhase();              // back to the automatic cycle
    EnginePhase phase() const;
    bool phaseForced() const;
    EngineSnapshot engine() const;

    // Current raw value of a Consult register (0xFE-free: unsupported registers return false).
    bool registerValue(std::uint8_t reg, std::uint8_t& value) const;
    static bool registerSupported(std::uint8_t reg);
    // The byte a memory read of this ECU address returns (ROM from 0x8000, RAM below).
    std::uint8_t memoryByte(std::uint16_t address) const;

    // Identity and fault memory.
    std::string partNumber() const;                 // five ASCII characters, e.g. "30P00"
    void setPartNumber(const std::string& five);    // cut or padded with blanks to five
    std::uint16_t kValueWord() const;               // bytes at 0xFF2B (high) and 0xFF2C (low)
    struct Fault { std::uint8_t code; std::uint8_t count; };
    std::vector<Fault> faultCodes() const;
    void setFaultCodes(const std::vector<Fault>& codes);

    // Active tests: last value per test code (0 when never sent).
    std::uint8_t activeTestValue(std::uint8_t code) const;

    const std::array<std::uint8_t, kRomSize>& rom() const;
    void setRom(const std::array<std::uint8_t, kRomSize>& image);
    // Counts the calls of setRom, so that what is worked out from the ROM knows when to look again.
    std::uint64_t romRevision() const;

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};

// The synthetic ROM image the simulator starts with: plausible fuel and timing
// maps with their RPM/TP scales, the K value at 0xFF2B, filler elsewhere.
std::array<std::uint8_t, EcuSimulator::kRomSize> makeSyntheticRom(std::uint32_t seed = kDefaultSeed);

}  // namespace vexorin::sim
