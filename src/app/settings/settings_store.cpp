#include "app/settings/settings_store.h"

#include "app/settings/edit_reg.h"
#include "ui/regular_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>

namespace {
// QSettings reads its file as it is made: a settings file that is a pipe or a
// device would hold that read for ever. It is refused before, and the settings
// of this run are kept in a file of their own.
std::unique_ptr<QSettings> openStore(const QString& path, QString* problem)
{
    const QString why = vexorin::files::openProblem(path, vexorin::files::Access::Write);
    if (why.isEmpty())
        return std::make_unique<QSettings>(path, QSettings::IniFormat);
    *problem = QStringLiteral("The settings file %1 cannot be used (%2); settings are not kept after this run.")
                   .arg(path, why);
    const QString standIn =
        QDir(QDir::tempPath()).filePath(QStringLiteral("vexorin-settings-%1.conf").arg(QCoreApplication::applicationPid()));
    QFile::remove(standIn);
    return std::make_unique<QSettings>(standIn, QSettings::IniFormat);
}

// Where the user's store lives: $XDG_CONFIG_HOME/Vexorin/Vexorin.conf, the
// file QSettings gives the application "Vexorin" (its native format on Linux is
// this INI format).
QString userStoreFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Vexorin/Vexorin.conf");
}
}  // namespace

SettingsStore::SettingsStore() : settings_(openStore(userStoreFile(), &problem_)) {}

SettingsStore::SettingsStore(const QString& iniFile) : settings_(openStore(iniFile, &problem_)) {}

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
