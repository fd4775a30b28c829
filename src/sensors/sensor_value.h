// Exact decimal numbers for the sensor conversions. Every conversion of the
// catalogue lands on a multiple of 1/1000, so a value is held as a whole
// number of thousandths and never passes through binary floating point.
#pragma once

#include <cstdint>
#include <string>

namespace vexorin::sensors {

// The decimal and grouping symbols of the user's regional settings.
struct NumberSymbols {
    std::string decimal = ".";
    std::string group = ",";
};

class Milli {
public:
    constexpr Milli() = default;
    constexpr explicit Milli(std::int64_t thousandths) : v_(thousandths) {}
    constexpr std::int64_t thousandths() const { return v_; }

    // The shortest decimal text, without trailing zeros: 18.6, 124, -58.
    std::string plainText(const NumberSymbols& s) const;
    // Rounded to a whole number, halves to the even neighbour.
    std::int64_t roundHalfEven() const;
    // Hundredths, halves rounded up (away from zero).
    std::int64_t hundredthsHalfUp() const;

    friend constexpr bool operator==(Milli a, Milli b) { return a.v_ == b.v_; }

private:
    std::int64_t v_ = 0;
};

// Rounds n / d to a whole number, halves to the even neighbour (d > 0).
std::int64_t divideHalfEven(std::int64_t n, std::int64_t d);

// Exactly two decimals from hundredths, with grouping of the whole part: 1.01, 12.00.
std::string twoDecimalText(std::int64_t hundredths, const NumberSymbols& s);

}  // namespace vexorin::sensors
