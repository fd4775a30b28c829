// The fuel correction's figures: the analysis of a one-hour run (36,000 ecu
// rows and 36,000 afr rows), read from its file and analysed; and a
// recording at 50 frames a second with the window open: how long each
// refresh of the analysis and its grid takes, and whether every frame shown
// reached the run file.
#include "external_rig.h"
#include "monitor_rig.h"
#include "temp_settings.h"

#include "external/channel_scale.h"
#include "sim/ecu_simulator.h"
#include "tools/fuel_correction.h"
#include "tools/fuel_correction_window.h"
#include "tools/fuel_run_file.h"
#include "tools/fuel_run_recorder.h"

#include <QLabel>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <cstdio>
#include <vector>

using namespace vexorin::tools;

namespace {
// An hour at 10 frames a second: the engine moving through the map, the wideband beside it.
std::string hourRun()
{
    std::string text = std::string(kRunHeader) + "\n";
    for (int i = 0; i < 36000; ++i) {
        const std::int64_t t = std::int64_t(i) * 100;
        const int rpm = 800 + (i / 50 % 40) * 125;
        const double maf = 1.0 + (i / 50 % 23) * 0.15;
        text += ecuRowLine(t, std::to_string(rpm), twoDecimals(maf), "0.80", "185", std::to_string(96 + i % 9));
        text += afrRowLine(t + 50, twoDecimals(13.0 + (i % 17) * 0.1));
    }
    return text;
}

void write(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    f.write(bytes);
}

FrameData warmFrame()
{
    FrameData d{};
    d[2] = 192;
    d[3] = 40;
    d[4] = 1;
    d[5] = 144;
    d[12] = 135;
    d[15] = 100;
    return d;
}
}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir dir;
    const auto rom = vexorin::sim::makeSyntheticRom();
    const QString bin = dir.filePath(QStringLiteral("car.bin"));
    write(bin, QByteArray(reinterpret_cast<const char*>(rom.data()), qsizetype(rom.size())));

    // One hour, from the file.
    const QString runPath = dir.filePath(QStringLiteral("hour.csv"));
    write(runPath, QByteArray::fromStdString(hourRun()));
    TempSettings settings;
    for (int round = 0; round < 3; ++round) {
        FuelCorrection correction(*settings.store);
        correction.openBin(bin);
        QElapsedTimer clock;
        clock.start();
        correction.openRuns({runPath});
        const qint64 read = clock.elapsed();
        clock.restart();
        correction.analyse();
        std::printf("one-hour run (36,000 + 36,000 rows): read and analysed %lld ms, analysed again %lld ms; %s\n",
                    static_cast<long long>(read), static_cast<long long>(clock.elapsed()),
                    qPrintable(correction.status()));
    }

    // Recording at 50 frames a second for 60 s, the window showing.
    MonitorRig monitor;
    monitor.connect();
    monitor.setFrame(warmFrame());
    monitor.stream.MonitorOnOff();
    monitor.session.GetAllSensorDataTimer.stop();
    ExternalRig gauges;
    gauges.answer = [](char) { return QByteArray("2.34V"); };
    gauges.load();
    gauges.sensors->setScale(1, vexorin::external::kScalePresets[0].scale());
    gauges.sensors->link().setChecked(1, true);
    gauges.sensors->link().setCheckedOnly(true);
    gauges.sensors->ConnectDisconnectClicked();
    gauges.sensors->StartClicked();
    FuelCorrectionWindow window(*settings.store, monitor.session, monitor.stream, monitor.displays,
                                [&] { return gauges.sensors; });
    window.show();
    window.correction().openBin(bin);
    qint64 now = 0;
    window.recorder().setClock([&] { return now; });
    const QString recorded = dir.filePath(QStringLiteral("run.csv"));
    if (!window.recorder().start(recorded, 1)) {
        std::printf("recording refused\n");
        return 1;
    }
    gauges.sensors->link().ChannelRequestTimer.stop();
    gauges.sensors->link().ChannelReplyTimer.stop();
    const QByteArray reply = allSensorsReply(warmFrame());
    const std::vector<std::uint8_t> frame(reply.begin(), reply.end());
    std::vector<double> refreshMs;
    qint64 frames = 0;
    for (now = 0; now < 60000; now += 20) {
        monitor.stream.decodeFrame(frame);
        ++frames;
        if (now % 100 == 0) {
            gauges.sensors->link().ChannelRequestTimerTick();
            gauges.sensors->link().ChannelReplyTimerTick();
        }
        if (now % 500 == 0) {
            QElapsedTimer clock;
            clock.start();
            window.correction().refreshLive(now);
            refreshMs.push_back(double(clock.nsecsElapsed()) / 1e6);
            QCoreApplication::processEvents();
        }
    }
    window.recorder().stop();
    QFile file(recorded);
    file.open(QIODevice::ReadOnly);
    const qint64 ecuRows = file.readAll().count(",ecu,");
    std::sort(refreshMs.begin(), refreshMs.end());
    std::printf("recording 50 frames/s for 60 s: %lld frames shown, %lld ecu rows in the file; grid refresh "
                "median %.2f ms, max %.2f ms over %zu refreshes; %s\n",
                static_cast<long long>(frames), static_cast<long long>(ecuRows), refreshMs[refreshMs.size() / 2],
                refreshMs.back(), refreshMs.size(), qPrintable(window.statusLabel()->text()));
    return ecuRows == frames ? 0 : 1;
}
