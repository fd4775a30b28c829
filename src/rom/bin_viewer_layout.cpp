#include "rom/bin_viewer_layout.h"

#include "rom/rom_image.h"

#include <cctype>
#include <cstdio>

namespace vexorin::rom {


std::string hexNoPad(int value)
{
    char text[16];
    std::snprintf(text, sizeof text, "%X", unsigned(value));
    return text;
}

std::string bankRangeLabel(int firstOffset)
{
    return hexNoPad(firstOffset) + " - " + hexNoPad(firstOffset + kBankSize - 1);
}

std::string rowLabel(int bankFirstOffset, int row)
{
    const int first = bankFirstOffset + (row - 1) * 16;
    return hexNoPad(first) + " - " + hexNoPad(first + 15);
}

std::string columnHeading(int row, int column)
{
    return hexByte((row - 1) * 16 + column - 1);
}

std::string addressText(const std::string& label, int column)
{
    return label.substr(0, 3) + hexNoPad((column - 1) & 0xF);
}

int hexValue(const std::string& text)
{
    int value = 0;
    for (char ch : text) {
        if (!std::isxdigit(static_cast<unsigned char>(ch)))
            break;
        const int digit = std::isdigit(static_cast<unsigned char>(ch)) ? ch - '0' : std::toupper(ch) - 'A' + 10;
        value = value * 16 + digit;
        if (value > 0xFFFFF)
            break;
    }
    return value;
}

std::string plainNumber(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.15g", value);
    return text;
}

bool editKeyPasses(int code)
{
    if (code < 48 || (code >= 58 && code <= 64) || (code >= 71 && code <= 95) || code >= 106)
        return false;
    return true;
}

}  // namespace vexorin::rom
