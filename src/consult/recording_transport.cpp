#include "consult/recording_transport.h"

#include <QFileDevice>


#include <QRegularExpression>

QList<RecordedExchange> parseRecording(const QString& text)
{
    QList<RecordedExchange> out;
    static const QRegularExpression hex(QStringLiteral("^[0-9a-fA-F]*$"));
    for (QString line : text.split(QLatin1Char('\n'))) {
        line = line.trimmed();
        if (line.size() < 2 || (line[0] != QLatin1Char('W') && line[0] != QLatin1Char('R')) || line[1] != QLatin1Char(' '))
            continue;
        QString digits = line.mid(2);
        digits.remove(QLatin1Char(' '));
        if (digits.isEmpty() || digits.size() % 2 || !hex.match(digits).hasMatch())
            continue;
        out.append({line[0] == QLatin1Char('W') ? RecordedExchange::Write : RecordedExchange::Read,
                    QByteArray::fromHex(digits.toLatin1())});
    }
    return out;
}

RecordingTransport::RecordingTransport(SerialTransport* inner, std::unique_ptr<QIODevice> log, QObject* parent)
    : SerialTransport(parent), inner_(inner), file_(std::move(log))
{
    inner_->setParent(this);
    connect(inner_, &SerialTransport::readyRead, this, [this] {
        drain();
        emit readyRead();
    });
    connect(inner_, &SerialTransport::lost, this, [this](const QString& reason) {
        line(QStringLiteral("# lost: ") + reason);
        emit lost(reason);
    });
}

RecordingTransport::~RecordingTransport()
{
    flushWrites();
}

void RecordingTransport::line(const QString& text)
{
    if (!file_ || !file_->isOpen())
        return;
    file_->write(text.toLatin1() + '\n');
    // Written out at every request, so a recording survives the program; not at
    // every few bytes that arrive.
    if (text.startsWith(QLatin1Char('W')) || text.startsWith(QLatin1Char('#')))
        if (auto* file = qobject_cast<QFileDevice*>(file_.get()))
            file->flush();
}

void RecordingTransport::flushWrites()
{
    if (pendingWrite_.isEmpty())
        return;
    line(QStringLiteral("W ") + QString::fromLatin1(pendingWrite_.toHex()));
    pendingWrite_.clear();
}

void RecordingTransport::drain()
{
    const QByteArray fresh = inner_->readAll();
    if (fresh.isEmpty())
        return;
    flushWrites();
    line(QStringLiteral("R ") + QString::fromLatin1(fresh.toHex()));
    buffer_ += fresh;
}

bool RecordingTransport::open(QString* error)
{
    const bool ok = inner_->open(error);
    line(ok ? QStringLiteral("# open") : QStringLiteral("# open failed"));
    return ok;
}

void RecordingTransport::close()
{
    flushWrites();
    line(QStringLiteral("# close"));
    buffer_.clear();
    inner_->close();
}

bool RecordingTransport::isOpen() const
{
    return inner_->isOpen();
}

qint64 RecordingTransport::bytesAvailable()
{
    drain();
    return buffer_.size();
}

QByteArray RecordingTransport::readAll()
{
    drain();
    QByteArray out;
    out.swap(buffer_);
    return out;
}

void RecordingTransport::clear()
{
    drain();
    buffer_.clear();
    inner_->clear();
}

void RecordingTransport::write(const QByteArray& bytes)
{
    if (!inner_->isOpen())
        return;
    drain();
    pendingWrite_ += bytes;
    inner_->write(bytes);
}

bool RecordingTransport::poll(qint64 count)
{
    drain();
    if (buffer_.size() < count) {
        inner_->poll(count - buffer_.size());
        drain();
    }
    return buffer_.size() >= count;
}

void RecordingTransport::timedOut(qint64 count)
{
    flushWrites();
    line(QStringLiteral("# timed out waiting for %1 bytes").arg(count));
    inner_->timedOut(count);
}

void RecordingTransport::setDtr(bool on)
{
    inner_->setDtr(on);
}
