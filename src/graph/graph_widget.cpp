#include "graph/graph_widget.h"

#include "graph/graph_control.h"

#include <QPainter>

GraphWidget::GraphWidget(GraphControl& control, QWidget* parent)
    : QFrame(parent), control_(control)
{
    setObjectName(QStringLiteral("Graph1"));
    setMinimumSize(60, 30);
    connect(&control_, &GraphControl::painted, this, qOverload<>(&QWidget::update));
    connect(&control_, &GraphControl::frameChanged, this, &GraphWidget::applyFrame);
    applyFrame();
}

void GraphWidget::applyFrame()
{
    if (control_.control().BorderStyle == 0)
        setFrameStyle(QFrame::NoFrame);
    else if (control_.control().Appearance == 1)
        setFrameStyle(QFrame::Panel | QFrame::Sunken);
    else
        setFrameStyle(QFrame::Box | QFrame::Plain);
    setLineWidth(control_.control().Appearance == 1 ? 2 : 1);
    control_.resize(contentsRect().size());
}

void GraphWidget::resizeEvent(QResizeEvent* e)
{
    QFrame::resizeEvent(e);
    control_.resize(contentsRect().size());
}

void GraphWidget::paintEvent(QPaintEvent* e)
{
    QFrame::paintEvent(e);
    QPainter p(this);
    p.drawImage(contentsRect().topLeft(), control_.picDraw());
}
