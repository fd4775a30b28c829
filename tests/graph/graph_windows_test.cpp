// The graph frame of the main window, the Graph Test window and the colour pickers.
#include "app/app_core.h"
#include "app/main_window.h"
#include "app/port_selection.h"
#include "app_rig.h"
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/simulator_transport.h"
#include "graph/graph_control.h"
#include "graph/graph_feed.h"
#include "graph/graph_test_window.h"
#include "graph/graph_widget.h"
#include "sensors/sensor_stream.h"
#include "temp_settings.h"
#include "ui/color_picker_widget.h"
#include "ui/message_box.h"
#include "voice/recording_speech_out.h"
#include "widget_helpers.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QScrollBar>
#include <QTest>

class GraphWindowsTest : public QObject {
    Q_OBJECT
private slots:
    void init() { MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes << t; }); }
    void cleanup() { MessageBoxes::setPresenter({}); boxes.clear(); }
    void graphRunsOnTheSimulator();
    void presetTwoShowsTheSine();
    void graphTestWindowFeeds();
    void colourPickers();

private:
    QStringList boxes;
};

namespace {
// The main window with the graph colours stored, as a user who picked them once has them.
struct App : AppRig {
    App()
    {
        settings.store->WriteSetting(QStringLiteral("Graph1BarColor"), QStringLiteral("BarColor"), QString::number(0x00FF8080));
        settings.store->WriteSetting(QStringLiteral("Graph1PointColor"), QStringLiteral("PointColor"), QString::number(0x00FFFF80));
        open();
    }
};
}  // namespace

void GraphWindowsTest::graphRunsOnTheSimulator()
{
    App a;
    QCOMPARE(a.core.graph().settings().BarColor, 0x00FF8080u);  // from the settings at start
    QCOMPARE(a.core.graph().points().Count(), 1);               // the first point
    a.core.portSelection().PickPort(1);
    a.core.session().ConnectDisconnect();
    QTRY_COMPARE(a.core.session().ConnectedLabel(), QStringLiteral("Connected"));
    auto& ecu = qobject_cast<SimulatorTransport*>(a.core.link().transport())->ecu();
    ecu.forcePhase(vexorin::sim::EnginePhase::Drive);
    ecu.advance(10000);
    a.core.stream().MonitorOnOff();
    findButton(a.window.get(), QStringLiteral("Speed"))->click();
    findButton(a.window.get(), QStringLiteral("Graph ON/OFF"))->click();
    QCOMPARE(a.window->findChild<QLabel*>(QStringLiteral("GraphOnLabel"))->text(), QStringLiteral("ON"));
    QCOMPARE(a.window->findChild<QLabel*>(QStringLiteral("GraphSensorLabel"))->text(), QStringLiteral("Speed Sensor"));
    for (int i = 0; i < 70; ++i) {
        if (i % 2 == 0) {
            ecu.advance(100);
            a.core.stream().GetAllSensorDataTimerTick();
        }
        a.core.graphFeed().GraphSyncTimerTick();
    }
    QCOMPARE(a.core.graph().points().Count(), 60);
    QVERIFY(a.core.graph().points().Item(60).Value > 0);
    saveShot(a.window.get(), QStringLiteral("main-window-graph.png"));
}

void GraphWindowsTest::presetTwoShowsTheSine()
{
    App a;
    a.core.graphFeed().GraphPreset(2);
    GraphWidget* w = a.window->graphWidget();
    QVERIFY(w);
    QCOMPARE(a.core.graph().points().Count(), 721);
    saveShot(w, QStringLiteral("graph-preset-2.png"));
    // The line crosses the middle of the picture at the start.
    const auto& g = a.core.graph().geometry();
    QCOMPARE(g.y[0], g.Y0);
}

void GraphWindowsTest::graphTestWindowFeeds()
{
    App a;
    a.window->action(QStringLiteral("GraphTest"))->trigger();
    GraphTestWindow* t = a.window->graphTestWindow();
    QVERIFY(t && t->isVisible());
    QCOMPARE(t->windowTitle(), QStringLiteral("Graph Test"));
    QCOMPARE(t->button()->text(), QStringLiteral("Graph Test On/Off"));
    t->button()->click();
    QCOMPARE(t->scrollBar()->maximum(), 50);
    QVERIFY(a.core.graphFeed().tmrAddPoint.isActive());
    t->scrollBar()->setValue(20);
    a.core.graphFeed().tmrAddPointTick();
    QCOMPARE(a.core.graph().points().Item(a.core.graph().points().Count()).Value, 20.0);
    t->close();
    QVERIFY(!a.core.graphFeed().tmrAddPoint.isActive());
    QVERIFY(boxes.isEmpty());
}

void GraphWindowsTest::colourPickers()
{
    App a;
    ColorPicker* data = nullptr;
    for (auto* p : a.window->findChildren<ColorPicker*>())
        if (p->text() == QLatin1String("Data Color"))
            data = p;
    QVERIFY(data);
    QCOMPARE(data->accessibleName(), QStringLiteral("Data Color"));
    data->pick(8);  // pure red
    QCOMPARE(a.core.graph().settings().BarColor, ColorPicker::kPalette[8]);
    QCOMPARE(ColorPicker::kPalette.size(), std::size_t(48));
    bool onTop = true;
    data->setStayOnTopQuery([&] { return onTop; });
    data->openCustomDialog();
    QCOMPARE(boxes, QStringList{QStringLiteral("Stay on Top in options must be off to use this function.")});
    // The Show Points box and the menu items reach the graph.
    a.window->findChild<QCheckBox*>()->click();
    QVERIFY(!a.core.graph().settings().ShowPoints);
    a.window->action(QStringLiteral("ShowLines"))->trigger();
    QVERIFY(!a.core.graph().settings().ShowLines);
    QVERIFY(!a.window->action(QStringLiteral("ShowLines"))->isChecked());
    QVERIFY(a.window->action(QStringLiteral("BarStyle")));
    QVERIFY(a.window->action(QStringLiteral("LineStyle")));
}

QTEST_MAIN(GraphWindowsTest)
#include "graph_windows_test.moc"
