#include "sim/engine_model.h"

#include <algorithm>
#include <cmath>

namespace vexorin::sim {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kClosedTps = 0.46;     // throttle sensor volts, throttle shut
constexpr double kOpenTps = 4.4;        // throttle sensor volts, wide open
constexpr double kWarmC = 88;           // thermostat
constexpr double kRevPeakRpm = 4700;    // the rev phase aims here; the lag keeps it near 4500
constexpr double kCruiseKmh = 96.6;     // 60 mph
constexpr double kLatencyMs = 0.9;      // injector dead time
constexpr double kAlphaRate = 8.0;      // closed-loop ramp, percent per second
constexpr double kCrankRpm = 220;
constexpr int kCrankMs = 900;
constexpr int kShiftMs = 350;
constexpr double kUpshiftRpm = 3000;
constexpr double kDownshiftRpm = 1300;
// Engine rpm per km/h in each gear (0 = neutral).
constexpr double kRpmPerKmh[6] = {0, 113.0, 64.7, 44.5, 34.0, 25.8};

double approach(double value, double target, double dt, double tau)
{
    return value + (target - value) * (1.0 - std::exp(-dt / tau));
}

double mafVolts(double flowGs)
{
    if (flowGs <= 0.05)
        return 0.25;
    return std::min(5.0, 0.6 + 0.35 * std::sqrt(flowGs));
}

int phaseLengthMs(EnginePhase p)
{
    switch (p) {
    case EnginePhase::Rev: return EngineModel::kRevMs;
    case EnginePhase::Drive: return EngineModel::kDriveMs;
    default: return 0;
    }
}

}  // namespace

EngineModel::EngineModel(std::uint32_t seed) : rng_(seed)
{
    ambientC_ = 16.0 + 8.0 * rng_.uniform();
    coolantC_ = ambientC_;
    fuelTempC_ = ambientC_;
    banks_[0].delayMs = 240;
    banks_[1].delayMs = 270;
    banks_[0].bias = 0.04 * rng_.symmetric();
    banks_[1].bias = 0.04 * rng_.symmetric();
    banks_[1].sensedRich = true;
    rpm_ = 750 + 50 * coldFraction();
    iacv_ = 30 + 10 * coldFraction();
    flow_ = iacv_ * 0.13;
    updateSnapshot();
}

void EngineModel::advance(int ms)
{
    if (ms <= 0)
        return;
    leftoverMs_ += ms;
    while (leftoverMs_ >= kStepMs) {
        leftoverMs_ -= kStepMs;
        step();
    }
}

void EngineModel::forcePhase(EnginePhase p)
{
    forced_ = true;
    phase_ = p;
    forcedClockMs_ = 0;
    phaseTimeMs_ = 0;
}

void EngineModel::releasePhase()
{
    // The automatic cycle starts over with its idle phase.
    forced_ = false;
    autoClockMs_ = 0;
}

void EngineModel::activeTest(std::uint8_t code, std::uint8_t value)
{
    switch (code) {
    case kTestCoolant: coolantSubstitute_ = value; break;
    case kTestFuelTrim: fuelTrim_ = value; break;
    case kTestTiming: timingOffset_ = std::clamp<int>(static_cast<std::int8_t>(value), -20, 20); break;
    case kTestIacv: iacvTest_ = value; break;
    case kTestCylinderCut: cylinderCut_ = value <= 6 ? value : 0; break;
    case kTestFuelPump: fuelPump_ = value != 0; break;
    case kTestClearLearn: selfLearn_ = 100; break;
    default: break;  // solenoid tests and the like change nothing the registers show
    }
    updateSnapshot();
}

double EngineModel::effectiveCoolant() const
{
    return coolantSubstitute_ != 0 ? double(coolantSubstitute_) - 50.0 : coolantC_;
}

double EngineModel::coldFraction() const
{
    return std::clamp((70.0 - effectiveCoolant()) / 50.0, 0.0, 1.0);
}

