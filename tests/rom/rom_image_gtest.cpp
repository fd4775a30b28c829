#include "rom/register_regions.h"
#include "rom/rom_image.h"
#include "ui/binary_files.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace vexorin::rom;
namespace fs = std::filesystem;

namespace {
struct TempFile {
    explicit TempFile(std::size_t size, const char* name)
        : path((fs::temp_directory_path() / (std::string("vexorin-rom-") + std::to_string(::getpid()) + name)).string())
    {
        bytes.resize(size);
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = std::uint8_t((i * 7 + i / 256) & 0xFF);
        EXPECT_TRUE(vexorin::files::WriteBytes(path, bytes, nullptr));
    }
    ~TempFile()
    {
        ::chmod(path.c_str(), 0644);
        std::error_code ec;
        fs::remove(path, ec);
    }
    std::vector<std::uint8_t> onDisk() const
    {
        std::vector<std::uint8_t> b;
        readImage(path, b);
        return b;
    }
    std::string path;
    std::vector<std::uint8_t> bytes;
};
}  // namespace

TEST(RomImageTest, BankArithmetic)
{
    EXPECT_EQ(fileOffsetOfBank(255), 0x7F00);
    EXPECT_EQ(fileOffsetOfBank(255, 255), 0x7FFF);
    EXPECT_EQ(fileOffsetOfBank(128), 0x0000);
    EXPECT_EQ(fileOffsetOfBank(128, 255), 0x00FF);
    EXPECT_EQ(fileOffsetOfBank(240), 0x7000);
    EXPECT_EQ(bankOfListIndex(0), 255);
    EXPECT_EQ(bankOfListIndex(127), 128);
    EXPECT_EQ(firstOffsetOfListIndex(0), 0x7F00);
    EXPECT_EQ(lastOffsetOfListIndex(0), 0x7FFF);
    EXPECT_EQ(firstOffsetOfListIndex(127), 0x0000);
    for (int i = 0; i < kBankCount; ++i)
        EXPECT_EQ(firstOffsetOfListIndex(i), fileOffsetOfBank(bankOfListIndex(i))) << i;
}

TEST(RomImageTest, AddressForms)
{
    EXPECT_EQ(fileOffsetOfEcu(0xFD00), 0x7D00);
    EXPECT_EQ(bankOfEcuAddress(0xFD00), 253);
    EXPECT_EQ(fileOffsetOfEcu(0xFF2B), 0x7F2B);
    EXPECT_EQ(bankOfEcuAddress(0xFF2B), 255);
    EXPECT_EQ(lowOfEcuAddress(0xFF2B), 0x2B);
    EXPECT_EQ(cellOfLow(0x2B), (Cell{3, 12}));
    EXPECT_EQ(cellOfLow(0x2C), (Cell{3, 13}));
    EXPECT_EQ(cellOfLow(0x00), (Cell{1, 1}));
    EXPECT_EQ(cellOfLow(0xFF), (Cell{16, 16}));
    EXPECT_EQ(lowOfCell(3, 12), 0x2B);
    // Every address: the bank and low byte sent in a memory read give back the file offset.
    for (int a = 0x8000; a <= 0xFFFF; ++a)
        ASSERT_EQ(fileOffsetOfBank(bankOfEcuAddress(a), lowOfEcuAddress(a)), fileOffsetOfEcu(a));
}

TEST(RomImageTest, HexTextIsTwoUpperCaseDigits)
{
    EXPECT_EQ(hexByte(0x0A), "0A");
    EXPECT_EQ(hexByte(0xFF), "FF");
    EXPECT_EQ(hexByte(0), "00");
}

TEST(RomImageTest, KValueIsBigEndian)
{
    std::vector<std::uint8_t> image(kRomSize);
    image[0x7F2B] = 0x12;
    image[0x7F2C] = 0x34;
    EXPECT_EQ(bigEndianWord(image, 0x7F2B), 0x1234);
    EXPECT_EQ(bigEndianWord(image, kRomSize - 1), -1);
}

