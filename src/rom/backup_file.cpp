#include "rom/backup_file.h"

#include "ui/binary_files.h"

#include <cctype>
#include <filesystem>
#include <system_error>
#include <vector>

namespace vexorin::rom {

namespace {
constexpr const char* kMark = ".orig";

std::string lower(std::string s)
{
    for (char& c : s)
        c = char(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// The last extension of the name ("" when there is none; a leading dot starts no extension).
std::size_t extensionStart(const std::string& path)
{
    const std::size_t slash = path.find_last_of('/');
    const std::size_t nameStart = slash == std::string::npos ? 0 : slash + 1;
    const std::size_t dot = path.find_last_of('.');
    if (dot == std::string::npos || dot <= nameStart)
        return path.size();
    return dot;
}
}  // namespace

bool isBackupName(const std::string& path)
{
    const std::string stem = lower(path.substr(0, extensionStart(path)));
    const std::string mark = kMark;
    return stem.size() > mark.size() && stem.compare(stem.size() - mark.size(), mark.size(), mark) == 0 &&
           stem[stem.size() - mark.size() - 1] != '/';
}

std::string backupPathFor(const std::string& path)
{
    if (path.empty() || isBackupName(path))
        return {};
    const std::size_t ext = extensionStart(path);
    return path.substr(0, ext) + kMark + path.substr(ext);
}

BackupResult makeBackup(const std::string& path)
{
    namespace fs = std::filesystem;
    BackupResult result;
    result.path = backupPathFor(path);
    if (result.path.empty()) {
        result.kind = BackupResult::Kind::NotNeeded;
        return result;
    }
    std::error_code ec;
    if (fs::exists(fs::symlink_status(result.path, ec))) {
        result.kind = BackupResult::Kind::Existed;
        return result;
    }
    auto fail = [&](const std::string& why) {
        result.kind = BackupResult::Kind::Failed;
        result.error = why;
        return result;
    };
    std::vector<std::uint8_t> bytes;
    std::string error;
    if (!files::ReadBytes(path, bytes, &error))
        return fail(error);
    const std::string temporary = result.path + ".part";
    if (!files::WriteBytes(temporary, bytes, &error)) {
        if (fs::is_regular_file(fs::symlink_status(temporary, ec)))
            fs::remove(temporary, ec);  // a partial copy; anything else in the way is not ours
        return fail(error);
    }
    // A backup made meanwhile by someone else wins: ours is dropped.
    if (fs::exists(fs::symlink_status(result.path, ec))) {
        fs::remove(temporary, ec);
        result.kind = BackupResult::Kind::Existed;
        return result;
    }
    fs::rename(temporary, result.path, ec);
    if (ec) {
        fs::remove(temporary, ec);
        return fail(ec.message());
    }
    return result;
}

}  // namespace vexorin::rom
