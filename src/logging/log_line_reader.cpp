#include "logging/log_line_reader.h"

#include "ui/regular_file.h"

bool LogLineReader::open(const QString& path, QString* error)
{
    close();
    starts_.clear();
    indexedSize_ = 0;
    file_.setFileName(path);
    if (!vexorin::files::openRegular(file_, QIODevice::ReadOnly, error))
        return false;
    line_ = 0;
    starts_.push_back(0);
    return true;
}

void LogLineReader::close()
{
    file_.close();
    line_ = 0;
}

bool LogLineReader::atEnd() const
{
    return !file_.isOpen() || file_.atEnd();
}

QByteArray LogLineReader::readLine()
{
    QByteArray out;
    if (atEnd())
        return out;
    char c = 0;
    char buf[4096];
    bool done = false;
    while (!done) {
        const qint64 got = file_.peek(buf, sizeof buf);
        if (got <= 0)
            break;
        qint64 used = 0;
        for (; used < got; ++used) {
            c = buf[used];
            if (c == '\n' || c == '\r') {
                done = true;
                break;
            }
        }
        if (out.size() < kMaxLine)
            out.append(buf, int(qMin<qint64>(used, kMaxLine - out.size())));
        file_.skip(done ? used + 1 : used);
    }
    if (done && c == '\r') {  // CR LF is one line end
        char next = 0;
        if (file_.peek(&next, 1) == 1 && next == '\n')
            file_.skip(1);
    }
    ++line_;
    const qint64 pos = file_.pos();
    if (std::size_t(line_) == starts_.size()) {
        starts_.push_back(pos);
        indexedSize_ = qMax(indexedSize_, pos);
    }
    return out;
}

bool LogLineReader::seekLine(qint64 n)
{
    if (!file_.isOpen() || n < 0)
        return false;
    if (n < qint64(starts_.size())) {
        file_.seek(starts_[std::size_t(n)]);
        line_ = n;
        return n == 0 || starts_[std::size_t(n)] <= file_.size();
    }
    // Beyond the index: go to its last line and read on.
    file_.seek(starts_.back());
    line_ = qint64(starts_.size()) - 1;
    while (line_ < n && !atEnd())
        readLine();
    return line_ == n;
}

bool LogLineReader::reopen(QString* error)
{
    const QString path = file_.fileName();
    file_.close();
    file_.setFileName(path);
    if (!vexorin::files::openRegular(file_, QIODevice::ReadOnly, error))
        return false;
    line_ = 0;
    if (file_.size() < indexedSize_) {  // shorter than what was indexed: start the index afresh
        starts_.assign(1, 0);
        indexedSize_ = 0;
    }
    return true;
}
