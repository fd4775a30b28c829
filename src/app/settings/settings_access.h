// Reading and writing a key of the table through a store.
#pragma once

#include "app/settings/settings_keys.h"
#include "app/settings/settings_store.h"

inline QString readSetting(const SettingsStore& store, const SettingKey& k)
{
    return store.ReadSetting(QString(k.section), QString(k.key));
}

// The stored value, or the program's default when the key is missing or empty.
inline QString readSettingOrDefault(const SettingsStore& store, const SettingKey& k)
{
    const QString v = readSetting(store, k);
    return v.isEmpty() ? QString(k.defaultValue) : v;
}

inline void writeSetting(SettingsStore& store, const SettingKey& k, const QString& value)
{
    store.WriteSetting(QString(k.section), QString(k.key), value);
}
