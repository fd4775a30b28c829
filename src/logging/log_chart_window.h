// "Log Chart - <file name>": a whole log on one chart, each ticked sensor in
// a lane of its own on its own scale. The mouse wheel zooms about the
// pointer, a drag pans, a click moves the Log Player to the frame; the keys
// do the same (arrows step the readout's frame, Enter shows it in the player,
// Shift+arrows pan, + and - zoom, Home and End, 0 shows the whole log), and
// so do the buttons, the "Frame" box and "Show in Log Player", for a screen
// reader as for the mouse. The window shows its LogChart and forwards the
// input to it.
#pragma once

#include <QWidget>
#include <array>

class LogChart;
class LogChartView;
class QCheckBox;
class QLabel;
class QSpinBox;

class LogChartWindow : public QWidget {
    Q_OBJECT
public:
    explicit LogChartWindow(QWidget* parent = nullptr);
    ~LogChartWindow() override;

    LogChart& chart() { return *chart_; }
    // Reads the log; false (with a message shown) when it cannot be read.
    bool load(const QString& path);

    QCheckBox* checkBox(int k) const { return checks_[std::size_t(k)]; }
    QLabel* readout() const { return readout_; }
    QSpinBox* frameBox() const { return frame_; }
    QWidget* plot() const;

protected:
    void changeEvent(QEvent* e) override;

private:
    void refreshLanes();
    void refreshCursor();
    void refreshReadout();

    LogChart* chart_;
    LogChartView* view_;
    QLabel* readout_;
    QLabel* note_;
    QSpinBox* frame_;
    std::array<QCheckBox*, 13> checks_{};
};
