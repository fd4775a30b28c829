// A whole application core and main window on a temporary store, with no
// serial devices but the built-in simulator and a speech recorder.
#pragma once

#include "app/app_core.h"
#include "app/main_window.h"
#include "consult/consult_session.h"
#include "temp_settings.h"
#include "voice/recording_speech_out.h"

#include <QAction>
#include <QElapsedTimer>
#include <QMenu>
#include <QTest>
#include <memory>

struct AppRig {
    AppRig() : core(*settings.store, speech) {}
    // Builds the window, runs the start-up and shows it (settings written before this count).
    void open()
    {
        core.ports().setSystemPorts([] { return QList<SystemPort>{}; });
        window = std::make_unique<MainWindow>(core);
        core.start();
        window->show();
    }
    // Picks the built-in simulator's row of the port menu and connects; true once
    // connected with the identity reads done (within five seconds).
    bool connectToSimulator()
    {
        for (QAction* a : window->portMenu()->actions())
            if (a->text().startsWith(QStringLiteral("Vexorin ECU Simulator")))
                a->trigger();
        core.session().ConnectDisconnect();
        QElapsedTimer wait;
        wait.start();
        while ((core.session().ConnectedLabel() != QLatin1String("Connected") ||
                core.session().GetSerialNumberKValue.isActive()) &&
               wait.elapsed() < 5000)
            QTest::qWait(10);
        return core.session().ConnectedLabel() == QLatin1String("Connected");
    }

    TempSettings settings;
    RecordingSpeechOut speech;
    AppCore core;
    std::unique_ptr<MainWindow> window;
};
