#include "rom/map_read_walk.h"

namespace vexorin::rom {

namespace {
constexpr int kAddressesPerBurst = 8;
}

MapReadStep MapReadWalk::next(bool fuel, int bank)
{
    MapReadState& s = state_;
    MapReadStep step;
    const bool scaleStage = fuel ? (s.high == kScaleBank || s.high == kFuelTpBank) : s.high == kScaleBank;
    if (scaleStage) {
        if (s.low == (fuel ? 255 : 31)) {
            s.high = bank;
            s.low = -1;
            step.kind = MapReadStep::Kind::ScalesDone;
            return step;
        }
        if (s.low == 15) {
            if (fuel) {
                s.high = kFuelTpBank;
                s.low = 239;
            } else {
                s.scalePhase = 2;
            }
            step.cursorToCorner = true;
        }
        step.scale = true;
        step.rpm = fuel ? s.high == kScaleBank : s.scalePhase == 1;
    } else if (s.low == 255) {
        step.kind = MapReadStep::Kind::MapDone;
        return step;
    }
    step.high = s.high;
    step.firstLow = s.low + 1;
    s.low += kAddressesPerBurst;
    step.lastLow = s.low;
    return step;
}

}  // namespace vexorin::rom
