// The 3D Map window over a Map Viewer: its title, the surface it draws from a
// loaded BIN file, following edits, loads and clears at once, hostile
// headings, the keys, and the line shown where there is no OpenGL. Run
// offscreen it sees the line; run by the CTest entry under Xvfb (with
// VEXORIN_EXPECT_OPENGL set) it must see a real graph holding the map.
#include "consult/simulator_transport.h"
#include "rom/map_surface.h"
#include "rom/map_surface_window.h"
#include "rom/map_viewer.h"
#include "session_rig.h"
#include "sim/ecu_simulator.h"
#include "ui/binary_files.h"
#include "ui/layout_audit.h"

#include <QDir>
#include <QGuiApplication>
#include <QLabel>
#include <QPointer>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QtDataVisualization/Q3DCamera>
#include <QtDataVisualization/Q3DScene>
#include <QtDataVisualization/Q3DSurface>
#include <QtDataVisualization/QSurface3DSeries>
#include <QtDataVisualization/QSurfaceDataProxy>
#include <QtDataVisualization/QValue3DAxis>

using namespace vexorin::rom;

namespace {
using Rom = std::array<std::uint8_t, vexorin::sim::EcuSimulator::kRomSize>;

struct ViewerRig : SessionRig {
    ViewerRig()
        : SessionRig([](int, QString*) { return new SimulatorTransport; }),
          rom(vexorin::sim::makeSyntheticRom(3)),
          viewer(session)
    {
        viewer.setPauseMs(0);
        path = dir.filePath(QStringLiteral("sim.bin"));
        writeBin();
    }
    void writeBin()
    {
        QVERIFY(vexorin::files::WriteBytes(path.toStdString(), std::vector<std::uint8_t>(rom.begin(), rom.end()),
                                           nullptr));
    }
    Rom rom;
    QTemporaryDir dir;
    QString path;
    MapViewer viewer;
};

bool expectGraph()
{
    return qEnvironmentVariableIsSet("VEXORIN_EXPECT_OPENGL");
}

// The window's data, the series' rows and the texture against the grid, cell by cell.
void checkFollows(const MapSurfaceWindow& w, const MapGrid& grid)
{
    const MapSurface& s = w.surface();
    for (int i = 0; i < kSurfaceSide; ++i) {
        QCOMPARE(s.tp.labels[std::size_t(i)], grid.text(0, i + 1));
        QCOMPARE(s.rpm.labels[std::size_t(i)], grid.text(i + 1, 0));
        if (s.tp.byHeading)
            QCOMPARE(s.tp.positions[std::size_t(i)], grid.text(0, i + 1).toDouble());
        if (s.rpm.byHeading)
            QCOMPARE(s.rpm.positions[std::size_t(i)], grid.text(i + 1, 0).toDouble());
    }
    for (int r = 0; r < kSurfaceSide; ++r) {
        for (int c = 0; c < kSurfaceSide; ++c) {
            const QString text = grid.text(r + 1, c + 1);
            const double height = s.heights[std::size_t(r)][std::size_t(c)];
            if (text.isEmpty()) {
                QCOMPARE(height, s.range.low);
                QVERIFY(s.colors[std::size_t(r)][std::size_t(c)] == kNoFigureColor);
            } else {
                QCOMPARE(height, text.toDouble());
                QVERIFY(s.colors[std::size_t(r)][std::size_t(c)] == *grid.color(r + 1, c + 1));
            }
        }
    }
    if (!w.hasSurface())
        return;
    const QSurfaceDataProxy* proxy = w.series()->dataProxy();
    QCOMPARE(proxy->rowCount(), kSurfaceSide);
    QCOMPARE(proxy->columnCount(), kSurfaceSide);
    for (int r = 0; r < kSurfaceSide; ++r) {
        for (int c = 0; c < kSurfaceSide; ++c) {
            const QSurfaceDataItem* item = proxy->itemAt(r, c);
            QCOMPARE(item->y(), float(s.heights[std::size_t(r)][std::size_t(c)]));
            QCOMPARE(item->x(), float(s.tp.positions[std::size_t(c)]));
            QCOMPARE(item->z(), float(s.rpm.positions[std::size_t(r)]));
        }
    }
    QCOMPARE(w.series()->texture(), bandTexture(s));
    QCOMPARE(w.graph()->axisY()->min(), float(s.range.low));
    QCOMPARE(w.graph()->axisY()->max(), float(s.range.high));
}

// The window as the screen shows it, graph included, when VEXORIN_SCREENSHOT_DIR names a folder.
void saveScreen(QWidget& w, const QString& name)
{
    const QByteArray dir = qgetenv("VEXORIN_SCREENSHOT_DIR");
    if (dir.isEmpty())
        return;
    QDir().mkpath(QString::fromLocal8Bit(dir));
    const QString file = QString::fromLocal8Bit(dir) + QLatin1Char('/') + name;
    QVERIFY(w.screen()->grabWindow(w.winId()).save(file));
}

// How many pixels of the picture show the band's colour. The light makes a
// pixel darker or lighter, which keeps its hue and, but for the shine, its
// saturation: those two tell the bands apart (green from pale green included).
int pixelsOf(const QImage& picture, const Rgb& band)
{
    const QImage image = picture.convertToFormat(QImage::Format_RGB32);
    const QColor want(band.r, band.g, band.b);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QColor got(line[x]);
            const int hue = std::abs(got.hsvHue() - want.hsvHue());
            if (std::min(hue, 360 - hue) < 12 && std::abs(got.hsvSaturationF() - want.hsvSaturationF()) < 0.08f &&
                got.valueF() > 0.3f)
                ++count;
        }
    }
    return count;
}
}  // namespace

