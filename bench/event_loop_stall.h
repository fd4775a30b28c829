// The longest the event loop went without running a 5 ms timer: what a
// click or a repaint would have waited for at worst.
#pragma once

#include <QDateTime>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <vector>

class StallWatch {
public:
    StallWatch()
    {
        timer_.setInterval(kTickMs);
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            const qint64 now = clock_.elapsed();
            const qint64 late = now - last_ - kTickMs;
            if (late > worst_) {
                worst_ = late;
                worstAt_ = now;
            }
            if (late > 20)
                over20_.push_back({QDateTime::currentMSecsSinceEpoch(), late});
            last_ = now;
        });
    }
    void start()
    {
        worst_ = 0;
        worstAt_ = 0;
        over20_.clear();
        clock_.start();
        last_ = 0;
        timer_.start();
    }
    // Milliseconds beyond the timer's own interval.
    qint64 worstMs() const { return worst_; }
    // When the worst stall ended, in milliseconds from start().
    qint64 worstAtMs() const { return worstAt_; }
    // The stalls over 20 ms: when each ended (milliseconds since the epoch, to
    // set beside another process's) and how long it was.
    struct Stall {
        qint64 endedAt;
        qint64 ms;
    };
    const std::vector<Stall>& over20() const { return over20_; }

private:
    static constexpr int kTickMs = 5;
    QTimer timer_;
    QElapsedTimer clock_;
    qint64 last_ = 0;
    qint64 worst_ = 0;
    qint64 worstAt_ = 0;
    std::vector<Stall> over20_;
};
