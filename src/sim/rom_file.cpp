#include "sim/rom_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>
#include <utility>

namespace vexorin::sim {

bool readRomFile(const std::string& path, RomImage& image, std::string* error)
{
    auto fail = [&](const std::string& why) {
        if (error)
            *error = why;
        return false;
    };
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0)
        return fail("cannot read the ROM file " + path + ": " + std::strerror(errno));
    if (!S_ISREG(st.st_mode))
        return fail("the ROM file " + path + " is not a regular file");
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f)
        return fail("cannot read the ROM file " + path + ": " + std::strerror(errno));
    RomImage read{};
    const std::size_t got = std::fread(read.data(), 1, read.size(), f);
    const bool more = got == read.size() && std::fgetc(f) != EOF;
    const bool failed = std::ferror(f) != 0;
    std::fclose(f);
    if (failed)
        return fail("cannot read the ROM file " + path);
    if (got != read.size() || more) {
        const long long size = st.st_size;
        return fail("the ROM file " + path + " is " + std::to_string(size) + " bytes long, not the " +
                    std::to_string(read.size()) + " of a ROM image");
    }
    image = read;
    return true;
}

RomFileWatch::RomFileWatch(std::string path)
    : path_(std::move(path)), stamp_(look())
{
}

bool RomFileWatch::changed()
{
    if (path_.empty())
        return false;
    const Stamp now = look();
    if (now == stamp_)
        return false;
    stamp_ = now;
    return true;
}

RomFileWatch::Stamp RomFileWatch::look() const
{
    Stamp s;
    struct stat st {};
    if (path_.empty() || ::stat(path_.c_str(), &st) != 0)
        return s;
    s.present = true;
    s.mtimeNs = std::int64_t(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
    s.size = std::int64_t(st.st_size);
    return s;
}

}  // namespace vexorin::sim
