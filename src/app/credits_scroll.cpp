#include "app/credits_scroll.h"

CreditsScroll::CreditsScroll(QObject* parent) : QObject(parent)
{
    ScrollTimer.setInterval(kTickMs);
    connect(&ScrollTimer, &QTimer::timeout, this, &CreditsScroll::ScrollTimerTick);
}

QStringList CreditsScroll::text()
{
    return {QStringLiteral("Vexorin"),
            QString(),
            QStringLiteral("A workstation for Nissan Consult engine control units"),
            QString(),
            QStringLiteral("With thanks"),
            QString(),
            QStringLiteral("to the owners who lent their cars, cables and Sunday afternoons"),
            QStringLiteral("for the first handshakes with a real ECU,"),
            QString(),
            QStringLiteral("to the tuners who checked the maps against their dynos"),
            QStringLiteral("and told us where the colours lied,"),
            QString(),
            QStringLiteral("to everyone who sent a recording of a session"),
            QStringLiteral("so that the tests talk to a real engine,"),
            QString(),
            QStringLiteral("to those who read every byte of a ROM download twice,"),
            QString(),
            QStringLiteral("to the makers of Qt, Debian and the free tools"),
            QStringLiteral("this program is built with,"),
            QString(),
            QStringLiteral("and to you, for driving with it."),
            QString(),
            QString(),
            QStringLiteral("Drive safely: watch the road, not the laptop.")};
}

void CreditsScroll::prepare(int viewportHeight, int lineHeight)
{
    viewportHeight_ = viewportHeight;
    lineHeight_ = lineHeight;
    innerHeight_ = kLines * lineHeight;
    top_ = viewportHeight;
    emit moved(top_);
    ScrollTimer.start();
}

void CreditsScroll::ScrollTimerTick()
{
    --top_;
    if (top_ <= -innerHeight_) {
        ScrollTimer.stop();
        prepare(viewportHeight_, lineHeight_);  // round again
        return;
    }
    emit moved(top_);
}

void CreditsScroll::stop()
{
    ScrollTimer.stop();
    emit closeRequested();
}
