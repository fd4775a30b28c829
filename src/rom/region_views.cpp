#include "rom/region_views.h"

#include "rom/bin_viewer_layout.h"

#include <cmath>

namespace vexorin::rom {

namespace {
constexpr RegionView cells(int bank, int row, int lastRow, int first, int last, Conversion c = Conversion::None)
{
    return {bank, row, lastRow, first, last, c, nullptr};
}
constexpr RegionView page(int bank, const char* message)
{
    return {bank, 0, 0, 0, 0, Conversion::Message, message};
}

}  // namespace

const std::array<RegionView, 24> kRegionViews{{
    cells(255, 10, 10, 2, 2, Conversion::Msec),
    cells(255, 15, 15, 1, 9),
    cells(255, 12, 12, 5, 5, Conversion::Rpm),
    cells(255, 11, 11, 6, 6, Conversion::Speed),
    cells(255, 9, 9, 9, 9, Conversion::Msec),
    cells(255, 3, 3, 12, 13, Conversion::KValue),
    cells(254, 9, 9, 1, 16),
    cells(254, 10, 10, 1, 16),
    cells(254, 3, 3, 1, 16),
    page(253, "Currently viewing the Primary Fuel Map."),
    page(252, "Currently viewing the Secondary Timing Map (Knock)."),
    cells(251, 2, 2, 1, 16),
    cells(251, 1, 1, 1, 16),
    cells(251, 7, 8, 1, 16),
    cells(251, 4, 5, 1, 16),
    cells(250, 8, 15, 1, 16),
    cells(250, 16, 16, 1, 16),
    cells(249, 16, 16, 7, 7, Conversion::Rpm),
    // The Knock Limit's range runs to F9EF, but the paint stops at column 12.
    cells(249, 15, 15, 4, 12),
    cells(249, 7, 7, 1, 16),
    page(248, "Currently viewing the Primary Timing Map."),
    page(242, "Currently viewing the Secondary Fuel Map."),
    page(241, "Currently viewing the High Octane High Gear Fuel Map."),
    page(240, "Currently viewing the Low Octane High Gear Fuel Map."),
}};

std::string convertRegion(Conversion conversion, const std::string& firstCell, const std::string& secondCell)
{
    const long byte = hexValue(firstCell);
    switch (conversion) {
    case Conversion::Msec:
        return plainNumber(double(byte) / 100.0) + " msec";
    case Conversion::Rpm:
        return std::to_string(byte * 50) + " RPM";
    case Conversion::Speed: {
        const long kmh = byte * 2;
        const long mph = long(std::nearbyint(double(kmh) * 0.621371192));
        return std::to_string(kmh) + " km/h" + " or " + std::to_string(mph) + " MPH";
    }
    case Conversion::KValue: {
        const std::string joined = firstCell + secondCell;
        return joined.empty() ? std::string() : std::to_string(hexValue(joined));
    }
    case Conversion::None:
    case Conversion::Message:
        break;
    }
    return {};
}

}  // namespace vexorin::rom
