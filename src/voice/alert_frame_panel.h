// The frame of one alert: the limit, its echo, "Alert", "Display Alert Message", OK and Cancel.
#pragma once

#include <QGroupBox>

class Alert;
class QCheckBox;
class QLabel;
class QLineEdit;

class AlertFramePanel : public QGroupBox {
    Q_OBJECT
public:
    AlertFramePanel(Alert& alert, QWidget* parent = nullptr);

    QLineEdit* limitBox() const { return limit_; }
    QCheckBox* alertBox() const { return alertBox_; }
    QCheckBox* messageBox() const { return messageBox_; }
    QLabel* echo() const { return echo_; }

private:
    void refresh();

    Alert& alert_;
    QLineEdit* limit_;
    QLabel* echo_;
    QCheckBox* alertBox_;
    QCheckBox* messageBox_;
};
