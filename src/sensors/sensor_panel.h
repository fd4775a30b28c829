// The all-sensors panel of the main window: a button, a bar and a value label per sensor.
#pragma once

#include <QGroupBox>

class QLabel;
class QProgressBar;
class QPushButton;

class SensorPanel : public QGroupBox {
    Q_OBJECT
public:
    explicit SensorPanel(QWidget* parent = nullptr);

    QPushButton* button(int index) const { return buttons_[index]; }
    QProgressBar* bar(int index) const { return bars_[index]; }
    QLabel* label(int index) const { return labels_[index]; }

signals:
    void sensorButtonClicked(int index);

private:
    QList<QPushButton*> buttons_;
    QList<QProgressBar*> bars_;
    QList<QLabel*> labels_;
};