double EngineModel::throttleFraction() const
{
    return std::clamp((tps_ - kClosedTps) / (kOpenTps - kClosedTps), 0.0, 1.0);
}

void EngineModel::updatePhase()
{
    if (forced_) {
        const int len = phaseLengthMs(phase_);
        phaseTimeMs_ = len > 0 ? int(forcedClockMs_ % len) : int(std::min<std::int64_t>(forcedClockMs_, 1 << 30));
    } else {
        const int t = int(autoClockMs_ % kCycleMs);
        if (t < kIdleMs) {
            phase_ = EnginePhase::Idle;
            phaseTimeMs_ = t;
        } else if (t < kIdleMs + kRevMs) {
            phase_ = EnginePhase::Rev;
            phaseTimeMs_ = t - kIdleMs;
        } else {
            phase_ = EnginePhase::Drive;
            phaseTimeMs_ = t - kIdleMs - kRevMs;
        }
    }
    if (phase_ == EnginePhase::Drive && (lastPhase_ != EnginePhase::Drive || phaseTimeMs_ < kStepMs)) {
        gear_ = 0;
        shiftMs_ = 0;
    }
    lastPhase_ = phase_;
}

void EngineModel::updateRun(bool wantRun)
{
    switch (run_) {
    case Run::Stopped:
        if (wantRun) {
            run_ = Run::Cranking;
            crankMs_ = 0;
        }
        break;
    case Run::Cranking:
        if (!wantRun) {
            run_ = Run::Stopping;
        } else if ((crankMs_ += kStepMs) >= kCrankMs) {
            run_ = Run::Running;
        }
        break;
    case Run::Running:
        if (!wantRun)
            run_ = Run::Stopping;
        break;
    case Run::Stopping:
        if (wantRun && rpm_ > 400)
            run_ = Run::Running;   // fuel came back while it was still turning
        break;
    }
}

void EngineModel::updateDrive(int t, double idleRpm, double& rpmTarget, double& tpsTarget)
{
    const double dt = kStepMs / 1000.0;
    double speedTarget;
    enum { Accel, Cruise, Decel } part;
    if (t < 12000) {
        const double x = t / 12000.0;
        speedTarget = kCruiseKmh * (1.0 - std::pow(1.0 - x, 1.7));
        part = Accel;
    } else if (t < 20000) {
        speedTarget = kCruiseKmh + 0.6 * std::sin(t / 1300.0);
        part = Cruise;
    } else {
        // Coast down to a stop, then wait at the kerb.
        speedTarget = kCruiseKmh * std::max(0.0, 1.0 - (t - 20000) / 6500.0);
        part = Decel;
    }
    if (run_ != Run::Running)
        speedTarget = 0;   // a stalled car rolls to a stop
    speedKmh_ = std::max(0.0, approach(speedKmh_, speedTarget, dt, 0.4));

    if (shiftMs_ > 0)
        shiftMs_ -= kStepMs;
    if (run_ != Run::Running) {
        gear_ = 0;
    } else if (part == Accel) {
        if (gear_ == 0 && speedTarget > 0.5)
            gear_ = 1;
        while (gear_ > 0 && gear_ < 5 && speedKmh_ * kRpmPerKmh[gear_] > kUpshiftRpm) {
            ++gear_;
            shiftMs_ = kShiftMs;
        }
    } else if (part == Cruise) {
        if (gear_ == 0)
            gear_ = 5;
        while (gear_ > 1 && speedKmh_ * kRpmPerKmh[gear_] < kDownshiftRpm)
            --gear_;
    } else {
        while (gear_ > 1 && speedKmh_ * kRpmPerKmh[gear_] < kDownshiftRpm)
            --gear_;
        if (speedKmh_ < 15)
            gear_ = 0;   // clutch in, coasting to a stop
    }

    if (gear_ > 0) {
        rpmTarget = std::max(idleRpm, speedKmh_ * kRpmPerKmh[gear_]);
        if (gear_ == 1 && part == Accel)
            rpmTarget = std::max(rpmTarget, 1500.0);   // clutch slipping at the launch
    } else {
        rpmTarget = idleRpm;
    }

    if (part == Accel)
        tpsTarget = shiftMs_ > 0 ? kClosedTps : 2.2;
    else if (part == Cruise)
        tpsTarget = 1.05 + 0.05 * std::sin(t / 900.0);
    else
        tpsTarget = kClosedTps;
}

