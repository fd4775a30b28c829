// A settings store in a temporary INI file, gone with the test.
#pragma once

#include "app/settings/settings_store.h"

#include <QTemporaryDir>
#include <memory>

struct TempSettings {
    QTemporaryDir dir;
    std::unique_ptr<SettingsStore> store = std::make_unique<SettingsStore>(dir.filePath(QStringLiteral("Vexorin.conf")));
    QString file() const { return dir.filePath(QStringLiteral("Vexorin.conf")); }
};
