#include "sensors/monitor_views.h"

#include "consult/consult_session.h"
#include "sensors/sensor_displays.h"

using namespace vexorin::sensors;

MonitorViews::MonitorViews(SensorDisplays& displays, ConsultSession& session, QObject* parent)
    : QObject(parent), displays_(displays), session_(session)
{
    connect(&session_.SensorOffTimer, &QTimer::timeout, this, &MonitorViews::SensorOffTimerTick);
}

void MonitorViews::ViewAllSensors()
{
    largeVisible_ = false;
    largeChecked_ = false;
    emit viewChanged();
}

void MonitorViews::LargeSensorView()
{
    largeVisible_ = true;
    largeChecked_ = true;
    // The buttons' words, as SelectedSensor holds them.
    const QString selected = displays_.selectedSensor();
    for (SensorId id : kPanelOrder) {
        if (selected == QLatin1String(spec(id).selectedWord)) {
            displays_.setLargeBarMax(spec(id).barMax);
            break;
        }
    }
    emit viewChanged();
}

void MonitorViews::SensorOffTimerTick()
{
    for (SensorId id : kPanelOrder)
        displays_.setBar(id, 0);
    for (SensorId id : kPanelOrder)
        displays_.setLabel(id, QStringLiteral("0"));
    displays_.setLargeValue(QStringLiteral("0"));
    session_.setFaultCodeList(QString());
    for (SensorId id : kPanelOrder)
        displays_.setDash(id, QStringLiteral("0"));
    session_.SensorOffTimer.stop();
}
