#include "graph/graph_feed.h"

#include "consult/consult_session.h"
#include "graph/graph_control.h"
#include "sensors/sensor_displays.h"

#include <cmath>

using namespace vexorin::sensors;
using vexorin::graph::GraphSettings;

namespace {
// SelectedSensor words and the bar each feeds from, in the order they are tested.
struct FeedWord {
    const char* selected;
    SensorId bar;
};
constexpr FeedWord kFeedWords[] = {
    {"Speed", SensorId::Speed}, {"RPM", SensorId::RPM},       {"TPS", SensorId::TPS},
    {"MAF", SensorId::MAF},     {"O2 (L)", SensorId::O2L},    {"O2 (R)", SensorId::O2R},
    {"A/F", SensorId::AF},      {"Injector", SensorId::INJ},  {"Timing", SensorId::Timing},
    {"IACV", SensorId::IACV},   {"Water", SensorId::Water},   {"Fuel", SensorId::Fuel},
    {"Battery", SensorId::Battery},
};
}  // namespace

GraphFeed::GraphFeed(GraphControl& graph, SensorDisplays& displays, ConsultSession& session, QObject* parent)
    : QObject(parent), graph_(graph), displays_(displays), session_(session)
{
    GraphSyncTimer.setInterval(50);
    tmrAddPoint.setInterval(50);
    connect(&GraphSyncTimer, &QTimer::timeout, this, &GraphFeed::GraphSyncTimerTick);
    connect(&tmrAddPoint, &QTimer::timeout, this, &GraphFeed::tmrAddPointTick);
}

void GraphFeed::AddPoint()
{
    const bool redraw = graph_.Redraw();
    graph_.setRedraw(false);
    graph_.points().Add(pointValue_);
    graph_.setRedraw(redraw);
}

void GraphFeed::addFirstPoint(int hiddenScrollValue)
{
    pointValue_ = hiddenScrollValue;
    AddPoint();
}

void GraphFeed::GraphSyncTimerTick()
{
    const QString selected = displays_.selectedSensor();
    for (const FeedWord& w : kFeedWords) {
        if (selected == QLatin1String(w.selected)) {
            pointValue_ = displays_.bar(w.bar);
            break;
        }
    }
    AddPoint();
}

void GraphFeed::tmrAddPointTick()
{
    pointValue_ = testValue_;
    AddPoint();
}

void GraphFeed::GraphOnOff()
{
    if (GraphSyncTimer.isActive()) {
        GraphSyncTimer.stop();
        graphOn_ = QStringLiteral("OFF");
    } else {
        GraphSyncTimer.start();
        graphOn_ = QStringLiteral("ON");
    }
    emit changed();
}

void GraphFeed::ShowPointsClicked()
{
    graph_.setShowPoints(!graph_.settings().ShowPoints);
    emit changed();
}

void GraphFeed::ToggleShowLines()
{
    showLines_ = !showLines_;
    graph_.setShowLines(showLines_);
    emit changed();
}

void GraphFeed::ToggleThreeD()
{
    threeD_ = !threeD_;
    graph_.setAppearance(threeD_ ? 1 : 0);
    emit changed();
}

void GraphFeed::GraphPreset(int mode)
{
    graph_.setRedraw(false);
    graph_.points().Clear();
    if (mode > 6) {
        graph_.setRedraw(true);
        return;
    }
    GraphSettings s = graph_.settings();
    const auto flags = [&s](bool grid, bool axis, bool points, bool bars, bool lines) {
        s.ShowGrid = grid;
        s.ShowAxis = axis;
        s.ShowPoints = points;
        s.ShowBars = bars;
        s.ShowLines = lines;
        s.FadeIn = false;
    };
    switch (mode) {
    case 0:
        s.FixedPoints = 60;
        s.BarWidth = 1.0f;
        flags(false, false, false, true, false);
        s.MaxValue = 200;
        s.MinValue = 0;
        s.YGridInc = 20;
        s.XGridInc = 1;
        s.BackColor = 0x00404040;
        s.BarColor = 0x00FF8080;
        break;
    case 1:
        s.FixedPoints = 60;
        s.BarWidth = 0.8f;
        flags(true, false, false, false, true);
        s.MaxValue = 100;
        s.MinValue = 0;
        s.YGridInc = 20;
        s.XGridInc = 1;
        s.BackColor = 0;
        break;
    case 2:
        s.FixedPoints = 0;
        s.BarWidth = 0.8f;
        flags(true, true, true, false, true);
        s.MaxValue = 1.2;
        s.MinValue = -1.2;
        s.YGridInc = 0.5;
        s.XGridInc = 90;
        s.AxisColor = 0;
        break;
    default:
        break;
    }
    graph_.setSettings(s);
    if (mode == 2)
        for (int i = 0; i <= 720; ++i)
            graph_.points().Add(std::sin(2 * 3.14 * i / 360));
    graph_.setRedraw(true);
    emit changed();
}

void GraphFeed::showGraphTest()
{
    testVisible_ = true;
    emit changed();
}

bool GraphFeed::graphTestRefused()
{
    if (session_.refuses(LinkOwner::MonitoringOff))
        return true;
    if (graphOn_ == QLatin1String("ON")) {
        emit session_.message(QStringLiteral("Graph must be off."));
        return true;
    }
    return false;
}

void GraphFeed::GraphTestButton()
{
    testMax_ = int(std::lround(graph_.settings().MaxValue));
    emit changed();
    if (graphTestRefused())
        return;
    if (tmrAddPoint.isActive())
        tmrAddPoint.stop();
    else
        tmrAddPoint.start();
}

void GraphFeed::GraphTestScroll(int value)
{
    testValue_ = value;
    graphTestRefused();
}

void GraphFeed::GraphTestClosed()
{
    testVisible_ = false;
    tmrAddPoint.stop();
    emit changed();
}

void GraphFeed::stopGraphTest()
{
    tmrAddPoint.stop();
    if (testVisible_)
        GraphTestClosed();
}

void GraphFeed::setGraphMaximum(int maximum)
{
    graph_.setMaxValue(maximum);
    testMax_ = maximum;
    emit changed();
}
