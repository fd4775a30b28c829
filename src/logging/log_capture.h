// "Capture to log file": while checked, every decoded frame goes to the chosen
// file, fourteen lines a frame. The file stays open until capture ends.
#pragma once

#include "sensors/sensor_log_sink.h"

#include <QDateTime>
#include <QFile>
#include <QObject>
#include <functional>

class SettingsStore;
class SessionLog;

class LogCapture : public QObject, public SensorLogSink {
    Q_OBJECT
public:
    LogCapture(SettingsStore& store, SessionLog& log, QObject* parent = nullptr);
    ~LogCapture() override;

    bool checked() const { return checked_; }
    bool fileOpen() const { return file_.isOpen(); }
    QString fileName() const { return file_.fileName(); }

    // The menu item. `askName` shows the save dialog with the initial name and
    // gives the chosen path, or empty when cancelled.
    void CapturetologfileClicked(const std::function<QString(const QString& initialName)>& askName);
    // Ends capture: unchecks and closes (the file is flushed).
    void close();

    // The clock of the date line (tests set a fixed one).
    void setClock(std::function<QDateTime()> clock) { clock_ = std::move(clock); }

    bool capturing() const override { return checked_; }
    void writeDateTimeLine() override;
    void writeValue(const QString& value, bool numeric) override;

signals:
    void checkedChanged(bool on);

private:
    void writeLine(const QString& line);

    SettingsStore& store_;
    SessionLog& log_;
    QFile file_;
    bool checked_ = false;
    int lineInFrame_ = 0;
    std::function<QDateTime()> clock_;
};
