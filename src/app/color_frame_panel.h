// The colour frame on screen: three palette pickers, OK and Cancel, at the
// spot the alert frames share.
#pragma once

#include <QGroupBox>
#include <array>
#include <functional>

class ColorFrame;
class ColorPicker;

class ColorFramePanel : public QGroupBox {
    Q_OBJECT
public:
    ColorFramePanel(ColorFrame& frame, std::function<bool()> stayOnTop, QWidget* parent = nullptr);
    ColorPicker* picker(int i) const { return pickers_[std::size_t(i)]; }

private:
    void refresh();

    ColorFrame& frame_;
    std::array<ColorPicker*, 3> pickers_{};
};
