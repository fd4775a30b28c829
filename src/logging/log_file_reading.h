// A log file's bytes handed to a LogFrameReader, a slice at a time.
#pragma once

#include "logging/log_frames.h"

#include <QFile>
#include <QString>

namespace vexorin::logging {

// Reads up to `limit` bytes of the open file into the reader (a limit below
// 0: to the end), and at the end of the file ends the reader. The bytes
// read, or -1 with the file's error when a read fails.
qint64 feedLog(QFile& file, LogFrameReader& reader, qint64 limit, QString* error);

}  // namespace vexorin::logging
