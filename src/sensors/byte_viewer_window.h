// The Byte Viewer ("Form6"): the 64 cells of the last reply, in two frames of 32.
#pragma once

#include <QWidget>
#include <array>

class QLabel;
class ByteViewerCells;

class ByteViewerWindow : public QWidget {
    Q_OBJECT
public:
    explicit ByteViewerWindow(ByteViewerCells& cells, QWidget* parent = nullptr);

    // Cells count from 1.
    QLabel* cell(int index) const;

private:
    void refresh(int index);

    ByteViewerCells& cells_;
    std::array<QLabel*, 64> labels_{};
};
