// "Hex Chart": a decimal-to-hexadecimal table of the byte values, 760 by 475 pixels.
#pragma once

#include <QWidget>

class HexChartWindow : public QWidget {
    Q_OBJECT
public:
    static constexpr int kWidth = 760, kHeight = 475;
    explicit HexChartWindow(QWidget* parent = nullptr);
    // The chart as one picture.
    static QPixmap chart();
};