void EngineModel::updateTargets(double& rpmTarget, double& tpsTarget, double& rpmTau)
{
    const double dt = kStepMs / 1000.0;
    const double cold = coldFraction();
    const double iacvBase = 30 + 10 * cold;
    const double iacvCmd = iacvTest_ != 0 ? iacvBase * iacvTest_ / 100.0 : iacvBase;
    const double idleRpm = 750 + 50 * cold + (iacvCmd - iacvBase) * 40 + timingOffset_ * 12
        - (cylinderCut_ != 0 ? 120 : 0);

    rpmTarget = idleRpm;
    tpsTarget = kClosedTps;
    rpmTau = 0.3;

    const int t = phaseTimeMs_;
    switch (phase_) {
    case EnginePhase::Off:
    case EnginePhase::Idle:
        gear_ = 0;
        speedKmh_ = approach(speedKmh_, 0, dt, 1.0);
        if (speedKmh_ < 0.3)
            speedKmh_ = 0;
        break;
    case EnginePhase::Rev: {
        gear_ = 0;
        speedKmh_ = approach(speedKmh_, 0, dt, 1.0);
        if (speedKmh_ < 0.3)
            speedKmh_ = 0;
        rpmTau = 0.25;
        const double cut = cylinderCut_ != 0 ? 0.96 : 1.0;
        if (t < 5000) {
            const double s = t / 5000.0;
            rpmTarget = idleRpm + (kRevPeakRpm * cut - idleRpm) * s;
            tpsTarget = 1.0 + 1.6 * s;
        } else if (t < 10000) {
            const double s = 1.0 - (t - 5000) / 5000.0;
            rpmTarget = idleRpm + (kRevPeakRpm * cut - idleRpm) * s;
        }
        break;
    }
    case EnginePhase::Drive:
        rpmTau = 0.15;
        updateDrive(t, idleRpm, rpmTarget, tpsTarget);
        break;
    }

    // The idle air valve: its idle opening, a little more off idle (dashpot).
    const bool offIdle = tps_ > 0.6 || rpm_ > 1300;
    iacv_ = approach(iacv_, iacvCmd + (offIdle && run_ == Run::Running ? 6 : 0), dt, 0.4);
}

void EngineModel::updateMixture(double dt, bool closedLoop, bool openLoopRich)
{
    const bool running = run_ == Run::Running;
    const double trim = fuelTrim_ != 0 ? fuelTrim_ / 100.0 : 1.0;
    const double learn = selfLearn_ / 100.0;
    const double enrich = openLoopRich ? 1.12 : 1.0;

    wander_ = wander_ * (1.0 - dt / 20.0) + 0.001 * rng_.symmetric();

    for (std::size_t b = 0; b < banks_.size(); ++b) {
        Bank& bank = banks_[b];
        // Odd cylinders sit on the right bank, even ones on the left.
        const bool cutHere = cylinderCut_ != 0 && ((cylinderCut_ % 2 == 1) == (b == 1));
        const double unburnt = cutHere ? 5.0 / 6.0 : 1.0;
        const double mixture = running && !fuelCut_
            ? bank.alpha / 100.0 * learn * trim * enrich * (1.0 + bank.bias + wander_) * unburnt
            : 0.0;
        const bool rich = mixture > 1.0;
        if (rich != bank.sensedRich) {
            bank.pendingMs += kStepMs;
            if (bank.pendingMs >= bank.delayMs) {
                bank.sensedRich = rich;
                bank.pendingMs = 0;
            }
        } else {
            bank.pendingMs = 0;
        }

        if (closedLoop)
            bank.alpha = std::clamp(bank.alpha + (bank.sensedRich ? -kAlphaRate : kAlphaRate) * dt, 75.0, 125.0);
        else
            bank.alpha = approach(bank.alpha, 100.0, dt, 0.5);

        double o2Target;
        if (!running)
            o2Target = 0.02;
        else if (bank.sensedRich)
            o2Target = 0.80 + 0.08 * rng_.uniform();
        else
            o2Target = 0.08 + 0.06 * rng_.uniform();
        bank.o2 = std::clamp(approach(bank.o2, o2Target, dt, running ? 0.04 : 1.5), 0.0, 1.0);
    }

    // The learned correction takes over what alpha has to hold, slowly.
    if (closedLoop && rpm_ < 3000) {
        const double avg = (banks_[0].alpha + banks_[1].alpha) / 2.0;
        selfLearn_ = std::clamp(selfLearn_ + (avg - 100.0) * learn * dt / 40.0, 80.0, 120.0);
    }
}

