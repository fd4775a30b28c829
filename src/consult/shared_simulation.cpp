#include "consult/shared_simulation.h"

#include <QDateTime>
#include <QFile>

namespace {
// The ECU's seed is that of the standalone tool, so that a ROM downloaded from
// the built-in simulator equals the file `vexorin-ecu-sim --write-rom` writes;
// the DLP-IO8-G's voltages start anywhere in their cycles.
std::uint32_t dlpSeed()
{
    return static_cast<std::uint32_t>(QDateTime::currentMSecsSinceEpoch());
}
}  // namespace

SharedCar::SharedCar()
    : car_(vexorin::sim::kDefaultSeed, dlpSeed())
{
    clock_.start();
}

void SharedCar::catchUp()
{
    car_.advanceTo(clock_.elapsed());
}

void SharedCar::configure(const SimulatorConfig& config)
{
    car_.setFuelError(config.fuelError);
    const std::string path = QFile::encodeName(config.romFile).toStdString();
    if (path == car_.romFile())
        return;
    if (!car_.romFile().empty() || path.empty())
        car_.setRom(vexorin::sim::makeSyntheticRom(vexorin::sim::kDefaultSeed));
    if (path.empty())
        return;
    std::string error;
    if (!car_.serveRomFile(path, &error) && config.note)
        config.note(QStringLiteral(": Simulator: %1; the simulated ECU serves its own ROM.")
                        .arg(QString::fromStdString(error)));
}

namespace SharedSimulation {

std::shared_ptr<SharedCar> car(const SimulatorConfigSource& config)
{
    static std::weak_ptr<SharedCar> running;
    std::shared_ptr<SharedCar> shared = running.lock();
    if (!shared) {
        shared = std::make_shared<SharedCar>();
        running = shared;
    }
    if (config)
        shared->configure(config());
    return shared;
}

std::shared_ptr<SharedCar> separateCar(const SimulatorConfigSource& config)
{
    auto shared = std::make_shared<SharedCar>();
    if (config)
        shared->configure(config());
    return shared;
}

}  // namespace SharedSimulation
