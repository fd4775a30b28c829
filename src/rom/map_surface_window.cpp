#include "rom/map_surface_window.h"

#include "rom/map_viewer.h"
#include "ui/plain_text.h"
#include "ui/window_keys.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QVBoxLayout>
#include <QtDataVisualization/Q3DCamera>
#include <QtDataVisualization/Q3DScene>
#include <QtDataVisualization/Q3DSurface>
#include <QtDataVisualization/Q3DTheme>
#include <QtDataVisualization/QSurface3DSeries>
#include <QtDataVisualization/QSurfaceDataProxy>
#include <QtDataVisualization/QValue3DAxis>
#include <QtDataVisualization/QValue3DAxisFormatter>

#include <cmath>

using vexorin::rom::kMaps;
using vexorin::rom::kSurfaceSide;
using vexorin::rom::SurfaceAxis;

const QString MapSurfaceWindow::kNoOpenGl = QStringLiteral("3D view needs OpenGL, which this system does not provide.");

namespace {
// Grid lines and labels of a TP or RPM axis at the rows or columns, each with
// its heading text, whether the headings place them or their indexes do.
class HeadingFormatter : public QValue3DAxisFormatter {
public:
    void setHeadings(const SurfaceAxis& axis)
    {
        positions_.clear();
        labels_.clear();
        for (int i = 0; i < kSurfaceSide; ++i) {
            positions_.append(float(axis.positions[std::size_t(i)]));
            labels_.append(axis.labels[std::size_t(i)]);
        }
        markDirty(true);
    }

protected:
    QValue3DAxisFormatter* createNewInstance() const override { return new HeadingFormatter; }

    void populateCopy(QValue3DAxisFormatter& copy) const override
    {
        QValue3DAxisFormatter::populateCopy(copy);
        auto& mine = static_cast<HeadingFormatter&>(copy);
        mine.positions_ = positions_;
        mine.labels_ = labels_;
    }

    void recalculate() override
    {
        const float low = axis()->min();
        const float span = axis()->max() - low;
        gridPositions().clear();
        subGridPositions().clear();
        labelPositions().clear();
        labelStrings().clear();
        for (int i = 0; i < positions_.size(); ++i) {
            const float at = span > 0 ? (positions_[i] - low) / span : 0.0f;
            gridPositions().append(at);
            labelPositions().append(at);
            labelStrings().append(labels_[i]);
        }
    }

    // The label of a selected point: its heading text.
    QString stringForValue(qreal value, const QString& format) const override
    {
        for (int i = 0; i < positions_.size(); ++i)
            if (std::abs(positions_[i] - value) < 1e-3)
                return labels_[i];
        return QValue3DAxisFormatter::stringForValue(value, format);
    }

private:
    QList<float> positions_;
    QStringList labels_;
};

QValue3DAxis* headingAxis(const QString& title)
{
    auto* axis = new QValue3DAxis;
    axis->setFormatter(new HeadingFormatter);
    axis->setTitle(title);
    axis->setTitleVisible(true);
    axis->setAutoAdjustRange(false);
    axis->setSegmentCount(kSurfaceSide - 1);
    axis->setSubSegmentCount(1);
    axis->setLabelAutoRotation(90);  // the labels turn to face the viewer
    return axis;
}

void showHeadings(QValue3DAxis* axis, const SurfaceAxis& headings)
{
    static_cast<HeadingFormatter*>(axis->formatter())->setHeadings(headings);
    axis->setRange(float(headings.positions.front()), float(headings.positions.back()));
}
}  // namespace

