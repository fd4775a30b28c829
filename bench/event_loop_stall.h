// The longest the event loop went without running a 5 ms timer: what a
// click or a repaint would have waited for at worst.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>

class StallWatch {
public:
    StallWatch()
    {
        timer_.setInterval(kTickMs);
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            const qint64 now = clock_.elapsed();
            worst_ = std::max(worst_, now - last_ - kTickMs);
            last_ = now;
        });
    }
    void start()
    {
        worst_ = 0;
        clock_.start();
        last_ = 0;
        timer_.start();
    }
    // Milliseconds beyond the timer's own interval.
    qint64 worstMs() const { return worst_; }

private:
    static constexpr int kTickMs = 5;
    QTimer timer_;
    QElapsedTimer clock_;
    qint64 last_ = 0;
    qint64 worst_ = 0;
};
