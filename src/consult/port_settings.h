// What the port catalogue keeps from run to run (the COM number of each
// device path, extra device paths, the recording file of a session) and how
// it opens a recording file. The application's settings store provides it.
#pragma once

#include <QIODevice>
#include <QLatin1StringView>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

class PortSettings {
public:
    virtual ~PortSettings() = default;
    virtual QString ReadSetting(const QString& section, const QString& key) const = 0;
    virtual void WriteSetting(const QString& section, const QString& key, const QString& value) = 0;
    virtual QStringList keys(const QString& section) const = 0;
};

// Opens a session recording for appending; null (with the reason) when it cannot be written.
using RecordingFileOpener = std::function<std::unique_ptr<QIODevice>(const QString& path, QString* error)>;

namespace PortSettingKeys {
inline constexpr QLatin1StringView ExtraPortsSection{"ExtraPorts"};
inline constexpr QLatin1StringView PortAssignmentsSection{"PortAssignments"};
inline constexpr QLatin1StringView RecordSection{"RecordConsult"};
inline constexpr QLatin1StringView RecordKey{"File"};
}  // namespace PortSettingKeys
