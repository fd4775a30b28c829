// Live Trace against the standalone simulator paced at the Consult line rate
// (960 bytes a second), through a pseudo-terminal and the real serial port
// code: cursor updates a second, and how late each update is after its
// frame's last byte left the simulator. The simulator sends at a steady pace
// (the pace over the whole run, by least squares), but a busy machine may hold
// it up now and then, so the time a byte left it is told from the updates just
// before: an update that took its bytes promptly, plus the bytes since at the
// line's pace, says when the later byte left at the latest. The update's
// lateness is its time less the earliest such estimate from the last 250 ms
// (an update is never earlier than its bytes, so the estimate errs late).
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
    constexpr double kWindowMs = 250;
    std::vector<double> late;
    double longestGap = 0;
    for (std::size_t i = 0; i < n; ++i) {
        double sentAt = atMs[i];
        for (std::size_t j = i; j-- > 0 && atMs[i] - atMs[j] <= kWindowMs;)
            sentAt = std::min(sentAt, atMs[j] + msPerByte * (bytes[i] - bytes[j]));
        late.push_back(atMs[i] - sentAt);
        if (i > 0)
            longestGap = std::max(longestGap, atMs[i] - atMs[i - 1]);
    }
    std::sort(late.begin(), late.end());
    const double rate = double(n) / elapsed;
    const double worst = late.empty() ? 0 : late.back();
    const double p99 = late.empty() ? 0 : late[std::size_t(late.size() * 0.99)];
    const double median = late.empty() ? 0 : late[late.size() / 2];
    std::printf("cursor updates: %zu in %.1f s = %.1f a second (target at least 40); frames %lld; line %.0f bytes/s\n",
                n, elapsed, rate, (long long)viewer.trace().frames(), msPerByte > 0 ? 1000.0 / msPerByte : 0.0);
    std::printf("lateness after the frame's last byte: median %.1f ms, 99th %.1f ms, worst %.1f ms (target each within 50)\n",
                median, p99, worst);
    std::printf("longest time between two updates: %.1f ms\n", longestGap);
    return rate >= 40 && worst <= 50 ? 0 : 2;
}
