// The air flow meter's voltage-to-quantity curve and the engine speed and
// throttle classes that go with it (sixteen each, as many as a map has rows
// and columns). Fed from the sensor stream's MAF value; nothing reads the
// results yet.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace vexorin::rom {

// Quantities of the 64 rows, 0.08 V apart from 0.08 V to 5.12 V.
extern const std::array<std::int32_t, 64> kVqCurve;

// The whole volts the stream passes: raw times 5 / 1000, to two decimals,
// then to a whole number (half to even, as integer conversion rounds).
int vqArgument(int rawMaf);

class VqTable {
public:
    // Looks the voltage up and sorts engine speed (the RPM label's text) and
    // throttle into their classes. A quantity above 32767 does not fit the
    // field: the call ends there, the field keeps its last value and the
    // classes stay as they were. False in that case.
    bool VQTable(int voltage, const std::string& engineSpeedText);

    int airQuantity() const { return airQuantity_; }
    int tpBin() const { return tpBin_; }
    int rpmBin() const { return rpmBin_; }

    // The first row whose voltage, rounded to a whole number, equals the argument; -1 when none does.
    static std::int32_t quantityOf(int voltage);
    static int tpBinOf(int t);
    static int rpmBinOf(int e);

private:
    std::int16_t airQuantity_ = 0;
    std::int16_t tpBin_ = 0;
    std::int16_t rpmBin_ = 0;
};

}  // namespace vexorin::rom
