// The all-sensors panel of the main window: per sensor a button, a bar, a
// value label and the unit's caption, one row each. The rows stand at a fixed
// pitch, placed so that the large view, which lies over the panel at a fixed
// place, covers whole rows and never a part of one.
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
    static constexpr int kRowPitch = 25;
    static constexpr int kRowGap = 1;

    SensorPanel(SensorDisplays& displays, QWidget* parent = nullptr);

    // Places the rows so that the first `rowsInside` lie wholly inside `area`
    // (in the parent's coordinates), the others below it, all within its width.
    void alignRowsTo(const QRect& area, int rowsInside);
    // The rectangle, in the parent's coordinates, that holds the rows from
    // `first` to the last, each whole (rows counted from 0 in panel order).
    QRect rowsFrom(int first) const;

    QPushButton* button(SensorId id) const { return buttons_[std::size_t(id)]; }
    GradientBar* bar(SensorId id) const { return bars_[std::size_t(id)]; }
    QLabel* label(SensorId id) const { return labels_[std::size_t(id)]; }
    QLabel* unit(SensorId id) const { return units_[std::size_t(id)]; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    void sensorButtonClicked(vexorin::sensors::SensorId id);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;

private:
    void showLabel(int id);
    void showBar(int id);
    void showLabelColor(int id);
    void showBarColors(int bar);
    int firstRowTop() const;  // in the parent's coordinates
    void placeRows();

    SensorDisplays& displays_;
    QRect area_;
    int rowsInside_ = 5;
    std::array<QPushButton*, vexorin::sensors::kSensorCount> buttons_{};
    std::array<GradientBar*, vexorin::sensors::kSensorCount> bars_{};
    std::array<QLabel*, vexorin::sensors::kSensorCount> labels_{};
    std::array<QLabel*, vexorin::sensors::kSensorCount> units_{};
};
