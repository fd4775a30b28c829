#include "app/options_menu.h"

#include "app/settings/settings_access.h"

namespace {
QString text(bool b)
{
    return b ? QStringLiteral("True") : QStringLiteral("False");
}
}  // namespace

OptionsMenu::OptionsMenu(SettingsStore& store, QObject* parent)
    : QObject(parent), store_(store)
{
}

void OptionsMenu::ChooseMph()
{
    mph_ = true;
    kph_ = false;
    writeSetting(store_, Settings::Mph, text(true));
    writeSetting(store_, Settings::Kph, text(false));
    emit changed();
}

void OptionsMenu::ChooseKph()
{
    kph_ = true;
    mph_ = false;
    writeSetting(store_, Settings::Kph, text(true));
    writeSetting(store_, Settings::Mph, text(false));
    emit changed();
}

void OptionsMenu::ChooseWindowsSeven()
{
    windowsSeven_ = true;
    windowsXP_ = false;
    writeSetting(store_, Settings::WindowsSeven, text(true));
    writeSetting(store_, Settings::WindowsXP, text(false));
    emit changed();
}

void OptionsMenu::ChooseWindowsXP()
{
    windowsXP_ = true;
    windowsSeven_ = false;
    writeSetting(store_, Settings::WindowsXP, text(true));
    writeSetting(store_, Settings::WindowsSeven, text(false));
    emit changed();
}

void OptionsMenu::restore()
{
    const QString mph = readSetting(store_, Settings::Mph);
    if (mph == QLatin1String("True")) {
        mph_ = true;
        kph_ = false;
    } else if (mph == QLatin1String("False")) {
        mph_ = false;
        kph_ = true;
    }
    const QString seven = readSetting(store_, Settings::WindowsSeven);
    if (seven == QLatin1String("True")) {
        windowsSeven_ = true;
        windowsXP_ = false;
    } else if (seven == QLatin1String("False")) {
        windowsSeven_ = false;
        windowsXP_ = true;
    }
    emit changed();
}

void OptionsMenu::setChecks(bool mph, bool kph, bool seven, bool xp)
{
    mph_ = mph;
    kph_ = kph;
    windowsSeven_ = seven;
    windowsXP_ = xp;
    emit changed();
}
