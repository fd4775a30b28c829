#include "sensors/large_view_panel.h"

#include "sensors/sensor_displays.h"
#include "ui/fitted_font.h"
#include "ui/gradient_bar_widget.h"
#include "ui/plain_text.h"
#include "ui/vb_color.h"

#include <QLabel>
#include <QVBoxLayout>

LargeViewPanel::LargeViewPanel(SensorDisplays& displays, QWidget* parent)
    : QFrame(parent), displays_(displays)
{
    setObjectName(QStringLiteral("LargeViewer"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    QPalette p = palette();
    p.setColor(QPalette::Window, Qt::black);
    p.setColor(QPalette::WindowText, QColor(0x80, 0x80, 0xFF));
    setPalette(p);

    auto* v = new QVBoxLayout(this);
    v->setContentsMargins(4, 4, 4, 4);
    v->setSpacing(1);
    auto* top = new QHBoxLayout;
    word_ = new QLabel(this);
    word_->setObjectName(QStringLiteral("LargeSensorWord"));
    QFont wf = word_->font();
    wf.setPointSizeF(wf.pointSizeF() * 1.8);
    wf.setBold(true);
    word_->setFont(wf);
    value_ = new QLabel(this);
    value_->setObjectName(QStringLiteral("LargeValueLabel"));
    value_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont vf = value_->font();
    vf.setBold(true);
    value_->setFont(vf);
    value_->setMinimumSize(1, 1);
    QPalette vp = value_->palette();
    vp.setColor(QPalette::WindowText, QColor(0x00, 0xFF, 0x00));
    value_->setPalette(vp);
    top->addWidget(word_, 0, Qt::AlignTop);
    top->addWidget(value_, 1);
    v->addLayout(top, 1);
    bar_ = new GradientBar(this);
    bar_->setObjectName(QStringLiteral("LargeSensorBar"));
    bar_->setFixedHeight(14);
    v->addWidget(bar_);

    connect(&displays_, &SensorDisplays::largeChanged, this, &LargeViewPanel::refresh);
    connect(&displays_, &SensorDisplays::barColorsChanged, this, &LargeViewPanel::refreshColors);
    refresh();
    refreshColors(SensorDisplays::kLargeBarIndex);
    vexorin::ui::keepTextPlain(this);
}

void LargeViewPanel::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    // The digits fill the room beside the word, down to the bar.
    const int wordWidth = word_->fontMetrics().horizontalAdvance(QStringLiteral("Battery")) + 12;
    const QRect inside = contentsRect();
    const QSize room(inside.width() - 8 - wordWidth, inside.height() - 8 - 1 - bar_->height());
    value_->setFont(vexorin::ui::fittedFont(value_->font(), room, QStringLiteral("0000.00")));
}

void LargeViewPanel::refresh()
{
    word_->setText(displays_.largeSensorWord());
    value_->setText(displays_.largeValue());
    bar_->setMaximum(displays_.largeBarMax());
    bar_->setValue(displays_.largeBar());
}

void LargeViewPanel::refreshColors(int bar)
{
    if (bar != SensorDisplays::kLargeBarIndex)
        return;
    const BarColors c = displays_.barColors(bar);
    bar_->setBackColor(fromBgr(c.back));
    bar_->setStartColor(fromBgr(c.start));
    bar_->setEndColor(fromBgr(c.end));
}
