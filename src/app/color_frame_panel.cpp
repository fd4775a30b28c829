#include "app/color_frame_panel.h"

#include "app/color_frame.h"
#include "ui/color_picker_widget.h"
#include "ui/message_box.h"
#include "ui/overlay_panel.h"
#include "ui/plain_text.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace {
const struct {
    const char* label;
    const char* caption;
    const char* name;
} kPickers[] = {{"Sensor Backcolor  :", "Backcolor", "BackColorPicker"},
                {"Sensor Start Value :", "Start Value", "StartColorPicker"},
                {"Sensor End Value  :", "End Value", "EndColorPicker"}};
}  // namespace

ColorFramePanel::ColorFramePanel(ColorFrame& frame, std::function<bool()> stayOnTop, QWidget* parent)
    : QGroupBox(parent), frame_(frame)
{
    setObjectName(QStringLiteral("Color"));
    vexorin::ui::styleOverlayPanel(this);
    auto* grid = new QGridLayout(this);
    for (int i = 0; i < 3; ++i) {
        grid->addWidget(new QLabel(QLatin1String(kPickers[i].label), this), i, 0);
        auto* picker = new ColorPicker(QLatin1String(kPickers[i].caption), this);
        picker->setObjectName(QLatin1String(kPickers[i].name));
        picker->setStayOnTopQuery(stayOnTop);
        picker->setRefusalHandler([this](const QString& t) { MessageBoxes::information(this, t); });
        connect(picker, &ColorPicker::colorPicked, this,
                [this, i](quint32 bgr) { frame_.pick(ColorFrame::Picker(i), bgr); });
        grid->addWidget(picker, i, 1);
        pickers_[std::size_t(i)] = picker;
    }
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    connect(ok, &QPushButton::clicked, this, [this] { frame_.OK(); });
    connect(cancel, &QPushButton::clicked, this, [this] { frame_.Cancel(); });
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    grid->addLayout(buttons, 3, 0, 1, 2);
    connect(&frame_, &ColorFrame::changed, this, &ColorFramePanel::refresh);
    refresh();
    hide();
    vexorin::ui::keepTextPlain(this);
}

void ColorFramePanel::refresh()
{
    setTitle(frame_.caption());
    for (int i = 0; i < 3; ++i)
        pickers_[std::size_t(i)]->setColor(frame_.pickerColor(ColorFrame::Picker(i)));
}
