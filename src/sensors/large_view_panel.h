// The large view `LargeViewer`: one sensor's word, its value in large print and its bar.
#pragma once

#include <QFrame>

class GradientBar;
class QLabel;
class SensorDisplays;

class LargeViewPanel : public QFrame {
    Q_OBJECT
public:
    // Where it lies over the all-sensors panel, in twips.
    static constexpr int kLeft = 540, kTop = 360, kWidth = 9330, kHeight = 2175;

    LargeViewPanel(SensorDisplays& displays, QWidget* parent = nullptr);

    QLabel* word() const { return word_; }
    QLabel* value() const { return value_; }
    GradientBar* bar() const { return bar_; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void refresh();
    void refreshColors(int bar);

    SensorDisplays& displays_;
    QLabel* word_;
    QLabel* value_;
    GradientBar* bar_;
};
