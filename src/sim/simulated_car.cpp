#include "sim/simulated_car.h"

#include "sim/consult_registers.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vexorin::sim {

SimulatedCar::SimulatedCar(std::uint32_t ecuSeed, std::uint32_t dlpSeed)
    : ecu_(ecuSeed), dlp_(dlpSeed)
{
    ring_.fill(presentRatio());
    dlp_.setVoltsSource(kWidebandChannel, [this] { return widebandVolts(); });
}

void SimulatedCar::advance(int ms)
{
    while (ms > 0) {
        // The devices move in pieces that end on the sensor's sampling steps.
        const int piece = std::min(ms, kStepMs - intoStepMs_);
        ecu_.advance(piece);
        dlp_.advance(piece);
        nowMs_ += piece;
        intoStepMs_ += piece;
        ms -= piece;
        if (intoStepMs_ == kStepMs) {
            intoStepMs_ = 0;
            step();
        }
    }
}

void SimulatedCar::advanceTo(std::int64_t ms)
{
    while (ms > nowMs_)
        advance(int(std::min<std::int64_t>(ms - nowMs_, 60000)));
}

void SimulatedCar::setFuelError(double percent)
{
    fuelError_ = std::isfinite(percent) ? std::clamp(percent, -kMaxFuelError, kMaxFuelError) : 0.0;
    resample();
}

void SimulatedCar::setRom(const RomImage& image)
{
    romWatch_ = RomFileWatch();
    ecu_.setRom(image);
    resample();
}

bool SimulatedCar::serveRomFile(const std::string& path, std::string* error)
{
    romWatch_ = RomFileWatch(path);
    lastRomCheckMs_ = nowMs_;
    RomImage image;
    if (!readRomFile(path, image, error))
        return false;
    ecu_.setRom(image);
    resample();
    return true;
}

void SimulatedCar::resample()
{
    if (nowMs_ == 0)
        ring_.fill(presentRatio());
    else
        ring_[head_] = presentRatio();
}

double SimulatedCar::widebandRatio() const
{
    return ring_[(head_ + 1) % kRing];
}

double SimulatedCar::widebandVolts() const
{
    return sim::widebandVolts(widebandRatio());
}

void SimulatedCar::step()
{
    if (!romWatch_.path().empty() && nowMs_ - lastRomCheckMs_ >= kRomCheckMs)
        checkRomFile();
    head_ = (head_ + 1) % kRing;
    ring_[head_] = presentRatio();
}

void SimulatedCar::checkRomFile()
{
    lastRomCheckMs_ = nowMs_;
    if (!romWatch_.changed())
        return;
    // A file caught while it is being written fails; its next change is read again.
    RomImage image;
    if (readRomFile(romWatch_.path(), image, nullptr))
        ecu_.setRom(image);
}

double SimulatedCar::presentRatio()
{
    if (!tablesRead_ || tablesRevision_ != ecu_.romRevision()) {
        const RomImage& image = ecu_.rom();
        tables_ = rom::traceTables(std::vector<std::uint8_t>(image.begin(), image.end()));
        tablesRevision_ = ecu_.romRevision();
        tablesRead_ = true;
    }
    auto byte = [this](std::uint8_t reg) {
        std::uint8_t v = 0;
        ecu_.registerValue(reg, v);
        return int(v);
    };
    const TraceBytes trace{byte(reg::kRpmHi), byte(reg::kRpmLo), byte(reg::kMafLeftHi), byte(reg::kMafLeftLo)};
    if (const std::optional<std::size_t> cell = fuelCellOffset(tables_, trace); cell && *cell < ecu_.rom().size())
        lastRatio_ = mixtureRatio(ecu_.rom()[*cell], byte(reg::kAlphaLeft), fuelError_);
    return lastRatio_;
}

}  // namespace vexorin::sim