void EngineModel::step()
{
    const double dt = kStepMs / 1000.0;
    timeMs_ += kStepMs;
    if (forced_)
        forcedClockMs_ += kStepMs;
    else
        autoClockMs_ += kStepMs;

    updatePhase();
    updateRun(phase_ != EnginePhase::Off && fuelPump_);

    double rpmTarget = 0, tpsTarget = kClosedTps, rpmTau = 0.3;
    updateTargets(rpmTarget, tpsTarget, rpmTau);
    tps_ = approach(tps_, tpsTarget, dt, 0.08);

    switch (run_) {
    case Run::Running:
        rpm_ = approach(rpm_, rpmTarget, dt, rpmTau);
        break;
    case Run::Cranking:
        rpm_ = approach(rpm_, kCrankRpm, dt, 0.15);
        break;
    case Run::Stopping:
        rpm_ = approach(rpm_, 0, dt, 0.35);
        if (rpm_ < 40) {
            rpm_ = 0;
            run_ = Run::Stopped;
        }
        break;
    case Run::Stopped:
        rpm_ = 0;
        break;
    }
    const bool running = run_ == Run::Running;
    const bool turning = run_ != Run::Stopped;
    const double cold = coldFraction();
    const double thr = throttleFraction();

    // Temperatures.
    if (running || run_ == Run::Cranking)
        coolantC_ += (kWarmC - coolantC_) * dt / 120.0;
    else
        coolantC_ += (ambientC_ - coolantC_) * dt / 1800.0;
    fuelTempC_ += ((running ? ambientC_ + 18.0 : ambientC_) - fuelTempC_) * dt / 600.0;

    // Charging system.
    double batteryTarget = 12.5;
    if (running)
        batteryTarget = 14.1 - 0.25 * cold;
    else if (run_ == Run::Cranking)
        batteryTarget = 10.4;
    battery_ = approach(battery_, batteryTarget, dt, run_ == Run::Cranking ? 0.05 : 0.8);

    // Overrun fuel cut, with some hysteresis.
    const bool overrun = running && tps_ < 0.55
        && (phase_ == EnginePhase::Rev || (phase_ == EnginePhase::Drive && gear_ > 0));
    if (!overrun || rpm_ < 1300)
        fuelCut_ = false;
    else if (rpm_ > 1800)
        fuelCut_ = true;

    // Air.
    if (run_ == Run::Cranking)
        flow_ = rpm_ / 1000.0 * 6.0;
    else if (turning)
        flow_ = iacv_ * 0.13 * std::min(1.0, rpm_ / 600.0) + rpm_ / 1000.0 * 25.0 * std::pow(thr, 0.8);
    else
        flow_ = 0;

    const bool openLoopRich = running && !fuelCut_ && (thr > 0.45 || rpm_ > 4000);
    const bool closedLoop = running && !fuelCut_ && !openLoopRich;
    updateMixture(dt, closedLoop, openLoopRich);

    // Fuel.
    const double avgAlpha = (banks_[0].alpha + banks_[1].alpha) / 2.0;
    const double trim = fuelTrim_ != 0 ? fuelTrim_ / 100.0 : 1.0;
    if (running && !fuelCut_) {
        const double tp = 300.0 * flow_ / std::max(rpm_, 300.0);
        injMs_ = tp * avgAlpha / 100.0 * selfLearn_ / 100.0 * trim * (openLoopRich ? 1.12 : 1.0) * (1.0 + 0.3 * cold)
            + kLatencyMs;
    } else if (run_ == Run::Cranking) {
        injMs_ = 4.0 + 2.0 * cold;
    } else {
        injMs_ = 0;
    }

    // Spark.
    if (running) {
        const double rf = std::clamp((rpm_ - 800.0) / 3700.0, 0.0, 1.0);
        timing_ = 14.0 + 25.0 * rf - 12.0 * thr + (fuelCut_ ? 4.0 : 0.0) + timingOffset_ + 0.4 * rng_.symmetric();
    } else if (run_ == Run::Cranking) {
        timing_ = 10.0;
    } else {
        timing_ = 0;
    }

    // Exhaust temperature sensor.
    const double egtTarget = running ? 0.9 + 0.5 * std::clamp(rpm_ / 5000.0, 0.0, 1.0) + 1.2 * thr : 0.6;
    egt_ = approach(egt_, egtTarget, dt, running ? 5.0 : 30.0);

    // Engine speed jitter; the rough beat of a cut cylinder is added in the snapshot.
    rpmNoise_ = approach(rpmNoise_, 8.0 * rng_.symmetric(), dt, 0.05);
    updateSnapshot();
}

