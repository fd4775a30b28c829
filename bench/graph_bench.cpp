// One full repaint of Graph1 with 60 points at the main window's size.
#include "graph/graph_control.h"

#include <QGuiApplication>
#include <benchmark/benchmark.h>
#include <cmath>

static void RepaintSixtyPoints(benchmark::State& state)
{
    GraphControl g(vexorin::graph::GraphSettings::mainWindow());
    g.resize(QSize(436, 96));  // Graph1 in the main window's client area
    for (int i = 0; i < 60; ++i)
        g.points().Add(25 + 20 * std::sin(i / 5.0));
    for (auto _ : state)
        g.Refresh();
    state.counters["repaints"] = g.repaintCount();
}
BENCHMARK(RepaintSixtyPoints)->Unit(benchmark::kMicrosecond);

static void RepaintSixtyPointsWithGrid(benchmark::State& state)
{
    auto s = vexorin::graph::GraphSettings::mainWindow();
    s.ShowGrid = true;
    GraphControl g(s);
    g.resize(QSize(856, 200));  // larger than the main window shows it
    for (int i = 0; i < 60; ++i)
        g.points().Add(25 + 20 * std::sin(i / 5.0));
    for (auto _ : state)
        g.Refresh();
}
BENCHMARK(RepaintSixtyPointsWithGrid)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
