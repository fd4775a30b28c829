// The named regions of the ROM as the register lists show them, in the file
// form ("(253) 7D00 - 7DFF Primary Fuel Map") and the ECU form ("FD00").
#pragma once

#include <array>
#include <string>

namespace vexorin::rom {

struct RegisterRegion {
    const char* text;  // file form, exactly as the list shows it
    int bank;
    int firstOffset;   // file offset of the first byte
    int byteCount;
};

constexpr int kRegionCount = 24;
extern const std::array<RegisterRegion, kRegionCount> kRegions;

// The list text in the file form.
std::string fileFormText(int index);
// The same text with the first digit of each address turned from 7 to F.
std::string ecuFormText(int index);

// The Map Viewer tab caption of a map region ("Primary Fuel Map" → "Fuel (High Octane)");
// empty for regions that are not maps.
std::string mapTabOfRegion(const std::string& regionName);
// The name part of a list text: what follows the address or run of hyphens.
std::string regionName(int index);

}  // namespace vexorin::rom
