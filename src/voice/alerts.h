// The speed and water temperature alerts: every three seconds the displayed
// value is compared, as text, with the limit the user typed. Both alerts are
// one routine; a row of the table is what differs.
#pragma once

#include "sensors/sensor_catalog.h"

#include <QObject>
#include <QTimer>
#include <array>

class SensorDisplays;
class SettingsStore;
class VoiceGate;

struct AlertSpec {
    const char* menuItem;
    const char* menuCaption;
    const char* frame;
    const char* frameCaption;
    const char* limitBox;
    const char* echoLabel;
    const char* alertBox;
    const char* messageBox;
    vexorin::sensors::SensorId compared;
    const char* timer;
    const char* spoken;
    const char* message;
    const char* section;
    const char* limitKey;
    const char* alertKey;
    const char* messageKey;
};

extern const std::array<AlertSpec, 2> kAlerts;

// The frames that share one spot in the main window: one shows at a time.
class FrameSpot : public QObject {
    Q_OBJECT
public:
    enum Frame { None, SpeedAlert, WaterAlert, Color };
    using QObject::QObject;
    Frame shown() const { return shown_; }
    void show(Frame f);
    void hide(Frame f);

signals:
    void changed();

private:
    Frame shown_ = None;
};

class Alert : public QObject {
    Q_OBJECT
public:
    Alert(const AlertSpec& spec, FrameSpot::Frame frame, SensorDisplays& displays, VoiceGate& voice,
          SettingsStore& store, FrameSpot& spot, QObject* parent = nullptr);

    const AlertSpec& spec() const { return spec_; }
    QTimer timer;

    QString limit() const { return limit_; }
    QString echo() const { return echo_; }
    int alertBoxValue() const { return alertBox_; }
    int messageBoxValue() const { return messageBox_; }
    bool frameVisible() const { return spot_.shown() == frame_; }

    // The menu item: shows the frame.
    void ShowFrame();
    // Typing in the limit box.
    void setLimit(const QString& text);
    // A click on the alert box: its value flips and the timer toggles, whatever the value.
    void ClickAlertBox();
    // A click on the message box.
    void ClickMessageBox();
    void OK();
    void Cancel();
    void Tick();

    // Start-up: limit, alert box, message box; a stored 1 in the alert box counts as a click.
    void restore();

    // True when the caption is over the limit: compared as text, byte by byte.
    static bool overLimit(const QString& caption, const QString& limit);

signals:
    void changed();
    // The alert message, in a box titled "Vexorin".
    void message(const QString& text);

private:
    const AlertSpec& spec_;
    FrameSpot::Frame frame_;
    SensorDisplays& displays_;
    VoiceGate& voice_;
    SettingsStore& store_;
    FrameSpot& spot_;
    QString limit_;
    QString echo_;
    int alertBox_ = 0;
    int messageBox_ = 0;
};
