// Any bytes as the reply of an all-sensor read, decoded onto the displays.
#include "monitor_rig.h"

#include <QCoreApplication>
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static QCoreApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static MonitorRig* rig = [] {
        auto* r = new MonitorRig;
        r->sink.on = true;
        return r;
    }();
    rig->sink.lines.clear();
    const std::vector<std::uint8_t> reply(data, data + size);
    const bool decoded = rig->stream.decodeFrame(reply);
    const bool start = size >= 33 && data[32] == 0xFF;
    if (decoded != start)
        __builtin_trap();
    // A frame goes to the log whole or not at all.
    if (rig->sink.lines.size() != (decoded ? 14 : 0))
        __builtin_trap();
    for (int i = 0; i < vexorin::sensors::kSensorCount; ++i)
        if (rig->displays.label(vexorin::sensors::SensorId(i)).isEmpty())
            __builtin_trap();
    // Every byte value of every sensor converts.
    if (size >= 2)
        for (int i = 0; i < vexorin::sensors::kSensorCount; ++i)
            vexorin::sensors::convert(vexorin::sensors::SensorId(i), data[0] & 3, data[1]);
    return 0;
}
