#include "sensors/sensor_value.h"

#include <cstdlib>

namespace vexorin::sensors {

std::int64_t divideHalfEven(std::int64_t n, std::int64_t d)
{
    std::int64_t q = n / d;
    std::int64_t r = n % d;
    if (r < 0) {  // floor division
        r += d;
        --q;
    }
    if (2 * r > d || (2 * r == d && (q & 1)))
        ++q;
    return q;
}

namespace {
std::string grouped(std::int64_t whole, const std::string& group)
{
    std::string digits = std::to_string(whole);
    std::string out;
    const int n = int(digits.size());
    for (int i = 0; i < n; ++i) {
        if (i > 0 && (n - i) % 3 == 0)
            out += group;
        out += digits[std::size_t(i)];
    }
    return out;
}
}  // namespace

std::string Milli::plainText(const NumberSymbols& s) const
{
    const bool negative = v_ < 0;
    const std::int64_t a = std::llabs(v_);
    std::string out = (negative ? "-" : "") + std::to_string(a / 1000);
    std::int64_t frac = a % 1000;
    if (frac) {
        std::string f = std::to_string(frac);
        f.insert(0, 3 - f.size(), '0');
        while (!f.empty() && f.back() == '0')
            f.pop_back();
        out += s.decimal + f;
    }
    return out;
}

std::int64_t Milli::roundHalfEven() const
{
    return divideHalfEven(v_, 1000);
}

std::int64_t Milli::hundredthsHalfUp() const
{
    const std::int64_t a = std::llabs(v_);
    const std::int64_t h = (a + 5) / 10;
    return v_ < 0 ? -h : h;
}

std::string twoDecimalText(std::int64_t hundredths, const NumberSymbols& s)
{
    const bool negative = hundredths < 0;
    const std::int64_t a = std::llabs(hundredths);
    const std::int64_t frac = a % 100;
    return (negative ? "-" : "") + grouped(a / 100, s.group) + s.decimal + (frac < 10 ? "0" : "") +
           std::to_string(frac);
}

}  // namespace vexorin::sensors
