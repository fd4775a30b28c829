#include "graph/graph_control.h"
#include "ui/binary_files.h"

#include <QTemporaryDir>
#include <QTest>

using namespace vexorin::graph;

namespace {
// Pixel of a point given in scale units.
QColor pixelAt(const GraphControl& g, double x, double y)
{
    return g.picDraw().pixelColor(int(x / GraphControl::kScaleUnitsPerPixel),
                                  int(y / GraphControl::kScaleUnitsPerPixel));
}
}  // namespace

class GraphControlTest : public QObject {
    Q_OBJECT
private slots:
    void trimsBeforeDrawing();
    void redrawFalseStoresWithoutPainting();
    void addPointCostsOneRepaint();
    void renderedColoursAtComputedPoints();
    void designModeSample();
    void settingsFileRoundTrip();
    void settingsFileErrors();
    void stateRoundTrip();
};

void GraphControlTest::trimsBeforeDrawing()
{
    GraphControl g(GraphSettings::mainWindow());
    g.resize(QSize(300, 60));
    for (int i = 1; i <= 61; ++i)
        g.points().Add(i);
    QCOMPARE(g.points().Count(), 60);
    QCOMPARE(g.points().Item(1).Value, 2.0);
    QCOMPARE(int(g.geometry().x.size()), 60);
    g.setFixedPoints(10);
    QCOMPARE(g.points().Count(), 10);
    QCOMPARE(g.points().Item(1).Value, 52.0);
    g.setFixedPoints(0);
    for (int i = 0; i < 5; ++i)
        g.points().Add(i);
    QCOMPARE(g.points().Count(), 15);  // unlimited
}

void GraphControlTest::redrawFalseStoresWithoutPainting()
{
    GraphControl g;
    g.resize(QSize(200, 50));
    const int before = g.repaintCount();
    g.setRedraw(false);
    g.setMaxValue(500);
    g.points().Add(3);
    QCOMPARE(g.repaintCount(), before);
    QCOMPARE(g.settings().MaxValue, 500.0);
    g.setRedraw(true);
    QCOMPARE(g.repaintCount(), before + 1);
}

void GraphControlTest::addPointCostsOneRepaint()
{
    GraphControl g;
    g.resize(QSize(200, 50));
    const int before = g.repaintCount();
    g.setRedraw(false);
    g.points().Add(7);
    g.setRedraw(true);
    QCOMPARE(g.repaintCount(), before + 1);
    g.resize(QSize(0, 50));
    g.Refresh();
    QCOMPARE(g.repaintCount(), before + 1);  // nothing to draw at zero size
}

void GraphControlTest::renderedColoursAtComputedPoints()
{
    GraphSettings s;
    s.FixedPoints = 4;
    s.BarWidth = 0.5f;
    s.ShowLines = false;
    s.ShowGrid = false;
    s.BackColor = 0x00000000;            // black
    s.BarColor = 0x000000FF;             // red
    s.PointColor = 0x0000FF00;           // green
    GraphControl g(s);
    g.resize(QSize(400, 100));
    for (double v : {20.0, 40.0, 60.0, 80.0})
        g.points().Add(v);
    const GraphGeometry& geo = g.geometry();
    QCOMPARE(geo.W, 6000.0);
    QCOMPARE(geo.H, 1500.0);
    // Inside each bar, halfway between its top and the baseline: the bar colour.
    for (std::size_t i = 0; i < 4; ++i) {
        const double midY = (geo.y[i] + geo.Y0) / 2;
        QCOMPARE(pixelAt(g, geo.x[i] + geo.B / 4, midY), QColor(255, 0, 0));
        // On the point itself: the point colour.
        QCOMPARE(pixelAt(g, geo.x[i], geo.y[i]), QColor(0, 255, 0));
    }
    // Between the bars and above them: the background.
    QCOMPARE(pixelAt(g, (geo.x[0] + geo.x[1]) / 2, 100), QColor(0, 0, 0));

    g.setProperty([](GraphSettings& t) {
        t.ShowGrid = true;
        t.GridColor = 0x00FF0000;  // blue
        t.ShowBars = false;
        t.ShowPoints = false;
    });
    const GraphGeometry& grid = g.geometry();
    QVERIFY(!grid.verticalGrid.empty());
    QCOMPARE(pixelAt(g, grid.verticalGrid[0], 20), QColor(0, 0, 255));
}

void GraphControlTest::designModeSample()
{
    GraphSettings s;
    s.MaxValue = 200;
    s.MinValue = 100;
    GraphControl g(s);
    g.setDesignMode(true);
    g.resize(QSize(200, 50));
    QCOMPARE(g.points().Count(), 11);
    QCOMPARE(g.points().Item(1).Value, 180.0);
    QCOMPARE(g.points().Item(9).Value, 105.0);
}

void GraphControlTest::settingsFileRoundTrip()
{
    QTemporaryDir dir;
    const std::string path = dir.filePath(QStringLiteral("graph.dat")).toStdString();
    GraphControl g(GraphSettings::mainWindow());
    g.resize(QSize(100, 40));
    for (double v : {1.0, 2.5, -3.0})
        g.points().Add(v);
    std::string error;
    QVERIFY(g.SaveSettings(path, &error));
    ByteVector bytes;
    QVERIFY(vexorin::files::ReadBytes(path, bytes, &error));
    const auto blob = PropertyBlob::parse(bytes, &error);
    QVERIFY(blob);
    QCOMPARE(blob->records().size(), std::size_t(2));
    QVERIFY(blob->records()[0].name == u16("Graph"));
    QVERIFY(blob->records()[1].name == u16("Points"));

    GraphControl h;
    h.resize(QSize(100, 40));
    QVERIFY2(h.LoadSettings(path, &error), error.c_str());
    QVERIFY(h.settings().bytes() == g.settings().bytes());
    QCOMPARE(h.points().Count(), 3);
    QCOMPARE(h.points().Item(3).Value, -3.0);
}

void GraphControlTest::settingsFileErrors()
{
    QTemporaryDir dir;
    GraphControl g;
    std::string error;
    QVERIFY(!g.LoadSettings(dir.filePath(QStringLiteral("none.dat")).toStdString(), &error));
    QCOMPARE(QString::fromStdString(error), QStringLiteral("File not found."));
    const std::string path = dir.filePath(QStringLiteral("bad.dat")).toStdString();
    for (const ByteVector& junk : {ByteVector{}, ByteVector(3, 0xFF), ByteVector(200, 0x93)}) {
        QVERIFY(vexorin::files::WriteBytes(path, junk, &error));
        QVERIFY(!g.LoadSettings(path, &error));
        QVERIFY(!error.empty());
    }
    // A blob whose Graph record has the wrong size.
    PropertyBlob b;
    b.writeBytes(u16("Graph"), ByteVector(10));
    QVERIFY(vexorin::files::WriteBytes(path, b.serialize(), &error));
    QVERIFY(!g.LoadSettings(path, &error));
    QCOMPARE(g.settings().FixedPoints, 20);  // untouched
}

void GraphControlTest::stateRoundTrip()
{
    GraphControl g(GraphSettings::mainWindow());
    g.setAppearance(0);
    GraphControl h;
    std::string error;
    QVERIFY(h.applyState(g.stateBlob(), &error));
    QCOMPARE(h.control().Appearance, std::int16_t(0));
    QCOMPARE(h.settings().MaxValue, 50.0);
    QVERIFY(!h.applyState(ByteVector{1, 2}, &error));
}

QTEST_MAIN(GraphControlTest)
#include "graph_control_test.moc"
