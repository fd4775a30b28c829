// The main window's commands for the ECU tools: BinFileDownloader,
// ECURegisterViewer and ActiveTest in its Tools menu, the refusals before the
// last two open, and the monitor's refusal while any of them is showing.
#pragma once

#include "app/window_registry.h"

#include <QObject>

class AppCore;
class QMenu;
class QWidget;
class ActiveTestWindow;
class BinFileDownloaderWindow;
class RegisterViewerWindow;

class EcuToolWindows : public QObject {
    Q_OBJECT
public:
    EcuToolWindows(AppCore& core, WindowRegistry& windows, QMenu* toolsMenu, QWidget* mainWindow);
    ~EcuToolWindows() override;

    void showBinFileDownloader();
    void showRegisterViewer();
    void showActiveTest();

    BinFileDownloaderWindow* binFileDownloader() const;
    RegisterViewerWindow* registerViewer() const;
    ActiveTestWindow* activeTest() const;

signals:
    // The Register Viewer's View, Hex Chart.
    void hexChartRequested();

private:
    // The two refusals of the Register Viewer and the Active Test.
    bool refused();

    AppCore& core_;
    WindowRegistry& windows_;
    QWidget* mainWindow_;
};
