#include "graph/graph_control.h"
#include "graph/graph_feed.h"
#include "monitor_rig.h"

#include <QTest>
#include <cmath>

using vexorin::graph::GraphSettings;
using vexorin::sensors::SensorId;

namespace {
struct FeedRig : MonitorRig {
    FeedRig() : graph(GraphSettings::mainWindow()), feed(graph, displays, session)
    {
        graph.resize(QSize(400, 80));
        selection.setGraphMaximumHook([this](int m) { feed.setGraphMaximum(m); });
        stream.setGraphTestStopHook([this] { feed.stopGraphTest(); });
    }
    GraphControl graph;
    GraphFeed feed;
};
}  // namespace

class GraphFeedTest : public QObject {
    Q_OBJECT
private slots:
    void syncTickAddsTheChosenBar();
    void unmatchedSensorKeepsTheValue();
    void speedGraphsTheBarsWholeNumber();
    void graphOnOff();
    void graphAndTestFeedTogether();
    void graphTestChecks();
    void closingOrMonitoringStopsTheTest();
    void showPointsLinesAndThreeD();
    void presets();
    void sensorButtonSetsTheMaximum();
    void firstPointAtStart();
};

void GraphFeedTest::syncTickAddsTheChosenBar()
{
    FeedRig r;
    r.displays.setBar(SensorId::Water, 176);
    r.selection.SelectSensor(SensorId::Water);
    r.feed.GraphSyncTimerTick();
    QCOMPARE(r.feed.pointValue(), 176);
    QCOMPARE(r.graph.points().Item(r.graph.points().Count()).Value, 176.0);
    r.selection.SelectSensor(SensorId::INJ);  // SelectedSensor "Injector"
    r.displays.setBar(SensorId::INJ, 3);
    r.feed.GraphSyncTimerTick();
    QCOMPARE(r.feed.pointValue(), 3);
    QCOMPARE(r.feed.GraphSyncTimer.interval(), 50);
    QCOMPARE(r.feed.tmrAddPoint.interval(), 50);
}

void GraphFeedTest::unmatchedSensorKeepsTheValue()
{
    FeedRig r;
    r.displays.setBar(SensorId::Speed, 40);
    r.feed.GraphSyncTimerTick();
    r.displays.setSelectedSensor(QStringLiteral("Nothing"));
    r.displays.setBar(SensorId::Speed, 90);
    r.feed.GraphSyncTimerTick();
    r.feed.GraphSyncTimerTick();
    const int n = r.graph.points().Count();
    QCOMPARE(r.graph.points().Item(n).Value, 40.0);
    QCOMPARE(r.graph.points().Item(n - 1).Value, 40.0);  // a flat line
}

void GraphFeedTest::speedGraphsTheBarsWholeNumber()
{
    FeedRig r;
    r.connect();
    FrameData d = typicalFrame();
    d[0] = 50;  // 50 x 1.24 = 62 exactly; take 62.4 from the bar instead
    r.setFrame(d);
    r.stream.ReadAllSensors();
    r.displays.setLabel(SensorId::Speed, QStringLiteral("62.4"));
    r.displays.setBar(SensorId::Speed, 62);
    r.feed.GraphSyncTimerTick();
    QCOMPARE(r.graph.points().Item(r.graph.points().Count()).Value, 62.0);
}

void GraphFeedTest::graphOnOff()
{
    FeedRig r;
    QCOMPARE(r.feed.GraphOnLabel(), QStringLiteral("OFF"));
    r.feed.GraphOnOff();
    QVERIFY(r.feed.GraphSyncTimer.isActive());
    QCOMPARE(r.feed.GraphOnLabel(), QStringLiteral("ON"));
    r.feed.GraphOnOff();
    QVERIFY(!r.feed.GraphSyncTimer.isActive());
    QCOMPARE(r.feed.GraphOnLabel(), QStringLiteral("OFF"));
}

void GraphFeedTest::graphAndTestFeedTogether()
{
    FeedRig r;
    r.feed.showGraphTest();
    r.feed.GraphTestButton();
    QVERIFY(r.feed.tmrAddPoint.isActive());
    r.feed.GraphOnOff();  // the window's checks block only the start of the test
    QVERIFY(r.feed.GraphSyncTimer.isActive());
    QVERIFY(r.feed.tmrAddPoint.isActive());
    r.feed.GraphTestScroll(33);
    QCOMPARE(r.messages, QStringList{QStringLiteral("Graph must be off.")});
    r.feed.tmrAddPointTick();
    QCOMPARE(r.feed.pointValue(), 33);
}

