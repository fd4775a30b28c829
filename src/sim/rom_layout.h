// Where things stand in the ECU's 32 KB program memory (ECU addresses
// 0x8000..0xFFFF; the image offset of an address is address - 0x8000).
#pragma once

#include <cstddef>
#include <cstdint>

namespace vexorin::sim::rom {

constexpr std::uint16_t kBase = 0x8000;
constexpr std::size_t offset(std::uint16_t address) { return std::size_t(address) - kBase; }

// The six 16x16 maps, one bank each, stored row-major: row = RPM scale step,
// column = TP scale step.
constexpr std::uint16_t kFuelHighOct = 0xFD00;           // Primary Fuel Map
constexpr std::uint16_t kFuelHighOctHighGear = 0xF100;   // High Octane High Gear Fuel Map
constexpr std::uint16_t kFuelLowOct = 0xF200;            // Secondary Fuel Map
constexpr std::uint16_t kFuelLowOctHighGear = 0xF000;    // Low Octane High Gear Fuel Map
constexpr std::uint16_t kTimingHighOct = 0xF800;         // Primary Timing Map
constexpr std::uint16_t kTimingLowOct = 0xFC00;          // Secondary Timing Map (Knock)
constexpr std::size_t kMapSize = 256;
constexpr std::size_t kMapSide = 16;

// Axis scales, 16 bytes each.
constexpr std::uint16_t kRpmScale = 0xFB00;       // byte x 50 = rpm, shared by all six maps
constexpr std::uint16_t kTpScaleFuel = 0xFAF0;    // the four fuel maps
constexpr std::uint16_t kTpScaleTiming = 0xFB10;  // the two timing maps

// Single values and small tables.
constexpr std::uint16_t kKValue = 0xFF2B;               // two bytes, high first
constexpr std::uint16_t kFeedbackControl = 0xFF91;      // byte / 100 = ms
constexpr std::uint16_t kKnockSensorMap = 0xFFE0;       // 9 bytes
constexpr std::uint16_t kRevLimiter = 0xFFB4;           // byte x 50 = rpm
constexpr std::uint16_t kTopSpeedLimiter = 0xFFA5;      // byte x 2 = km/h
constexpr std::uint16_t kInjectorLatency = 0xFF88;      // byte / 100 = ms
constexpr std::uint16_t kTtpMin = 0xFE80;               // 16 bytes
constexpr std::uint16_t kTtpMax = 0xFE90;               // 16 bytes
constexpr std::uint16_t kThrottleEnrichment = 0xFE20;   // 16 bytes
constexpr std::uint16_t kIgnitionDwellDuty = 0xFB60;    // 32 bytes
constexpr std::uint16_t kTempConversion = 0xFB30;       // 32 bytes
constexpr std::uint16_t kVqTable = 0xFA70;              // 64 big-endian words
constexpr std::uint16_t kVtcRelease = 0xF9F6;           // byte x 50 = rpm
constexpr std::uint16_t kKnockLimit = 0xF9E3;           // 13 bytes
constexpr std::uint16_t kAirFlowLimiter = 0xF960;       // 16 bytes
constexpr std::uint16_t kVectors = 0xFFEA;              // interrupt and reset vectors up to 0xFFFF

// Program code fills the lower part of the image; calibration the banks above.
constexpr std::uint16_t kCalibrationStart = 0xF000;

}  // namespace vexorin::sim::rom
