// The Consult registers this ECU answers in a register stream (5A r), and how
// an engine quantity becomes the raw byte the PC converts back.
#pragma once

#include "sim/ecu_simulator.h"

#include <cstdint>

namespace vexorin::sim::reg {

constexpr std::uint8_t kRpmHi = 0;        // rpm / 12.5, 16 bits
constexpr std::uint8_t kRpmLo = 1;
constexpr std::uint8_t kRpmRefHi = 2;     // reference-sensor rpm / 8, 16 bits
constexpr std::uint8_t kRpmRefLo = 3;
constexpr std::uint8_t kMafLeftHi = 4;    // mV / 5, 16 bits
constexpr std::uint8_t kMafLeftLo = 5;
constexpr std::uint8_t kMafRightHi = 6;
constexpr std::uint8_t kMafRightLo = 7;
constexpr std::uint8_t kCoolant = 8;      // degrees C + 50
constexpr std::uint8_t kO2Left = 9;       // x 10 mV
constexpr std::uint8_t kO2Right = 10;
constexpr std::uint8_t kSpeed = 11;       // km/h / 2
constexpr std::uint8_t kBattery = 12;     // x 80 mV
constexpr std::uint8_t kTps = 13;         // x 20 mV
constexpr std::uint8_t kFuelTemp = 15;    // degrees C + 50
constexpr std::uint8_t kEgt = 17;         // exhaust gas temperature sensor, x 20 mV
constexpr std::uint8_t kDigital = 19;     // switch bits, see below
constexpr std::uint8_t kInjHi = 20;       // x 0.01 ms, 16 bits
constexpr std::uint8_t kInjLo = 21;
constexpr std::uint8_t kTiming = 22;      // 110 - degrees BTDC
constexpr std::uint8_t kIacv = 23;        // percent x 2
constexpr std::uint8_t kAlphaLeft = 26;   // A/F alpha, percent
constexpr std::uint8_t kAlphaRight = 27;
constexpr std::uint8_t kSelfLearn = 28;   // learned A/F correction, percent

// Bits of register 19.
constexpr std::uint8_t kBitIdleSwitch = 0x80;   // throttle closed
constexpr std::uint8_t kBitStartSignal = 0x40;  // starter turning
constexpr std::uint8_t kBitNeutral = 0x20;      // neutral or clutch in
constexpr std::uint8_t kBitFuelPump = 0x10;     // fuel pump relay on
constexpr std::uint8_t kBitFuelCut = 0x02;      // overrun fuel cut active

// Largest raw value of a two-byte register: its high byte stays 0..3.
constexpr int kMaxWord = 1023;

bool supported(std::uint8_t reg);
// The raw byte of a register for the given engine state; false for a register this ECU lacks.
bool encode(const EngineSnapshot& e, std::uint8_t reg, std::uint8_t& out);

}  // namespace vexorin::sim::reg