TEST(RomImageTest, ShortFileFailsOnTheLastBankThoughTheFirstExists)
{
    TempFile f(32767, "short.bin");
    std::vector<std::uint8_t> bank;
    std::string error;
    EXPECT_FALSE(readBank(f.path, 255, bank, &error));
    EXPECT_EQ(error, kCorruptOrWrongSize);
    EXPECT_TRUE(readBank(f.path, 128, bank, &error));
}

TEST(RomImageTest, LongFileBehavesAsAFullImage)
{
    TempFile f(40000, "long.bin");
    std::vector<std::uint8_t> bank;
    ASSERT_TRUE(readBank(f.path, 255, bank));
    EXPECT_EQ(bank, std::vector<std::uint8_t>(f.bytes.begin() + 0x7F00, f.bytes.begin() + 0x8000));
}

TEST(RomImageTest, MissingFileIsReported)
{
    std::vector<std::uint8_t> bank;
    std::string error;
    EXPECT_FALSE(readBank("/nonexistent/vexorin.bin", 255, bank, &error));
    EXPECT_EQ(error, "File not found.");
}

TEST(RomImageTest, WritingOneByteLeavesTheRestAndTheLength)
{
    TempFile f(kRomSize, "write.bin");
    ASSERT_TRUE(writeByte(f.path, 0x7D05, 0xAB));
    std::vector<std::uint8_t> expected = f.bytes;
    expected[0x7D05] = 0xAB;
    EXPECT_EQ(f.onDisk(), expected);
    EXPECT_EQ(fs::file_size(f.path), std::uintmax_t(kRomSize));
}

TEST(RomImageTest, WritesNeverGrowTheFileOrTakeBadValues)
{
    TempFile f(100, "tiny.bin");
    std::string error;
    EXPECT_FALSE(writeByte(f.path, 100, 1, &error));
    EXPECT_FALSE(writeByte(f.path, -1, 1, &error));
    EXPECT_FALSE(writeByte(f.path, 5, 256, &error));
    EXPECT_FALSE(writeByte(f.path, 5, -1, &error));
    EXPECT_EQ(f.onDisk(), f.bytes);
    EXPECT_FALSE(writeByte("/nonexistent/vexorin.bin", 0, 1, &error));
    EXPECT_EQ(error, "File not found.");
    EXPECT_FALSE(fs::exists("/nonexistent/vexorin.bin"));
}

