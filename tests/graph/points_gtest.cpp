#include "graph/points.h"
#include "ui/binary_files.h"

#include <cmath>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>

using namespace vexorin::graph;

namespace {
std::string tempPath(const char* name)
{
    return (std::filesystem::temp_directory_path() / (std::string("vexorin-") + name)).string();
}
std::uint64_t bits(double d)
{
    std::uint64_t u;
    std::memcpy(&u, &d, 8);
    return u;
}
}  // namespace

TEST(PointsTest, ChangedFiresOnEveryChange)
{
    Points p;
    int fired = 0;
    p.setChangedHandler([&] { ++fired; });
    p.Add(1);
    p.Add(2);
    EXPECT_TRUE(p.Remove(1));
    EXPECT_FALSE(p.Remove(5));
    EXPECT_FALSE(p.Remove(0));
    p.Clear();
    EXPECT_EQ(fired, 4);
    EXPECT_EQ(p.Count(), 0);
}

TEST(PointsTest, OneBasedItems)
{
    Points p;
    p.Add(10);
    p.Add(20);
    EXPECT_EQ(p.Item(1).Value, 10);
    EXPECT_EQ(p.Item(2).Value, 20);
    EXPECT_THROW(p.Item(3), std::out_of_range);
}

TEST(PointsTest, EmptySeriesSavesTheCountAlone)
{
    Points p;
    const ByteVector b = p.blob().serialize();
    const auto back = PropertyBlob::parse(b, nullptr);
    ASSERT_TRUE(back);
    ASSERT_EQ(back->records().size(), 1u);
    EXPECT_EQ(back->records()[0].name, u16("Count"));
    EXPECT_EQ(back->readInt(u16("Count")), 0);
    EXPECT_EQ(b[16] | b[17] | b[18] | b[19], 0);  // its distance field is 0
}

TEST(PointsTest, SaveLoadKeepsEveryBit)
{
    const double values[] = {0.0, -0.0, 1.5, -123.456, std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::denorm_min(), 1e308};
    Points p;
    for (double v : values)
        p.Add(v);
    const std::string path = tempPath("points.dat");
    std::string error;
    ASSERT_TRUE(p.Save(path, &error)) << error;
    Points q;
    int fired = 0;
    q.setChangedHandler([&] { ++fired; });
    ASSERT_TRUE(q.Load(path, &error)) << error;
    EXPECT_EQ(fired, 1);  // once, through the Clear
    ASSERT_EQ(q.Count(), int(std::size(values)));
    for (int i = 1; i <= q.Count(); ++i)
        EXPECT_EQ(bits(q.Item(i).Value), bits(values[i - 1])) << i;
    // Item names in order, then Count.
    const auto blob = p.blob();
    EXPECT_EQ(blob.records().front().name, u16("Item1"));
    EXPECT_EQ(blob.records().back().name, u16("Count"));
    std::filesystem::remove(path);
}

TEST(PointsTest, PointStateIsTheEightBytesAsFourUnits)
{
    Point pt;
    pt.Value = 1.0;  // 0x3FF0000000000000
    const std::u16string s = pt.state();
    ASSERT_EQ(s.size(), 4u);
    EXPECT_EQ(s[3], char16_t(0x3FF0));
    EXPECT_EQ(s[0], char16_t(0));
}

TEST(PointsTest, MissingFileIsFileNotFound)
{
    Points p;
    p.Add(1);
    std::string error;
    EXPECT_FALSE(p.Load(tempPath("no-such-file.dat"), &error));
    EXPECT_EQ(error, "File not found.");
    EXPECT_EQ(p.Count(), 1);  // unchanged
    EXPECT_FALSE(p.Load("", &error));
    EXPECT_EQ(error, "File not found.");
}

TEST(PointsTest, EmptyPathSaveFailsInTheWrite)
{
    Points p;
    std::string error;
    EXPECT_FALSE(p.Save("", &error));
    EXPECT_FALSE(error.empty());
}

TEST(PointsTest, GarbageFileClearsAndReports)
{
    const std::string path = tempPath("garbage.dat");
    std::string error;
    ASSERT_TRUE(vexorin::files::WriteBytes(path, {1, 2, 3, 4, 5, 6, 7, 8, 9}, &error));
    Points p;
    p.Add(5);
    EXPECT_FALSE(p.Load(path, &error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(p.Count(), 0);  // cleared before the bag failed
    ASSERT_TRUE(vexorin::files::WriteBytes(path, {}, &error));
    EXPECT_FALSE(p.Load(path, &error));
    std::filesystem::remove(path);
}

TEST(BinaryFilesTest, WriteReplacesAndReadReturnsTheBytes)
{
    const std::string path = tempPath("bytes.bin");
    std::string error;
    ASSERT_TRUE(vexorin::files::WriteBytes(path, {1, 2, 3, 4, 5}, &error));
    ASSERT_TRUE(vexorin::files::WriteBytes(path, {9}, &error));
    ByteVector back;
    ASSERT_TRUE(vexorin::files::ReadBytes(path, back, &error));
    EXPECT_EQ(back, ByteVector{9});
    EXPECT_TRUE(vexorin::files::FileExists(path));
    EXPECT_FALSE(vexorin::files::FileExists(""));
    std::filesystem::remove(path);
}
