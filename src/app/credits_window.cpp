#include "app/credits_window.h"

#include "app/credits_scroll.h"
#include "ui/plain_text.h"
#include "ui/window_keys.h"

#include <QEvent>
#include <QFontMetrics>
#include <QLabel>
#include <QVBoxLayout>

CreditsWindow::CreditsWindow(QWidget* parent) : QWidget(parent, Qt::Window), scroll_(new CreditsScroll(this))
{
    setObjectName(QStringLiteral("Credits"));
    setWindowTitle(QStringLiteral("Credits"));
    setFixedSize(460, 300);
    auto* v = new QVBoxLayout(this);
    v->setContentsMargins(10, 10, 10, 10);
    viewport_ = new QWidget(this);
    viewport_->setObjectName(QStringLiteral("CreditsViewport"));
    viewport_->setAutoFillBackground(true);
    QPalette pal = viewport_->palette();
    pal.setColor(QPalette::Window, Qt::black);
    pal.setColor(QPalette::WindowText, QColor(0xe8, 0xe8, 0xe8));
    viewport_->setPalette(pal);
    v->addWidget(viewport_);
    const QStringList lines = CreditsScroll::text();
    QString html = QStringLiteral("<div align=\"center\"><h2>%1</h2>").arg(lines.first().toHtmlEscaped());
    for (int i = 1; i < lines.size(); ++i)
        html += lines[i].toHtmlEscaped() + QStringLiteral("<br>");
    html += QStringLiteral("</div>");
    inner_ = vexorin::ui::markupByDesign(new QLabel(html, viewport_));  // fixed, escaped text
    inner_->setObjectName(QStringLiteral("CreditsText"));
    inner_->setPalette(pal);
    inner_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    for (QObject* o : std::initializer_list<QObject*>{this, viewport_, inner_})
        o->installEventFilter(this);
    connect(scroll_, &CreditsScroll::moved, this, [this](int top) { inner_->move(0, top); });
    connect(scroll_, &CreditsScroll::closeRequested, this, &QWidget::close);
    vexorin::ui::addEscapeToClose(this);
    vexorin::ui::keepTextPlain(this);
}

void CreditsWindow::showEvent(QShowEvent* e)
{
    QWidget::showEvent(e);
    const int lineHeight = QFontMetrics(inner_->font()).height();
    inner_->setFixedSize(viewport_->width(), qMax(inner_->sizeHint().height(), CreditsScroll::kLines * lineHeight));
    scroll_->prepare(viewport_->height(), inner_->height() / CreditsScroll::kLines);
}

void CreditsWindow::hideEvent(QHideEvent* e)
{
    scroll_->ScrollTimer.stop();
    QWidget::hideEvent(e);
}

bool CreditsWindow::eventFilter(QObject* watched, QEvent* e)
{
    switch (e->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
        scroll_->stop();
        return true;
    default:
        break;
    }
    return QWidget::eventFilter(watched, e);
}
