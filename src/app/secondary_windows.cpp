// The main window's other windows: each made on first use and reused, shown
// and raised, and unloaded in a fixed order when the main window goes.
#include "app/main_window.h"

#include "app/app_core.h"
#include "app/credits_window.h"
#include "app/splash.h"
#include "app/splash_window.h"
#include "consult/fault_codes.h"
#include "app/fault_codes_window.h"
#include "app/interface_check_window.h"
#include "external/external_sensors.h"
#include "external/external_sensors_window.h"
#include "graph/graph_feed.h"
#include "graph/graph_test_window.h"
#include "logging/log_player_window.h"
#include "rom/bin_viewer_window.h"
#include "rom/hex_chart_window.h"
#include "rom/map_viewer_window.h"
#include "sensors/byte_viewer_window.h"
#include "sensors/dash_window.h"
#include "tools/active_test_window.h"
#include "tools/bin_file_downloader_window.h"
#include "app/ecu_tools_window.h"
#include "tools/register_viewer_window.h"
#include "ui/message_box.h"
#include "ui/owned_dialogs.h"
#include "voice/speech_engines_window.h"
#include "voice/startup_announce_window.h"
#include "voice/voice_gate.h"

#include <QCloseEvent>

ExternalSensorsWindow* MainWindow::externalSensorsWindow() const
{
    return externalSensors_;
}

InterfaceCheckWindow* MainWindow::interfaceCheckWindow() const
{
    return interfaceCheck_;
}

DashWindow* MainWindow::dashWindow() const
{
    return dash_;
}

ByteViewerWindow* MainWindow::byteViewerWindow() const
{
    return byteViewer_;
}

StartupAnnounceWindow* MainWindow::startupAnnounceWindow() const
{
    return startupAnnounce_;
}

FaultCodesWindow* MainWindow::faultCodesWindow() const
{
    return faultCodesWindow_;
}

SpeechEnginesWindow* MainWindow::speechEnginesWindow() const
{
    return speechEngines_;
}

GraphTestWindow* MainWindow::graphTestWindow() const
{
    return graphTest_;
}

LogPlayerWindow* MainWindow::logPlayerWindow() const
{
    return logPlayer_;
}

void MainWindow::showGraphTest()
{
    if (!graphTest_)
        graphTest_ = new GraphTestWindow(core_.graphFeed(), this);
    core_.graphFeed().showGraphTest();
    graphTest_->show();
    graphTest_->raise();
}

void MainWindow::showInterfaceCheck()
{
    if (!interfaceCheck_) {
        interfaceCheck_ = new InterfaceCheckWindow(core_.ports().source(), this);
        connect(interfaceCheck_, &InterfaceCheckWindow::errorBox, this,
                [this](const QString& t, const QString& title) { MessageBoxes::critical(this, t, title); });
    }
    interfaceCheck_->reload();
    interfaceCheck_->show();
    interfaceCheck_->raise();
}

void MainWindow::showDash()
{
    if (!dash_)
        dash_ = new DashWindow(core_.displays(), this);
    dash_->show();
    dash_->raise();
}

void MainWindow::showByteViewer()
{
    if (!byteViewer_)
        byteViewer_ = new ByteViewerWindow(core_.byteViewer(), this);
    byteViewer_->show();
    byteViewer_->raise();
}

MapViewerWindow* MainWindow::mapViewerWindow() const
{
    return mapViewer_;
}

void MainWindow::showMapViewer()
{
    if (!mapViewer_)
        mapViewer_ = new MapViewerWindow(core_.session(), 0, this);
    mapViewer_->show();
    mapViewer_->raise();
}

BinViewerWindow* MainWindow::binViewerWindow() const
{
    return binViewer_;
}

void MainWindow::showBinViewer()
{
    if (!binViewer_)
        binViewer_ = new BinViewerWindow(1, this);
    binViewer_->show();
    binViewer_->raise();
}

