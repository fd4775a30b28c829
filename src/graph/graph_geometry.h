// Where everything of a graph repaint goes, in the control's scale units:
// bar width, point positions, the bar baseline, grid lines and axes.
#pragma once

#include "graph/graph_settings.h"

#include <vector>

namespace vexorin::graph {

struct GraphGeometry {
    double W = 0, H = 0;
    int n = 0;            // points in the series
    int S = 0;            // slots across the picture
    double B = 0;         // bar width
    std::vector<double> x, y;  // x(i), y(i) for i = 1 .. min(S, n) at index i - 1
    std::vector<double> slotX; // x of every slot 1 .. S (the vertical grid stands on these)
    bool hasBaseline = false;
    double Y0 = 0;        // bar baseline
    std::vector<double> verticalGrid;    // x positions
    std::vector<double> horizontalGrid;  // y positions
    double axisY = 0;     // where the horizontal axis runs
    std::vector<int> markedPoints;       // 1-based indexes that get a point marker
};

// The geometry of one full repaint; W and H already whole numbers.
GraphGeometry layoutGraph(const GraphSettings& s, const std::vector<double>& values, double W, double H);

}  // namespace vexorin::graph
