// Graph1 on screen: shows the control's picDraw and hands it its size.
#pragma once

#include <QFrame>

class GraphControl;

class GraphWidget : public QFrame {
    Q_OBJECT
public:
    explicit GraphWidget(GraphControl& control, QWidget* parent = nullptr);
    QSize sizeHint() const override { return {400, 80}; }

protected:
    void paintEvent(QPaintEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;

private:
    void applyFrame();
    GraphControl& control_;
};
