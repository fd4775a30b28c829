#include "consult/fake_transport.h"

#include "consult/recording_transport.h"

#include <QTimer>

FakeTransport::FakeTransport(QObject* parent)
    : SerialTransport(parent)
{
}

FakeTransport* FakeTransport::fromRecording(const QString& recording, QObject* parent)
{
    auto* t = new FakeTransport(parent);
    for (const RecordedExchange& e : parseRecording(recording))
        t->script_.append({e.direction == RecordedExchange::Write, e.bytes});
    return t;
}

bool FakeTransport::open(QString* error)
{
    if (!openError_.isEmpty()) {
        if (error)
            *error = openError_;
        return false;
    }
    open_ = true;
    input_.clear();
    releaseReplies();
    return true;
}

void FakeTransport::close()
{
    open_ = false;
    input_.clear();
}

QByteArray FakeTransport::readAll()
{
    QByteArray out;
    out.swap(input_);
    return out;
}

void FakeTransport::write(const QByteArray& bytes)
{
    if (!open_)
        return;
    written_ += bytes;
    writes_.append(bytes);
    if (!script_.isEmpty()) {
        for (char c : bytes) {
            if (stepIndex_ >= script_.size() || !script_[stepIndex_].isWrite) {
                mismatches_.append(QStringLiteral("unexpected write %1").arg(QString::fromLatin1(QByteArray(1, c).toHex())));
                continue;
            }
            const Step& s = script_[stepIndex_];
            if (s.bytes.at(stepOffset_) != c)
                mismatches_.append(QStringLiteral("step %1 byte %2: expected %3, got %4")
                                       .arg(stepIndex_ + 1)
                                       .arg(stepOffset_)
                                       .arg(QString::fromLatin1(QByteArray(1, s.bytes.at(stepOffset_)).toHex()),
                                            QString::fromLatin1(QByteArray(1, c).toHex())));
            if (++stepOffset_ >= s.bytes.size()) {
                ++stepIndex_;
                stepOffset_ = 0;
                releaseReplies();
            }
        }
    }
    if (responder_)
        responder_(*this, bytes);
}

void FakeTransport::releaseReplies()
{
    while (stepIndex_ < script_.size() && !script_[stepIndex_].isWrite) {
        arrive(script_[stepIndex_].bytes);
        ++stepIndex_;
    }
}

void FakeTransport::setDtr(bool on)
{
    dtr_.append(on);
}

void FakeTransport::arrive(const QByteArray& bytes)
{
    if (!open_ || bytes.isEmpty())
        return;
    input_ += bytes;
    if (!readyPending_) {
        readyPending_ = true;
        QTimer::singleShot(0, this, [this] {
            readyPending_ = false;
            if (open_ && !input_.isEmpty())
                emit readyRead();
        });
    }
}

void FakeTransport::unplug(const QString& reason)
{
    if (!open_)
        return;
    open_ = false;
    input_.clear();
    emit lost(reason);
}
