// The byte comparison of two BIN images: the summary texts, one row per named
// region with a difference (the converted single values as A → B), the bank
// rows for bytes outside every region, and lengths that differ.
#include "rom/bin_compare.h"
#include "rom/register_regions.h"
#include "rom/rom_image.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

using namespace vexorin::rom;

namespace {
using Image = std::vector<std::uint8_t>;

Image filled(std::size_t size, std::uint8_t value = 0x5A)
{
    return Image(size, value);
}

CompareResult compare(const Image& a, const Image& b)
{
    return compareImages(a.data(), a.size(), b.data(), b.size());
}

std::vector<std::string> texts(const CompareResult& r)
{
    std::vector<std::string> out;
    for (const CompareRow& row : r.rows)
        out.push_back(row.text);
    return out;
}

// One region's single value: byte `from` in A, `to` in B at the region's first offset.
std::string singleValueRow(int region, std::uint8_t from, std::uint8_t to)
{
    Image a = filled(kRomSize), b = filled(kRomSize);
    const auto at = std::size_t(kRegions[std::size_t(region)].firstOffset);
    a[at] = from;
    b[at] = to;
    const CompareResult r = compare(a, b);
    EXPECT_EQ(r.rows.size(), 1u);
    return r.rows.empty() ? std::string() : r.rows[0].text;
}

const std::string kArrow = "\xE2\x86\x92";
}  // namespace

TEST(BinCompareTest, IdenticalFilesHaveNoRows)
{
    const Image a = filled(kRomSize);
    const CompareResult r = compare(a, a);
    EXPECT_EQ(r.differing, 0u);
    EXPECT_TRUE(r.rows.empty());
    EXPECT_EQ(differenceText(r), "Files are identical");
    EXPECT_EQ(lengthText(r), "");
}

TEST(BinCompareTest, OneByteOutsideEveryRegion)
{
    Image a = filled(kRomSize), b = filled(kRomSize);
    b[std::size_t(fileOffsetOfBank(130, 0x10))] ^= 0xFF;
    const CompareResult r = compare(a, b);
    EXPECT_EQ(r.differing, 1u);
    EXPECT_EQ(differenceText(r), "1 byte differs");
    ASSERT_EQ(r.rows.size(), 1u);
    EXPECT_EQ(r.rows[0].text, "Bank 130: 1 byte");
    EXPECT_EQ(r.rows[0].kind, CompareRowKind::Bank);
    EXPECT_EQ(r.rows[0].bank, 130);
    EXPECT_EQ(r.rows[0].region, -1);
    EXPECT_EQ(r.rows[0].mapTab, -1);
}

TEST(BinCompareTest, BytesOutsideRegionsCountPerBank)
{
    Image a = filled(kRomSize), b = filled(kRomSize);
    for (int low : {0x00, 0x7F, 0xFF})
        b[std::size_t(fileOffsetOfBank(200, low))] = 0x01;
    const CompareResult r = compare(a, b);
    EXPECT_EQ(differenceText(r), "3 bytes differ");
    EXPECT_EQ(texts(r), std::vector<std::string>{"Bank 200: 3 bytes"});
}

TEST(BinCompareTest, WholeMapIsOneRowWithItsCount)
{
    Image a = filled(kRomSize), b = filled(kRomSize);
    for (int i = 0; i < 256; ++i)
        b[std::size_t(0x7D00 + i)] = std::uint8_t(i);  // one of them, 0x5A, stays
    b[0x7D5A] = 0;
    const CompareResult r = compare(a, b);
    EXPECT_EQ(r.differing, 256u);
    EXPECT_EQ(differenceText(r), "256 bytes differ");
    ASSERT_EQ(r.rows.size(), 1u);
    EXPECT_EQ(r.rows[0].text, "Primary Fuel Map: 256 bytes");
    EXPECT_EQ(r.rows[0].region, 9);
    EXPECT_EQ(r.rows[0].mapTab, 0);
    EXPECT_EQ(r.rows[0].count, 256u);
}

TEST(BinCompareTest, RegionRowsCountTheirBytes)
{
    Image a = filled(kRomSize), b = filled(kRomSize);
    b[0x7A70] = 1;  // VQ Table
    b[0x7A71] = 1;
    b[0x7E20] = 1;  // Throttle Enrichment Table
    b[0x79EF] = 1;  // the last of the Knock Limit's 13 bytes
    b[0x79F0] = 1;  // just past it: bank 249 outside any region
    EXPECT_EQ(texts(compare(a, b)),
              (std::vector<std::string>{"Throttle Enrichment Table: 1 byte", "VQ Table: 2 bytes", "Knock Limit: 1 byte",
                                        "Bank 249: 1 byte"}));
}

