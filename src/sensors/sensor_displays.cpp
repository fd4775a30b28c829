#include "sensors/sensor_displays.h"

using vexorin::sensors::SensorId;

SensorDisplays::SensorDisplays(QObject* parent)
    : QObject(parent)
{
    colors_[std::size_t(SensorId::MAF)].text = 0xFFFFFF;  // white text on the MAF bar
}

void SensorDisplays::setLabel(SensorId id, const QString& text)
{
    sensors_[idx(id)].label = text;
    emit labelChanged(int(id));
}

void SensorDisplays::setBar(SensorId id, int position)
{
    sensors_[idx(id)].bar = position;
    emit barChanged(int(id));
}

void SensorDisplays::setLabelColor(SensorId id, quint32 color)
{
    sensors_[idx(id)].color = color;
    sensors_[idx(id)].colored = true;
    emit labelColorChanged(int(id));
}

void SensorDisplays::setDash(SensorId id, const QString& text)
{
    if (!vexorin::sensors::spec(id).dashLabel)
        return;
    sensors_[idx(id)].dash = text;
    emit dashChanged(int(id));
}

void SensorDisplays::setBarColors(int bar, const BarColors& c)
{
    if (bar < 0 || bar >= int(colors_.size()))
        return;
    colors_[std::size_t(bar)] = c;
    emit barColorsChanged(bar);
}

void SensorDisplays::setLargeSensorWord(const QString& t) { largeWord_ = t; emit largeChanged(); }
void SensorDisplays::setLargeValue(const QString& t) { largeValue_ = t; emit largeChanged(); }
void SensorDisplays::setLargeBar(int position) { largeBar_ = position; emit largeChanged(); }
void SensorDisplays::setLargeBarMax(int max) { largeBarMax_ = max; emit largeChanged(); }
void SensorDisplays::setSelectedSensor(const QString& t) { selected_ = t; emit selectionChanged(); }
void SensorDisplays::setSelectedSensorValue(const QString& t) { selectedValue_ = t; emit selectionChanged(); }
void SensorDisplays::setGraphSensorLabel(const QString& t) { graphLabel_ = t; emit selectionChanged(); }
