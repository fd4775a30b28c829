// Exporting a log as CSV: the log is read a slice at a time on the event
// loop, so that a long log never holds the window and can show its progress;
// the CSV file is written beside its final name and only put in place when
// the whole export has succeeded, so a failure or a cancel never leaves a
// damaged or half-written file.
#pragma once

#include "logging/log_frames.h"

#include <QFile>
#include <QObject>
#include <QSaveFile>
#include <QString>
#include <memory>
#include <string>

class LogCsvExport : public QObject {
    Q_OBJECT
public:
    // Bytes of log read per slice: a one-hour log is one slice.
    static constexpr qint64 kSliceBytes = 8 * 1024 * 1024;

    explicit LogCsvExport(QObject* parent = nullptr);
    ~LogCsvExport() override;

    // The CSV name offered for a log: its name with ".csv".
    static QString csvNameFor(const QString& logPath);

    // Opens both files; false with the reason when either cannot be opened.
    bool open(const QString& logPath, const QString& csvPath, QString* error);
    // Whether the log is longer than one slice (the window then shows progress).
    bool long_() const { return total_ > kSliceBytes; }
    qint64 totalBytes() const { return total_; }
    qint64 bytesDone() const { return done_; }

    // Reads and writes one slice; true while there is more to do. The last
    // slice puts the file in place and emits finished().
    bool step();
    // Every slice now, one after the other.
    void runToEnd();
    // Every slice, one per turn of the event loop.
    void start();
    // Stops and leaves no CSV file behind (an older file of that name stays).
    void cancel();

    std::int64_t frames() const { return reader_.frames(); }
    std::int64_t unreadable() const { return reader_.unreadable(); }
    bool running() const { return running_; }
    bool cancelled() const { return cancelled_; }

signals:
    void progress(qint64 done, qint64 total);
    // `problem` is empty on success.
    void finished(const QString& problem);

private:
    void end(const QString& problem);

    QFile log_;
    std::unique_ptr<QSaveFile> csv_;
    vexorin::logging::LogFrameReader reader_;
    std::string rows_;
    qint64 total_ = 0;
    qint64 done_ = 0;
    bool running_ = false;
    bool cancelled_ = false;
};
