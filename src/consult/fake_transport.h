// An in-process serial device for tests. Bytes "arrive" when the test says so,
// from a responder called on every write, or from a recorded session replayed
// line by line (see RecordingTransport for the format).
#pragma once

#include "consult/serial_transport.h"

#include <QList>
#include <functional>

class FakeTransport : public SerialTransport {
    Q_OBJECT
public:
    explicit FakeTransport(QObject* parent = nullptr);

    // A transport that answers the writes of a recorded session with its reads.
    static FakeTransport* fromRecording(const QString& recording, QObject* parent = nullptr);

    bool open(QString* error) override;
    void close() override;
    bool isOpen() const override { return open_; }
    qint64 bytesAvailable() override { return input_.size(); }
    QByteArray readAll() override;
    void clear() override { input_.clear(); }
    void write(const QByteArray& bytes) override;
    bool poll(qint64 count) override { return input_.size() >= count; }
    void timedOut(qint64) override { ++timeouts_; }
    void setDtr(bool on) override;

    // Test controls.
    void arrive(const QByteArray& bytes);              // bytes reach the input now; readyRead follows from the event loop
    // Bytes the driver holds that the event loop has not announced yet (the
    // program was held up): only reading the port finds them.
    void arriveUnannounced(const QByteArray& bytes) { input_ += bytes; }
    void setResponder(std::function<void(FakeTransport&, const QByteArray&)> r) { responder_ = std::move(r); }
    void setOpenError(const QString& e) { openError_ = e; }
    void unplug(const QString& reason = QStringLiteral("Device removed"));

    QByteArray written() const { return written_; }
    QList<QByteArray> writes() const { return writes_; }
    void clearWritten() { written_.clear(); writes_.clear(); }
    QList<bool> dtrHistory() const { return dtr_; }
    int timeouts() const { return timeouts_; }
    // Writes that did not match the replayed recording.
    QStringList mismatches() const { return mismatches_; }

private:
    struct Step {
        bool isWrite;
        QByteArray bytes;
    };
    void releaseReplies();

    bool open_ = false;
    QString openError_;
    QByteArray input_;
    QByteArray written_;
    QList<QByteArray> writes_;
    QList<bool> dtr_;
    int timeouts_ = 0;
    std::function<void(FakeTransport&, const QByteArray&)> responder_;
    QList<Step> script_;
    int stepIndex_ = 0;
    int stepOffset_ = 0;
    QStringList mismatches_;
    bool readyPending_ = false;
};
