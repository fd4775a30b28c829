#include "rom/rom_image.h"

#include "ui/binary_files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace vexorin::rom {

namespace {
bool fail(std::string* error, const std::string& text)
{
    if (error)
        *error = text;
    return false;
}
}  // namespace

std::string hexByte(int value)
{
    static const char digits[] = "0123456789ABCDEF";
    const int v = value & 0xFF;
    return std::string{digits[v >> 4], digits[v & 0xF]};
}

int bigEndianWord(const std::vector<std::uint8_t>& image, int offset)
{
    if (offset < 0 || std::size_t(offset) + 1 >= image.size())
        return -1;
    return image[std::size_t(offset)] * 256 + image[std::size_t(offset) + 1];
}

bool readImage(const std::string& path, std::vector<std::uint8_t>& bytes, std::string* error)
{
    return files::ReadBytes(path, bytes, error);
}

bool readBank(const std::string& path, int bank, std::vector<std::uint8_t>& bytes, std::string* error)
{
    std::vector<std::uint8_t> image;
    if (!readImage(path, image, error))
        return false;
    const std::size_t first = std::size_t(fileOffsetOfBank(bank));
    if (bank < kFirstBank || bank > kLastBank || image.size() < first + kBankSize)
        return fail(error, kCorruptOrWrongSize);
    bytes.assign(image.begin() + long(first), image.begin() + long(first + kBankSize));
    return true;
}

bool writeByte(const std::string& path, long offset, int value, std::string* error)
{
    if (value < 0 || value > 255)
        return fail(error, "the value " + std::to_string(value) + " does not fit in a byte");
    const std::string problem = files::OpenProblem(path, files::Access::Read);  // it must exist already
    if (!problem.empty())
        return fail(error, problem);
    std::error_code ec;
    const auto size = std::filesystem::file_size(path, ec);
    if (ec)
        return fail(error, ec.message());
    if (offset < 0 || std::uintmax_t(offset) >= size)
        return fail(error, "offset " + std::to_string(offset) + " lies outside the file");
    std::FILE* f = std::fopen(path.c_str(), "r+b");
    if (!f)
        return fail(error, std::strerror(errno));
    const unsigned char byte = static_cast<unsigned char>(value);
    bool ok = std::fseek(f, offset, SEEK_SET) == 0 && std::fwrite(&byte, 1, 1, f) == 1;
    const int err = errno;
    ok = (std::fclose(f) == 0) && ok;
    if (!ok)
        return fail(error, std::strerror(err));
    return true;
}

}  // namespace vexorin::rom
