// "Record Run": while it is on, every Consult frame shown and every reading of
// the chosen wideband channel goes to a new run file, stamped with whole
// milliseconds since the recording began (a monotonic clock), and to the
// fuel correction's analysis as it arrives. Rows reach the disk twice a
// second. The recording ends, and its file is closed for good, when it is
// switched off, monitoring stops, the Consult port disconnects, the External
// Gauge Monitor stops polling or closes, or the window or application closes.
#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <functional>

class ConsultSession;
class ExternalSensors;
class FuelCorrection;
class SensorDisplays;
class SensorStream;

class FuelRunRecorder : public QObject {
    Q_OBJECT
public:
    static constexpr int kFlushMs = 500;

    // `gauges` gives the External Gauge Monitor's model while it is open (null otherwise).
    FuelRunRecorder(ConsultSession& session, SensorStream& stream, SensorDisplays& displays,
                    std::function<ExternalSensors*()> gauges, FuelCorrection& correction, QObject* parent = nullptr);
    ~FuelRunRecorder() override;

    // Why a recording from the channel (1..8) cannot start now, or empty.
    QString refusal(int channel) const;
    // Starts into a new file at `path`: false with a message when refused or
    // when the file cannot be written.
    bool start(const QString& path, int channel);
    void stop();
    bool recording() const { return file_.isOpen(); }
    QString path() const { return file_.fileName(); }
    qint64 rowsWritten() const { return rows_; }

    // The default file name: run-<yyyyMMdd-HHmmss>.csv of the moment.
    static QString defaultFileName();
    // The milliseconds of the recording's clock (tests step it).
    void setClock(std::function<qint64()> now) { now_ = std::move(now); }

signals:
    // On or off now (after a refusal or an end from outside too).
    void switched(bool on);
    // A message box titled "Vexorin".
    void message(const QString& text);

private:
    void onFrame();
    void onReading(int channel, const QString& reply);
    void onLabels();
    void write(const std::string& line);
    void flush();
    qint64 elapsed() const;

    ConsultSession& session_;
    SensorStream& stream_;
    SensorDisplays& displays_;
    std::function<ExternalSensors*()> gauges_;
    FuelCorrection& correction_;
    QPointer<ExternalSensors> source_;
    int channel_ = 1;
    QFile file_;
    QByteArray buffer_;
    QTimer flushTimer_;
    QElapsedTimer clock_;
    std::function<qint64()> now_;
    qint64 startMs_ = 0;
    qint64 rows_ = 0;
    QList<QMetaObject::Connection> links_;
};
