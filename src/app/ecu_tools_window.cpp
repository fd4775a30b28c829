#include "app/ecu_tools_window.h"

#include "app/app_core.h"
#include "consult/consult_session.h"
#include "sensors/sensor_stream.h"
#include "tools/active_test_window.h"
#include "tools/bin_file_downloader_window.h"
#include "tools/register_viewer_window.h"
#include "ui/message_box.h"

#include <QAction>
#include <QMenu>

using Kind = WindowRegistry::Kind;

EcuToolWindows::EcuToolWindows(AppCore& core, WindowRegistry& windows, QMenu* toolsMenu, QWidget* mainWindow)
    : QObject(mainWindow), core_(core), windows_(windows), mainWindow_(mainWindow)
{
    const std::array<std::tuple<const char*, const char*, void (EcuToolWindows::*)()>, 3> commands{{
        {"BinFileDownloader", "BIN File Downloader", &EcuToolWindows::showBinFileDownloader},
        {"ECURegisterViewer", "E.C.U. Register Viewer", &EcuToolWindows::showRegisterViewer},
        {"ActiveTest", "Active Test", &EcuToolWindows::showActiveTest},
    }};
    toolsMenu->addSeparator();
    for (const auto& [name, caption, show] : commands) {
        QAction* a = toolsMenu->addAction(QLatin1String(caption));
        a->setObjectName(QLatin1String(name));
        connect(a, &QAction::triggered, this, show);
    }

    windows_.setMaker(Kind::BinFileDownloader, [this] {
        auto* w = new BinFileDownloaderWindow(core_.session(), core_.store(), mainWindow_);
        w->setWindowFlag(Qt::Window);
        return w;
    });
    windows_.setMaker(Kind::RegisterViewer, [this] {
        auto* w = new RegisterViewerWindow(core_.session(), mainWindow_);
        w->setWindowFlag(Qt::Window);
        connect(w, &RegisterViewerWindow::hexChartRequested, this, &EcuToolWindows::hexChartRequested);
        return w;
    });
    windows_.setMaker(Kind::ActiveTest, [this] { return new ActiveTestWindow(core_.session(), &core_.stream(), mainWindow_); });

    // While one of them shows, the tool holds the link.
    const std::pair<LinkOwner::Tool, Kind> tools[] = {
        {LinkOwner::Tool::BinFileDownloader, Kind::BinFileDownloader},
        {LinkOwner::Tool::RegisterViewer, Kind::RegisterViewer},
        {LinkOwner::Tool::ActiveTest, Kind::ActiveTest},
    };
    for (const auto& [tool, kind] : tools)
        core_.session().owner().setToolShowing(tool, [this, kind = kind] { return windows_.showing(kind); });
    core_.stream().setActiveTestRpmHook([this](const QString& text) {
        if (ActiveTestWindow* w = activeTest())
            w->test().setRpmText(text);
    });
}

EcuToolWindows::~EcuToolWindows()
{
    for (LinkOwner::Tool tool : {LinkOwner::Tool::BinFileDownloader, LinkOwner::Tool::RegisterViewer,
                                 LinkOwner::Tool::ActiveTest})
        core_.session().owner().setToolShowing(tool, {});
    core_.stream().setActiveTestRpmHook({});
}

BinFileDownloaderWindow* EcuToolWindows::binFileDownloader() const
{
    return windows_.existing<BinFileDownloaderWindow>(Kind::BinFileDownloader);
}

RegisterViewerWindow* EcuToolWindows::registerViewer() const
{
    return windows_.existing<RegisterViewerWindow>(Kind::RegisterViewer);
}

ActiveTestWindow* EcuToolWindows::activeTest() const
{
    return windows_.existing<ActiveTestWindow>(Kind::ActiveTest);
}

bool EcuToolWindows::refused()
{
    QString why;
    if (core_.session().owner().mayUse(LinkOwner::Connected | LinkOwner::MonitoringOff, &why))
        return false;
    MessageBoxes::information(mainWindow_, why);
    return true;
}

void EcuToolWindows::showBinFileDownloader()
{
    // Opened without any test: the tests come at Start.
    windows_.show(Kind::BinFileDownloader);
}

void EcuToolWindows::showRegisterViewer()
{
    if (!refused())
        windows_.show(Kind::RegisterViewer);
}

void EcuToolWindows::showActiveTest()
{
    if (!refused())
        windows_.show(Kind::ActiveTest);
}
