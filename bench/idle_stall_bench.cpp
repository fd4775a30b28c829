// The stalls of an event loop that does nothing: what the machine itself
// costs a program, the floor under the stall figures of the other benchmarks.
// Run it beside another benchmark to see which of that one's stalls the
// machine caused (the times are milliseconds since the epoch).
// Usage: idle_stall_bench [seconds, default 160]
#include "event_loop_stall.h"

#include <QCoreApplication>
#include <QTimer>
#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int seconds = argc > 1 ? QByteArray(argv[1]).toInt() : 160;
    StallWatch stall;
    stall.start();
    QTimer::singleShot(qMax(1, seconds) * 1000, &app, &QCoreApplication::quit);
    app.exec();
    std::printf("an idle event loop stalled %lld ms at worst over %d s, %.1f s in; %zu stalls over 20 ms:",
                (long long)stall.worstMs(), seconds, stall.worstAtMs() / 1000.0, stall.over20().size());
    for (const StallWatch::Stall& s : stall.over20())
        std::printf(" %lld ms at %lld;", (long long)s.ms, (long long)s.endedAt);
    std::printf("\n");
    return 0;
}