void MainWindow::showLogPlayer()
{
    if (!logPlayer_)
        logPlayer_ = new LogPlayerWindow(this);
    logPlayer_->show();
    logPlayer_->raise();
}

void MainWindow::showStartupAnnounce()
{
    if (!startupAnnounce_)
        startupAnnounce_ = new StartupAnnounceWindow(core_.store(), core_.voice().out(), this);
    startupAnnounce_->open();
}

void MainWindow::showFaultCodes()
{
    if (!faultCodesWindow_)
        faultCodesWindow_ = new FaultCodesWindow(this);
    faultCodesWindow_->show();
    faultCodesWindow_->raise();
}

void MainWindow::showSpeechEngines()
{
    if (!speechEngines_)
        speechEngines_ = new SpeechEnginesWindow(this);
    speechEngines_->reload();
    speechEngines_->show();
    speechEngines_->raise();
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    core_.shutdown();
    core_.UnloadSwitch.clear();
    unloadWindows();
    event->accept();
}

void MainWindow::exitFromMenu()
{
    core_.UnloadSwitch.clear();
    unloadWindows();
    close();
}

void MainWindow::unloadWindows()
{
    const auto one = [](QWidget* w) { return w ? QList<QWidget*>{w} : QList<QWidget*>{}; };
    const auto many = [](const auto& windows) {
        QList<QWidget*> list;
        for (QWidget* w : windows)
            list.append(w);
        return list;
    };
    const std::function<QList<QWidget*>()> order[] = {
        [&] { return one(credits_); },
        [&] { return one(BinViewerWindow::existingHexChart()); },
        [&] { return many(MapViewerWindow::all()); },
        [&] { return one(startupAnnounce_); },
        [&] { return one(byteViewer_); },
        [&] { return one(graphTest_); },
        [&] { return many(BinViewerWindow::all()); },
        [&] { return one(ecuTools_->binFileDownloader()); },
        [&] { return one(ecuTools_->activeTest()); },
        [&] { return one(logPlayer_); },
        [&] { return one(ecuTools_->registerViewer()); },
        [&] { return one(interfaceCheck_); },
        [&] { return one(faultCodesWindow_); },
        [&] { return one(dash_); },
        [&] { return one(externalSensors_); },
        [&] { return one(findChild<QWidget*>(QStringLiteral("SensorName"), Qt::FindDirectChildrenOnly)); },
        [&] { return one(speechEngines_); },
        [&] { return one(splash_); },
    };
    for (const auto& windows : order) {
        for (QWidget* w : windows()) {
            // Each window closes as its own close would (the Active Test sends its
            // last byte, viewers stop loading), then goes.
            emit windowUnloading(w->objectName());
            vexorin::ui::unloadWindow(w);
        }
    }
}

SplashWindow* MainWindow::splashWindow() const
{
    return splash_;
}

CreditsWindow* MainWindow::creditsWindow() const
{
    return credits_;
}

void MainWindow::showSplash()
{
    if (!splash_) {
        splash_ = new SplashWindow(core_.splash(), this);
        splash_->setAttribute(Qt::WA_DeleteOnClose);
    }
    splash_->show();
    splash_->raise();
}

void MainWindow::showCredits()
{
    if (!credits_) {
        credits_ = new CreditsWindow(this);
        credits_->setAttribute(Qt::WA_DeleteOnClose);
    }
    credits_->show();
    credits_->raise();
}

// External sensors. The window goes with its port when it is closed, and is
// made afresh (settings read again) at the next opening.
void MainWindow::showExternalSensors()
{
    if (!externalSensors_) {
        externalSensors_ = new ExternalSensorsWindow(core_.makeExternalSensors(), this);
        externalSensors_->setAttribute(Qt::WA_DeleteOnClose);
        connect(externalSensors_, &ExternalSensorsWindow::interfaceCheckRequested, this, &MainWindow::showInterfaceCheck);
    }
    externalSensors_->show();
    externalSensors_->raise();
}
