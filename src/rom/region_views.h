// What a double-click on a row of the region list does in a bank on view,
// the same in the BIN File Viewer/Editor and the E.C.U. Register Viewer: the
// grid cells it paints, or the message of a map that fills a whole bank, and
// how the value of its cells converts.
#pragma once

#include <array>
#include <string>

namespace vexorin::rom {

enum class Conversion { None, Msec, Rpm, Speed, KValue, Message };

struct RegionView {
    int bank;
    int row;          // first grid row painted (0: none)
    int lastRow;
    int firstColumn;
    int lastColumn;
    Conversion conversion;
    const char* message;   // Conversion::Message only
};

// In the order of the region list.
extern const std::array<RegionView, 24> kRegionViews;

// The converted text behind "Converted: " for one region, from the hex texts
// of the region's cells (the first cell, and for the K value the second);
// a blank cell reads as nothing. Empty when the region has no conversion.
std::string convertRegion(Conversion conversion, const std::string& firstCell, const std::string& secondCell = {});

}  // namespace vexorin::rom
