#include "app/app_core.h"
#include "app/app_identity.h"
#include "app/main_window.h"
#include "app/options_menu.h"
#include "app/settings/settings_store.h"
#include "voice/qt_speech_out.h"

#include <QApplication>
#include <QCommandLineParser>

namespace {
QStringList argumentList(int argc, char* argv[])
{
    QStringList list;
    for (int i = 0; i < argc; ++i)
        list << QString::fromLocal8Bit(argv[i]);
    return list;
}

// Reads the options once the application object has taken its own; prints
// and exits for --help, --version and mistakes.
void processOptions(const QCoreApplication& app)
{
    QCommandLineParser parser;
    vexorin::app::addOptions(parser);
    parser.process(app);
}
}  // namespace

int main(int argc, char* argv[])
{
    if (vexorin::app::answersOnTerminal(argumentList(argc, argv))) {
        QCoreApplication app(argc, argv);
        vexorin::app::setApplicationIdentity();
        processOptions(app);
        return 0;
    }

    QApplication app(argc, argv);
    vexorin::app::setApplicationIdentity();
    processOptions(app);

    SettingsStore store;
    QtSpeechOut speech;
    AppCore core(store, speech);
    speech.setWindowsSevenQuery([&core] { return core.options().windowsSeven(); });
    MainWindow window(core);
    core.start();
    window.show();
    return app.exec();
}
