// Frames decoded per second against the standalone simulator paced at the
// real Consult line rate (960 bytes a second), through a pseudo-terminal and
// the real serial port code, with the stream's own 100 ms timer.
// Usage: stream_rate_bench [seconds]   (default 30)
#include "app/app_core.h"
#include "consult/consult_session.h"
#include "pty_rig.h"
#include "sensors/sensor_stream.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int seconds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 30;

    PtyRig rig({QStringLiteral("--pace")});
    if (!rig.start()) {
        std::fprintf(stderr, "the simulator did not start\n");
        return 1;
    }
    AppCore& core = *rig.core;
    core.session().ConnectDisconnect();
    QElapsedTimer wait;
    wait.start();
    while ((core.session().ConnectedLabel() != QLatin1String("Connected") ||
            core.session().GetSerialNumberKValue.isActive()) && wait.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    if (core.session().ConnectedLabel() != QLatin1String("Connected")) {
        std::fprintf(stderr, "no handshake\n");
        return 1;
    }

    core.stream().MonitorOnOff();
    const qint64 start = core.stream().framesDecoded();
    QElapsedTimer clock;
    clock.start();
    QTimer::singleShot(seconds * 1000, &app, &QCoreApplication::quit);
    app.exec();
    const double elapsed = clock.elapsed() / 1000.0;
    const qint64 frames = core.stream().framesDecoded() - start;
    const double rate = frames / elapsed;
    std::printf("frames decoded: %lld in %.1f s = %.2f frames/s (target at least 9.5)\n", (long long)frames, elapsed,
                rate);
    core.stream().MonitorOnOff();
    return rate >= 9.5 ? 0 : 2;
}
