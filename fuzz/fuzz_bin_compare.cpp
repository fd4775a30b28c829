// Any two images of up to a little over 32 KB compared byte for byte. The
// input's first five bytes give the two lengths and how B is made: from bytes
// of its own, or as a copy of A with a few bytes changed (offset and XOR
// mask taken from the input), so that single regions and banks are reached.
// Checked against a plain count: every differing byte of the common length
// counts once in exactly the row of its region, bank or the part past 32 KB;
// rows come in list order; an image against itself, and against the swapped
// pair, gives what it must.
#include "rom/bin_compare.h"
#include "rom/register_regions.h"
#include "rom/rom_image.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

using namespace vexorin::rom;

namespace {
constexpr std::size_t kHeader = 5;
constexpr std::size_t kLongest = 33000;

std::vector<std::uint8_t> repeated(const std::uint8_t* from, std::size_t count, std::size_t length)
{
    std::vector<std::uint8_t> out(length);
    for (std::size_t i = 0; i < length; ++i)
        out[i] = count ? from[i % count] : std::uint8_t(i);
    return out;
}

void check(bool ok)
{
    if (!ok)
        __builtin_trap();
}

// The reference: which region holds an offset, found by walking the list (once per offset).
int regionHolding(std::size_t offset)
{
    static const std::vector<int> holder = [] {
        std::vector<int> h(std::size_t(kRomSize), -1);
        for (std::size_t at = 0; at < h.size(); ++at)
            for (int r = 0; r < kRegionCount && h[at] < 0; ++r) {
                const RegisterRegion& region = kRegions[std::size_t(r)];
                if (at >= std::size_t(region.firstOffset) && at < std::size_t(region.firstOffset + region.byteCount))
                    h[at] = r;
            }
        return h;
    }();
    return holder[offset];
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < kHeader)
        return 0;
    const std::size_t lengthA = (std::size_t(data[0]) << 8 | data[1]) * 7 % kLongest;
    const std::size_t lengthB = (std::size_t(data[2]) << 8 | data[3]) * 7 % kLongest;
    const bool patched = data[4] & 1;
    const std::uint8_t* rest = data + kHeader;
    const std::size_t restSize = size - kHeader;
    const std::size_t half = restSize / 2;

    const std::vector<std::uint8_t> a = repeated(rest, patched ? restSize : half, lengthA);
    std::vector<std::uint8_t> b;
    if (patched) {
        b = repeated(rest, restSize, lengthB);  // A's bytes, to B's length
        for (std::size_t i = 0; i + 2 < restSize && !b.empty(); i += 3) {
            const std::size_t at = ((std::size_t(rest[i]) << 8 | rest[i + 1]) * 7 / 13 + 0x7000) % b.size();
            b[at] ^= rest[i + 2];
        }
    } else {
        b = repeated(rest + half, restSize - half, lengthB);
    }

    const CompareResult r = compareImages(a.data(), a.size(), b.data(), b.size());
    check(r.lengthA == a.size() && r.lengthB == b.size());

    // The plain count, by region, by bank and past 32 KB.
    const std::size_t common = std::min(a.size(), b.size());
    std::vector<std::size_t> inRegion(kRegionCount, 0), inBank(kLastBank + 1, 0);
    std::size_t differing = 0, beyond = 0;
    for (std::size_t i = 0; i < common; ++i) {
        if (a[i] == b[i])
            continue;
        ++differing;
        if (i >= std::size_t(kRomSize))
            ++beyond;
        else if (const int region = regionHolding(i); region >= 0)
            ++inRegion[std::size_t(region)];
        else
            ++inBank[std::size_t(bankOfFileOffset(int(i)))];
    }
    check(r.differing == differing);

    std::size_t sum = 0, regionRows = 0, bankRows = 0;
    int lastRegion = -1, lastBank = -1;
    bool beyondSeen = false;
    for (const CompareRow& row : r.rows) {
        check(row.count > 0 && !beyondSeen);  // the Beyond row, if any, comes last
        sum += row.count;
        switch (row.kind) {
        case CompareRowKind::Region:
            check(bankRows == 0 && row.region > lastRegion && row.region < kRegionCount);
            check(row.count == inRegion[std::size_t(row.region)]);
            check(row.mapTab == mapTabOfRegionIndex(row.region));
            check(row.text.rfind(regionName(row.region) + ": ", 0) == 0);
            lastRegion = row.region;
            ++regionRows;
            break;
        case CompareRowKind::Bank:
            check(row.bank > lastBank && row.bank >= kFirstBank && row.bank <= kLastBank && row.mapTab < 0);
            check(row.count == inBank[std::size_t(row.bank)]);
            check(row.text == "Bank " + std::to_string(row.bank) + ": " + byteCountText(row.count));
            lastBank = row.bank;
            ++bankRows;
            break;
        case CompareRowKind::Beyond:
            check(row.count == beyond && row.mapTab < 0);
            beyondSeen = true;
            break;
        }
    }
    check(sum == differing);
    check(regionRows == std::size_t(std::count_if(inRegion.begin(), inRegion.end(), [](std::size_t n) { return n > 0; })));
    check(bankRows == std::size_t(std::count_if(inBank.begin(), inBank.end(), [](std::size_t n) { return n > 0; })));
    check(beyondSeen == (beyond > 0));
    check((differing == 0) == r.rows.empty());
    check(differenceText(r) == (differing == 0 && a.size() == b.size() ? "Files are identical"
                                : differing == 1                       ? "1 byte differs"
                                                                       : std::to_string(differing) + " bytes differ"));
    check(lengthText(r).empty() == (a.size() == b.size()));

    // An image against itself: nothing differs.
    const CompareResult same = compareImages(a.data(), a.size(), a.data(), a.size());
    check(same.differing == 0 && same.rows.empty() && differenceText(same) == "Files are identical");

    // The pair swapped: the same places and counts.
    const CompareResult swapped = compareImages(b.data(), b.size(), a.data(), a.size());
    check(swapped.differing == r.differing && swapped.rows.size() == r.rows.size());
    for (std::size_t i = 0; i < r.rows.size(); ++i)
        check(swapped.rows[i].kind == r.rows[i].kind && swapped.rows[i].region == r.rows[i].region &&
              swapped.rows[i].bank == r.rows[i].bank && swapped.rows[i].count == r.rows[i].count);
    return 0;
}
