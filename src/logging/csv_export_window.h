// The export of a log as CSV, as the File menu and the Log Player run it:
// the save dialog for the CSV file, the export with a progress bar when the
// log is long, and its messages.
#pragma once

#include <QString>

class LogCsvExport;
class QWidget;

namespace vexorin::logging {

inline const QString kLogOpenFilter = QStringLiteral("Log Files (*.log)|*.log");
inline const QString kCsvFilter = QStringLiteral("CSV Files (*.csv)|*.csv");

// Asks for the CSV file (offering the log's name with ".csv") and starts the
// export. The export runs on; its object (owned by `owner`) is returned so
// that one may wait for its end, or null when nothing was started.
LogCsvExport* exportLogAsCsv(QWidget* owner, const QString& logPath);

}  // namespace vexorin::logging
