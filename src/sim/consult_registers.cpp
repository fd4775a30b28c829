#include "sim/consult_registers.h"

#include <algorithm>
#include <cmath>

namespace vexorin::sim::reg {

namespace {

std::uint8_t byteOf(double v)
{
    return std::uint8_t(std::clamp<long>(std::lround(v), 0, 255));
}

int wordOf(double v)
{
    return int(std::clamp<long>(std::lround(v), 0, kMaxWord));
}

std::uint8_t digitalBits(const EngineSnapshot& e)
{
    std::uint8_t bits = 0;
    if (e.tpsVolts < 0.55)
        bits |= kBitIdleSwitch;
    if (e.cranking)
        bits |= kBitStartSignal;
    if (e.gear == 0)
        bits |= kBitNeutral;
    if (e.fuelPumpOn && (e.running || e.cranking))
        bits |= kBitFuelPump;
    if (e.fuelCut)
        bits |= kBitFuelCut;
    return bits;
}

}  // namespace

bool supported(std::uint8_t reg)
{
    switch (reg) {
    case kRpmHi: case kRpmLo: case kRpmRefHi: case kRpmRefLo:
    case kMafLeftHi: case kMafLeftLo: case kMafRightHi: case kMafRightLo:
    case kCoolant: case kO2Left: case kO2Right: case kSpeed: case kBattery: case kTps:
    case kFuelTemp: case kEgt: case kDigital: case kInjHi: case kInjLo: case kTiming: case kIacv:
    case kAlphaLeft: case kAlphaRight: case kSelfLearn:
        return true;
    default:
        return false;
    }
}

bool encode(const EngineSnapshot& e, std::uint8_t reg, std::uint8_t& out)
{
    switch (reg) {
    case kRpmHi: out = std::uint8_t(wordOf(e.rpm / 12.5) >> 8); return true;
    case kRpmLo: out = std::uint8_t(wordOf(e.rpm / 12.5) & 0xFF); return true;
    case kRpmRefHi: out = std::uint8_t(wordOf(e.rpm / 8.0) >> 8); return true;
    case kRpmRefLo: out = std::uint8_t(wordOf(e.rpm / 8.0) & 0xFF); return true;
    case kMafLeftHi: out = std::uint8_t(wordOf(e.mafLeftVolts * 200.0) >> 8); return true;
    case kMafLeftLo: out = std::uint8_t(wordOf(e.mafLeftVolts * 200.0) & 0xFF); return true;
    case kMafRightHi: out = std::uint8_t(wordOf(e.mafRightVolts * 200.0) >> 8); return true;
    case kMafRightLo: out = std::uint8_t(wordOf(e.mafRightVolts * 200.0) & 0xFF); return true;
    case kCoolant: out = byteOf(e.coolantC + 50.0); return true;
    case kO2Left: out = byteOf(e.o2LeftVolts * 100.0); return true;
    case kO2Right: out = byteOf(e.o2RightVolts * 100.0); return true;
    case kSpeed: out = byteOf(e.speedKmh / 2.0); return true;
    case kBattery: out = byteOf(e.batteryVolts * 12.5); return true;
    case kTps: out = byteOf(e.tpsVolts * 50.0); return true;
    case kFuelTemp: out = byteOf(e.fuelTempC + 50.0); return true;
    case kEgt: out = byteOf(e.egtVolts * 50.0); return true;
    case kDigital: out = digitalBits(e); return true;
    case kInjHi: out = std::uint8_t(wordOf(e.injectorMs * 100.0) >> 8); return true;
    case kInjLo: out = std::uint8_t(wordOf(e.injectorMs * 100.0) & 0xFF); return true;
    case kTiming: out = byteOf(110.0 - e.timingDeg); return true;
    case kIacv: out = byteOf(e.iacvPercent * 2.0); return true;
    case kAlphaLeft: out = byteOf(e.alphaLeft); return true;
    case kAlphaRight: out = byteOf(e.alphaRight); return true;
    case kSelfLearn: out = byteOf(e.selfLearn); return true;
    default: return false;
    }
}

}  // namespace vexorin::sim::reg