MapSurfaceWindow::MapSurfaceWindow(MapViewer& viewer, int tab, QWidget* parent)
    : QWidget(parent, Qt::Window), viewer_(&viewer), tab_(qBound(0, tab, MapViewer::kTabs - 1))
{
    setObjectName(QStringLiteral("MapSurface"));
    setWindowTitle(QStringLiteral("3D Map - %1").arg(QLatin1String(kMaps[std::size_t(tab_)].tabCaption)));
    auto* v = new QVBoxLayout(this);
    v->setContentsMargins(0, 0, 0, 4);
    if (openGlAvailable()) {
        buildGraph();
    } else {
        message_ = new QLabel(kNoOpenGl, this);
        message_->setObjectName(QStringLiteral("NoOpenGl"));
        message_->setAlignment(Qt::AlignCenter);
        message_->setWordWrap(true);
        message_->setMargin(24);
        v->addWidget(message_, 1);
    }

    auto follow = [this](int t) {
        if (t == tab_)
            rebuild();
    };
    connect(&viewer, &MapViewer::gridReset, this, follow);
    connect(&viewer, &MapViewer::tabChanged, this, follow);
    connect(&viewer, &MapViewer::cellChanged, this, [follow](int t, int, int) { follow(t); });
    // The map it shows is gone with its viewer.
    connect(&viewer, &QObject::destroyed, this, &QWidget::close);
    rebuild();

    resize(kWidth, kHeight);
    vexorin::ui::addEscapeToClose(this);
    vexorin::ui::keepTextPlain(this);
}

MapSurfaceWindow::~MapSurfaceWindow()
{
    if (graph_)
        graph_->removeEventFilter(this);
}

bool MapSurfaceWindow::openGlAvailable()
{
    static const bool available = [] {
        const QString platform = QGuiApplication::platformName();
        if (platform == QLatin1String("offscreen") || platform == QLatin1String("minimal"))
            return false;
        QOpenGLContext context;
        if (!context.create())
            return false;
        QOffscreenSurface surface;
        surface.setFormat(context.format());
        surface.create();
        if (!surface.isValid() || !context.makeCurrent(&surface))
            return false;
        // The graph's shaders need OpenGL 2 or OpenGL ES 2.
        const bool enough = context.isOpenGLES() || context.format().majorVersion() >= 2;
        context.doneCurrent();
        return enough;
    }();
    return available;
}

void MapSurfaceWindow::buildGraph()
{
    graph_ = new Q3DSurface;
    QWidget* holder = QWidget::createWindowContainer(graph_, this);
    holder->setObjectName(QStringLiteral("MapSurfaceGraph"));
    holder->setFocusPolicy(Qt::StrongFocus);
    holder->setMinimumSize(320, 240);
    static_cast<QVBoxLayout*>(layout())->addWidget(holder, 1);

    graph_->setShadowQuality(QAbstract3DGraph::ShadowQualityNone);
    // TP and RPM take the same room whatever their ranges.
    graph_->setHorizontalAspectRatio(1.0f);
    Q3DTheme* theme = graph_->activeTheme();
    theme->setType(Q3DTheme::ThemeQt);
    // Mostly even light, so that each band keeps the colour it has in the grid.
    theme->setAmbientLightStrength(0.85f);
    theme->setLightStrength(1.0f);
    // The labels a little smaller than the theme has them: sixteen to an axis.
    QFont labels = theme->font();
    labels.setPointSize(30);
    theme->setFont(labels);

    graph_->setAxisX(headingAxis(QStringLiteral("TP")));
    graph_->setAxisZ(headingAxis(QStringLiteral("RPM")));
    auto* value = new QValue3DAxis;
    value->setTitleVisible(true);
    value->setLabelAutoRotation(90);
    value->setAutoAdjustRange(false);
    graph_->setAxisY(value);

    series_ = new QSurface3DSeries;
    series_->setDrawMode(QSurface3DSeries::DrawSurfaceAndWireframe);
    series_->setFlatShadingEnabled(false);
    series_->setWireframeColor(QColor(0x50, 0x50, 0x50));
    series_->setItemLabelFormat(QStringLiteral("@xTitle @xLabel, @zTitle @zLabel: @yLabel"));
    graph_->addSeries(series_);
    homeView();
    graph_->installEventFilter(this);

    auto* keys = new QLabel(QStringLiteral("Right-drag or arrow keys turn the map, the wheel or + and - zoom, "
                                           "Home shows it as at first."),
                            this);
    keys->setObjectName(QStringLiteral("MapSurfaceKeys"));
    keys->setAlignment(Qt::AlignCenter);
    layout()->addWidget(keys);
}

