#pragma once
// Who the application is: its names, version, desktop entry and icon, and
// the options its command line takes.
#include <QIcon>
#include <QStringList>

class QCommandLineParser;

namespace vexorin::app {

inline constexpr const char* kDesktopId = "org.vexorin.Vexorin";

// Organisation, application name and version (the settings store's names),
// the desktop entry, and the window icon every window shows.
void setApplicationIdentity();

// The icon, drawn at 48, 128 and 256 pixels.
QIcon applicationIcon();

// --help and --version, with the description --help prints.
void addOptions(QCommandLineParser& parser);

// True when the arguments ask only for an answer on the terminal (--help,
// --version): it is given without a window system.
bool answersOnTerminal(const QStringList& arguments);

}  // namespace vexorin::app
