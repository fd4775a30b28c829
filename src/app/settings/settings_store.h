// The persistent memory of Vexorin: text values by section and key.
#pragma once

#include "consult/port_settings.h"

#include <QString>
#include <memory>

class QSettings;

class SettingsStore : public PortSettings {
public:
    // The user's store of the application "Vexorin".
    SettingsStore();
    // A store in the given INI file (tests, tools).
    explicit SettingsStore(const QString& iniFile);
    ~SettingsStore() override;

    SettingsStore(const SettingsStore&) = delete;
    SettingsStore& operator=(const SettingsStore&) = delete;

    // The value, or empty when the section or key does not exist or the value is not text.
    QString ReadSetting(const QString& section, const QString& key) const override;
    // Creates the section if absent and sets the value.
    void WriteSetting(const QString& section, const QString& key, const QString& value) override;

    // Every key of a section (for sections whose keys are free, such as ExtraPorts).
    QStringList keys(const QString& section) const override;
    void remove(const QString& section, const QString& key);

    QString fileName() const;
    // Why the settings file could not be used (it is not a regular file), or empty.
    QString problem() const { return problem_; }

private:
    QString problem_;  // before settings_: the store's opening fills it
    std::unique_ptr<QSettings> settings_;
};