void EngineModel::updateSnapshot()
{
    const double t = timeMs_ / 1000.0;
    EngineSnapshot s;
    s.phase = phase_;
    s.running = run_ == Run::Running;
    s.cranking = run_ == Run::Cranking;
    s.fuelPumpOn = fuelPump_;
    s.fuelCut = fuelCut_;

    double rpm = rpm_;
    if (run_ == Run::Running) {
        rpm += rpmNoise_;
        if (cylinderCut_ != 0) {
            const double depth = rpm_ < 1500 ? 1.0 : 0.4;
            rpm += depth * (45.0 * std::sin(2.0 * kPi * 3.1 * t) + 25.0 * std::sin(2.0 * kPi * 0.7 * t + 1.0));
        }
    } else if (run_ == Run::Cranking) {
        rpm += 20.0 * std::sin(2.0 * kPi * 6.0 * t);
    }
    s.rpm = std::clamp(rpm, 0.0, 12000.0);
    s.speedKmh = speedKmh_;
    s.gear = gear_;
    s.tpsVolts = tps_;
    s.mafLeftVolts = mafVolts(flow_);
    s.mafRightVolts = flow_ > 0.05 ? mafVolts(flow_ * 0.97) + 0.01 * std::sin(t * 1.7) : 0.25;
    if (coolantSubstitute_ != 0)
        s.coolantC = double(coolantSubstitute_) - 50.0;
    else
        s.coolantC = coolantC_ + (coolantC_ > 80.0 ? 0.8 * std::sin(2.0 * kPi * t / 45.0) : 0.0);
    s.fuelTempC = fuelTempC_;
    s.o2LeftVolts = banks_[0].o2;
    s.o2RightVolts = banks_[1].o2;
    s.batteryVolts = battery_ + (run_ == Run::Running ? 0.03 * std::sin(t * 2.3) : 0.0);
    s.injectorMs = injMs_;
    s.timingDeg = timing_;
    s.iacvPercent = iacv_;
    s.alphaLeft = banks_[0].alpha;
    s.alphaRight = banks_[1].alpha;
    s.selfLearn = selfLearn_;
    s.egtVolts = egt_;
    snap_ = s;
}

}  // namespace vexorin::sim
