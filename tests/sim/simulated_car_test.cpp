// The simulated car: the DLP-IO8-G's channel 1 reads a wideband in the
// exhaust of the engine behind the simulated ECU, 300 ms late, and the ROM
// may come from a BIN file that is served again when it changes.
#include "rom/rules/live_trace.h"
#include "rom/rules/map_decoding.h"
#include "sim/simulated_car.h"
#include "sim_test_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <map>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace vexorin::sim {
namespace {

using test::Bytes;

int reg(const SimulatedCar& car, std::uint8_t r)
{
    std::uint8_t v = 0;
    EXPECT_TRUE(car.ecu().registerValue(r, v));
    return v;
}

// The Fuel (High Octane) cell under the engine now, by the Live Trace.
int fuelCellByte(const SimulatedCar& car)
{
    const RomImage& image = car.ecu().rom();
    const rom::TraceTables tables = rom::traceTables(std::vector<std::uint8_t>(image.begin(), image.end()));
    const std::optional<int> rpm = rom::traceRpm(reg(car, 0), reg(car, 1));
    const std::optional<int> maf = rom::traceMafHundredths(reg(car, 4), reg(car, 5));
    EXPECT_TRUE(rpm && maf);
    const rom::TracePoint p = rom::tracePoint(tables, rpm.value_or(0), maf.value_or(0), rom::kDefaultTraceScale);
    return image[std::size_t(0x7D00 + (p.row - 1) * 16 + (p.fuelColumn - 1))];
}

// The exhaust's ratio now, worked out by hand: the cell's figure as the map
// shows it, the fuel error, the alpha of register 26.
double expectedRatio(const SimulatedCar& car, double fuelError)
{
    const double cell = rom::afrHundredths(fuelCellByte(car)) / 100.0;
    const int alphaByte = reg(car, 26);
    const double alpha = alphaByte == 0 ? 100.0 : alphaByte;
    return cell * (1.0 + fuelError / 100.0) * 100.0 / alpha;
}

double voltsOf(double ratio)
{
    return std::clamp((ratio - 10.0) / 10.0 * 5.0, 0.0, 5.0);
}

// Channel 1 as the PC reads it: 'Z', then "2.34V".
std::string askChannel1(SimulatedCar& car)
{
    const std::uint8_t z = 'Z';
    car.dlp().receive(&z, 1);
    const std::vector<std::uint8_t> out = car.dlp().transmit(car.dlp().pending());
    return std::string(out.begin(), out.end());
}

double readVolts(SimulatedCar& car)
{
    const std::string r = askChannel1(car);
    EXPECT_EQ(r.size(), 5u) << r;
    EXPECT_EQ(r.back(), 'V') << r;
    return std::stod(r.substr(0, r.size() - 1));
}

RomImage withFuelMap(RomImage image, std::uint8_t cell)
{
    std::fill(image.begin() + 0x7D00, image.begin() + 0x7E00, cell);
    return image;
}

std::string tempFile(const std::string& stem)
{
    return ::testing::TempDir() + stem + "-" + std::to_string(::getpid()) + ".bin";
}

void writeFile(const std::string& path, const std::uint8_t* bytes, std::size_t n)
{
    std::FILE* f = std::fopen(path.c_str(), "wb");
    ASSERT_NE(f, nullptr);
    ASSERT_EQ(std::fwrite(bytes, 1, n, f), n);
    std::fclose(f);
}

// Moves a file's modification time on by a second: two writes inside one
// tick of the file system's clock would otherwise look alike.
void touchLater(const std::string& path)
{
    struct stat st {};
    ASSERT_EQ(::stat(path.c_str(), &st), 0);
    timespec times[2] = {st.st_atim, st.st_mtim};
    times[1].tv_sec += 1;
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

TEST(SimulatedCar, ChannelOneIsTheWidebandOfTheEngine)
{
    for (EnginePhase phase : {EnginePhase::Idle, EnginePhase::Rev, EnginePhase::Drive}) {
        for (double fuelError : {0.0, 8.0, -5.0}) {
            SimulatedCar car;
            car.setFuelError(fuelError);
            car.ecu().forcePhase(phase);
            car.advance(4000);
            for (int i = 0; i < 5; ++i) {
                const double ratio = expectedRatio(car, fuelError);
                ASSERT_GT(ratio, 10.0);
                ASSERT_LT(ratio, 20.0);
                car.advance(kWidebandDelayMs);
                EXPECT_NEAR(car.widebandRatio(), ratio, 1e-9);
                // The reading has two decimals: within half a hundredth, and a little for the sum.
                EXPECT_NEAR(readVolts(car), voltsOf(ratio), 0.0051) << int(phase) << " " << fuelError;
                car.advance(470);
            }
        }
    }
}

TEST(SimulatedCar, ReadingIsTheRatioOf300MsEarlier)
{
    SimulatedCar car;
    car.ecu().forcePhase(EnginePhase::Drive);
    car.advance(2000);
    std::map<std::int64_t, double> present;
    double error = 0;
    for (int i = 0; i < 200; ++i) {
        if (i == 100) {
            error = 8;
            car.setFuelError(error);
        }
        present[car.nowMs()] = expectedRatio(car, error);
        const auto earlier = present.find(car.nowMs() - kWidebandDelayMs);
        if (earlier != present.end()) {
            EXPECT_NEAR(car.widebandRatio(), earlier->second, 1e-9) << car.nowMs();
        }
        car.advance(SimulatedCar::kStepMs);
    }
    // The step to a leaner mixture shows 300 ms after it, not sooner.
    SimulatedCar steady;
    steady.ecu().forcePhase(EnginePhase::Idle);
    steady.setRom(withFuelMap(steady.ecu().rom(), 0));   // 14.70 everywhere
    steady.advance(3000);
    const double before = steady.widebandRatio();
    steady.setFuelError(20);
    steady.advance(kWidebandDelayMs - SimulatedCar::kStepMs);
    EXPECT_LT(steady.widebandRatio(), before * 1.05);
    steady.advance(SimulatedCar::kStepMs);
    EXPECT_GT(steady.widebandRatio(), before * 1.15);
}

TEST(SimulatedCar, AlphaZeroCountsAsAHundred)
{
    for (int cell : {0, 20, 100, 200}) {
        const double figure = rom::afrHundredths(cell) / 100.0;
        EXPECT_DOUBLE_EQ(fuelCellRatio(cell), figure);
        EXPECT_DOUBLE_EQ(mixtureRatio(cell, 0, 0), figure);
        EXPECT_DOUBLE_EQ(mixtureRatio(cell, 100, 0), figure);
        EXPECT_DOUBLE_EQ(mixtureRatio(cell, 80, 0), figure * 100.0 / 80.0);
        EXPECT_DOUBLE_EQ(mixtureRatio(cell, 0, 8), figure * 1.08);
    }
    EXPECT_DOUBLE_EQ(widebandVolts(10.0), 0.0);
    EXPECT_DOUBLE_EQ(widebandVolts(14.7), 2.35);
    EXPECT_DOUBLE_EQ(widebandVolts(20.0), 5.0);
    EXPECT_DOUBLE_EQ(widebandVolts(9.0), 0.0);
    EXPECT_DOUBLE_EQ(widebandVolts(25.0), 5.0);
}

TEST(SimulatedCar, FuelErrorOf8RunsEightPercentLean)
{
    SimulatedCar right, lean;
    lean.setFuelError(8);
    EXPECT_DOUBLE_EQ(lean.fuelError(), 8.0);
    EXPECT_DOUBLE_EQ(right.fuelError(), 0.0);
    for (int i = 0; i < 60; ++i) {
        right.advance(500);
        lean.advance(500);
        EXPECT_NEAR(lean.widebandRatio(), right.widebandRatio() * 1.08, 1e-9) << i;
    }
    // Set before the car has moved, it is there from the first reading on.
    SimulatedCar fresh;
    const double stoich = fresh.widebandRatio();
    fresh.setFuelError(8);
    EXPECT_NEAR(fresh.widebandRatio(), stoich * 1.08, 1e-9);
    lean.setFuelError(500);
    EXPECT_DOUBLE_EQ(lean.fuelError(), SimulatedCar::kMaxFuelError);
}

TEST(SimulatedCar, ChangedFuelCellChangesTheRatio)
{
    SimulatedCar car;
    car.ecu().forcePhase(EnginePhase::Idle);
    car.advance(3000);
    // The cell under the engine goes from whatever it was to 11.00 AFR-ish (byte 43 reads 11.07).
    RomImage image = car.ecu().rom();
    const int offset = [&] {
        const rom::TraceTables t = rom::traceTables(std::vector<std::uint8_t>(image.begin(), image.end()));
        const rom::TracePoint p = rom::tracePoint(t, *rom::traceRpm(reg(car, 0), reg(car, 1)),
                                                  *rom::traceMafHundredths(reg(car, 4), reg(car, 5)),
                                                  rom::kDefaultTraceScale);
        return 0x7D00 + (p.row - 1) * 16 + (p.fuelColumn - 1);
    }();
    const std::uint8_t richer = image[std::size_t(offset)] == 43 ? 60 : 43;
    // Every cell around it too, so that the engine's wandering does not leave the change.
    for (int row = -1; row <= 1; ++row)
        for (int col = -1; col <= 1; ++col) {
            const int o = offset + row * 16 + col;
            if (o >= 0x7D00 && o < 0x7E00)
                image[std::size_t(o)] = richer;
        }
    const double alpha = reg(car, 26);
    car.setRom(image);
    EXPECT_NEAR(expectedRatio(car, 0), rom::afrHundredths(richer) / 100.0 * 100.0 / alpha, 1e-9);
    const double expected = expectedRatio(car, 0);
    car.advance(kWidebandDelayMs);
    EXPECT_NEAR(car.widebandRatio(), expected, 1e-9);
    EXPECT_EQ(fuelCellByte(car), richer);
}

TEST(SimulatedCar, ServedRomFileIsReadAgainWhenItChanges)
{
    const std::string path = tempFile("vexorin-car-rom");
    const RomImage first = withFuelMap(makeSyntheticRom(), 0);    // 14.70
    const RomImage second = withFuelMap(makeSyntheticRom(), 43);  // 11.07
    writeFile(path, first.data(), first.size());

    SimulatedCar car;
    car.ecu().forcePhase(EnginePhase::Idle);
    std::string error;
    ASSERT_TRUE(car.serveRomFile(path, &error)) << error;
    EXPECT_EQ(car.romFile(), path);
    EXPECT_EQ(car.ecu().rom(), first);
    car.advance(2000);
    EXPECT_NEAR(car.widebandRatio() * reg(car, 26) / 100.0, 14.70, 0.3);

    writeFile(path, second.data(), second.size());
    touchLater(path);
    // Looked at no more than once a second.
    car.advance(SimulatedCar::kRomCheckMs - 2 * SimulatedCar::kStepMs);
    EXPECT_EQ(car.ecu().rom(), first);
    car.advance(2 * SimulatedCar::kStepMs);
    EXPECT_EQ(car.ecu().rom(), second);
    car.advance(kWidebandDelayMs);
    EXPECT_NEAR(car.widebandRatio(), mixtureRatio(43, reg(car, 26), 0), 0.3);
    EXPECT_NEAR(car.widebandRatio(), expectedRatio(car, 0), 0.3);

    // A file cut short while it is written is passed over; the next change is read.
    writeFile(path, first.data(), 1000);
    touchLater(path);
    car.advance(SimulatedCar::kRomCheckMs);
    EXPECT_EQ(car.ecu().rom(), second);
    writeFile(path, first.data(), first.size());
    car.advance(SimulatedCar::kRomCheckMs);
    EXPECT_EQ(car.ecu().rom(), first);

    // An image set directly ends the serving of the file.
    car.setRom(second);
    EXPECT_TRUE(car.romFile().empty());
    writeFile(path, first.data(), first.size());
    touchLater(path);
    car.advance(2 * SimulatedCar::kRomCheckMs);
    EXPECT_EQ(car.ecu().rom(), second);
    std::remove(path.c_str());
}

TEST(SimulatedCar, RomFileThatCannotBeServed)
{
    const std::string path = tempFile("vexorin-car-short");
    const RomImage rom = withFuelMap(makeSyntheticRom(), 0);
    writeFile(path, rom.data(), 32767);
    SimulatedCar car;
    const RomImage synthetic = car.ecu().rom();
    std::string error;
    EXPECT_FALSE(car.serveRomFile(path, &error));
    EXPECT_NE(error.find("32767 bytes"), std::string::npos) << error;
    EXPECT_NE(error.find("32768"), std::string::npos) << error;
    EXPECT_EQ(car.ecu().rom(), synthetic);

    EXPECT_FALSE(car.serveRomFile(path + ".missing", &error));
    EXPECT_NE(error.find("cannot read"), std::string::npos) << error;
    EXPECT_FALSE(car.serveRomFile(::testing::TempDir(), &error));
    EXPECT_NE(error.find("not a regular file"), std::string::npos) << error;

    // Still watched: once the file is whole it is served.
    ASSERT_FALSE(car.serveRomFile(path, &error));
    writeFile(path, rom.data(), rom.size());
    touchLater(path);
    car.advance(SimulatedCar::kRomCheckMs);
    EXPECT_EQ(car.ecu().rom(), rom);
    std::remove(path.c_str());
}

TEST(SimulatedCar, OtherChannelsMoveAsBefore)
{
    SimulatedCar car(kDefaultSeed, 3);
    DlpSimulator alone(3);
    for (int i = 0; i < 20; ++i) {
        for (int ch = 2; ch <= DlpSimulator::kChannels; ++ch)
            EXPECT_DOUBLE_EQ(car.dlp().volts(ch), alone.volts(ch)) << ch;
        car.advance(370);
        alone.advance(370);
    }
    // A held voltage still wins on channel 1.
    car.dlp().holdVolts(1, 1.25);
    EXPECT_EQ(askChannel1(car), "1.25V");
    car.dlp().holdVolts(1, -1);
    EXPECT_DOUBLE_EQ(car.dlp().volts(1), car.widebandVolts());
}

TEST(SimulatedCar, EcuAnswersItsStreamBesideTheDevice)
{
    SimulatedCar car;
    test::handshake(car.ecu());
    car.ecu().receive(test::registerRequest(test::sensorRegisters()));
    car.advance(50);
    const Bytes frame = car.ecu().transmit(2 * test::sensorRegisters().size() + 2 + 16);
    ASSERT_EQ(frame.size(), 2 * test::sensorRegisters().size() + 2 + 16);
    EXPECT_EQ(frame[32], 0xFF);
    EXPECT_EQ(frame[33], 16);
    car.ecu().receive(Bytes{0x30});
    car.dlp().receive(Bytes{'Z'});
    const Bytes reading = car.dlp().transmit(16);
    EXPECT_EQ(std::string(reading.begin(), reading.end()), DlpSimulator::formatReading(car.widebandVolts()));
}

}  // namespace
}  // namespace vexorin::sim
