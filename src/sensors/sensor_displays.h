// What the monitor views show: each sensor's label, bar and Dash label, the
// large view, the chosen sensor and the bar colours. The labels are the store
// of the latest reading; voice, alerts and graph read them from here.
#pragma once

#include "sensors/sensor_catalog.h"

#include <QObject>
#include <QString>
#include <array>

// Colours are 32-bit values in 0x00BBGGRR order.
struct BarColors {
    quint32 back = 0xFF8080;
    quint32 start = 0xFF0000;
    quint32 end = 0xFF0000;
    quint32 text = 0x000000;
};

class SensorDisplays : public QObject {
    Q_OBJECT
public:
    using SensorId = vexorin::sensors::SensorId;
    static constexpr quint32 kSelectedColor = 0x00FF00;   // green
    static constexpr quint32 kUnselectedColor = 0xFF8080;  // light blue
    static constexpr int kLargeBarIndex = 13;             // bar colours: the 13 sensor bars, then LargeSensorBar

    explicit SensorDisplays(QObject* parent = nullptr);

    QString label(SensorId id) const { return sensors_[idx(id)].label; }
    int bar(SensorId id) const { return sensors_[idx(id)].bar; }
    int barMax(SensorId id) const { return vexorin::sensors::spec(id).barMax; }
    quint32 labelColor(SensorId id) const { return sensors_[idx(id)].color; }
    QString dash(SensorId id) const { return sensors_[idx(id)].dash; }
    bool hasLabelColor(SensorId id) const { return sensors_[idx(id)].colored; }

    void setLabel(SensorId id, const QString& text);
    void setBar(SensorId id, int position);
    void setLabelColor(SensorId id, quint32 color);
    // Sensors without a Dash label ignore it.
    void setDash(SensorId id, const QString& text);

    // Bars 0..12 in frame order, 13 the large bar.
    BarColors barColors(int bar) const { return colors_[std::size_t(bar)]; }
    void setBarColors(int bar, const BarColors& c);

    // The large view.
    QString largeSensorWord() const { return largeWord_; }
    QString largeValue() const { return largeValue_; }
    int largeBar() const { return largeBar_; }
    int largeBarMax() const { return largeBarMax_; }
    void setLargeSensorWord(const QString& t);
    void setLargeValue(const QString& t);
    void setLargeBar(int position);
    void setLargeBarMax(int max);

    // The chosen sensor.
    QString selectedSensor() const { return selected_; }
    QString selectedSensorValue() const { return selectedValue_; }
    QString graphSensorLabel() const { return graphLabel_; }
    void setSelectedSensor(const QString& t);
    void setSelectedSensorValue(const QString& t);
    void setGraphSensorLabel(const QString& t);

signals:
    void labelChanged(int id);
    void barChanged(int id);
    void labelColorChanged(int id);
    void dashChanged(int id);
    void barColorsChanged(int bar);
    void largeChanged();
    void selectionChanged();

private:
    static std::size_t idx(SensorId id) { return std::size_t(id); }
    struct Sensor {
        QString label = QStringLiteral("0");
        int bar = 0;
        quint32 color = kUnselectedColor;
        bool colored = false;
        QString dash = QStringLiteral("0");
    };
    std::array<Sensor, vexorin::sensors::kSensorCount> sensors_;
    std::array<BarColors, 14> colors_;
    QString largeWord_ = QStringLiteral("Speed");
    QString largeValue_ = QStringLiteral("0");
    int largeBar_ = 0;
    int largeBarMax_ = 160;
    QString selected_ = QStringLiteral("Speed");
    QString selectedValue_ = QStringLiteral("0");
    QString graphLabel_ = QStringLiteral("Speed Sensor");
};
