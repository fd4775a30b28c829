#include "voice/voice_monitor.h"

#include "app/settings/settings_access.h"
#include "consult/consult_session.h"
#include "consult/session_log.h"
#include "sensors/sensor_displays.h"
#include "voice/speech_out.h"
#include "voice/voice_gate.h"
#include "voice/voice_options.h"
#include "voice/voice_types.h"

using vexorin::sensors::SensorId;

const std::array<IntervalItem, 11> VoiceMonitor::kIntervals{{
    {"FiveSeconds", "5 Second intervals", "5", 5000, "Voice monitor announce set to five seconds."},
    {"TenSeconds", "10 Second intervals", "10", 10000, "Voice monitor announce set to ten seconds."},
    {"FifteenSeconds", "15 Second intervals", "15", 15000, "Voice monitor announce set to fifteen seconds."},
    {"TwentySeconds", "20 Second intervals", "20", 20000, "Voice monitor announce set to twenty seconds."},
    {"TwentyFiveSeconds", "25 Second intervals", "25", 25000, "Voice monitor announce set to twentyfive seconds."},
    {"ThirtySeconds", "30 Second intervals", "30", 30000, "Voice monitor announce set to thirty seconds."},
    {"OneMinuteIntervals", "1 Minute Intervals", "1min", 60000, "Voice monitor announce set to one minute."},
    {"TwoMinuteIntervals", "2 Minute Intervals", "2min", 120000, "Voice monitor announce set to two minutes."},
    {"ThreeMinuteIntervals", "3 Minute Intervals", "3min", 180000, "Voice monitor announce set to three minutes."},
    {"FourMinuteIntervals", "4 Minute Intervals", "4min", 240000, "Voice monitor announce set to four minutes."},
    {"FiveMinuteIntervals", "5 Minute Intervals", "5min", 300000, "Voice monitor announce set to five minutes."},
}};

namespace {
// What a tick says for the chosen sensor: the text before the label's caption, the label, the text after.
struct Announcement {
    const char* selected;
    const char* before;
    SensorId label;
    const char* after;
};
constexpr Announcement kAnnouncements[] = {
    {"RPM", "", SensorId::RPM, "R P M"},
    {"TPS", "Throttle position voltage is", SensorId::TPS, "volts."},
    {"MAF", "Maff voltage is", SensorId::MAF, "volts."},
    {"O2 (L)", "Left oxygen voltage is", SensorId::O2L, "volts."},
    {"O2 (R)", "Right oxygen voltage is", SensorId::O2R, "volts."},
    {"A/F", "Air fuel alfa is", SensorId::AF, ""},
    {"Injector", "Injector pulse time is", SensorId::INJ, "milliseconds"},
    {"Timing", "Ignition timing is", SensorId::Timing, "degrees"},
    {"IACV", "Idle air control valve is", SensorId::IACV, ""},
    {"Water", "Water temperature is", SensorId::Water, "degrees."},
    {"Fuel", "Fuel temperature is", SensorId::Fuel, "degrees."},
    {"Battery", "Battery voltage is", SensorId::Battery, "volts."},
};
}  // namespace

VoiceMonitor::VoiceMonitor(ConsultSession& session, VoiceGate& voice, SensorDisplays& displays,
                           const VoiceOptions& options, SettingsStore& store, QObject* parent)
    : QObject(parent), session_(session), displays_(displays), options_(options), store_(store), voice_(voice)
{
    session_.VoiceMonitorTimer.setInterval(kIntervals[0].periodMs);
    connect(&session_.VoiceMonitorTimer, &QTimer::timeout, this, &VoiceMonitor::VoiceMonitorTimerTick);
}

void VoiceMonitor::VoiceMonitorSwitch()
{
    if (session_.refuses(LinkOwner::Connected | LinkOwner::MonitoringOn))
        return;
    if (!session_.VoiceMonitorTimer.isActive()) {
        session_.VoiceMonitorTimer.start();
        session_.setVoiceMonitorOnLabel(QStringLiteral("ON"));
        session_.setVoiceMonitorChecked(true);
        voice_.selectAndSay(QStringLiteral("Voice Monitor on."));
        session_.log().AddLogMessage(QStringLiteral(": Voice Monitor on."));
    } else {
        session_.VoiceMonitorTimer.stop();
        session_.setVoiceMonitorOnLabel(QStringLiteral("OFF"));
        session_.setVoiceMonitorChecked(false);
        voice_.selectAndSay(QStringLiteral("Voice Monitor off."));
        session_.log().AddLogMessage(QStringLiteral(": Voice Monitor off."));
    }
}

