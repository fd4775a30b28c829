#include "app/settings/settings_store.h"

#include "app/settings/edit_reg.h"

#include <QSettings>

SettingsStore::SettingsStore()
    : settings_(std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                            QStringLiteral("Vexorin"), QStringLiteral("Vexorin")))
{
}

SettingsStore::SettingsStore(const QString& iniFile)
    : settings_(std::make_unique<QSettings>(iniFile, QSettings::IniFormat))
{
}

SettingsStore::~SettingsStore() = default;

QString SettingsStore::ReadSetting(const QString& section, const QString& key) const
{
    return EditReg::GetKeyValue(*settings_, section, key);
}

void SettingsStore::WriteSetting(const QString& section, const QString& key, const QString& value)
{
    EditReg::SetKeyValue(*settings_, section, key, value);
}

QStringList SettingsStore::keys(const QString& section) const
{
    settings_->beginGroup(section);
    const QStringList k = settings_->childKeys();
    settings_->endGroup();
    return k;
}

void SettingsStore::remove(const QString& section, const QString& key)
{
    settings_->remove(section + QLatin1Char('/') + key);
    settings_->sync();
}

QString SettingsStore::fileName() const
{
    return settings_->fileName();
}
