#include "sim/dlp_simulator.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

namespace vexorin::sim {

namespace {

constexpr std::uint8_t kLetters[DlpSimulator::kChannels] = {'Z', 'X', 'C', 'V', 'B', 'N', 'M', ','};

// How each input moves: a centre, a slow swing and a quick ripple, in volts,
// with the swing's period in milliseconds. Fuel level barely moves, boost and
// the wideband sensors swing, the spares sit near fixed levels.
struct Profile {
    double centre;
    double swing;
    double periodMs;
    double ripple;
};
constexpr Profile kProfiles[DlpSimulator::kChannels] = {
    {3.20, 0.25, 60000, 0.01},  // fuel level sender
    {1.80, 1.40, 7000, 0.05},   // boost pressure
    {2.60, 0.90, 11000, 0.03},  // oil pressure
    {2.35, 0.70, 3100, 0.06},   // wideband, left bank
    {2.45, 0.70, 3700, 0.06},   // wideband, right bank
    {0.45, 0.20, 20000, 0.01},
    {1.10, 0.30, 25000, 0.01},
    {4.20, 0.40, 30000, 0.01},
};
constexpr double kTwoPi = 6.283185307179586;

}  // namespace

DlpSimulator::DlpSimulator(std::uint32_t seed)
    : random_(seed)
{
    held_.fill(-1.0);
    // The seed moves every channel to another point of its cycle.
    nowMs_ = std::uint64_t(seed % 60000u);
}

int DlpSimulator::channelOf(std::uint8_t letter)
{
    for (int i = 0; i < kChannels; ++i)
        if (kLetters[i] == letter)
            return i + 1;
    return 0;
}

std::uint8_t DlpSimulator::letterOf(int channel)
{
    return channel >= 1 && channel <= kChannels ? kLetters[channel - 1] : 0;
}

std::string DlpSimulator::formatReading(double volts)
{
    if (!(volts >= 0.0))
        volts = 0.0;
    volts = std::min(volts, kMaxVolts);
    char buf[16];
    std::snprintf(buf, sizeof buf, "%.2fV", volts);
    return buf;
}

void DlpSimulator::holdVolts(int channel, double volts)
{
    if (channel >= 1 && channel <= kChannels)
        held_[std::size_t(channel - 1)] = volts;
}

void DlpSimulator::setVoltsSource(int channel, std::function<double()> source)
{
    if (channel >= 1 && channel <= kChannels)
        sources_[std::size_t(channel - 1)] = std::move(source);
}

void DlpSimulator::advance(int ms)
{
    if (ms > 0)
        nowMs_ += std::uint64_t(ms);
}

double DlpSimulator::volts(int channel) const
{
    if (channel < 1 || channel > kChannels)
        return 0.0;
    const std::size_t i = std::size_t(channel - 1);
    if (held_[i] >= 0.0)
        return std::min(held_[i], kMaxVolts);
    if (sources_[i]) {
        const double v = sources_[i]();
        return v >= 0.0 ? std::min(v, kMaxVolts) : 0.0;
    }
    const Profile& p = kProfiles[i];
    const double t = double(nowMs_);
    const double v = p.centre + p.swing * std::sin(kTwoPi * t / p.periodMs + double(i))
                     + p.ripple * std::sin(kTwoPi * t / 230.0 + 1.7 * double(i));
    return std::clamp(v, 0.0, kMaxVolts);
}

void DlpSimulator::receive(const std::uint8_t* bytes, std::size_t n)
{
    for (std::size_t k = 0; k < n; ++k) {
        const int channel = channelOf(bytes[k]);
        if (channel == 0 || faults_.silent)
            continue;
        std::string answer;
        if (faults_.garbage) {
            const std::uint32_t len = 1 + random_.below(12);
            for (std::uint32_t j = 0; j < len; ++j)
                answer.push_back(char(random_.below(256)));
        } else {
            answer = formatReading(volts(channel));
        }
        queue_.push_back({nowMs_ + std::uint64_t(std::max(0, faults_.lateMs)), answer});
    }
}

std::size_t DlpSimulator::pending() const
{
    std::size_t n = 0;
    for (const Answer& a : queue_) {
        if (a.dueMs > nowMs_)
            break;
        n += a.bytes.size();
    }
    return n;
}

std::vector<std::uint8_t> DlpSimulator::transmit(std::size_t max)
{
    std::vector<std::uint8_t> out;
    while (!queue_.empty() && queue_.front().dueMs <= nowMs_ && out.size() < max) {
        std::string& bytes = queue_.front().bytes;
        const std::size_t take = std::min(bytes.size(), max - out.size());
        out.insert(out.end(), bytes.begin(), bytes.begin() + std::ptrdiff_t(take));
        bytes.erase(0, take);
        if (bytes.empty())
            queue_.pop_front();
    }
    return out;
}

}  // namespace vexorin::sim
