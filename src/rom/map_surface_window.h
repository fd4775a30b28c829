// "3D Map - <tab caption>": one Map Viewer tab's map as a surface over its TP
// and RPM headings, in the grid's band colours, rotated and zoomed with the
// mouse or the keys, and following every edit and load of that tab. Where the
// system gives no OpenGL it shows a line saying so in place of the surface.
#pragma once

#include "rom/map_surface.h"

#include <QPointer>
#include <QWidget>

class MapViewer;
class QKeyEvent;
class QLabel;
class QSurface3DSeries;
class Q3DSurface;

class MapSurfaceWindow : public QWidget {
    Q_OBJECT
public:
    static const QString kNoOpenGl;
    static constexpr int kWidth = 820, kHeight = 640;
    // The keys turn the view by these steps (degrees) and zoom by this factor.
    static constexpr float kTurnStep = 10, kTiltStep = 5, kZoomFactor = 1.2f;
    static constexpr float kHomeZoom = 85;  // per cent

    MapSurfaceWindow(MapViewer& viewer, int tab, QWidget* parent = nullptr);
    ~MapSurfaceWindow() override;

    // Whether a 3D graph can be made here: not on the offscreen or minimal
    // window systems, and elsewhere only when an OpenGL context can be created
    // and made current. Asked once per run.
    static bool openGlAvailable();

    int tab() const { return tab_; }
    // What the window shows, as last built from the grid.
    const vexorin::rom::MapSurface& surface() const { return surface_; }
    bool hasSurface() const { return graph_ != nullptr; }
    // The graph and its one series; null where there is no OpenGL.
    Q3DSurface* graph() const { return graph_; }
    QSurface3DSeries* series() const { return series_; }
    // The line shown in place of the graph; null where there is a graph.
    QLabel* messageLabel() const { return message_; }

    // Left and Right turn the view, Up and Down tilt it, + and - zoom,
    // Home returns to the first view, Esc closes. True when the key was one of them.
    bool viewKey(const QKeyEvent& key);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void buildGraph();
    void rebuild();
    void homeView();

    QPointer<MapViewer> viewer_;
    int tab_;
    vexorin::rom::MapSurface surface_;
    Q3DSurface* graph_ = nullptr;
    QSurface3DSeries* series_ = nullptr;
    QLabel* message_ = nullptr;
};
