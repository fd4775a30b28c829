// A session with the sensor stream, selection and views on a scripted ECU,
// plus a log sink that keeps what it was given.
#pragma once

#include "consult/wire.h"
#include "sensors/monitor_views.h"
#include "sensors/sensor_displays.h"
#include "sensors/sensor_log_sink.h"
#include "sensors/sensor_selection.h"
#include "sensors/sensor_stream.h"
#include "session_harness.h"

#include <array>

struct RecordingLogSink : SensorLogSink {
    bool on = false;
    QStringList lines;
    bool capturing() const override { return on; }
    void writeDateTimeLine() override { lines.append(QStringLiteral("<date>")); }
    void writeValue(const QString& v, bool numeric) override { lines.append(numeric ? v : QStringLiteral("T:") + v); }
};

// The request of the all-sensor stream without its closing CmdGo.
inline QByteArray allSensorsRequestKey()
{
    QByteArray r;
    for (std::uint8_t reg : vexorin::consult::kAllSensorRegisters) {
        r.append(char(0x5A));
        r.append(char(reg));
    }
    return r;
}

// Registers in stream order: Speed, RPM hi, RPM lo, TPS, MAF hi, MAF lo, O2L, O2R,
// INJ hi, INJ lo, Timing, IACV, Water, Fuel, Battery, AF.
using FrameData = std::array<std::uint8_t, 16>;

// The 50-byte reply: 32 echoes, frame start, length, the sixteen values.
inline QByteArray allSensorsReply(const FrameData& d)
{
    QByteArray r;
    for (std::uint8_t reg : vexorin::consult::kAllSensorRegisters) {
        r.append(char(0xA5));
        r.append(char(reg));
    }
    r.append(char(0xFF));
    r.append(char(16));
    for (std::uint8_t b : d)
        r.append(char(b));
    return r;
}

struct MonitorRig : SessionHarness {
    MonitorRig()
        : selection(displays, log, outputs), stream(session, displays, cells, selection), views(displays, session)
    {
        stream.setLogSink(&sink);
    }

    // Connected, identity reads done, ready to monitor.
    void connect()
    {
        connectAndHandshake();
        session.GetSerialNumberKValue.stop();
    }
    void setFrame(const FrameData& d) { setReply(allSensorsReply(d)); }
    // The reply of the all-sensor read, now and for later connections.
    void setReply(const QByteArray& r)
    {
        replies[allSensorsRequestKey()] = r;
        if (ecu)
            ecu->replies[allSensorsRequestKey()] = r;
    }

    SensorDisplays displays;
    SensorSelection selection;
    SensorStream stream;
    MonitorViews views;
    RecordingLogSink sink;
};

// A frame with plausible values: 60 km/h-ish, 1012.5 rpm, and so on.
inline FrameData typicalFrame()
{
    //        speed rpmHi rpmLo tps mafHi mafLo o2l o2r injHi injLo timing iacv water fuel batt af
    return {{30, 0, 81, 23, 0, 201, 45, 46, 1, 44, 96, 61, 130, 90, 150, 100}};
}
