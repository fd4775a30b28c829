#include "ui/binary_files.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace vexorin::files {

namespace fs = std::filesystem;

bool FileExists(const std::string& path)
{
    std::error_code ec;
    return !path.empty() && fs::is_regular_file(path, ec);
}

std::string OpenProblem(const std::string& path, Access access)
{
    if (path.empty())
        return access == Access::Read ? kFileNotFound : "Bad file name or number.";
    std::error_code ec;
    const fs::file_status st = fs::status(path, ec);
    if (!fs::exists(st))
        return access == Access::Read ? std::string(kFileNotFound) : std::string();
    if (fs::is_regular_file(st))
        return std::string();
    const std::string name = fs::path(path).filename().string();
    return (name.empty() ? path : name) + " is not a regular file.";
}

bool ReadBytes(const std::string& path, std::vector<std::uint8_t>& bytes, std::string* error)
{
    const std::string problem = OpenProblem(path, Access::Read);
    if (!problem.empty()) {
        if (error)
            *error = problem;
        return false;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        if (error)
            *error = std::strerror(errno);
        return false;
    }
    bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (in.bad()) {
        if (error)
            *error = "read error";
        return false;
    }
    return true;
}

bool WriteBytes(const std::string& path, const std::vector<std::uint8_t>& bytes, std::string* error)
{
    const std::string problem = OpenProblem(path, Access::Write);
    if (!problem.empty()) {
        if (error)
            *error = problem;
        return false;
    }
    std::error_code ec;
    fs::remove(path, ec);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) {
        if (error)
            *error = path.empty() ? std::string("Bad file name or number.") : std::string(std::strerror(errno));
        return false;
    }
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    out.close();
    if (!out) {
        if (error)
            *error = "write error";
        return false;
    }
    return true;
}

}  // namespace vexorin::files
