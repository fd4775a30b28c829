// The View menu's choice between all sensors and the large view, and the
// blanking of every view one second after monitoring or the session ends.
#pragma once

#include <QObject>

class ConsultSession;
class SensorDisplays;

class MonitorViews : public QObject {
    Q_OBJECT
public:
    MonitorViews(SensorDisplays& displays, ConsultSession& session, QObject* parent = nullptr);

    bool largeViewerVisible() const { return largeVisible_; }
    bool viewAllSensorsChecked() const { return !largeChecked_; }
    bool largeSensorViewerChecked() const { return largeChecked_; }

    void ViewAllSensors();
    void LargeSensorView();
    void SensorOffTimerTick();

signals:
    void viewChanged();

private:
    SensorDisplays& displays_;
    ConsultSession& session_;
    bool largeVisible_ = false;
    bool largeChecked_ = false;
};
