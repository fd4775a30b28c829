// The thirteen sensor buttons and DisplaySensorValues: the chosen sensor gets
// the large view, the graph title, the voice monitor and a green label.
#pragma once

#include "sensors/sensor_catalog.h"

#include <QObject>
#include <QTimer>
#include <functional>

class SensorDisplays;
class SessionLog;
class SessionOutputs;

class SensorSelection : public QObject {
    Q_OBJECT
public:
    SensorSelection(SensorDisplays& displays, SessionLog& log, SessionOutputs& voice, QObject* parent = nullptr);

    // Copies the chosen sensor's label to the large view every 100 ms while monitoring.
    QTimer DisplaySensorValues;

    // The button of a sensor.
    void SelectSensor(vexorin::sensors::SensorId id);
    void DisplaySensorValuesTick();

    // The graph's vertical maximum follows the chosen sensor's bar maximum.
    void setGraphMaximumHook(std::function<void(int maximum)> hook) { graphMaximum_ = std::move(hook); }

private:
    SensorDisplays& displays_;
    SessionLog& log_;
    SessionOutputs& voice_;
    std::function<void(int)> graphMaximum_;
};
