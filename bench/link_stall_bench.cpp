// The window while the ECU falls silent, through the real serial port on a
// pseudo-terminal to the paced standalone simulator:
//  1. monitoring, then the ECU goes silent: how long each click on
//     "Monitor On/Off" takes to take effect (ten clicks at odd moments), and
//     the longest the event loop stalled all the while;
//  2. a ROM download, then the ECU goes silent in the middle of it: how long
//     a click on "Cancel" takes to take effect.
// Usage: link_stall_bench
#include "app/app_core.h"
#include "consult/consult_session.h"
#include "event_loop_stall.h"
#include "pty_rig.h"
#include "sensors/sensor_stream.h"
#include "tools/bin_file_downloader.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <cstdio>

namespace {
// Runs the event loop until `done` or `limitMs`; the milliseconds it took.
template <class Done>
qint64 waitFor(Done done, int limitMs)
{
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < limitMs)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    return clock.elapsed();
}
}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    PtyRig rig({QStringLiteral("--pace")});
    if (!rig.startConnected())
        return 2;
    AppCore& core = *rig.core;
    ConsultSession& session = core.session();

    // 1. Monitoring a silent ECU.
    StallWatch stall;
    stall.start();
    const auto monitoring = [&] { return session.MonitorSensorsOnLabel() == QLatin1String("ON"); };
    qint64 worstClick = 0;
    for (int click = 0; click < 10; ++click) {
        core.stream().MonitorOnOff();
        waitFor([] { return false; }, 300);
        rig.sim.command("silent on");
        waitFor([] { return false; }, 2300 + 37 * click);  // past the first time-out, at a different moment each time
        QElapsedTimer clock;
        clock.start();
        core.stream().MonitorOnOff();
        worstClick = std::max(worstClick, waitFor([&] { return !monitoring(); }, 10000));
        rig.sim.command("silent off");
        waitFor([] { return false; }, 200);
    }
    const qint64 monitorStall = stall.worstMs();
    std::printf("silent ECU while monitoring: a click on \"Monitor On/Off\" took effect within %lld ms at worst "
                "(10 clicks; target 150 ms); the event loop stalled %lld ms at worst (target 50 ms)\n",
                (long long)worstClick, (long long)monitorStall);

    // 2. A ROM download whose ECU falls silent.
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("ecu.bin"));
    BinFileDownloader downloader(session, core.store());
    downloader.setAnnounce(BinFileDownloader::Announce::None);
    downloader.setFileChooser([&path] { return path; });
    stall.start();
    downloader.DownloadBinFile();
    waitFor([] { return false; }, 3000);
    rig.sim.command("silent on");
    waitFor([] { return false; }, 700);
    QElapsedTimer clock;
    clock.start();
    downloader.CancelDownload();
    const qint64 cancel = waitFor([&] { return downloader.labels().Notice.startsWith(QStringLiteral("Download cancelled")); },
                                  10000);
    std::printf("silent ECU during a ROM download: \"Cancel\" took effect in %lld ms (target 500 ms); "
                "the event loop stalled %lld ms at worst\n",
                (long long)cancel, (long long)stall.worstMs());
    rig.sim.command("silent off");
    session.ConnectDisconnect();
    return worstClick <= 150 && monitorStall <= 50 && cancel <= 500 ? 0 : 1;
}
