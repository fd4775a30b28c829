#include "app/app_identity.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QGuiApplication>

namespace vexorin::app {

void setApplicationIdentity()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Vexorin"));
    QCoreApplication::setApplicationName(QStringLiteral("Vexorin"));
    QCoreApplication::setApplicationVersion(QStringLiteral("2.5.1"));
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        QGuiApplication::setDesktopFileName(QLatin1String(kDesktopId));
        QGuiApplication::setWindowIcon(applicationIcon());
    }
}

QIcon applicationIcon()
{
    QIcon icon;
    for (int size : {48, 128, 256})
        icon.addFile(QStringLiteral(":/icons/%1/%2.png").arg(size).arg(QLatin1String(kDesktopId)), QSize(size, size));
    return icon;
}

void addOptions(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "Workstation for Nissan ECUs with a Consult port. Without options it opens its main window."));
    parser.addHelpOption();
    parser.addVersionOption();
}

bool answersOnTerminal(const QStringList& arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments))
        return false;  // the window system's own options, or a mistake the full parse reports
    return parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("help-all")) ||
        parser.isSet(QStringLiteral("version"));
}

}  // namespace vexorin::app
