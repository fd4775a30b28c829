// vexorin-screenshots: starts the application on a settings file of its own,
// connects it to the built-in simulator, walks through every window and writes
// a picture of each into the folder given (docs/screenshots by default).
// Exits with 2 when a picture shows a layout problem (each is printed).
#include "app/app_core.h"
#include "app/app_identity.h"
#include "app/main_window.h"
#include "app/screen_tour.h"
#include "app/settings/settings_store.h"
#include "ui/layout_audit.h"
#include "voice/recording_speech_out.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QScreen>
#include <QTemporaryDir>
#include <QTextStream>
#include <QWindow>

namespace {
// A window that holds a native surface (the 3D map's graph) is taken from the
// screen, where that surface is drawn; grab() would leave it blank.
QPixmap pictureOf(QWidget* shown)
{
    for (QWidget* child : shown->findChildren<QWidget*>())
        if (child->inherits("QWindowContainer") && shown->screen())
            return shown->screen()->grabWindow(shown->winId());
    return shown->grab();
}
}  // namespace

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    vexorin::app::setApplicationIdentity();
    const QString folder = app.arguments().value(1, QStringLiteral("docs/screenshots"));
    QTextStream err(stderr);
    if (!QDir().mkpath(folder)) {
        err << "vexorin-screenshots: cannot make " << folder << "\n";
        return 1;
    }
    QTemporaryDir settingsDir;
    SettingsStore store(settingsDir.filePath(QStringLiteral("Vexorin.conf")));
    RecordingSpeechOut speech;
    AppCore core(store, speech);
    core.ports().setSystemPorts([] { return QList<SystemPort>{}; });
    MainWindow window(core);
    core.start();
    window.show();

    int written = 0;
    int problems = 0;
    ScreenTour tour(core, window);
    const bool done = tour.run([&](const QString& picture, QWidget* shown) {
        const QString path = QDir(folder).filePath(picture + QStringLiteral(".png"));
        if (!pictureOf(shown).save(path)) {
            err << "vexorin-screenshots: cannot write " << path << "\n";
            return;
        }
        ++written;
        for (const QString& problem : vexorin::ui::layoutProblems(shown)) {
            err << picture << ": " << problem << "\n";
            ++problems;
        }
    });
    window.exitFromMenu();
    if (!done) {
        err << "vexorin-screenshots: " << tour.error() << "\n";
        return 1;
    }
    QTextStream(stdout) << written << " pictures in " << folder << "\n";
    if (problems > 0) {
        err << "vexorin-screenshots: " << problems << " layout problems (above)\n";
        return 2;
    }
    return 0;
}
