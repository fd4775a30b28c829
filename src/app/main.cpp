#include "app/app_core.h"
#include "app/main_window.h"
#include "app/options_menu.h"
#include "app/settings/settings_store.h"
#include "voice/qt_speech_out.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Vexorin"));
    QApplication::setApplicationName(QStringLiteral("Vexorin"));
    QApplication::setApplicationVersion(QStringLiteral("2.5.1"));

    SettingsStore store;
    QtSpeechOut speech;
    AppCore core(store, speech);
    speech.setWindowsSevenQuery([&core] { return core.options().windowsSeven(); });
    MainWindow window(core);
    core.start();
    window.show();
    return app.exec();
}
