// The store behind the settings: one per-user INI file of the application
// "Vexorin" (on Linux $XDG_CONFIG_HOME/Vexorin/Vexorin.conf), one group per section.
#pragma once

#include <QString>

class QSettings;

namespace EditReg {

// The text stored under section/key; empty when absent or when the stored
// value is not text. A text is cut at its first zero character.
QString GetKeyValue(QSettings& store, const QString& section, const QString& key);

// Creates the section if needed and writes the text. Reports nothing.
void SetKeyValue(QSettings& store, const QString& section, const QString& key, const QString& text);

}  // namespace EditReg
