// Writes every exchange on the Consult line as text lines so that a real
// session can be replayed in tests:
//   W ffffef     bytes the program wrote (consecutive writes joined)
//   R 10         bytes that arrived, as the program first saw them
//   # ...        a comment
#pragma once

#include "consult/serial_transport.h"

#include <QIODevice>
#include <QList>
#include <memory>

struct RecordedExchange {
    enum Direction { Write, Read } direction;
    QByteArray bytes;
};

// Lines that are neither W nor R, or whose hex does not parse, are skipped.
QList<RecordedExchange> parseRecording(const QString& text);

class RecordingTransport : public SerialTransport {
    Q_OBJECT
public:
    // Takes ownership of `inner` and of `log`, opened for appending (null: nothing is written).
    RecordingTransport(SerialTransport* inner, std::unique_ptr<QIODevice> log, QObject* parent = nullptr);
    ~RecordingTransport() override;

    bool open(QString* error) override;
    QString openNote() const override { return inner_->openNote(); }
    void close() override;
    bool isOpen() const override;
    qint64 bytesAvailable() override;
    QByteArray readAll() override;
    void clear() override;
    void write(const QByteArray& bytes) override;
    bool poll(qint64 count) override;
    void timedOut(qint64 count) override;
    void setDtr(bool on) override;

private:
    void drain();
    void flushWrites();
    void line(const QString& text);

    SerialTransport* inner_;
    std::unique_ptr<QIODevice> file_;
    QByteArray buffer_;
    QByteArray pendingWrite_;
};
