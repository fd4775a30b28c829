#include "app/splash.h"

const QString Splash::kProductName = QStringLiteral("Vexorin");
const QString Splash::kWebAddress = QStringLiteral("https://www.vexorin.org/");
const QString Splash::kMailAddress = QStringLiteral("mailto:support@vexorin.org");

namespace {
constexpr int kMajor = 2, kMinor = 5, kRevision = 1;
}

Splash::Splash(QObject* parent) : QObject(parent)
{
    SplashTimer.setInterval(kSplashMs);
    SplashTimer.setSingleShot(false);
    connect(&SplashTimer, &QTimer::timeout, this, &Splash::SplashTimerTick);
}

QString Splash::versionText()
{
    return QStringLiteral("Version %1.%2.%3").arg(kMajor).arg(kMinor).arg(kRevision);
}

void Splash::mainWindowActivated()
{
    if (SplashSwitch != QLatin1String("0"))
        return;
    SplashSwitch = QStringLiteral("1");
    emit showRequested();
}

void Splash::SplashTimerTick()
{
    SplashSwitch = QStringLiteral("1");
    emit unloadRequested();
    SplashTimer.stop();
}

void Splash::dismiss()
{
    emit unloadRequested();
}