QString VoiceMonitor::announcement() const
{
    const QString selected = displays_.selectedSensor();
    if (selected == QLatin1String("Speed")) {
        const QString v = displays_.label(SensorId::Speed);
        if (options_.mph())
            return QStringLiteral("Vehicle Speed") + v + QStringLiteral("MPH");
        if (options_.kph())
            return QStringLiteral("Vehicle Speed") + v + QStringLiteral("kilo meters per hour");
        return QString();
    }
    for (const Announcement& a : kAnnouncements)
        if (selected == QLatin1String(a.selected))
            return QLatin1String(a.before) + displays_.label(a.label) + QLatin1String(a.after);
    return QString();
}

void VoiceMonitor::VoiceMonitorTimerTick()
{
    if (!voice_.voiceOnChecked())
        return;
    const QString text = announcement();
    if (!text.isEmpty())
        voice_.say(text);
}

void VoiceMonitor::ChooseInterval(int row)
{
    if (row < 0 || row >= int(kIntervals.size()))
        return;
    const IntervalItem& it = kIntervals[std::size_t(row)];
    session_.VoiceMonitorTimer.setInterval(it.periodMs);
    session_.log().AddLogLine(QStringLiteral(": ") + QLatin1String(it.sentence));
    voice_.selectAndSay(QLatin1String(it.sentence));
    interval_ = row;
    emit checksChanged();
    if (session_.VoiceMonitorOnLabel() == QLatin1String("ON")) {
        session_.VoiceMonitorTimer.stop();
        session_.VoiceMonitorTimer.start();
    }
    writeSetting(store_, Settings::VoiceMonitorInterval, QLatin1String(it.value));
}

void VoiceMonitor::ChooseVoiceType(int row)
{
    if (row < 0 || row >= int(kVoiceTypes.size()))
        return;
    const VoiceType& t = kVoiceTypes[std::size_t(row)];
    if (row == 0)
        writeSetting(store_, Settings::VoiceType, QString::number(t.indexWindowsXP));  // Female writes first
    int index = -1;
    if (options_.windowsSeven())
        index = t.indexWindowsSeven;
    else if (options_.windowsXP())
        index = t.indexWindowsXP;
    if (index >= 0) {
        voice_.out().Select(index);
        voice_.setCurrentVoice(index);
    }
    voiceType_ = row;
    emit checksChanged();
    if (index >= 0)
        writeSetting(store_, Settings::VoiceType, QString::number(index));
}

void VoiceMonitor::ToggleVoiceOn()
{
    const bool on = !voice_.voiceOnChecked();
    voice_.setVoiceOnChecked(on);
    voice_.out().Select(voice_.currentVoice());
    VoiceSwitch = on ? QStringLiteral("Voice On") : QStringLiteral("Voice Off");
    writeSetting(store_, Settings::VoiceOn, on ? QStringLiteral("On") : QStringLiteral("Off"));
}

void VoiceMonitor::restoreInterval()
{
    const QString stored = readSetting(store_, Settings::VoiceMonitorInterval);
    for (int row = 0; row < int(kIntervals.size()); ++row) {
        if (stored == QLatin1String(kIntervals[std::size_t(row)].value)) {
            session_.VoiceMonitorTimer.setInterval(kIntervals[std::size_t(row)].periodMs);
            interval_ = row;
            emit checksChanged();
            return;
        }
    }
}

void VoiceMonitor::restoreVoiceType()
{
    const QString stored = readSetting(store_, Settings::VoiceType);
    if (stored == QLatin1String("1")) {
        voiceType_ = 0;
        voice_.out().Select(1);
        voice_.setCurrentVoice(1);
        emit checksChanged();
        return;
    }
    const bool seven = options_.windowsSeven();
    if (!seven && !options_.windowsXP())
        return;
    for (int row = 1; row < int(kVoiceTypes.size()); ++row) {
        const VoiceType& t = kVoiceTypes[std::size_t(row)];
        const int index = seven ? t.indexWindowsSeven : t.indexWindowsXP;
        if (stored == QString::number(index)) {
            voiceType_ = row;
            voice_.out().Select(index);
            voice_.setCurrentVoice(index);
            emit checksChanged();
            return;
        }
    }
}

void VoiceMonitor::restoreVoiceOn()
{
    // The stored value only selects the current voice: speech is on after every start.
    readSetting(store_, Settings::VoiceOn);
    voice_.out().Select(voice_.currentVoice());
    voice_.setVoiceOnChecked(true);
    VoiceSwitch = QStringLiteral("Voice On");
}

void VoiceMonitor::announceStartup()
{
    const QString text = readSetting(store_, Settings::StartupAnnounce);
    if (!text.isEmpty())
        voice_.say(text);
}
