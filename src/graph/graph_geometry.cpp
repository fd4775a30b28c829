#include "graph/graph_geometry.h"

#include <algorithm>
#include <cmath>

namespace vexorin::graph {

namespace {
double slotX(int i, int S, double W, double B)
{
    if (i == 1)
        return S == 1 ? W / 2 : B / 2;
    if (i == S)
        return W - B / 2;
    return (W - B) / (S - 1) * (i - 1) + B / 2;
}

double roundHalfEven(double v)
{
    return std::nearbyint(v);  // the default rounding mode rounds halves to even
}
}  // namespace

GraphGeometry layoutGraph(const GraphSettings& s, const std::vector<double>& values, double W, double H)
{
    GraphGeometry g;
    g.W = W;
    g.H = H;
    g.n = int(values.size());
    g.S = s.FixedPoints > 0 ? s.FixedPoints : g.n;

    if (g.S > 0 && s.ShowBars) {
        if (g.S < g.n || !s.FadeIn)
            g.B = W / g.S * double(s.BarWidth);
        else if (g.n >= 1)
            g.B = W / g.n * double(s.BarWidth);
        g.B = roundHalfEven(g.B);
    }

    const double range = s.MaxValue - s.MinValue;
    for (int i = 1; i <= g.S; ++i)
        g.slotX.push_back(slotX(i, g.S, W, g.B));
    const int drawn = std::min(g.S, g.n);
    for (int i = 1; i <= drawn; ++i) {
        g.x.push_back(g.slotX[std::size_t(i - 1)]);
        const double v = values[std::size_t(i - 1)];
        g.y.push_back(s.MaxValue == s.MinValue ? H - 1 : H - (H / range) * (v - s.MinValue));
    }

    if (range > 0) {
        g.hasBaseline = true;
        g.Y0 = (H / range) * s.MaxValue;
    }

    if (s.ShowGrid && g.n >= 1) {
        if (s.XGridInc > 0)
            for (int i = 1; i <= g.S; ++i)
                if (i % s.XGridInc == 0)
                    g.verticalGrid.push_back(g.slotX[std::size_t(i - 1)]);
        if (s.YGridInc > 0 && range > 0) {
            // Lines at Y0 - k x step for every whole k that keeps them inside the picture.
            const double step = H / range * s.YGridInc;
            if (step > 0 && std::isfinite(step) && std::isfinite(g.Y0)) {
                const double kmin = std::ceil((g.Y0 - H) / step);
                const double kmax = std::floor(g.Y0 / step);
                if (kmax >= kmin && kmax - kmin < 100000)
                    for (double k = kmin; k <= kmax; ++k)
                        g.horizontalGrid.push_back(g.Y0 - k * step);
            }
        }
    }

    if (s.MinValue >= 0 && s.MaxValue > 0)
        g.axisY = H;
    else if (s.MinValue < 0 && s.MaxValue > 0)
        g.axisY = g.Y0;
    else
        g.axisY = 0;
    if (g.axisY < 0)
        g.axisY = 0;

    for (int i = 1; i <= drawn; ++i)
        if (i == 1 || (s.XGridInc > 0 && i % s.XGridInc == 0))
            g.markedPoints.push_back(i);
    return g;
}

}  // namespace vexorin::graph