void MapSurfaceWindow::homeView()
{
    if (!graph_)
        return;
    Q3DCamera* camera = graph_->scene()->activeCamera();
    camera->setCameraPreset(Q3DCamera::CameraPresetIsometricRight);
    camera->setZoomLevel(kHomeZoom);
}

void MapSurfaceWindow::rebuild()
{
    if (!viewer_)
        return;
    const vexorin::rom::MapSurface before = surface_;
    surface_ = vexorin::rom::mapSurface(viewer_->tab(tab_).grid, kMaps[std::size_t(tab_)].fuel);
    if (!graph_)
        return;
    // A load changes a cell's text and its colour one after the other: the
    // picture is painted again only when a colour or a heading changed.
    const bool newPicture = series_->texture().isNull() || before.colors != surface_.colors ||
                            before.tp.positions != surface_.tp.positions ||
                            before.rpm.positions != surface_.rpm.positions;

    showHeadings(graph_->axisX(), surface_.tp);
    showHeadings(graph_->axisZ(), surface_.rpm);
    QValue3DAxis* value = graph_->axisY();
    const vexorin::rom::ValueRange& range = surface_.range;
    value->setTitle(surface_.valueTitle);
    value->setRange(float(range.low), float(range.high));
    value->setSegmentCount(range.segments);
    value->setLabelFormat(QStringLiteral("%.%1f").arg(range.decimals));

    auto* rows = new QSurfaceDataArray;
    rows->reserve(kSurfaceSide);
    for (int r = 0; r < kSurfaceSide; ++r) {
        auto* row = new QSurfaceDataRow(kSurfaceSide);
        for (int c = 0; c < kSurfaceSide; ++c) {
            (*row)[c].setPosition(QVector3D(float(surface_.tp.positions[std::size_t(c)]),
                                            float(surface_.heights[std::size_t(r)][std::size_t(c)]),
                                            float(surface_.rpm.positions[std::size_t(r)])));
        }
        rows->append(row);
    }
    series_->dataProxy()->resetArray(rows);
    if (newPicture)
        series_->setTexture(vexorin::rom::bandTexture(surface_));
}

bool MapSurfaceWindow::viewKey(const QKeyEvent& key)
{
    if (key.key() == Qt::Key_Escape) {
        close();
        return true;
    }
    if (!graph_)
        return false;
    Q3DCamera* camera = graph_->scene()->activeCamera();
    switch (key.key()) {
    case Qt::Key_Left: camera->setXRotation(camera->xRotation() - kTurnStep); break;
    case Qt::Key_Right: camera->setXRotation(camera->xRotation() + kTurnStep); break;
    case Qt::Key_Up: camera->setYRotation(camera->yRotation() + kTiltStep); break;
    case Qt::Key_Down: camera->setYRotation(camera->yRotation() - kTiltStep); break;
    case Qt::Key_Plus:
    case Qt::Key_Equal: camera->setZoomLevel(camera->zoomLevel() * kZoomFactor); break;
    case Qt::Key_Minus: camera->setZoomLevel(camera->zoomLevel() / kZoomFactor); break;
    case Qt::Key_Home: homeView(); break;
    default: return false;
    }
    return true;
}

bool MapSurfaceWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == graph_ && event->type() == QEvent::KeyPress && viewKey(*static_cast<QKeyEvent*>(event)))
        return true;
    return QWidget::eventFilter(watched, event);
}

void MapSurfaceWindow::keyPressEvent(QKeyEvent* event)
{
    if (!viewKey(*event))
        QWidget::keyPressEvent(event);
}