TEST(BinCompareTest, SingleValuesShowTheirConversions)
{
    EXPECT_EQ(singleValueRow(2, 0x8C, 0x94), "Rev Limiter: 7000 RPM " + kArrow + " 7400 RPM");
    EXPECT_EQ(singleValueRow(0, 0x64, 0x78), "Feedback Control: 1 msec " + kArrow + " 1.2 msec");
    EXPECT_EQ(singleValueRow(3, 0x64, 0x7D),
              "Top Speed Limiter: 200 km/h or 124 MPH " + kArrow + " 250 km/h or 155 MPH");
    EXPECT_EQ(singleValueRow(4, 0x50, 0x55), "Injector Latency: 0.8 msec " + kArrow + " 0.85 msec");
    EXPECT_EQ(singleValueRow(17, 0x8C, 0x78), "VTC Release: 7000 RPM " + kArrow + " 6000 RPM");
}

TEST(BinCompareTest, KValueReadsBothBytesAsOneNumber)
{
    Image a = filled(kRomSize), b = filled(kRomSize);
    a[0x7F2B] = 0x12;
    a[0x7F2C] = 0x34;
    b[0x7F2B] = 0x12;
    b[0x7F2C] = 0x35;
    const CompareResult r = compare(a, b);
    EXPECT_EQ(texts(r), std::vector<std::string>{"K Value: 4660 " + kArrow + " 4661"});
    EXPECT_EQ(r.rows[0].count, 1u);
}

TEST(BinCompareTest, LengthsThatDifferCompareTheCommonLength)
{
    Image a = filled(kRomSize), b = filled(kRomSize / 2);
    a[0x7FB4] = 0x01;  // Rev Limiter, beyond B's end: not compared
    b[10] = 0x00;
    const CompareResult r = compare(a, b);
    EXPECT_EQ(r.differing, 1u);
    EXPECT_EQ(differenceText(r), "1 byte differs");
    EXPECT_EQ(lengthText(r), "Lengths differ: A 32768 bytes, B 16384 bytes");
    EXPECT_EQ(texts(r), std::vector<std::string>{"Bank 128: 1 byte"});
}

TEST(BinCompareTest, EmptyFileAgainstAWholeImage)
{
    const Image empty, whole = filled(kRomSize);
    const CompareResult r = compare(empty, whole);
    EXPECT_EQ(r.differing, 0u);
    EXPECT_TRUE(r.rows.empty());
    EXPECT_EQ(differenceText(r), "0 bytes differ");  // not "identical": the lengths are not
    EXPECT_EQ(lengthText(r), "Lengths differ: A 0 bytes, B 32768 bytes");
}

TEST(BinCompareTest, BytesBeyondThirtyTwoKilobytesMakeOneRow)
{
    Image a = filled(kRomSize + 100), b = filled(kRomSize + 120);
    for (std::size_t i = kRomSize; i < kRomSize + 10; ++i)
        b[i] = 0;
    b[0x7FFF] = 0;  // bank 255, outside its regions
    const CompareResult r = compare(a, b);
    EXPECT_EQ(r.differing, 11u);
    EXPECT_EQ(lengthText(r), "Lengths differ: A 32868 bytes, B 32888 bytes");
    EXPECT_EQ(texts(r), (std::vector<std::string>{"Bank 255: 1 byte", "Beyond 32 KB: 10 bytes"}));
    EXPECT_EQ(r.rows[1].kind, CompareRowKind::Beyond);
    EXPECT_EQ(r.rows[1].bank, -1);
}

