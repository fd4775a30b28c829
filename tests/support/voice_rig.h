// The monitor rig with the voice monitor, the options, fault codes and alerts on a temporary store.
#pragma once

#include "app/options_menu.h"
#include "consult/fault_codes.h"
#include "monitor_rig.h"
#include "temp_settings.h"
#include "voice/alerts.h"
#include "voice/voice_monitor.h"

struct VoiceRig : MonitorRig {
    VoiceRig()
        : options(*settings.store),
          monitor(session, voice, displays, options, *settings.store),
          faults(session),
          speedAlert(kAlerts[0], FrameSpot::SpeedAlert, displays, voice, *settings.store, spot),
          waterAlert(kAlerts[1], FrameSpot::WaterAlert, displays, voice, *settings.store, spot)
    {
        QObject::connect(&speedAlert, &Alert::message, [this](const QString& m) { messages.append(m); });
        QObject::connect(&waterAlert, &Alert::message, [this](const QString& m) { messages.append(m); });
    }
    // Connected and monitoring.
    void monitoring()
    {
        connect();
        stream.MonitorOnOff();
        speech.clear();
    }

    TempSettings settings;
    OptionsMenu options;
    VoiceMonitor monitor;
    FaultCodes faults;
    FrameSpot spot;
    Alert speedAlert;
    Alert waterAlert;
};
