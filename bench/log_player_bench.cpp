// The Log Player on a one-hour log at ten frames a second (36,000 frames,
// 504,000 lines): open, every step forward to the end, steps back, and 100
// fast-reverse ticks from the end. Prints the slowest single step of each.
#include "logging/log_player.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("hour.log"));
    {
        QFile f(path);
        f.open(QIODevice::WriteOnly);
        QByteArray frame;
        for (int k = 0; k < 36000; ++k) {
            frame.clear();
            frame += "11/21/202608:" + QByteArray::number(10 + k / 600 % 50) + ":" + QByteArray::number(10 + k / 10 % 50) + "\r\n";
            frame += " " + QByteArray::number(k % 160) + " \r\n " + QByteArray::number(800 + k % 5000) + ".5 \r\n";
            for (int i = 0; i < 11; ++i)
                frame += " " + QByteArray::number(i * 3 + k % 9) + " \r\n";
            f.write(frame);
        }
    }
    LogPlayer player;
    QElapsedTimer t;
    auto timed = [&](auto&& f) {
        t.restart();
        f();
        return t.nsecsElapsed() / 1e6;
    };
    const double open = timed([&] { player.loadChosen(path); });
    double forwardMax = 0, forwardTotal = 0;
    int forwardSteps = 0;
    while (player.linePosition() < 504000) {
        const double ms = timed([&] { player.ReadNext(); });
        forwardMax = std::max(forwardMax, ms);
        forwardTotal += ms;
        ++forwardSteps;
    }
    double backMax = 0;
    for (int i = 0; i < 5; ++i)
        backMax = std::max(backMax, timed([&] { player.ReadPrevious(); }));
    player.FastReverse();
    double reverseMax = 0;
    for (int i = 0; i < 100; ++i)
        reverseMax = std::max(reverseMax, timed([&] { player.FastReverseTimerTick(); }));
    const double worst = std::max({open, forwardMax, backMax, reverseMax});
    std::printf("one-hour log: 36000 frames, 504000 lines\n");
    std::printf("open:                 %.3f ms\n", open);
    std::printf("step forward:         slowest %.3f ms, mean %.4f ms over %d steps\n", forwardMax,
                forwardTotal / forwardSteps, forwardSteps);
    std::printf("step back at the end: slowest %.3f ms\n", backMax);
    std::printf("100 fast-reverse ticks from the end: slowest %.3f ms\n", reverseMax);
    std::printf("slowest single step %.3f ms (target under 20 ms)\n", worst);
    return worst < 20 ? 0 : 2;
}
