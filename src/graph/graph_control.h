// The graph control: a series drawn as bars, a line and point markers over
// a grid and axes, into the off-screen picture picDraw, repainted on every
// change of its data. Sizes are in scale units (twips, 15 to a pixel).
#pragma once

#include "graph/graph_geometry.h"
#include "graph/graph_settings.h"
#include "graph/points.h"

#include <QImage>
#include <QObject>
#include <functional>

class GraphControl : public QObject {
    Q_OBJECT
public:
    static constexpr int kScaleUnitsPerPixel = 15;
    static constexpr double kPointRadius = 40;  // scale units

    explicit GraphControl(const vexorin::graph::GraphSettings& settings = {}, QObject* parent = nullptr);

    vexorin::graph::Points& points() { return points_; }
    const vexorin::graph::GraphSettings& settings() const { return s_; }
    const vexorin::graph::GraphControlRecord& control() const { return c_; }

    // Writing a property repaints (FixedPoints trims the series first).
    void setProperty(const std::function<void(vexorin::graph::GraphSettings&)>& change);
    void setSettings(const vexorin::graph::GraphSettings& s);
    void setMaxValue(double v);
    void setShowPoints(bool on);
    void setShowLines(bool on);
    void setBarColor(quint32 bgr);
    void setPointColor(quint32 bgr);
    void setFixedPoints(int n);

    bool Redraw() const { return c_.Redraw; }
    // Writing True repaints once.
    void setRedraw(bool on);
    void setAppearance(int a);
    void setBorderStyle(int b);

    void setDesignMode(bool on) { designMode_ = on; }
    bool designMode() const { return designMode_; }

    // The drawing size in pixels (the control's client area).
    void resize(const QSize& pixels);
    QSize size() const { return size_; }

    void Refresh() { fullRepaint(); }
    const QImage& picDraw() const { return picDraw_; }
    // The layout of the last repaint, in scale units.
    const vexorin::graph::GraphGeometry& geometry() const { return geometry_; }
    int repaintCount() const { return repaints_; }

    // "Graph" and "Points" in a file; errors come back as text.
    bool SaveSettings(const std::string& path, std::string* error) const;
    bool LoadSettings(const std::string& path, std::string* error);
    // "State": a blob holding "Control" and "Graph".
    vexorin::graph::ByteVector stateBlob() const;
    bool applyState(const vexorin::graph::ByteVector& blob, std::string* error);

signals:
    void painted();
    void frameChanged();

private:
    void onDataChanged();
    void fullRepaint();
    void fillDesignSample();
    void trim();

    vexorin::graph::GraphSettings s_;
    vexorin::graph::GraphControlRecord c_;
    vexorin::graph::Points points_;
    vexorin::graph::GraphGeometry geometry_;
    QImage picDraw_;
    QSize size_;
    bool designMode_ = false;
    bool guard_ = false;
    int repaints_ = 0;
};
