// Reading one map from the ECU as a plain object: the RPM and TP scales
// first (two banks for a fuel map, two phases of one bank for a timing map),
// then the map's own bank, eight addresses a burst. The state is left behind
// when a read stops and the next read goes on from it, whichever map it is
// for. No Qt.
#pragma once

namespace vexorin::rom {

struct MapReadState {
    int high = 0;
    int low = -1;
    int scalePhase = 1;
};

// Banks of the scales: the RPM scale and the timing maps' TP scale, and the
// fuel maps' TP scale.
constexpr int kScaleBank = 251;
constexpr int kFuelTpBank = 250;

struct MapReadStep {
    enum class Kind {
        Burst,        // read eight addresses
        ScalesDone,   // the scales are in: the map's bank follows, no request now
        MapDone,      // the whole map is in
    };
    Kind kind = Kind::Burst;
    bool cursorToCorner = false;  // the grid cursor goes back to 0,0 before this burst
    bool scale = false;           // the burst reads a scale ...
    bool rpm = false;             // ... the RPM scale; else the TP scale
    int high = 0;
    int firstLow = 0;
    int lastLow = 0;              // the low byte the walk stands on after the burst
};

class MapReadWalk {
public:
    // Where a download starts: the RPM scale's bank, before its first address.
    void restart() { state_ = {kScaleBank, -1, 1}; }
    const MapReadState& state() const { return state_; }
    // The next step of reading a map (`fuel`, its `bank`); moves the walk on.
    MapReadStep next(bool fuel, int bank);

private:
    MapReadState state_;
};

}  // namespace vexorin::rom
