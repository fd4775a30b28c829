#include "rom/bin_compare.h"

#include "rom/rules/map_decoding.h"
#include "rom/region_views.h"
#include "rom/register_regions.h"
#include "rom/rom_image.h"

#include <algorithm>
#include <array>

namespace vexorin::rom {

namespace {

constexpr const char* kArrow = " \xE2\x86\x92 ";  // U+2192 with a space on each side
constexpr std::int8_t kNoRegion = -1;

// For every offset of a 32 KB image, the region of kRegions that holds it
// (the first in list order), or kNoRegion. Built once.
const std::array<std::int8_t, kRomSize>& regionOfOffset()
{
    static const std::array<std::int8_t, kRomSize> table = [] {
        std::array<std::int8_t, kRomSize> t{};
        t.fill(kNoRegion);
        for (int r = kRegionCount - 1; r >= 0; --r) {
            const RegisterRegion& region = kRegions[std::size_t(r)];
            for (int i = 0; i < region.byteCount; ++i)
                t[std::size_t(region.firstOffset + i)] = std::int8_t(r);
        }
        return t;
    }();
    return table;
}

// The two-digit hex text of a byte as the viewer's grid shows it; blank past the file's end.
std::string cellText(const std::uint8_t* bytes, std::size_t length, std::size_t offset)
{
    return offset < length ? hexByte(bytes[offset]) : std::string();
}

std::string convertedValue(Conversion conversion, const std::uint8_t* bytes, std::size_t length, std::size_t offset)
{
    const std::string first = cellText(bytes, length, offset);
    // The K value reads its two cells as one number; the others read one cell.
    const std::string second = conversion == Conversion::KValue ? cellText(bytes, length, offset + 1) : first;
    return convertRegion(conversion, first, second);
}

}  // namespace

std::string byteCountText(std::size_t count)
{
    return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

std::string differenceText(const CompareResult& result)
{
    if (result.differing == 0 && result.lengthA == result.lengthB)
        return "Files are identical";
    if (result.differing == 1)
        return "1 byte differs";
    return std::to_string(result.differing) + " bytes differ";
}

std::string lengthText(const CompareResult& result)
{
    if (result.lengthA == result.lengthB)
        return {};
    return "Lengths differ: A " + byteCountText(result.lengthA) + ", B " + byteCountText(result.lengthB);
}

int mapTabOfRegionIndex(int regionIndex)
{
    if (regionIndex < 0 || regionIndex >= kRegionCount)
        return -1;
    const std::string caption = mapTabOfRegion(regionName(regionIndex));
    if (caption.empty())
        return -1;
    for (int tab = 0; tab < kMapCount; ++tab)
        if (caption == kMaps[std::size_t(tab)].tabCaption)
            return tab;
    return -1;
}

CompareResult compareImages(const std::uint8_t* a, std::size_t na, const std::uint8_t* b, std::size_t nb)
{
    CompareResult result;
    result.lengthA = na;
    result.lengthB = nb;
    const std::size_t common = std::min(na, nb);
    const std::size_t inRom = std::min<std::size_t>(common, kRomSize);
    const auto& regionOf = regionOfOffset();

    // One pass: every differing byte counts once, in its region or in its bank.
    std::array<std::size_t, kRegionCount> inRegion{};
    std::array<std::size_t, kBankCount> inBank{};
    std::size_t differing = 0;
    for (std::size_t i = 0; i < inRom; ++i) {
        if (a[i] == b[i])
            continue;
        ++differing;
        const int region = regionOf[i];
        if (region != kNoRegion)
            ++inRegion[std::size_t(region)];
        else
            ++inBank[i / kBankSize];
    }
    // Past 32 KB no byte has a region or a bank of the ECU (its "bank" would
    // lie above 255): those differences make one row of their own.
    std::size_t beyond = 0;
    for (std::size_t i = inRom; i < common; ++i)
        beyond += a[i] != b[i];
    result.differing = differing + beyond;

    for (int r = 0; r < kRegionCount; ++r) {
        const std::size_t count = inRegion[std::size_t(r)];
        if (count == 0)
            continue;
        const RegisterRegion& region = kRegions[std::size_t(r)];
        const Conversion conversion = kRegionViews[std::size_t(r)].conversion;
        std::string text = regionName(r) + ": ";
        if (conversion == Conversion::None || conversion == Conversion::Message) {
            text += byteCountText(count);
        } else {
            const std::size_t at = std::size_t(region.firstOffset);
            text += convertedValue(conversion, a, na, at) + kArrow + convertedValue(conversion, b, nb, at);
        }
        result.rows.push_back({CompareRowKind::Region, r, -1, mapTabOfRegionIndex(r), count, std::move(text)});
    }
    for (int i = 0; i < kBankCount; ++i) {
        const std::size_t count = inBank[std::size_t(i)];
        if (count == 0)
            continue;
        const int bank = kFirstBank + i;
        result.rows.push_back({CompareRowKind::Bank, -1, bank, -1, count,
                               "Bank " + std::to_string(bank) + ": " + byteCountText(count)});
    }
    if (beyond > 0)
        result.rows.push_back({CompareRowKind::Beyond, -1, -1, -1, beyond, "Beyond 32 KB: " + byteCountText(beyond)});
    return result;
}

}  // namespace vexorin::rom
