// A one-hour log at ten frames a second (36,000 frames, 504,000 lines)
// exported as CSV, read for the Log Chart, and shown in the Log Chart window
// (drawn once), then zoomed and panned as a wheel and a drag would. Prints
// the time of each; the targets are under one second for the export and the
// chart, and a few milliseconds for a step of zoom or pan.
#include "logging/log_chart.h"
#include "logging/log_chart_window.h"
#include "logging/log_csv_export.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

namespace {
void writeHourLog(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return;
    QByteArray frame;
    for (int k = 0; k < 36000; ++k) {
        frame.clear();
        frame += "11/21/202608:" + QByteArray::number(10 + k / 600 % 50) + ":" + QByteArray::number(10 + k / 10 % 50) +
                 "\r\n";
        frame += " " + QByteArray::number(k % 160) + " \r\n " + QByteArray::number(800 + k % 5000) + ".5 \r\n";
        frame += "0." + QByteArray::number(10 + k % 90) + "\r\n1." + QByteArray::number(10 + k % 90) + "\r\n";
        frame += "0.45\r\n0.46\r\n";
        for (int i = 0; i < 5; ++i)
            frame += " " + QByteArray::number(i * 3 + k % 9) + " \r\n";
        frame += "13.84\r\n 100 \r\n";
        f.write(frame);
    }
}

double msSince(QElapsedTimer& t)
{
    const double ms = t.nsecsElapsed() / 1e6;
    t.restart();
    return ms;
}
}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    QTemporaryDir dir;
    const QString log = dir.filePath(QStringLiteral("hour.log"));
    writeHourLog(log);
    QElapsedTimer t;

    double exportMs = 1e9;
    for (int run = 0; run < 3; ++run) {
        t.restart();
        LogCsvExport job;
        QString error;
        if (!job.open(log, dir.filePath(QStringLiteral("hour.csv")), &error)) {
            std::printf("export failed: %s\n", qPrintable(error));
            return 1;
        }
        job.runToEnd();
        exportMs = std::min(exportMs, msSince(t));
        if (job.frames() != 36000 || job.unreadable() != 0) {
            std::printf("export read %lld frames, %lld unreadable\n", (long long)job.frames(),
                        (long long)job.unreadable());
            return 1;
        }
    }

    double readMs = 1e9;
    for (int run = 0; run < 3; ++run) {
        LogChart chart;
        QString error;
        t.restart();
        chart.load(log, &error);
        readMs = std::min(readMs, msSince(t));
    }

    t.restart();
    LogChartWindow window;
    window.resize(1280, 800);
    window.load(log);
    window.show();
    window.grab();  // drawn once, every lane
    const double windowMs = msSince(t);

    double zoomMax = 0, panMax = 0;
    LogChart& chart = window.chart();
    for (int i = 0; i < 20; ++i) {
        t.restart();
        chart.zoom(0.8, 18000);
        window.plot()->grab();
        const double ms = msSince(t);
        if (qEnvironmentVariableIsSet("VEXORIN_BENCH_STEPS"))
            std::printf("zoom %d: %.1f ms, span %.0f\n", i, ms, chart.range().span());
        zoomMax = std::max(zoomMax, ms);
    }
    for (int i = 0; i < 20; ++i) {
        t.restart();
        chart.pan(chart.range().span() / 20);
        window.plot()->grab();
        panMax = std::max(panMax, msSince(t));
    }
    t.restart();
    chart.showAll();
    window.plot()->grab();
    const double allMs = msSince(t);

    std::printf("one-hour log: 36000 frames, 504000 lines, %lld bytes\n", (long long)QFile(log).size());
    std::printf("CSV export:                      %.1f ms (target under 1000 ms)\n", exportMs);
    std::printf("Log Chart, reading the log:      %.1f ms\n", readMs);
    std::printf("Log Chart window, read and drawn: %.1f ms (target under 1000 ms)\n", windowMs);
    std::printf("zoom step, redrawn:              slowest %.1f ms of 20\n", zoomMax);
    std::printf("pan step, redrawn:               slowest %.1f ms of 20\n", panMax);
    std::printf("back to the whole log, redrawn:  %.1f ms\n", allMs);
    return exportMs < 1000 && windowMs < 1000 ? 0 : 1;
}
