#include "voice/alerts.h"

#include "app/settings/settings_store.h"
#include "sensors/sensor_displays.h"
#include "voice/voice_gate.h"

using vexorin::sensors::SensorId;

const std::array<AlertSpec, 2> kAlerts{{
    {"Speed", "Speed Alert", "SpeedAlert", "Speed Alert", "SpeedAlertValue", "SpeedValue", "SpeedAlertOn",
     "SpeedAlertMessage", SensorId::Speed, "SpeedAlertTimer", "Vehicle Speed Alert!", "Vehicle Speed Alert!.",
     "SpeedAlert", "SpeedAlertValue", "SpeedAlert", "SpeedAlertMessage"},
    {"WaterTempAlert", "Water Temp Alert", "WaterAlert", "Water Temp Alert", "WaterAlertValue", "WaterValue",
     "WaterAlertOn", "WaterAlertMessage", SensorId::Water, "WaterTempAlertTimer", "Water temperature Alert!",
     "Water Temperature Alert!.", "WaterAlert", "WaterAlertValue", "Alert", "WaterAlertMessage"},
}};

void FrameSpot::show(Frame f)
{
    shown_ = f;
    emit changed();
}

void FrameSpot::hide(Frame f)
{
    if (shown_ == f) {
        shown_ = None;
        emit changed();
    }
}

Alert::Alert(const AlertSpec& spec, FrameSpot::Frame frame, SensorDisplays& displays, VoiceGate& voice,
             SettingsStore& store, FrameSpot& spot, QObject* parent)
    : QObject(parent), spec_(spec), frame_(frame), displays_(displays), voice_(voice), store_(store), spot_(spot)
{
    timer.setObjectName(QLatin1String(spec.timer));
    timer.setInterval(3000);
    connect(&timer, &QTimer::timeout, this, &Alert::Tick);
    connect(&spot_, &FrameSpot::changed, this, &Alert::changed);
}

bool Alert::overLimit(const QString& caption, const QString& limit)
{
    return caption.toUtf8() > limit.toUtf8();
}

void Alert::ShowFrame()
{
    spot_.show(frame_);
}

void Alert::setLimit(const QString& text)
{
    limit_ = text;
    echo_ = text;
    emit changed();
}

void Alert::ClickAlertBox()
{
    alertBox_ = alertBox_ ? 0 : 1;
    if (timer.isActive())
        timer.stop();
    else
        timer.start();
    emit changed();
}

void Alert::ClickMessageBox()
{
    messageBox_ = messageBox_ ? 0 : 1;
    emit changed();
}

void Alert::OK()
{
    spot_.hide(frame_);
    const QString section = QLatin1String(spec_.section);
    store_.WriteSetting(section, QLatin1String(spec_.limitKey), limit_);
    store_.WriteSetting(section, QLatin1String(spec_.alertKey), QString::number(alertBox_));
    store_.WriteSetting(section, QLatin1String(spec_.messageKey), QString::number(messageBox_));
}

void Alert::Cancel()
{
    spot_.hide(frame_);
}

void Alert::Tick()
{
    if (alertBox_ != 1)
        return;
    if (overLimit(displays_.label(spec_.compared), limit_))
        voice_.say(QLatin1String(spec_.spoken));
    // The caption is read afresh: it can change while speech starts.
    if (messageBox_ == 1 && overLimit(displays_.label(spec_.compared), limit_))
        emit message(QLatin1String(spec_.message));
}

void Alert::restore()
{
    const QString section = QLatin1String(spec_.section);
    setLimit(store_.ReadSetting(section, QLatin1String(spec_.limitKey)));
    if (store_.ReadSetting(section, QLatin1String(spec_.alertKey)).toInt() == 1 && alertBox_ == 0)
        ClickAlertBox();
    messageBox_ = store_.ReadSetting(section, QLatin1String(spec_.messageKey)).toInt() == 1 ? 1 : 0;
    emit changed();
}