class MapSurfaceWindowTest : public QObject {
    Q_OBJECT
private slots:
    void titleNamesTheTab();
    void openGlDecidesBetweenGraphAndMessage();
    void emptyGridBeforeAnyLoadDrawsFlat();
    void followsLoadEditReloadAndClear();
    void otherTabsLeaveItAlone();
    void hostileHeadingsPlaceByIndex();
    void keysTurnZoomAndClose();
    void closesWithItsViewer();
    void graphShowsTheBands();
};

void MapSurfaceWindowTest::titleNamesTheTab()
{
    ViewerRig rig;
    MapSurfaceWindow fuel(rig.viewer, 0);
    QCOMPARE(fuel.windowTitle(), QStringLiteral("3D Map - Fuel (High Octane)"));
    QCOMPARE(fuel.objectName(), QStringLiteral("MapSurface"));
    QCOMPARE(fuel.surface().valueTitle, QStringLiteral("A/F Ratio"));
    MapSurfaceWindow timing(rig.viewer, 5);
    QCOMPARE(timing.windowTitle(), QStringLiteral("3D Map - Timing (Low Octane)"));
    QCOMPARE(timing.surface().valueTitle, QStringLiteral("Timing"));
    MapSurfaceWindow highGear(rig.viewer, 1);
    QCOMPARE(highGear.windowTitle(), QStringLiteral("3D Map - Fuel (High Oct/High Gear)"));
}

void MapSurfaceWindowTest::openGlDecidesBetweenGraphAndMessage()
{
    ViewerRig rig;
    MapSurfaceWindow w(rig.viewer, 0);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    const bool offscreen = QGuiApplication::platformName() == QLatin1String("offscreen");
    if (offscreen || !MapSurfaceWindow::openGlAvailable()) {
        QVERIFY(!expectGraph());
        QVERIFY(!w.hasSurface());
        QVERIFY(!w.graph());
        QVERIFY(!w.series());
        QVERIFY(w.messageLabel());
        QVERIFY(w.messageLabel()->isVisible());
        QCOMPARE(w.messageLabel()->text(), QStringLiteral("3D view needs OpenGL, which this system does not provide."));
        QCOMPARE(MapSurfaceWindow::kNoOpenGl, w.messageLabel()->text());
    } else {
        QVERIFY(w.hasSurface());
        QVERIFY(w.graph());
        QVERIFY(w.series());
        QVERIFY(!w.messageLabel());
        QCOMPARE(w.graph()->seriesList().size(), 1);
        QCOMPARE(w.graph()->axisX()->title(), QStringLiteral("TP"));
        QCOMPARE(w.graph()->axisZ()->title(), QStringLiteral("RPM"));
        QCOMPARE(w.graph()->axisY()->title(), QStringLiteral("A/F Ratio"));
        QTRY_VERIFY(w.graph()->hasContext());
    }
    if (expectGraph())
        QVERIFY(w.hasSurface());
    QVERIFY2(vexorin::ui::layoutProblems(&w).isEmpty(), qPrintable(vexorin::ui::layoutProblems(&w).join('\n')));
    // The application goes on: another window, and a load, work as before.
    MapSurfaceWindow again(rig.viewer, 4);
    again.show();
    QVERIFY(rig.viewer.LoadBinFile(rig.path));
    checkFollows(again, rig.viewer.tab(4).grid);
}

