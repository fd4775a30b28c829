// Waits, with the event loop running, for the link owner's cycle in flight to end.
#pragma once

#include "consult/link_owner.h"

#include <QElapsedTimer>
#include <QTest>

inline bool waitForIdleLink(LinkOwner& owner, int limitMs = 4000)
{
    QElapsedTimer clock;
    clock.start();
    while (owner.busy() && clock.elapsed() < limitMs)
        QTest::qWait(5);
    return !owner.busy();
}
