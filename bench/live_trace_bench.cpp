// Live Trace against the standalone simulator paced at the Consult line rate
// (960 bytes a second), through a pseudo-terminal and the real serial port
// code: cursor updates a second, and how late each update is after its
// frame's last byte left the simulator. The simulator sends at a steady pace,
// so the time a byte left it is a straight line over the byte count: the
// line through the updates (least squares, then moved down to the earliest
// update) says when the last byte taken at an update left, and the update's
// lateness is its time less that.
// Usage: live_trace_bench [seconds]   (default 20)
#include "app/app_core.h"
#include "consult/consult_session.h"
#include "pty_rig.h"
#include "rom/map_viewer.h"
#include "sim/ecu_simulator.h"
#include "ui/binary_files.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <vector>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int seconds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 20;

    PtyRig rig({QStringLiteral("--pace")});
    if (!rig.start() || !connectAndSettle(rig.core->session())) {
        std::fprintf(stderr, "the simulator did not start or answer\n");
        return 1;
    }
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("sim.bin"));
    const auto rom = vexorin::sim::makeSyntheticRom();
    vexorin::files::WriteBytes(path.toStdString(), std::vector<std::uint8_t>(rom.begin(), rom.end()), nullptr);
    MapViewer viewer(rig.core->session());
    if (!viewer.LoadBinFile(path))
        return 1;

    std::vector<double> atMs, bytes;
    QElapsedTimer clock;
    QObject::connect(&viewer.trace(), &MapTrace::moved, [&] {
        atMs.push_back(double(clock.nsecsElapsed()) / 1e6);
        bytes.push_back(double(viewer.trace().bytesTaken()));
    });
    clock.start();
    viewer.setLiveTrace(true);
    if (!viewer.trace().isOn()) {
        std::fprintf(stderr, "the trace did not start\n");
        return 1;
    }
    QTimer::singleShot(seconds * 1000, &app, &QCoreApplication::quit);
    app.exec();
    const double elapsed = clock.elapsed() / 1000.0;
    viewer.setLiveTrace(false);

    const std::size_t n = atMs.size();
    double mb = 0, mt = 0;
    for (std::size_t i = 0; i < n; ++i) {
        mb += bytes[i] / double(n);
        mt += atMs[i] / double(n);
    }
    double sbt = 0, sbb = 0;
    for (std::size_t i = 0; i < n; ++i) {
        sbt += (bytes[i] - mb) * (atMs[i] - mt);
        sbb += (bytes[i] - mb) * (bytes[i] - mb);
    }
    const double msPerByte = sbb > 0 ? sbt / sbb : 0;
    std::vector<double> late;
    for (std::size_t i = 0; i < n; ++i)
        late.push_back(atMs[i] - (mt + msPerByte * (bytes[i] - mb)));
    std::sort(late.begin(), late.end());
    const double start = late.empty() ? 0 : late.front();
    for (double& l : late)
        l -= start;
    const double rate = double(n) / elapsed;
    const double worst = late.empty() ? 0 : late.back();
    const double p99 = late.empty() ? 0 : late[std::size_t(late.size() * 0.99)];
    const double median = late.empty() ? 0 : late[late.size() / 2];
    std::printf("cursor updates: %zu in %.1f s = %.1f a second (target at least 40); frames %lld; line %.0f bytes/s\n",
                n, elapsed, rate, (long long)viewer.trace().frames(), msPerByte > 0 ? 1000.0 / msPerByte : 0.0);
    std::printf("lateness after the frame's last byte: median %.1f ms, 99th %.1f ms, worst %.1f ms (target each within 50)\n",
                median, p99, worst);
    return rate >= 40 && worst <= 50 ? 0 : 2;
}
