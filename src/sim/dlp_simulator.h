// A DLP-IO8-G data-acquisition device: eight analog inputs, each read by one
// request letter and answered in text such as "2.34V" (volts, two decimals,
// a capital V, nothing before or after). The voltages move over time.
//
// Pure C++ (no Qt), like the ECU simulator: the PC side feeds bytes in with
// receive(), takes what the device sends with transmit(), and advance()
// moves the device's time; nothing here reads a clock.
//
// Request letters, channels 1 to 8: Z X C V B N M , (every other byte is
// ignored without an answer).
#pragma once

#include "sim/sim_random.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace vexorin::sim {

// Faults can be switched at any time and apply to requests that come after.
//  - silent: requests go unanswered, as with a device that hangs.
//  - lateMs: each answer leaves this long after its request.
//  - garbage: each answer is one to twelve random bytes instead of a reading.
struct DlpFaults {
    bool silent = false;
    int lateMs = 0;
    bool garbage = false;
};

class DlpSimulator {
public:
    static constexpr int kChannels = 8;
    static constexpr double kMaxVolts = 5.0;

    explicit DlpSimulator(std::uint32_t seed = 1);

    // The channel (1 to 8) that a request letter reads, or 0 for any other byte.
    static int channelOf(std::uint8_t letter);
    // The request letter of a channel (1 to 8).
    static std::uint8_t letterOf(int channel);
    // "2.34V": the reading as the device writes it, clamped to 0 to 5 volts.
    static std::string formatReading(double volts);

    void setFaults(const DlpFaults& f) { faults_ = f; }
    const DlpFaults& faults() const { return faults_; }

    // Holds a channel at a fixed voltage (a negative value lets it move again).
    void holdVolts(int channel, double volts);
    // Lets something outside (a sensor on the simulated engine) give a
    // channel's voltage; an empty function gives the channel back its own
    // movement. A held voltage still comes first.
    void setVoltsSource(int channel, std::function<double()> source);

    void advance(int ms);
    std::uint64_t nowMs() const { return nowMs_; }
    // The voltage on a channel (1 to 8) now.
    double volts(int channel) const;

    void receive(const std::uint8_t* bytes, std::size_t n);
    void receive(const std::vector<std::uint8_t>& bytes) { receive(bytes.data(), bytes.size()); }
    // Bytes due to go out now.
    std::size_t pending() const;
    // Up to `max` of the bytes due now.
    std::vector<std::uint8_t> transmit(std::size_t max);
    // Answers still waiting for their time (late mode).
    bool waiting() const { return !queue_.empty(); }

private:
    struct Answer {
        std::uint64_t dueMs;
        std::string bytes;
    };

    DlpFaults faults_;
    SimRandom random_;
    std::uint64_t nowMs_ = 0;
    std::array<double, kChannels> held_;
    std::array<std::function<double()>, kChannels> sources_;
    std::deque<Answer> queue_;
};

}  // namespace vexorin::sim
