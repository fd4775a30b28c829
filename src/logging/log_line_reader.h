// Reads a text file line by line, as the log player does, and keeps the
// offset of every line start it has passed, so that going back to line n
// is a seek instead of a re-read from the start.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <vector>

class LogLineReader {
public:
    // Longer lines are cut to this many bytes (the rest is skipped).
    static constexpr qint64 kMaxLine = 64 * 1024;

    bool open(const QString& path, QString* error);
    void close();
    bool isOpen() const { return file_.isOpen(); }
    QString path() const { return file_.fileName(); }

    // True when no byte is left.
    bool atEnd() const;
    // The next line without its CR LF (or LF, or CR); empty at the end.
    QByteArray readLine();
    // Lines read since the start of the file (the index of the next line).
    qint64 lineNumber() const { return line_; }

    // Positions the reader before line n (0-based), as a re-read of n lines
    // would; false when the file has fewer than n lines (then at its end,
    // lineNumber() giving the lines it has).
    bool seekLine(qint64 n);

    // Reopens the same file (a fresh handle), keeping the index while the
    // file still holds what was indexed.
    bool reopen(QString* error);

private:
    QFile file_;
    qint64 line_ = 0;
    std::vector<qint64> starts_;  // starts_[i]: offset of line i
    qint64 indexedSize_ = 0;      // the file size when the index was last extended
};
