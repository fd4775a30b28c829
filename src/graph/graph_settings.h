// Every property of the graph control, with its two byte records: the
// 6-byte control record and the 72-byte settings record.
#pragma once

#include "graph/property_blob.h"

#include <cstdint>

namespace vexorin::graph {

struct GraphControlRecord {
    bool Redraw = true;
    std::int16_t Appearance = 1;   // 0 flat, 1 3-D
    std::int16_t BorderStyle = 1;  // 0 none, 1 single

    ByteVector bytes() const;
    static bool fromBytes(const ByteVector& b, GraphControlRecord& out);
};

// Colours are 0x00BBGGRR.
struct GraphSettings {
    std::uint32_t BackColor = 0x00FFFFFF;
    std::uint32_t LineColor = 0x00A98354;
    std::uint32_t BarColor = 0x00DEA68D;
    std::uint32_t PointColor = 0x00FFFFC0;
    std::uint32_t AxisColor = 0;
    std::uint32_t GridColor = 0x00DFDFDF;
    std::int32_t FixedPoints = 20;  // 0: unlimited
    std::int32_t XGridInc = 1;
    double YGridInc = 10;
    double MaxValue = 100;
    double MinValue = 0;
    bool FadeIn = false;
    bool ShowGrid = true;
    bool ShowAxis = false;
    bool ShowLines = true;
    bool ShowBars = true;
    bool ShowPoints = true;
    float BarWidth = 0.8f;

    static constexpr std::size_t kRecordSize = 72;
    ByteVector bytes() const;
    // False (and `out` untouched) when the record is not 72 bytes.
    static bool fromBytes(const ByteVector& b, GraphSettings& out);

    // The values of Graph1 on the main window.
    static GraphSettings mainWindow();
};

}  // namespace vexorin::graph
