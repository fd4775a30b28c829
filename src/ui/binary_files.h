// Whole-file reads and writes of bytes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vexorin::files {

// The error text when the path is empty or names no file.
inline const char* const kFileNotFound = "File not found.";

// True when the path is not empty and names a regular file.
bool FileExists(const std::string& path);

// Why the path may not be opened, or empty when it may: a file is read only
// when it is a regular file, and written only when it is one or does not exist
// yet. A FIFO, a device or a folder is refused before any open, so that no
// open can block or write into something that is not a file.
enum class Access { Read, Write };
std::string OpenProblem(const std::string& path, Access access);

// The file's bytes; on failure false with the reason ("File not found." for a missing file).
bool ReadBytes(const std::string& path, std::vector<std::uint8_t>& bytes, std::string* error);

// Deletes any file of the name, then writes the bytes; false with the reason on failure.
bool WriteBytes(const std::string& path, const std::vector<std::uint8_t>& bytes, std::string* error);

}  // namespace vexorin::files
