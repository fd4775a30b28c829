// "Sensor Name": renames one gauge of the External Gauge Monitor. Its heading
// says which ("External Sensor 1" to "External Sensor 8"), and OK files the
// text by that heading; Cancel and File, Exit close without saving.
#pragma once

#include <QMainWindow>
#include <functional>

class QLabel;
class QLineEdit;

class SensorNameWindow : public QMainWindow {
    Q_OBJECT
public:
    // Gets the heading and the text on OK.
    using OkHandler = std::function<void(const QString& heading, const QString& text)>;

    explicit SensorNameWindow(OkHandler onOk, QWidget* parent = nullptr);

    QString heading() const;
    QString text() const;
    // Shows the window with this heading and text in its box.
    void open(const QString& heading, const QString& text);

    void ok();
    void cancel();

private:
    OkHandler onOk_;
    QLabel* heading_;
    QLineEdit* edit_;
};
