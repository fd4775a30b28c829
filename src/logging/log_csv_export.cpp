#include "logging/log_csv_export.h"

#include "logging/log_csv.h"
#include "logging/log_file_reading.h"
#include "ui/regular_file.h"

#include <QDir>
#include <QFileInfo>
#include <QTimer>

using namespace vexorin::logging;

LogCsvExport::LogCsvExport(QObject* parent)
    : QObject(parent), reader_([this](const LogFrame& f) { appendCsvRow(f, rows_); })
{
}

LogCsvExport::~LogCsvExport()
{
    if (csv_)
        csv_->cancelWriting();
}

QString LogCsvExport::csvNameFor(const QString& logPath)
{
    const QFileInfo info(logPath);
    return info.dir().filePath(info.completeBaseName() + QStringLiteral(".csv"));
}

bool LogCsvExport::open(const QString& logPath, const QString& csvPath, QString* error)
{
    log_.close();
    log_.setFileName(logPath);
    QString problem;
    if (!vexorin::files::openRegular(log_, QIODevice::ReadOnly, &problem)) {
        *error = QStringLiteral("The log file could not be opened: ") + problem;
        return false;
    }
    if (vexorin::files::identity(csvPath) == vexorin::files::identity(logPath)) {
        log_.close();
        *error = QStringLiteral("The CSV file cannot take the place of its log: choose another name.");
        return false;
    }
    problem = vexorin::files::openProblem(csvPath, vexorin::files::Access::Write);
    csv_ = std::make_unique<QSaveFile>(csvPath);
    if (problem.isEmpty() && !csv_->open(QIODevice::WriteOnly))
        problem = csv_->errorString();
    if (!problem.isEmpty()) {
        log_.close();
        csv_.reset();
        *error = QStringLiteral("The CSV file could not be written: ") + problem;
        return false;
    }
    total_ = log_.size();
    done_ = 0;
    rows_ = kCsvHeader;
    rows_ += kCsvLineEnd;
    running_ = true;
    return true;
}

bool LogCsvExport::step()
{
    if (!running_)
        return false;
    QString error;
    const qint64 got = feedLog(log_, reader_, kSliceBytes, &error);
    if (got < 0) {
        end(QStringLiteral("The log file could not be read: ") + error);
        return false;
    }
    done_ += got;
    const bool atEnd = log_.atEnd();
    if (csv_->write(rows_.data(), qint64(rows_.size())) != qint64(rows_.size())) {
        end(QStringLiteral("The CSV file could not be written: ") + csv_->errorString());
        return false;
    }
    rows_.clear();
    emit progress(done_, total_);
    if (!atEnd)
        return true;
    if (!csv_->commit()) {
        end(QStringLiteral("The CSV file could not be written: ") + csv_->errorString());
        return false;
    }
    csv_.reset();
    end(QString());
    return false;
}

void LogCsvExport::runToEnd()
{
    while (step()) {
    }
}

void LogCsvExport::start()
{
    if (!running_)
        return;
    QTimer::singleShot(0, this, [this] {
        if (step())
            start();
    });
}

void LogCsvExport::cancel()
{
    if (!running_)
        return;
    cancelled_ = true;
    end(QStringLiteral("The export was cancelled."));
}

void LogCsvExport::end(const QString& problem)
{
    running_ = false;
    log_.close();
    if (csv_)
        csv_->cancelWriting();
    csv_.reset();
    emit finished(problem);
}
