// The backup a file gets before its first edit: a copy beside it, named with
// ".orig" before the last extension (tune.bin -> tune.orig.bin), made once and
// never overwritten.
#pragma once

#include <string>

namespace vexorin::rom {

// True for a name that is itself a backup ("tune.orig.bin", any case).
bool isBackupName(const std::string& path);
// The backup's path; empty for a file that is itself a backup.
std::string backupPathFor(const std::string& path);

struct BackupResult {
    enum class Kind {
        Made,      // the copy was written now
        Existed,   // a file of the name was there already and was left alone
        NotNeeded, // the file is itself a backup
        Failed     // no copy could be written: `error` says why
    } kind = Kind::Made;
    std::string path;
    std::string error;
};

// Copies the file to its backup unless a file of that name exists. The copy
// is written under a temporary name and renamed into place when complete, so
// that a failure never leaves a partial backup.
BackupResult makeBackup(const std::string& path);

}  // namespace vexorin::rom
