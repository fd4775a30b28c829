// A long walk on the user interface thread keeps the window alive by letting
// the event loop run now and then, not after every step.
#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <functional>
#include <memory>

// Runs pending events when `everyMs` have passed since it last did.
inline std::function<void()> throttledEventLoop(int everyMs = 15)
{
    auto since = std::make_shared<QElapsedTimer>();
    return [since, everyMs] {
        if (!since->isValid() || since->elapsed() >= everyMs) {
            QCoreApplication::processEvents();
            since->restart();
        }
    };
}
