#include "ui/gradient_bar_widget.h"

#include <QLinearGradient>
#include <QPainter>

GradientBar::GradientBar(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void GradientBar::setValue(int v)
{
    if (v == value_)
        return;
    value_ = v;
    update();
}

void GradientBar::setMaximum(int m)
{
    if (m == maximum_)
        return;
    maximum_ = m;
    update();
}

void GradientBar::setOrientation(Qt::Orientation o)
{
    if (o == orientation_)
        return;
    orientation_ = o;
    if (o == Qt::Vertical)
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    else
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    updateGeometry();
    update();
}

QSize GradientBar::sizeHint() const
{
    return orientation_ == Qt::Vertical ? QSize(44, 200) : QSize(160, 18);
}

QSize GradientBar::minimumSizeHint() const
{
    return orientation_ == Qt::Vertical ? QSize(24, 60) : QSize(40, 10);
}

void GradientBar::setBackColor(const QColor& c) { back_ = c; update(); }
void GradientBar::setStartColor(const QColor& c) { start_ = c; update(); }
void GradientBar::setEndColor(const QColor& c) { end_ = c; update(); }
void GradientBar::setTextColor(const QColor& c) { text_ = c; update(); }
void GradientBar::setTextVisible(bool on) { showText_ = on; update(); }
void GradientBar::setTextBefore(const QString& t) { before_ = t; update(); }
void GradientBar::setTextAfter(const QString& t) { after_ = t; update(); }

double GradientBar::fraction() const
{
    if (maximum_ <= 0)
        return 0.0;
    const double f = double(value_) / double(maximum_);
    return f < 0.0 ? 0.0 : (f > 1.0 ? 1.0 : f);
}

QString GradientBar::text() const
{
    if (!showText_)
        return QString();
    return before_ + QString::number(qRound(fraction() * 100.0)) + after_;
}

void GradientBar::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const QRect r = rect();
    p.fillRect(r, back_);
    const bool vertical = orientation_ == Qt::Vertical;
    const int filled = int(fraction() * (vertical ? r.height() : r.width()) + 0.5);
    if (filled > 0) {
        // The gradient spans the whole bar, so the colour at a spot does not depend on the value.
        QLinearGradient g = vertical ? QLinearGradient(r.bottomLeft(), r.topLeft()) : QLinearGradient(r.topLeft(), r.topRight());
        g.setColorAt(0.0, start_);
        g.setColorAt(1.0, end_);
        const QRect part = vertical ? QRect(r.left(), r.bottom() + 1 - filled, r.width(), filled)
                                    : QRect(r.left(), r.top(), filled, r.height());
        p.fillRect(part, g);
        // A soft highlight along the top (or the left side of a standing bar) gives the smooth look.
        QLinearGradient shine = vertical ? QLinearGradient(r.topLeft(), r.topRight()) : QLinearGradient(r.topLeft(), r.bottomLeft());
        shine.setColorAt(0.0, QColor(255, 255, 255, 90));
        shine.setColorAt(0.5, QColor(255, 255, 255, 0));
        p.fillRect(part, shine);
    }
    p.setPen(QColor(0, 0, 0, 90));
    p.drawRect(r.adjusted(0, 0, -1, -1));
    if (showText_) {
        p.setPen(text_);
        p.drawText(r, Qt::AlignCenter, text());
    }
}