void MapSurfaceWindowTest::emptyGridBeforeAnyLoadDrawsFlat()
{
    ViewerRig rig;
    MapSurfaceWindow w(rig.viewer, 2);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    checkFollows(w, rig.viewer.tab(2).grid);
    QVERIFY(!w.surface().tp.byHeading);
    QCOMPARE(w.surface().heights[7][7], 0.0);
    QTest::qWait(50);  // a frame drawn from the empty map
}

void MapSurfaceWindowTest::followsLoadEditReloadAndClear()
{
    ViewerRig rig;
    MapSurfaceWindow w(rig.viewer, 0);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));

    QVERIFY(rig.viewer.LoadBinFile(rig.path));
    const MapGrid& grid = rig.viewer.tab(0).grid;
    QVERIFY(w.surface().tp.byHeading);
    QVERIFY(w.surface().rpm.byHeading);
    QCOMPARE(w.surface().rpm.positions.back(), 6400.0);
    checkFollows(w, grid);
    QCOMPARE(w.surface().heights[5][8], grid.text(6, 9).toDouble());

    // An edit through the viewer: the cell at row 6, column 9 one step richer.
    rig.viewer.setEditMode(0, true);
    rig.viewer.selectCell(0, 6, 9);
    const QString before = grid.text(6, 9);
    rig.viewer.spinDown(0);
    const QString after = grid.text(6, 9);
    QVERIFY(after != before);
    QCOMPARE(w.surface().heights[5][8], after.toDouble());
    checkFollows(w, grid);
    // And a heading: the RPM of row 3 one step up.
    rig.viewer.selectCell(0, 3, 0);
    rig.viewer.spinUp(0);
    QCOMPARE(w.surface().rpm.labels[2], grid.text(3, 0));
    checkFollows(w, grid);
    rig.viewer.setEditMode(0, false);

    // The edit is in the file: a second load shows it again.
    QVERIFY(rig.viewer.LoadBinFile(rig.path));
    QCOMPARE(grid.text(6, 9), after);
    checkFollows(w, grid);

    // A different file: the window shows its map.
    for (int i = 0; i < 256; ++i)
        rig.rom[std::size_t(kMaps[0].fileOffset() + i)] = std::uint8_t(i % 40);
    rig.writeBin();
    QVERIFY(rig.viewer.LoadBinFile(rig.path));
    QCOMPARE(w.surface().heights[0][1], QString::fromStdString(FormatAfr(1)).toDouble());
    checkFollows(w, grid);

    // Cleared: every cell empty, flat on the floor, in grey.
    rig.viewer.ClearMatrix(0);
    checkFollows(w, grid);
    QVERIFY(!w.surface().figures[3][3]);
    QTest::qWait(50);  // a frame drawn from the cleared map
}

void MapSurfaceWindowTest::otherTabsLeaveItAlone()
{
    ViewerRig rig;
    QVERIFY(rig.viewer.LoadBinFile(rig.path));
    MapSurfaceWindow w(rig.viewer, 4);
    checkFollows(w, rig.viewer.tab(4).grid);
    const double before = w.surface().heights[0][0];
    rig.viewer.ClearMatrix(0);
    rig.viewer.ClearMatrix(5);
    QCOMPARE(w.surface().heights[0][0], before);
    QVERIFY(w.surface().figures[0][0]);
    rig.viewer.ClearMatrix(4);
    QVERIFY(!w.surface().figures[0][0]);
}

