#include "app/splash_window.h"

#include "app/splash.h"
#include "ui/plain_text.h"

#include <QDesktopServices>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QUrl>
#include <QVBoxLayout>

namespace {
// A label that opens its target through the desktop's default handler.
QLabel* linkLabel(const QString& text, const QString& target, QWidget* parent)
{
    auto* label = vexorin::ui::markupByDesign(
        new QLabel(QStringLiteral("<a style=\"color:#cfe3ff\" href=\"%1\">%2</a>").arg(target, text), parent));
    label->setTextInteractionFlags(Qt::TextBrowserInteraction);
    label->setOpenExternalLinks(false);
    QObject::connect(label, &QLabel::linkActivated, label, [](const QString& url) { QDesktopServices::openUrl(QUrl(url)); });
    return label;
}
}  // namespace

SplashWindow::SplashWindow(Splash& splash, QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint), splash_(splash)
{
    setObjectName(QStringLiteral("Splash"));
    setWindowTitle(QStringLiteral("About Vexorin"));
    setFixedSize(480, 300);
    auto* v = new QVBoxLayout(this);
    v->setContentsMargins(28, 24, 28, 20);
    auto* name = new QLabel(Splash::kProductName, this);
    name->setObjectName(QStringLiteral("ProductName"));
    QFont big = name->font();
    big.setPixelSize(44);
    big.setBold(true);
    name->setFont(big);
    auto* edition = new QLabel(QStringLiteral("Tuning Edition"), this);
    QFont mid = edition->font();
    mid.setPixelSize(18);
    edition->setFont(mid);
    auto* version = new QLabel(Splash::versionText(), this);
    version->setObjectName(QStringLiteral("Version"));
    version->setFont(mid);
    auto* about = new QLabel(QStringLiteral("Consult workstation for Nissan engine control units"), this);
    about->setWordWrap(true);
    for (QLabel* l : {name, edition, version, about})
        l->setStyleSheet(QStringLiteral("color: white;"));
    v->addWidget(name);
    v->addWidget(edition);
    v->addSpacing(12);
    v->addWidget(version);
    v->addWidget(about);
    v->addStretch(1);
    auto* web = linkLabel(QStringLiteral("www.vexorin.org"), Splash::kWebAddress, this);
    web->setObjectName(QStringLiteral("WebLabel"));
    auto* mail = linkLabel(QStringLiteral("support@vexorin.org"), Splash::kMailAddress, this);
    mail->setObjectName(QStringLiteral("MailLabel"));
    v->addWidget(web);
    v->addWidget(mail);
    auto* hint = new QLabel(QStringLiteral("Click or press a key to close"), this);
    hint->setStyleSheet(QStringLiteral("color: #a9c0e0;"));
    v->addWidget(hint, 0, Qt::AlignRight);
    for (QLabel* l : findChildren<QLabel*>())
        if (l != web && l != mail)
            l->setAttribute(Qt::WA_TransparentForMouseEvents);
    vexorin::ui::keepTextPlain(this);
}

void SplashWindow::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    QLinearGradient g(0, 0, width(), height());
    g.setColorAt(0, QColor(0x10, 0x2a, 0x5c));
    g.setColorAt(1, QColor(0x05, 0x0c, 0x1e));
    p.fillRect(rect(), g);
    p.setPen(QPen(QColor(0xd0, 0x20, 0x20), 4));
    p.drawLine(28, 112, width() - 28, 112);
}

void SplashWindow::mousePressEvent(QMouseEvent*)
{
    splash_.dismiss();
}

void SplashWindow::keyPressEvent(QKeyEvent*)
{
    splash_.dismiss();
}
