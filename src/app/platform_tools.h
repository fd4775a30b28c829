// The desktop's own tools behind the Extra Utilities items: a file search
// and a system monitor, where one is installed.
#pragma once

#include <QString>
#include <QStringList>
#include <functional>

struct PlatformTool {
    QString program;  // empty: none found
    QString missingTip;
};

class PlatformTools {
public:
    // Finds a program by name on the PATH (tests give their own).
    using Finder = std::function<QString(const QString& name)>;
    explicit PlatformTools(Finder finder = {});

    static const QStringList kSearchTools;
    static const QStringList kMonitorTools;

    PlatformTool search() const { return find(kSearchTools, QStringLiteral("file search")); }
    PlatformTool performanceMonitor() const { return find(kMonitorTools, QStringLiteral("system monitor")); }
    // Starts the program on its own; false when it could not be started.
    static bool launch(const PlatformTool& tool);

private:
    PlatformTool find(const QStringList& names, const QString& what) const;
    Finder finder_;
};
