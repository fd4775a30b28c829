// The voice monitor: the switch, the announcement of the chosen sensor at
// the chosen interval, the interval and voice type menus, the "Voice On"
// item and the startup announcement.
#pragma once

#include <QObject>
#include <QString>
#include <array>

class ConsultSession;
class VoiceOptions;
class SensorDisplays;
class SettingsStore;
class VoiceGate;

struct IntervalItem {
    const char* item;
    const char* caption;
    const char* value;  // as stored under Interval
    int periodMs;
    const char* sentence;
};

class VoiceMonitor : public QObject {
    Q_OBJECT
public:
    static const std::array<IntervalItem, 11> kIntervals;

    VoiceMonitor(ConsultSession& session, VoiceGate& voice, SensorDisplays& displays, const VoiceOptions& options,
                 SettingsStore& store, QObject* parent = nullptr);

    // Check marks: the row of the checked interval and voice type items.
    int checkedInterval() const { return interval_; }
    int checkedVoiceType() const { return voiceType_; }
    // "Voice On" or "Voice Off": a record of the last choice; speakers test the check mark.
    QString VoiceSwitch = QStringLiteral("Voice On");

    // The menu item "Voice Monitor" and the button "Voice On/Off".
    void VoiceMonitorSwitch();
    void VoiceMonitorTimerTick();
    void ChooseInterval(int row);
    void ChooseVoiceType(int row);
    // The menu item "Voice On".
    void ToggleVoiceOn();

    // Start-up, in the order the application applies them.
    void restoreInterval();
    void restoreVoiceType();
    void restoreVoiceOn();
    void announceStartup();

    // What a tick would say now (empty when nothing is to be said).
    QString announcement() const;

signals:
    void checksChanged();

private:
    ConsultSession& session_;
    SensorDisplays& displays_;
    const VoiceOptions& options_;
    SettingsStore& store_;
    VoiceGate& voice_;
    int interval_ = 0;
    int voiceType_ = 0;
};
