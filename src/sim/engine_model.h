// A simple VG30-like engine behind the simulated ECU: rpm, load, mixture
// control, temperatures and the like, moving in fixed 10 ms steps of
// simulated time so that the same seed and the same amount of time always
// give the same values, however the time is handed in.
//
// Left to itself the engine runs a cycle of about a minute:
//   Idle  20 s  ~750 rpm warm (a little more when cold), throttle closed
//   Rev   12 s  revs climb to ~4500 and fall back in neutral
//   Drive 28 s  0 -> ~60 mph through the gears, a cruise, a coast down to a stop, a short wait
// The coolant starts at the ambient temperature and warms towards ~88 C.
#pragma once

#include "sim/ecu_simulator.h"
#include "sim/sim_random.h"

#include <array>
#include <cstdint>

namespace vexorin::sim {

class EngineModel {
public:
    static constexpr int kStepMs = 10;
    static constexpr int kIdleMs = 20000;
    static constexpr int kRevMs = 12000;
    static constexpr int kDriveMs = 28000;
    static constexpr int kCycleMs = kIdleMs + kRevMs + kDriveMs;

    // Active test codes the engine reacts to.
    static constexpr std::uint8_t kTestCoolant = 0x80;      // value: substitute raw coolant (C + 50), 0 = off
    static constexpr std::uint8_t kTestFuelTrim = 0x81;     // value: injected fuel in percent (94..106), 0 = off
    static constexpr std::uint8_t kTestTiming = 0x82;       // value: signed degrees added to the timing
    static constexpr std::uint8_t kTestIacv = 0x84;         // value: IACV opening in percent of normal, 0 = off
    static constexpr std::uint8_t kTestCylinderCut = 0x88;  // value: cylinder 1..6 cut, 0 = all firing
    static constexpr std::uint8_t kTestFuelPump = 0x89;     // value: 0 pump off (the engine stalls), else on
    static constexpr std::uint8_t kTestClearLearn = 0x8B;   // any value: learned correction back to 100 %

    explicit EngineModel(std::uint32_t seed);

    void advance(int ms);
    std::int64_t elapsedMs() const { return timeMs_; }

    void forcePhase(EnginePhase p);
    void releasePhase();
    EnginePhase phase() const { return phase_; }
    bool phaseForced() const { return forced_; }

    void activeTest(std::uint8_t code, std::uint8_t value);

    EngineSnapshot snapshot() const { return snap_; }

private:
    enum class Run { Stopped, Cranking, Running, Stopping };

    struct Bank {
        double alpha = 100;        // closed-loop fuel correction, percent
        double o2 = 0.45;          // sensor volts
        bool sensedRich = false;   // what the sensor reports after its delay
        int pendingMs = 0;         // how long the mixture has been on the other side
        int delayMs = 250;         // exhaust transport and sensor response
        double bias = 0;           // this bank's own mixture error
    };

    void step();
    void updatePhase();
    void updateRun(bool wantRun);
    void updateTargets(double& rpmTarget, double& tpsTarget, double& rpmTau);
    void updateDrive(int t, double idleRpm, double& rpmTarget, double& tpsTarget);
    void updateMixture(double dt, bool closedLoop, bool openLoopRich);
    void updateSnapshot();

    double effectiveCoolant() const;
    double coldFraction() const;
    double throttleFraction() const;

    SimRandom rng_;
    std::int64_t timeMs_ = 0;
    int leftoverMs_ = 0;

    bool forced_ = false;
    EnginePhase phase_ = EnginePhase::Idle;
    std::int64_t autoClockMs_ = 0;     // position in the automatic cycle
    std::int64_t forcedClockMs_ = 0;   // time since the phase was forced
    int phaseTimeMs_ = 0;              // position inside the current phase
    EnginePhase lastPhase_ = EnginePhase::Idle;

    Run run_ = Run::Running;
    int crankMs_ = 0;

    double ambientC_ = 20;
    double rpm_ = 750;
    double rpmNoise_ = 0;
    double tps_ = 0.46;
    double speedKmh_ = 0;
    int gear_ = 0;
    int shiftMs_ = 0;
    double coolantC_ = 20;
    double fuelTempC_ = 20;
    double battery_ = 14.0;
    double iacv_ = 30;
    double timing_ = 14;
    double injMs_ = 2.5;
    double egt_ = 1.0;
    double flow_ = 4;                  // air flow, g/s
    double selfLearn_ = 100;
    double wander_ = 0;                // slow common mixture drift
    bool fuelCut_ = false;
    std::array<Bank, 2> banks_{};      // 0 left (even cylinders), 1 right (odd cylinders)

    // Active test state.
    std::uint8_t coolantSubstitute_ = 0;
    std::uint8_t fuelTrim_ = 0;
    int timingOffset_ = 0;
    std::uint8_t iacvTest_ = 0;
    int cylinderCut_ = 0;
    bool fuelPump_ = true;

    EngineSnapshot snap_;
};

}  // namespace vexorin::sim
