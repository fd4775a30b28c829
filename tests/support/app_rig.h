// A whole application core and main window on a temporary store, with no
// serial devices but the built-in simulator and a speech recorder.
#pragma once

#include "app/app_core.h"
#include "app/main_window.h"
#include "temp_settings.h"
#include "voice/recording_speech_out.h"

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
    TempSettings settings;
    RecordingSpeechOut speech;
    AppCore core;
    std::unique_ptr<MainWindow> window;
};
