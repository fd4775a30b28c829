// A bar: value and maximum, a back colour, a smooth gradient from the start to
// the end colour, and an optional text around its percentage. It lies
// horizontally and fills from the left, or stands and fills from the bottom.
#pragma once

#include <QColor>
#include <QWidget>

class GradientBar : public QWidget {
    Q_OBJECT
public:
    explicit GradientBar(QWidget* parent = nullptr);

    int value() const { return value_; }
    int maximum() const { return maximum_; }
    void setValue(int v);
    void setMaximum(int m);

    Qt::Orientation orientation() const { return orientation_; }
    void setOrientation(Qt::Orientation o);

    QColor backColor() const { return back_; }
    QColor startColor() const { return start_; }
    QColor endColor() const { return end_; }
    QColor textColor() const { return text_; }
    void setBackColor(const QColor& c);
    void setStartColor(const QColor& c);
    void setEndColor(const QColor& c);
    void setTextColor(const QColor& c);

    // Shows "before" + percentage + "after" when on (the sign, if any, is part of "after").
    void setTextVisible(bool on);
    void setTextBefore(const QString& t);
    void setTextAfter(const QString& t);
    bool isTextVisible() const { return showText_; }
    // The text drawn over the bar (empty when the text is off).
    QString text() const;

    // The share of the bar that is filled, 0 to 1 (positions outside 0..maximum are clamped).
    double fraction() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    Qt::Orientation orientation_ = Qt::Horizontal;
    int value_ = 0;
    int maximum_ = 100;
    QColor back_{0x80, 0x80, 0xFF};
    QColor start_{0x00, 0x00, 0xFF};
    QColor end_{0x00, 0x00, 0xFF};
    QColor text_{Qt::black};
    bool showText_ = false;
    QString before_;
    QString after_;
};
