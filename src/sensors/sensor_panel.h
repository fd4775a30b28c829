// The all-sensors panel of the main window: per sensor a button, a bar and a value label.
#pragma once

#include "sensors/sensor_catalog.h"

#include <QGroupBox>
#include <array>

class GradientBar;
class QLabel;
class QPushButton;
class SensorDisplays;

class SensorPanel : public QGroupBox {
    Q_OBJECT
public:
    using SensorId = vexorin::sensors::SensorId;

    SensorPanel(SensorDisplays& displays, QWidget* parent = nullptr);

    QPushButton* button(SensorId id) const { return buttons_[std::size_t(id)]; }
    GradientBar* bar(SensorId id) const { return bars_[std::size_t(id)]; }
    QLabel* label(SensorId id) const { return labels_[std::size_t(id)]; }

signals:
    void sensorButtonClicked(vexorin::sensors::SensorId id);

private:
    void showLabel(int id);
    void showBar(int id);
    void showLabelColor(int id);
    void showBarColors(int bar);

    SensorDisplays& displays_;
    std::array<QPushButton*, vexorin::sensors::kSensorCount> buttons_{};
    std::array<GradientBar*, vexorin::sensors::kSensorCount> bars_{};
    std::array<QLabel*, vexorin::sensors::kSensorCount> labels_{};
};