TEST(BinCompareTest, EveryByteDifferent)
{
    const Image a = filled(kRomSize, 0x00), b = filled(kRomSize, 0xFF);
    const CompareResult r = compare(a, b);
    EXPECT_EQ(r.differing, std::size_t(kRomSize));
    EXPECT_EQ(differenceText(r), "32768 bytes differ");

    // The reference: which bytes a region holds, counted the slow way.
    std::vector<bool> inRegion(kRomSize, false);
    for (const RegisterRegion& region : kRegions)
        for (int i = 0; i < region.byteCount; ++i)
            inRegion[std::size_t(region.firstOffset + i)] = true;
    std::vector<std::size_t> outside(256, 0);
    for (int i = 0; i < kRomSize; ++i)
        if (!inRegion[std::size_t(i)])
            ++outside[std::size_t(bankOfFileOffset(i))];
    std::vector<std::string> expected;
    for (int i = 0; i < kRegionCount; ++i) {
        const std::string name = regionName(i);
        if (i == 0)
            expected.push_back(name + ": 0 msec " + kArrow + " 2.55 msec");
        else if (i == 2 || i == 17)
            expected.push_back(name + ": 0 RPM " + kArrow + " 12750 RPM");
        else if (i == 3)
            expected.push_back(name + ": 0 km/h or 0 MPH " + kArrow + " 510 km/h or 317 MPH");
        else if (i == 4)
            expected.push_back(name + ": 0 msec " + kArrow + " 2.55 msec");
        else if (i == 5)
            expected.push_back(name + ": 0 " + kArrow + " 65535");
        else
            expected.push_back(name + ": " + byteCountText(std::size_t(kRegions[std::size_t(i)].byteCount)));
    }
    for (int bank = kFirstBank; bank <= kLastBank; ++bank)
        if (outside[std::size_t(bank)])
            expected.push_back("Bank " + std::to_string(bank) + ": " + std::to_string(outside[std::size_t(bank)]) + " bytes");
    EXPECT_EQ(texts(r), expected);
    EXPECT_EQ(r.rows.size(), 24u + 122u);  // 112 banks with no region at all, 5 above the maps, 5 shared ones
    const std::size_t sum = std::accumulate(r.rows.begin(), r.rows.end(), std::size_t(0),
                                            [](std::size_t s, const CompareRow& row) { return s + row.count; });
    EXPECT_EQ(sum, std::size_t(kRomSize));
}

TEST(BinCompareTest, RegionRowsFollowTheRegisterListOrder)
{
    Image a = filled(kRomSize), b = filled(kRomSize);
    for (const RegisterRegion& region : kRegions)
        b[std::size_t(region.firstOffset + region.byteCount - 1)] = 0x00;
    const CompareResult r = compare(a, b);
    ASSERT_EQ(r.rows.size(), std::size_t(kRegionCount));
    for (int i = 0; i < kRegionCount; ++i) {
        EXPECT_EQ(r.rows[std::size_t(i)].region, i);
        EXPECT_EQ(r.rows[std::size_t(i)].text.rfind(regionName(i) + ": ", 0), 0u) << r.rows[std::size_t(i)].text;
    }
}

TEST(BinCompareTest, NamedRegionsDoNotOverlap)
{
    // Every byte counts in one row only: the regions of the list share no byte.
    std::vector<int> holder(kRomSize, -1);
    for (int r = 0; r < kRegionCount; ++r) {
        const RegisterRegion& region = kRegions[std::size_t(r)];
        ASSERT_LE(region.firstOffset + region.byteCount, kRomSize);
        for (int i = 0; i < region.byteCount; ++i) {
            int& h = holder[std::size_t(region.firstOffset + i)];
            EXPECT_EQ(h, -1) << regionName(r) << " shares a byte with " << (h >= 0 ? regionName(h) : "");
            h = r;
        }
    }
}

TEST(BinCompareTest, MapRegionsKnowTheirMapViewerTab)
{
    const std::pair<const char*, int> maps[] = {
        {"Primary Fuel Map", 0},       {"High Octane High Gear Fuel Map", 1}, {"Secondary Fuel Map", 2},
        {"Low Octane High Gear Fuel Map", 3}, {"Primary Timing Map", 4},     {"Secondary Timing Map (Knock)", 5},
    };
    int found = 0;
    for (int r = 0; r < kRegionCount; ++r) {
        int expected = -1;
        for (const auto& [name, tab] : maps)
            if (regionName(r) == name)
                expected = tab;
        found += expected >= 0;
        EXPECT_EQ(mapTabOfRegionIndex(r), expected) << regionName(r);
    }
    EXPECT_EQ(found, 6);
    EXPECT_EQ(mapTabOfRegionIndex(-1), -1);
    EXPECT_EQ(mapTabOfRegionIndex(kRegionCount), -1);
}

TEST(BinCompareTest, CountTexts)
{
    EXPECT_EQ(byteCountText(1), "1 byte");
    EXPECT_EQ(byteCountText(0), "0 bytes");
    EXPECT_EQ(byteCountText(2), "2 bytes");
}
