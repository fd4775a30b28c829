#include "app/platform_tools.h"

#include <QProcess>
#include <QStandardPaths>

const QStringList PlatformTools::kSearchTools = {QStringLiteral("catfish"), QStringLiteral("gnome-search-tool"),
                                                 QStringLiteral("kfind"), QStringLiteral("fsearch"),
                                                 QStringLiteral("searchmonkey")};
const QStringList PlatformTools::kMonitorTools = {
    QStringLiteral("gnome-system-monitor"), QStringLiteral("plasma-systemmonitor"), QStringLiteral("ksysguard"),
    QStringLiteral("xfce4-taskmanager"),    QStringLiteral("mate-system-monitor"),  QStringLiteral("lxtask")};

PlatformTools::PlatformTools(Finder finder) : finder_(std::move(finder))
{
    if (!finder_)
        finder_ = [](const QString& name) { return QStandardPaths::findExecutable(name); };
}

PlatformTool PlatformTools::find(const QStringList& names, const QString& what) const
{
    for (const QString& name : names) {
        const QString path = finder_(name);
        if (!path.isEmpty())
            return {path, QString()};
    }
    return {QString(), QStringLiteral("No %1 of the desktop was found (tried %2).").arg(what, names.join(QStringLiteral(", ")))};
}

bool PlatformTools::launch(const PlatformTool& tool)
{
    return !tool.program.isEmpty() && QProcess::startDetached(tool.program, {});
}
