// "Vexorin External Gauge Monitor": the eight DLP-IO8-G channels as eight
// gauges (a name, a standing bar, a reading box and a check box each), the
// buttons "Connect/Disconnect", "Start" and "Stop", the status text, and the
// menus File, Ports and Options. Double-clicking a gauge's name opens the
// Sensor Name window. A gauge's "Scale..." button opens the Channel Scale
// window; a scaled gauge shows its figure ("14.68 AFR") under its reading box.
// The window owns its `ExternalSensors` and so its port: closing the window
// stops polling, and the port closes when the window goes.
#pragma once

#include <QMainWindow>
#include <array>

class ChannelScaleWindow;
class ExternalSensors;
class GradientBar;
class QAction;
class QCheckBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class SensorNameWindow;

class ExternalSensorsWindow : public QMainWindow {
    Q_OBJECT
public:
    static constexpr int kGauges = 8;

    // Takes the controller over and runs its Load.
    explicit ExternalSensorsWindow(ExternalSensors* sensors, QWidget* parent = nullptr);

    ExternalSensors& sensors() { return *sensors_; }
    QAction* action(const QString& objectName) const;
    QLabel* nameLabel(int channel) const { return gauges_[std::size_t(channel - 1)].name; }
    GradientBar* bar(int channel) const { return gauges_[std::size_t(channel - 1)].bar; }
    QLineEdit* readingBox(int channel) const { return gauges_[std::size_t(channel - 1)].reading; }
    QCheckBox* checkBox(int channel) const { return gauges_[std::size_t(channel - 1)].check; }
    // The scaled figure beside the reading; empty without a scale.
    QLabel* figureLabel(int channel) const { return gauges_[std::size_t(channel - 1)].figure; }
    QPushButton* scaleButton(int channel) const { return gauges_[std::size_t(channel - 1)].scale; }
    // Null until a name is first double-clicked.
    SensorNameWindow* sensorNameWindow() const { return sensorName_; }
    // Opens the Sensor Name window for a gauge, as a double-click on its name does.
    void rename(int channel);
    // Null until a "Scale..." button is first clicked.
    ChannelScaleWindow* channelScaleWindow() const { return channelScale_; }
    // Opens the Channel Scale window for a gauge, as its "Scale..." button does.
    void editScale(int channel);

signals:
    // Ports, "Interface Check".
    void interfaceCheckRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    // Polling ends with the window.
    void closeEvent(QCloseEvent* event) override;

private:
    struct Gauge {
        QLabel* name = nullptr;
        GradientBar* bar = nullptr;
        QLineEdit* reading = nullptr;
        QCheckBox* check = nullptr;
        QLabel* figure = nullptr;
        QPushButton* scale = nullptr;
    };
    void buildMenus();
    QWidget* buildGauge(int channel, QWidget* parent);
    QWidget* buildControls(QWidget* parent);
    void refresh();
    void refreshChannel(int channel);
    void refreshFigure(int channel);
    void refreshPortItems();

    ExternalSensors* sensors_;
    std::array<Gauge, kGauges> gauges_{};
    QLabel* status_ = nullptr;
    QMenu* ports_ = nullptr;
    QAction* portItemsEnd_ = nullptr;
    QList<QAction*> portItems_;
    QAction* notifySelected_ = nullptr;
    QAction* displayPercentage_ = nullptr;
    QAction* pollCheckedOnly_ = nullptr;
    SensorNameWindow* sensorName_ = nullptr;
    ChannelScaleWindow* channelScale_ = nullptr;
};
