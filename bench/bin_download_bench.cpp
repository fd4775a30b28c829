// A whole ROM download from the standalone simulator paced at the real line
// rate, through a pseudo-terminal and the real serial port code, with the
// BIN File Downloader's own timer at the 10 ms delay. Prints the time beside
// the line's own time (4,096 bursts of 59 bytes at 960 bytes a second) and
// the design's estimate, compares the file with the simulator's ROM, and
// says the longest the event loop stalled.
// Usage: bin_download_bench
#include "consult/consult_session.h"
#include "event_loop_stall.h"
#include "pty_rig.h"
#include "sim/ecu_simulator.h"
#include "tools/bin_file_downloader.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    PtyRig rig({QStringLiteral("--pace")});
    if (!rig.startConnected())
        return 2;
    ConsultSession& session = rig.core->session();

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("ecu.bin"));
    BinFileDownloader downloader(session, rig.core->store());
    downloader.setAnnounce(BinFileDownloader::Announce::None);
    downloader.setFileChooser([&path] { return path; });
    QElapsedTimer clock;
    clock.start();
    QEventLoop loop;
    QObject::connect(&downloader, &BinFileDownloader::stateChanged, &loop, [&] {
        if (!downloader.DownLoadBinFileTimer.isActive())
            loop.quit();
    });
    QTimer::singleShot(30 * 60 * 1000, &loop, &QEventLoop::quit);
    QTimer progress;
    QObject::connect(&progress, &QTimer::timeout, [&] {
        std::printf("  %d bytes after %.0f s\n", downloader.progress(), clock.elapsed() / 1000.0);
        std::fflush(stdout);
    });
    progress.start(10000);
    StallWatch stall;
    stall.start();
    downloader.DownloadBinFile();
    loop.exec();
    const double seconds = clock.elapsed() / 1000.0;

    const auto rom = vexorin::sim::makeSyntheticRom(1);
    QFile file(path);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    const bool equal = bytes == QByteArray(reinterpret_cast<const char*>(rom.data()), int(rom.size()));
    const double line = 4096.0 * 59.0 / 960.0;
    std::printf("whole ROM from the paced simulator at the 10 ms delay: %.1f s (%d min %02d s); "
                "the line alone %.1f s, ratio %.3f (target under 1.1); the design's estimate 338 s (5 min 38 sec)\n",
                seconds, int(seconds) / 60, int(seconds) % 60, line, seconds / line);
    std::printf("status \"%s\", %d Retries, file %lld bytes, %s the simulator's ROM\n",
                qPrintable(downloader.labels().DataReceivedStatus), downloader.retries(), (long long)bytes.size(),
                equal ? "equal byte for byte to" : "DIFFERENT from");
    std::printf("the event loop stalled %lld ms at worst during the download (target 50 ms), %.1f s in; "
                "%zu stalls over 20 ms:",
                (long long)stall.worstMs(), stall.worstAtMs() / 1000.0, stall.over20().size());
    for (const StallWatch::Stall& s : stall.over20())
        std::printf(" %lld ms at %lld;", (long long)s.ms, (long long)s.endedAt);
    std::printf("\n");
    session.ConnectDisconnect();
    return equal && seconds < 1.1 * line && stall.worstMs() <= 50 ? 0 : 1;
}
