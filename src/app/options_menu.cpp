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

// Checks one item of a pair, unchecks the other, and writes both: the checked one first.
void OptionsMenu::choose(bool& on, bool& off, const SettingKey& onKey, const SettingKey& offKey)
{
    on = true;
    off = false;
    writeSetting(store_, onKey, text(true));
    writeSetting(store_, offKey, text(false));
    emit changed();
}

void OptionsMenu::ChooseMph() { choose(mph_, kph_, Settings::Mph, Settings::Kph); }
void OptionsMenu::ChooseKph() { choose(kph_, mph_, Settings::Kph, Settings::Mph); }
void OptionsMenu::ChooseWindowsSeven() { choose(windowsSeven_, windowsXP_, Settings::WindowsSeven, Settings::WindowsXP); }
void OptionsMenu::ChooseWindowsXP() { choose(windowsXP_, windowsSeven_, Settings::WindowsXP, Settings::WindowsSeven); }

// "True" checks the first item of the pair, "False" the second; anything else leaves both.
void OptionsMenu::restorePair(bool& first, bool& second, const SettingKey& key)
{
    const QString v = readSetting(store_, key);
    if (v == QLatin1String("True") || v == QLatin1String("False")) {
        first = v == QLatin1String("True");
        second = !first;
    }
}

// Flips one item and writes its new state.
void OptionsMenu::toggle(bool& item, const SettingKey& key)
{
    item = !item;
    writeSetting(store_, key, text(item));
    emit changed();
}

void OptionsMenu::ToggleStayOnTop() { toggle(stayOnTop_, Settings::StayOnTop); }
void OptionsMenu::ToggleNightMode() { toggle(nightMode_, Settings::NightMode); }
void OptionsMenu::ToggleFastLogging() { toggle(fastLogging_, Settings::FastLogging); }

void OptionsMenu::SetWindowSize(const WindowGeometry& g)
{
    writeSetting(store_, Settings::WindowHeight, QString::number(g.height));
    writeSetting(store_, Settings::WindowWidth, QString::number(g.width));
    writeSetting(store_, Settings::WindowTop, QString::number(g.top));
    writeSetting(store_, Settings::WindowLeft, QString::number(g.left));
}

WindowGeometry OptionsMenu::storedGeometry() const
{
    const WindowGeometry design;
    auto read = [this](const SettingKey& key, int fallback, bool size) {
        bool ok = false;
        const int v = readSetting(store_, key).trimmed().toInt(&ok);
        return ok && (!size || v > 0) ? v : fallback;
    };
    return {read(Settings::WindowHeight, design.height, true), read(Settings::WindowWidth, design.width, true),
            read(Settings::WindowTop, design.top, false), read(Settings::WindowLeft, design.left, false)};
}

void OptionsMenu::restore()
{
    stayOnTop_ = readSetting(store_, Settings::StayOnTop) == QLatin1String("True");
    nightMode_ = readSetting(store_, Settings::NightMode) == QLatin1String("True");
    fastLogging_ = readSetting(store_, Settings::FastLogging) == QLatin1String("True");
    restorePair(mph_, kph_, Settings::Mph);
    restorePair(windowsSeven_, windowsXP_, Settings::WindowsSeven);
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