void GraphFeedTest::graphTestChecks()
{
    FeedRig r;
    r.connect();
    r.stream.MonitorOnOff();
    r.feed.showGraphTest();
    r.feed.GraphTestButton();
    QCOMPARE(r.feed.graphTestMaximum(), 50);  // set before the checks
    QCOMPARE(r.messages, QStringList{QStringLiteral("Sensor monitoring must be off.")});
    QVERIFY(!r.feed.tmrAddPoint.isActive());
    r.feed.GraphTestScroll(10);
    QCOMPARE(r.messages.size(), 2);
    r.stream.MonitorOnOff();
    r.messages.clear();
    r.feed.GraphOnOff();
    r.feed.GraphTestButton();
    QCOMPARE(r.messages, QStringList{QStringLiteral("Graph must be off.")});
    r.feed.GraphOnOff();
    r.messages.clear();
    r.feed.GraphTestButton();
    QVERIFY(r.messages.isEmpty());
    QVERIFY(r.feed.tmrAddPoint.isActive());
    r.feed.GraphTestButton();
    QVERIFY(!r.feed.tmrAddPoint.isActive());
}

void GraphFeedTest::closingOrMonitoringStopsTheTest()
{
    FeedRig r;
    r.feed.showGraphTest();
    r.feed.GraphTestButton();
    r.feed.GraphTestClosed();
    QVERIFY(!r.feed.tmrAddPoint.isActive());
    QVERIFY(!r.feed.graphTestVisible());
    r.connect();
    r.feed.showGraphTest();
    r.feed.GraphTestButton();
    r.stream.MonitorOnOff();
    QVERIFY(!r.feed.tmrAddPoint.isActive());
    QVERIFY(!r.feed.graphTestVisible());
}

void GraphFeedTest::showPointsLinesAndThreeD()
{
    FeedRig r;
    QVERIFY(r.graph.settings().ShowPoints);
    r.feed.ShowPointsClicked();
    QVERIFY(!r.graph.settings().ShowPoints);
    QVERIFY(r.feed.showLinesChecked());
    r.feed.ToggleShowLines();
    QVERIFY(!r.feed.showLinesChecked());
    QVERIFY(!r.graph.settings().ShowLines);
    QVERIFY(r.feed.threeDChecked());
    r.feed.ToggleThreeD();
    QCOMPARE(r.graph.control().Appearance, std::int16_t(0));
    r.feed.ToggleThreeD();
    QCOMPARE(r.graph.control().Appearance, std::int16_t(1));
}

void GraphFeedTest::presets()
{
    FeedRig r;
    r.graph.points().Add(5);
    r.feed.GraphPreset(0);
    QCOMPARE(r.graph.points().Count(), 0);
    QCOMPARE(r.graph.settings().MaxValue, 200.0);
    QCOMPARE(r.graph.settings().BackColor, 0x00404040u);
    QVERIFY(r.graph.settings().ShowBars && !r.graph.settings().ShowLines);
    QVERIFY(r.graph.Redraw());

    r.feed.GraphPreset(1);
    QCOMPARE(r.graph.settings().FixedPoints, 60);
    QVERIFY(r.graph.settings().ShowGrid && !r.graph.settings().ShowBars && r.graph.settings().ShowLines);
    QCOMPARE(r.graph.settings().YGridInc, 20.0);
    QCOMPARE(r.graph.settings().BackColor, 0u);

    r.feed.GraphPreset(2);
    QCOMPARE(r.graph.points().Count(), 721);
    QCOMPARE(r.graph.settings().FixedPoints, 0);
    QCOMPARE(r.graph.settings().MinValue, -1.2);
    QCOMPARE(r.graph.settings().XGridInc, 90);
    QCOMPARE(r.graph.points().Item(91).Value, std::sin(2 * 3.14 * 90 / 360));  // 3.14, as it stands
    QVERIFY(r.graph.points().Item(91).Value < 1.0);

    const auto before = r.graph.settings().bytes();
    r.feed.GraphPreset(7);
    QCOMPARE(r.graph.points().Count(), 0);
    QVERIFY(r.graph.settings().bytes() == before);
    QVERIFY(r.graph.Redraw());
}

void GraphFeedTest::sensorButtonSetsTheMaximum()
{
    FeedRig r;
    r.selection.SelectSensor(SensorId::RPM);
    QCOMPARE(r.graph.settings().MaxValue, 7000.0);
    QCOMPARE(r.feed.graphTestMaximum(), 7000);
}

void GraphFeedTest::firstPointAtStart()
{
    FeedRig r;
    const int before = r.graph.repaintCount();
    r.feed.addFirstPoint(0);
    QCOMPARE(r.graph.points().Count(), 1);
    QCOMPARE(r.graph.repaintCount(), before + 1);
}

QTEST_MAIN(GraphFeedTest)
#include "graph_feed_test.moc"
