// A log as comma-separated values, for spreadsheets and log viewers: one
// header line, then one row per frame: the ISO 8601 local time and the
// thirteen values in the log's order, '.' as the decimal mark.
#pragma once

#include "logging/log_frames.h"

#include <string>

namespace vexorin::logging {

// The header line, without its line end.
extern const char* const kCsvHeader;
// The line end of every CSV line.
extern const char* const kCsvLineEnd;

// Appends the frame's row and its line end.
void appendCsvRow(const LogFrame& frame, std::string& out);

}  // namespace vexorin::logging
