// A walk through every window of the application, connected to the built-in
// simulator: each stop leaves a window in a state worth looking at. The
// screenshot tool photographs the stops; the layout test checks every window
// shown at each of them.
#pragma once

#include <QString>
#include <QTemporaryDir>
#include <functional>

class AppCore;
class MainWindow;
class QWidget;

class ScreenTour {
public:
    // Called at each stop with the stop's picture name and the window it shows.
    using Visitor = std::function<void(const QString& picture, QWidget* window)>;

    ScreenTour(AppCore& core, MainWindow& window);
    ~ScreenTour();

    // Runs every stop in order; false (with the reason in error()) when a step could not be taken.
    bool run(const Visitor& visit);
    QString error() const { return error_; }

private:
    struct Stop;
    bool connectAndMonitor();
    QWidget* topLevel(const QString& objectName) const;
    void trigger(const QString& action);
    static void settle(int ms);
    void forceEngine(bool rev);
    // A log of the simulator's engine, `frames` frames ten a second, as capture writes it.
    static void writeDemoLog(const QString& path, int frames);

    AppCore& core_;
    MainWindow& window_;
    QTemporaryDir files_;
    QString romPath_;
    QString tunedPath_;  // the simulator's ROM with a few changes, to compare with
    QString error_;
};