void MapSurfaceWindowTest::hostileHeadingsPlaceByIndex()
{
    ViewerRig rig;
    // RPM row 4 repeats row 3; the fuel TP scale falls from its sixth heading on.
    rig.rom[std::size_t(kRpmScaleOffset + 3)] = rig.rom[std::size_t(kRpmScaleOffset + 2)];
    for (int i = 5; i < kScaleLength; ++i)
        rig.rom[std::size_t(kTpScaleFuelOffset + i)] = std::uint8_t(200 - i);
    rig.writeBin();
    MapSurfaceWindow w(rig.viewer, 0);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    QVERIFY(rig.viewer.LoadBinFile(rig.path));
    const MapSurface& s = w.surface();
    QVERIFY(!s.rpm.byHeading);
    QVERIFY(!s.tp.byHeading);
    for (int i = 0; i < kSurfaceSide; ++i) {
        QCOMPARE(s.rpm.positions[std::size_t(i)], double(i));
        QCOMPARE(s.tp.positions[std::size_t(i)], double(i));
    }
    QCOMPARE(s.rpm.labels[2], s.rpm.labels[3]);
    QCOMPARE(s.tp.labels[15], QStringLiteral("185"));
    checkFollows(w, rig.viewer.tab(0).grid);
    // The timing maps keep their own, rising TP scale.
    MapSurfaceWindow timing(rig.viewer, 4);
    QVERIFY(timing.surface().tp.byHeading);
    QVERIFY(!timing.surface().rpm.byHeading);
    if (w.hasSurface()) {
        QCOMPARE(w.graph()->axisX()->labels().size(), kSurfaceSide);
        QCOMPARE(w.graph()->axisZ()->labels().at(3), s.rpm.labels[3]);
    }
    QTest::qWait(50);  // a frame drawn over the hostile headings
}

void MapSurfaceWindowTest::keysTurnZoomAndClose()
{
    ViewerRig rig;
    MapSurfaceWindow w(rig.viewer, 0);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    if (w.hasSurface()) {
        Q3DCamera* camera = w.graph()->scene()->activeCamera();
        const float turn = camera->xRotation(), tilt = camera->yRotation(), zoom = camera->zoomLevel();
        QTest::keyClick(w.graph(), Qt::Key_Right);
        QCOMPARE(camera->xRotation(), turn + MapSurfaceWindow::kTurnStep);
        QTest::keyClick(w.graph(), Qt::Key_Down);
        QCOMPARE(camera->yRotation(), tilt - MapSurfaceWindow::kTiltStep);
        QTest::keyClick(w.graph(), Qt::Key_Plus);
        QCOMPARE(camera->zoomLevel(), zoom * MapSurfaceWindow::kZoomFactor);
        QTest::keyClick(w.graph(), Qt::Key_Minus);
        QCOMPARE(camera->zoomLevel(), zoom);
        QTest::keyClick(w.graph(), Qt::Key_Home);
        QCOMPARE(camera->xRotation(), turn);
        QCOMPARE(camera->yRotation(), tilt);
        QTest::keyClick(w.graph(), Qt::Key_Escape);
        QVERIFY(!w.isVisible());
        w.show();
    }
    QTest::keyClick(&w, Qt::Key_Escape);
    QVERIFY(!w.isVisible());
}

void MapSurfaceWindowTest::closesWithItsViewer()
{
    ViewerRig rig;
    auto* viewer = new MapViewer(rig.session);
    QPointer<MapSurfaceWindow> w = new MapSurfaceWindow(*viewer, 3);
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->show();
    QVERIFY(QTest::qWaitForWindowExposed(w));
    delete viewer;
    QTRY_VERIFY(!w);
}

void MapSurfaceWindowTest::graphShowsTheBands()
{
    ViewerRig rig;
    MapSurfaceWindow w(rig.viewer, 0);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    QVERIFY(rig.viewer.LoadBinFile(rig.path));
    if (!w.hasSurface())
        QSKIP("no OpenGL here: nothing is drawn");
    QTRY_VERIFY(w.graph()->hasContext());
    QTest::qWait(200);
    saveScreen(w, QStringLiteral("map-3d-fuel.png"));
    const QImage picture = w.graph()->renderToImage();
    QVERIFY(!picture.isNull());
    // Every band the map holds shows on the surface.
    QList<Rgb> bands;
    for (const auto& row : w.surface().colors)
        for (const Rgb& c : row)
            if (!bands.contains(c))
                bands.append(c);
    QVERIFY(bands.size() >= 3);
    for (const Rgb& band : bands)
        QVERIFY2(pixelsOf(picture, band) > 200,
                 qPrintable(QStringLiteral("band %1,%2,%3 hardly shows").arg(band.r).arg(band.g).arg(band.b)));

    MapSurfaceWindow timing(rig.viewer, 4);
    timing.show();
    QVERIFY(QTest::qWaitForWindowExposed(&timing));
    QTest::qWait(200);
    saveScreen(timing, QStringLiteral("map-3d-timing.png"));
}

QTEST_MAIN(MapSurfaceWindowTest)
#include "map_surface_window_test.moc"
