// The feed of Graph1 on the main window: the chosen sensor's bar every 50 ms
// while the graph is on, the Graph Test window's scroll bar, the controls
// around the graph and the presets.
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

class ConsultSession;
class GraphControl;
class SensorDisplays;

class GraphFeed : public QObject {
    Q_OBJECT
public:
    GraphFeed(GraphControl& graph, SensorDisplays& displays, ConsultSession& session, QObject* parent = nullptr);

    QTimer GraphSyncTimer;
    QTimer tmrAddPoint;
    QString GraphOnLabel() const { return graphOn_; }
    int pointValue() const { return pointValue_; }
    bool showLinesChecked() const { return showLines_; }
    bool threeDChecked() const { return threeD_; }

    // The common insertion: one point, one repaint.
    void AddPoint();
    // At start: the first point, from the hidden scroll bar.
    void addFirstPoint(int hiddenScrollValue = 0);
    void GraphSyncTimerTick();
    void tmrAddPointTick();

    // "Graph ON/OFF", "Show Points", the menu items "Show Lines" and "3 D".
    void GraphOnOff();
    void ShowPointsClicked();
    void ToggleShowLines();
    void ToggleThreeD();
    void GraphPreset(int mode);

    // The Graph Test window.
    bool graphTestVisible() const { return testVisible_; }
    int graphTestMaximum() const { return testMax_; }
    int graphTestValue() const { return testValue_; }
    void showGraphTest();
    void GraphTestButton();
    void GraphTestScroll(int value);
    void GraphTestClosed();
    // Monitor On/Off: tmrAddPoint off and the window closed.
    void stopGraphTest();

    // A sensor button: the graph's vertical maximum and the test scroll range follow its bar.
    void setGraphMaximum(int maximum);

signals:
    void changed();

private:
    bool graphTestRefused();

    GraphControl& graph_;
    SensorDisplays& displays_;
    ConsultSession& session_;
    QString graphOn_ = QStringLiteral("OFF");
    int pointValue_ = 0;
    bool showLines_ = true;
    bool threeD_ = true;
    bool testVisible_ = false;
    int testMax_ = 100;
    int testValue_ = 0;
};
