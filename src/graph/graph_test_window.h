// "Graph Test": feeds Graph1 from a scroll bar.
#pragma once

#include <QWidget>

class GraphFeed;
class QPushButton;
class QScrollBar;

class GraphTestWindow : public QWidget {
    Q_OBJECT
public:
    explicit GraphTestWindow(GraphFeed& feed, QWidget* parent = nullptr);
    QScrollBar* scrollBar() const { return scroll_; }
    QPushButton* button() const { return button_; }

protected:
    void closeEvent(QCloseEvent* e) override;

private:
    void refresh();
    GraphFeed& feed_;
    QPushButton* button_;
    QScrollBar* scroll_;
};
