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

EcuToolWindows::EcuToolWindows(AppCore& core, QMenu* toolsMenu, QWidget* mainWindow)
    : QObject(mainWindow), core_(core), mainWindow_(mainWindow)
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

    SensorStream& stream = core_.stream();
    core_.session().owner().setToolShowing(LinkOwner::Tool::BinFileDownloader, [this] { return downloader_ && downloader_->isVisible(); });
    core_.session().owner().setToolShowing(LinkOwner::Tool::RegisterViewer,
                          [this] { return registerViewer_ && registerViewer_->isVisible(); });
    core_.session().owner().setToolShowing(LinkOwner::Tool::ActiveTest, [this] { return activeTest_ && activeTest_->isVisible(); });
    stream.setActiveTestRpmHook([this](const QString& text) {
        if (activeTest_)
            activeTest_->test().setRpmText(text);
    });
}

EcuToolWindows::~EcuToolWindows()
{
    SensorStream& stream = core_.stream();
    core_.session().owner().setToolShowing(LinkOwner::Tool::BinFileDownloader, {});
    core_.session().owner().setToolShowing(LinkOwner::Tool::RegisterViewer, {});
    core_.session().owner().setToolShowing(LinkOwner::Tool::ActiveTest, {});
    stream.setActiveTestRpmHook({});
}

BinFileDownloaderWindow* EcuToolWindows::binFileDownloader() const
{
    return downloader_;
}

RegisterViewerWindow* EcuToolWindows::registerViewer() const
{
    return registerViewer_;
}

ActiveTestWindow* EcuToolWindows::activeTest() const
{
    return activeTest_;
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
    if (!downloader_) {
        downloader_ = new BinFileDownloaderWindow(core_.session(), core_.store(), mainWindow_);
        downloader_->setWindowFlag(Qt::Window);
    }
    downloader_->show();
    downloader_->raise();
}

void EcuToolWindows::showRegisterViewer()
{
    if (refused())
        return;
    if (!registerViewer_) {
        registerViewer_ = new RegisterViewerWindow(core_.session(), mainWindow_);
        registerViewer_->setWindowFlag(Qt::Window);
        connect(registerViewer_, &RegisterViewerWindow::hexChartRequested, this, &EcuToolWindows::hexChartRequested);
    }
    registerViewer_->show();
    registerViewer_->raise();
}

void EcuToolWindows::showActiveTest()
{
    if (refused())
        return;
    if (!activeTest_)
        activeTest_ = new ActiveTestWindow(core_.session(), &core_.stream(), mainWindow_);
    activeTest_->show();
    activeTest_->raise();
}
