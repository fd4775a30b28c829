#include "tools/simulated_run.h"

#include "consult/wire.h"
#include "external/channel_scale.h"
#include "sensors/sensor_catalog.h"
#include "sim/simulated_car.h"
#include "tools/fuel_run_file.h"

#include <vector>

namespace vexorin::tools {

namespace {
using vexorin::sensors::SensorId;

constexpr int kFramePeriodMs = 100;
constexpr int kReadingOffsetMs = 50;
// Echoes of the sixteen register requests, then frame start and length.
constexpr std::size_t kFrameDataAt = 34;

std::vector<std::uint8_t> pull(vexorin::sim::SimulatedCar& car, std::size_t count)
{
    std::vector<std::uint8_t> out;
    for (int tries = 0; out.size() < count && tries < 100; ++tries) {
        const std::vector<std::uint8_t> more = car.ecu().transmit(count - out.size());
        out.insert(out.end(), more.begin(), more.end());
    }
    return out;
}

// The frame of the all-sensor request, as the labels show it: rpm, maf, tps, water, alpha.
bool frameRow(vexorin::sim::SimulatedCar& car, std::int64_t t, std::string& text)
{
    std::vector<std::uint8_t> request;
    for (const std::uint8_t reg : vexorin::consult::kAllSensorRegisters) {
        request.push_back(0x5A);
        request.push_back(reg);
    }
    request.push_back(0xF0);
    car.ecu().receive(request);
    const std::vector<std::uint8_t> reply = pull(car, kFrameDataAt + vexorin::consult::kAllSensorRegisters.size());
    const std::uint8_t stop[] = {0x30, 0x30};
    car.ecu().receive(stop, sizeof stop);
    while (!car.ecu().transmit(256).empty()) {
    }
    if (reply.size() < kFrameDataAt + 16 || reply[kFrameDataAt - 2] != 0xFF)
        return false;
    // Stream order: Speed, RPM hi, RPM lo, TPS, MAF hi, MAF lo, O2L, O2R, INJ hi, INJ lo, Timing, IACV, Water, Fuel, Battery, AF.
    const auto at = [&](int i) { return reply[kFrameDataAt + std::size_t(i)]; };
    const auto label = [](SensorId id, int hi, int lo) { return vexorin::sensors::convert(id, hi, lo).text; };
    if (!vexorin::sensors::highByteUsable(at(1)) || !vexorin::sensors::highByteUsable(at(4)))
        return false;
    text += ecuRowLine(t, label(SensorId::RPM, at(1), at(2)), label(SensorId::MAF, at(4), at(5)),
                       label(SensorId::TPS, 0, at(3)), label(SensorId::Water, 0, at(12)), label(SensorId::AF, 0, at(15)));
    return true;
}

void readingRow(vexorin::sim::SimulatedCar& car, std::int64_t t, std::string& text)
{
    const std::uint8_t letter = vexorin::sim::DlpSimulator::letterOf(1);
    car.dlp().receive(&letter, 1);
    const std::vector<std::uint8_t> reply = car.dlp().transmit(64);
    const QString reading = QString::fromLatin1(reinterpret_cast<const char*>(reply.data()), qsizetype(reply.size()));
    const vexorin::external::ChannelScale wideband = vexorin::external::kScalePresets[0].scale();
    const auto volts = vexorin::external::readingVolts(reading);
    if (!volts)
        return;
    text += afrRowLine(t, vexorin::external::roundedFigure(vexorin::external::figureAt(wideband, *volts),
                                                          wideband.decimals).toStdString());
}
}  // namespace

std::string recordSimulatedRun(vexorin::sim::SimulatedCar& car, int seconds, int warmUpMs)
{
    car.advance(warmUpMs);
    if (!car.ecu().initialised()) {
        const std::uint8_t handshake[] = {0xFF, 0xFF, 0xEF};
        car.ecu().receive(handshake, sizeof handshake);
        car.ecu().transmit(16);
    }
    std::string text = std::string(kRunHeader) + "\n";
    for (std::int64_t t = 0; t < std::int64_t(seconds) * 1000; t += vexorin::sim::SimulatedCar::kStepMs) {
        if (t % kFramePeriodMs == 0)
            frameRow(car, t, text);
        else if (t % kFramePeriodMs == kReadingOffsetMs)
            readingRow(car, t, text);
        car.advance(vexorin::sim::SimulatedCar::kStepMs);
    }
    return text;
}

}  // namespace vexorin::tools
