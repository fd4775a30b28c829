// Fast Logging against the standalone simulator paced at the Consult line
// rate (960 bytes a second: 53 frames of sixteen registers), through a
// pseudo-terminal and the real serial port code, with capture to a log file:
// frames decoded a second, frames logged against frames decoded (fourteen
// lines each), and the processor time of this process against the wall time.
// Usage: fast_logging_bench [seconds]   (default 10)
#include "app/app_core.h"
#include "app/options_menu.h"
#include "consult/consult_session.h"
#include "consult/link_owner.h"
#include "logging/log_capture.h"
#include "pty_rig.h"
#include "sensors/sensor_stream.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

namespace {
// User and system time of this process, in seconds.
double processorSeconds()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    auto seconds = [](const timeval& t) { return double(t.tv_sec) + double(t.tv_usec) / 1e6; };
    return seconds(u.ru_utime) + seconds(u.ru_stime);
}
}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int seconds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 10;

    PtyRig rig({QStringLiteral("--pace")});
    if (!rig.startConnected())
        return 1;
    AppCore& core = *rig.core;
    SensorStream& stream = core.stream();

    QTemporaryDir dir;
    const QString logPath = dir.filePath(QStringLiteral("fast.log"));
    core.capture().CapturetologfileClicked([&](const QString&) { return logPath; });
    if (!core.capture().fileOpen()) {
        std::fprintf(stderr, "the log file did not open\n");
        return 1;
    }
    core.options().ToggleFastLogging();
    const qint64 before = stream.framesDecoded();
    stream.MonitorOnOff();
    if (!QTest::qWaitFor([&] { return stream.fastStreaming() && stream.framesDecoded() > before; }, 3000)) {
        std::fprintf(stderr, "no frame came\n");
        return 1;
    }

    // The measured run: from the first frame on, for the seconds asked.
    const qint64 start = stream.framesDecoded();
    const double cpuStart = processorSeconds();
    QElapsedTimer clock;
    clock.start();
    QTimer::singleShot(seconds * 1000, &app, &QCoreApplication::quit);
    app.exec();
    const double wall = double(clock.nsecsElapsed()) / 1e9;
    const double cpu = processorSeconds() - cpuStart;
    const qint64 frames = stream.framesDecoded() - start;
    const bool stillStreaming = stream.fastStreaming();

    stream.MonitorOnOff();
    const qint64 decoded = stream.framesDecoded() - before;
    core.capture().close();
    const std::size_t dropped = stream.fastFrames().dropped();
    const std::size_t skipped = stream.fastFrames().skipped();
    core.options().ToggleFastLogging();  // leaves the stored setting as it was

    QFile log(logPath);
    qint64 lines = 0;
    if (log.open(QIODevice::ReadOnly))
        lines = log.readAll().count("\r\n");

    const double rate = double(frames) / wall;
    const double load = 100.0 * cpu / wall;
    std::printf("frames decoded: %lld in %.1f s = %.2f frames/s (target at least 45; the line carries 53.3)\n",
                (long long)frames, wall, rate);
    std::printf("frames logged: %lld lines = %lld frames of 14, frames decoded while capturing %lld (%s)\n",
                (long long)lines, (long long)(lines / 14), (long long)decoded,
                lines == 14 * decoded ? "every frame logged" : "MISMATCH");
    std::printf("processor time: %.3f s in %.1f s = %.2f %% of one core (target under 5)\n", cpu, wall, load);
    std::printf("stream: %s to the end; frames dropped %zu, bytes passed over %zu\n",
                stillStreaming ? "ran" : "did NOT run", dropped, skipped);
    return rate >= 45 && lines == 14 * decoded && load < 5 && stillStreaming ? 0 : 2;
}