TEST(RomImageTest, ReadOnlyFileIsNotWritten)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "root writes read-only files";
    TempFile f(kRomSize, "readonly.bin");
    ::chmod(f.path.c_str(), 0444);
    std::string error;
    EXPECT_FALSE(writeByte(f.path, 3, 9, &error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(f.onDisk(), f.bytes);
}

TEST(RegisterRegionsTest, TwentyFourRowsInListOrderWithTheirHyphens)
{
    EXPECT_EQ(fileFormText(0), "(255) 7F91 ----------- Feedback Control");
    EXPECT_EQ(fileFormText(2), "(255) 7FB4 ---------- Rev Limiter");
    EXPECT_EQ(fileFormText(17), "(249) 79F6 ----------- VTC Release");
    EXPECT_EQ(fileFormText(23), "(240) 7000 - 70FF Low Octane High Gear Fuel Map");
    for (int i = 0; i < kRegionCount; ++i) {
        const RegisterRegion& r = kRegions[std::size_t(i)];
        EXPECT_EQ(bankOfFileOffset(r.firstOffset), r.bank) << r.text;
        EXPECT_EQ(fileFormText(i).substr(1, 3), std::to_string(r.bank)) << r.text;
        EXPECT_EQ(fileFormText(i).substr(6, 4), hexByte(r.firstOffset >> 8) + hexByte(r.firstOffset)) << r.text;
    }
}

TEST(RegisterRegionsTest, EcuFormTurnsEachAddressFrom7ToF)
{
    EXPECT_EQ(fileFormText(9), "(253) 7D00 - 7DFF Primary Fuel Map");
    EXPECT_EQ(ecuFormText(9), "(253) FD00 - FDFF Primary Fuel Map");
    EXPECT_EQ(ecuFormText(0), "(255) FF91 ----------- Feedback Control");
    EXPECT_EQ(ecuFormText(5), "(255) FF2B - FF2C K Value");
    EXPECT_EQ(ecuFormText(10), "(252) FC00 - FCFF Secondary Timing Map (Knock)");
}

TEST(RegisterRegionsTest, MapNamesLinkToTheirTabs)
{
    EXPECT_EQ(regionName(9), "Primary Fuel Map");
    EXPECT_EQ(regionName(0), "Feedback Control");
    EXPECT_EQ(regionName(10), "Secondary Timing Map (Knock)");
    EXPECT_EQ(mapTabOfRegion(regionName(9)), "Fuel (High Octane)");
    EXPECT_EQ(mapTabOfRegion(regionName(21)), "Fuel (Low Octane)");
    EXPECT_EQ(mapTabOfRegion(regionName(22)), "Fuel (High Oct/High Gear)");
    EXPECT_EQ(mapTabOfRegion(regionName(23)), "Fuel (Low Oct/High Gear)");
    EXPECT_EQ(mapTabOfRegion(regionName(20)), "Timing (High Octane)");
    EXPECT_EQ(mapTabOfRegion(regionName(10)), "Timing (Low Octane)");
    EXPECT_EQ(mapTabOfRegion(regionName(5)), "");
}

TEST(RegularFileTest, OnlyRegularFilesAreOpened)
{
    using vexorin::files::Access;
    using vexorin::files::OpenProblem;
    const fs::path dir = fs::temp_directory_path() / ("vexorin-regular-" + std::to_string(::getpid()));
    fs::create_directories(dir);
    const std::string fifo = (dir / "drive.log").string();
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    const std::string missing = (dir / "new.bin").string();
    TempFile regular(16, "regular.bin");

    EXPECT_EQ(OpenProblem(regular.path, Access::Read), "");
    EXPECT_EQ(OpenProblem(regular.path, Access::Write), "");
    EXPECT_EQ(OpenProblem(missing, Access::Read), "File not found.");
    EXPECT_EQ(OpenProblem(missing, Access::Write), "");
    EXPECT_EQ(OpenProblem(fifo, Access::Read), "drive.log is not a regular file.");
    EXPECT_EQ(OpenProblem(fifo, Access::Write), "drive.log is not a regular file.");
    EXPECT_NE(OpenProblem(dir.string(), Access::Read), "");
    EXPECT_NE(OpenProblem("/dev/zero", Access::Read), "");
    EXPECT_NE(OpenProblem("/dev/null", Access::Write), "");

    // None of the file layer's reads and writes waits on the pipe or replaces it.
    std::vector<std::uint8_t> bytes;
    std::string error;
    EXPECT_FALSE(vexorin::files::ReadBytes(fifo, bytes, &error));
    EXPECT_EQ(error, "drive.log is not a regular file.");
    EXPECT_FALSE(readImage(fifo, bytes, &error));
    EXPECT_FALSE(writeByte(fifo, 0, 1, &error));
    EXPECT_EQ(error, "drive.log is not a regular file.");
    EXPECT_FALSE(vexorin::files::WriteBytes(fifo, {1, 2, 3}, &error));
    EXPECT_TRUE(fs::is_fifo(fifo));
    EXPECT_FALSE(vexorin::files::WriteBytes("/dev/null", {1}, &error));
    EXPECT_TRUE(fs::exists("/dev/null"));
    fs::remove_all(dir);
}
