#include "graph/graph_test_window.h"

#include "graph/graph_feed.h"

#include <QCloseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>

GraphTestWindow::GraphTestWindow(GraphFeed& feed, QWidget* parent)
    : QWidget(parent, Qt::Window), feed_(feed)
{
    setObjectName(QStringLiteral("GraphTest"));
    setWindowTitle(QStringLiteral("Graph Test"));
    auto* v = new QVBoxLayout(this);
    button_ = new QPushButton(QStringLiteral("Graph Test On/Off"), this);
    scroll_ = new QScrollBar(Qt::Horizontal, this);
    scroll_->setObjectName(QStringLiteral("GraphTestScroll"));
    scroll_->setAccessibleName(tr("Graph test value"));
    v->addWidget(button_);
    v->addWidget(scroll_);
    connect(button_, &QPushButton::clicked, &feed_, &GraphFeed::GraphTestButton);
    connect(scroll_, &QScrollBar::valueChanged, &feed_, &GraphFeed::GraphTestScroll);
    connect(&feed_, &GraphFeed::changed, this, &GraphTestWindow::refresh);
    refresh();
    resize(320, 90);
}

void GraphTestWindow::refresh()
{
    const QSignalBlocker b(scroll_);
    scroll_->setMaximum(feed_.graphTestMaximum());
    if (!feed_.graphTestVisible() && isVisible())
        hide();
}

void GraphTestWindow::closeEvent(QCloseEvent* e)
{
    feed_.GraphTestClosed();
    QWidget::closeEvent(e);
}
