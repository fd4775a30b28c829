// The standalone simulator on its pseudo-terminal, listed through the
// ExtraPorts settings and picked in the port list of a whole application core.
#pragma once

#include "app/app_core.h"
#include "app/port_selection.h"
#include "consult/consult_session.h"
#include "sim_process.h"
#include "temp_settings.h"
#include "voice/recording_speech_out.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <cstdio>
#include <memory>

inline int pickRowOf(PortSelection& ports, const QString& path)
{
    for (int row = 1; row <= ports.rowCount(); ++row)
        if (ports.rowCaption(row).contains(path)) {
            ports.PickPort(row);
            return row;
        }
    return 0;
}

// Connects and waits, with the event loop running, for the handshake and the
// identity reads; false when no connection came within ten seconds.
inline bool connectAndSettle(ConsultSession& session)
{
    session.ConnectDisconnect();
    QElapsedTimer wait;
    wait.start();
    while ((session.ConnectedLabel() != QLatin1String("Connected") || session.GetSerialNumberKValue.isActive()) &&
           wait.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return session.ConnectedLabel() == QLatin1String("Connected");
}

// The simulator on its pseudo-terminal, listed through ExtraPorts and picked.
struct PtyRig {
    explicit PtyRig(const QStringList& simArgs = {})
        : sim(simArgs)
    {
        settings.store->WriteSetting(QStringLiteral("ExtraPorts"), QStringLiteral("sim"), sim.path());
        core = std::make_unique<AppCore>(*settings.store, speech);
    }
    // Builds the port list and picks the simulator's row.
    bool start()
    {
        core->start();
        return !sim.path().isEmpty() && pickRowOf(core->portSelection(), sim.path()) > 0;
    }
    // Started and connected, identity reads done; says on stderr what failed.
    bool startConnected()
    {
        if (!start()) {
            std::fprintf(stderr, "the simulator did not start\n");
            return false;
        }
        if (!connectAndSettle(core->session())) {
            std::fprintf(stderr, "no handshake\n");
            return false;
        }
        return true;
    }
    SimProcess sim;
    TempSettings settings;
    RecordingSpeechOut speech;
    std::unique_ptr<AppCore> core;
};
