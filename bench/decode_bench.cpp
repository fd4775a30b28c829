// Decode and display cost of one all-sensor frame, in-process: conversion,
// labels, bars, Dash, Byte Viewer and large view, with every window built.
#include "monitor_rig.h"
#include "sensors/byte_viewer_window.h"
#include "sensors/dash_window.h"
#include "sensors/large_view_panel.h"
#include "sensors/sensor_panel.h"

#include <QApplication>
#include <benchmark/benchmark.h>

namespace {
std::vector<std::uint8_t> frameBytes(std::uint8_t speed)
{
    FrameData d = typicalFrame();
    d[0] = speed;
    const QByteArray r = allSensorsReply(d);
    return {r.begin(), r.end()};
}
}  // namespace

static void DecodeFrameModelsOnly(benchmark::State& state)
{
    MonitorRig rig;
    const auto a = frameBytes(30), b = frameBytes(31);
    bool flip = false;
    for (auto _ : state) {
        benchmark::DoNotOptimize(rig.stream.decodeFrame(flip ? a : b));
        flip = !flip;
    }
}
BENCHMARK(DecodeFrameModelsOnly)->Unit(benchmark::kMicrosecond);

static void DecodeFrameWithWindows(benchmark::State& state)
{
    MonitorRig rig;
    SensorPanel panel(rig.displays);
    LargeViewPanel large(rig.displays);
    DashWindow dash(rig.displays);
    ByteViewerWindow bytes(rig.cells);
    panel.show();
    large.show();
    dash.show();
    bytes.show();
    rig.selection.SelectSensor(vexorin::sensors::SensorId::Speed);
    const auto a = frameBytes(30), b = frameBytes(31);
    bool flip = false;
    for (auto _ : state) {
        benchmark::DoNotOptimize(rig.stream.decodeFrame(flip ? a : b));
        flip = !flip;
    }
}
BENCHMARK(DecodeFrameWithWindows)->Unit(benchmark::kMicrosecond);

static void DecodeAndPaint(benchmark::State& state)
{
    MonitorRig rig;
    SensorPanel panel(rig.displays);
    DashWindow dash(rig.displays);
    panel.resize(660, 440);
    panel.show();
    dash.show();
    const auto a = frameBytes(30), b = frameBytes(31);
    bool flip = false;
    for (auto _ : state) {
        rig.stream.decodeFrame(flip ? a : b);
        flip = !flip;
        QCoreApplication::processEvents();  // the repaint the event loop would do
    }
}
BENCHMARK(DecodeAndPaint)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
