// The unit and operating system items of the Options menu: "MPH" or "KPH"
// (the unit the voice says after the speed), "Windows 7" or "Windows
// XP/Windows Vista" (which column of voice indices is in force), and "Fast
// Logging" (the all-sensor stream left running while monitoring).
#pragma once

#include "voice/voice_options.h"

#include <QObject>

class SettingsStore;
struct SettingKey;

// The main window's place and size in twips, as the store keeps them.
struct WindowGeometry {
    int height = 8040;
    int width = 13080;
    int top = 375;
    int left = 1140;
};

class OptionsMenu : public QObject, public VoiceOptions {
    Q_OBJECT
public:
    explicit OptionsMenu(SettingsStore& store, QObject* parent = nullptr);

    bool mph() const override { return mph_; }
    bool kph() const override { return kph_; }
    bool windowsSeven() const override { return windowsSeven_; }
    bool windowsXP() const override { return windowsXP_; }
    bool stayOnTop() const { return stayOnTop_; }
    bool nightMode() const { return nightMode_; }
    bool fastLogging() const { return fastLogging_; }

    void ChooseMph();
    void ChooseKph();
    void ChooseWindowsSeven();
    void ChooseWindowsXP();
    // "Stay on top": toggles and writes "True"/"False".
    void ToggleStayOnTop();
    void ToggleNightMode();
    // "Fast Logging": toggles and writes "True"/"False".
    void ToggleFastLogging();
    // "Set Window Size and Position": Height, Width, Top, Left, in that order.
    void SetWindowSize(const WindowGeometry& g);
    // The stored geometry; a value that is missing or no number takes the design value.
    WindowGeometry storedGeometry() const;

    // The stored choices as start-up applies them: "Stay on top" and "Fast
    // Logging" are checked by "True" alone; for the pairs "True" and "False" decide, anything else leaves the design.
    void restore();

    // Test access to the check marks, as a menu click would leave them.
    void setChecks(bool mph, bool kph, bool seven, bool xp);

signals:
    void changed();

private:
    void choose(bool& on, bool& off, const SettingKey& onKey, const SettingKey& offKey);
    void restorePair(bool& first, bool& second, const SettingKey& key);
    void toggle(bool& item, const SettingKey& key);

    SettingsStore& store_;
    bool nightMode_ = false;
    bool mph_ = true;
    bool kph_ = false;
    bool windowsSeven_ = false;
    bool windowsXP_ = true;
    bool stayOnTop_ = false;
    bool fastLogging_ = false;
};
