// "Log Chart - <file name>": the series a log gives, the check boxes, zoom
// and pan by wheel, drag and keys, the readout, and the link with the Log
// Player both ways, reached from Tools and from the player's "Chart".
#include "answered_dialogs.h"
#include "app_rig.h"
#include "log_text.h"
#include "logging/log_chart.h"
#include "logging/log_chart_window.h"
#include "logging/log_player.h"
#include "logging/log_player_window.h"
#include "ui/common_dialog.h"
#include "ui/message_box.h"
#include "widget_helpers.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleValueInterface>
#include <QChart>
#include <QChartView>
#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QLineSeries>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QValueAxis>
#include <QTest>

namespace {
// Frame i: RPM 1000 + 100 i, the rest fixed.
QByteArray frame(int i)
{
    QList<QByteArray> values = kLogValues;
    values[1] = " " + QByteArray::number(1000 + 100 * i) + " ";
    return logFrame(QByteArray("11/22/202619:28:") + QByteArray::number(10 + i % 50), values);
}

QString writeLog(const QTemporaryDir& dir, const QString& name, int frames, const QByteArray& tail = {})
{
    const QString path = dir.filePath(name);
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return {};
    for (int i = 0; i < frames; ++i)
        f.write(frame(i));
    f.write(tail);
    return path;
}

QList<QLineSeries*> sensorSeries(QChartView* view)
{
    QList<QLineSeries*> out;
    for (QAbstractSeries* s : view->chart()->series())
        if (s->objectName().startsWith(QStringLiteral("Series")))
            out << static_cast<QLineSeries*>(s);
    return out;
}

// Where frame `f` lies on the chart's viewport.
QPoint pointOf(QChartView* view, double f)
{
    QChart* chart = view->chart();
    const QRectF area = chart->plotArea();
    const auto* axis = static_cast<QValueAxis*>(chart->axes(Qt::Horizontal).first());
    const double x = area.left() + (f - axis->min()) / (axis->max() - axis->min()) * area.width();
    return view->mapFromScene(chart->mapToScene(QPointF(x, area.center().y())));
}
}  // namespace

class LogChartTest : public QObject {
    Q_OBJECT
private slots:
    void init() { dialogs.install(); }
    void cleanup() { dialogs.uninstall(); }

    void seriesComeFromTheLog();
    void checkBoxesChooseTheLanes();
    void wheelDragAndKeysZoomAndPan();
    void readoutNamesTheFrameUnderThePointer();
    void badEmptyAndMissingLogs();
    void cursorFollowsThePlayerAndAClickMovesIt();
    void playersChartButtonOpensItsLog();
    void frameBoxAndShowButtonWorkForAnyInput();

private:
    AnsweredDialogs dialogs;
    QStringList& boxes = dialogs.boxes;
    QStringList& answers = dialogs.answers;
    QStringList& requests = dialogs.requests;
    QTemporaryDir dir;
};

void LogChartTest::seriesComeFromTheLog()
{
    const QString log = writeLog(dir, QStringLiteral("drive.log"), 40);
    LogChartWindow w;
    QVERIFY(w.load(log));
    w.show();
    QCOMPARE(w.windowTitle(), QStringLiteral("Log Chart - drive.log"));
    auto* view = static_cast<QChartView*>(w.plot());
    const QList<QLineSeries*> series = sensorSeries(view);
    QCOMPARE(series.size(), 6);  // RPM, TPS, MAF, O2 (L), INJ, Timing
    QCOMPARE(series[0]->objectName(), QStringLiteral("SeriesRPM"));
    QCOMPARE(series[0]->name(), QStringLiteral("RPM 1000 to 4900 rpm"));
    QCOMPARE(series[0]->count(), 40);  // few frames: every one a point
    // RPM rises frame by frame: its points climb through its lane.
    QVERIFY(series[0]->at(39).y() > series[0]->at(0).y());
    QCOMPARE(series[0]->at(0).x(), 1.0);
    QCOMPARE(series[0]->at(39).x(), 40.0);
    QCOMPARE(w.chart().data().frames(), 40);
}

void LogChartTest::checkBoxesChooseTheLanes()
{
    LogChartWindow w;
    QVERIFY(w.load(writeLog(dir, QStringLiteral("lanes.log"), 10)));
    QStringList captions;
    for (int k : LogChart::checkOrder())
        captions << w.checkBox(k)->text();
    QCOMPARE(captions, (QStringList{"Speed", "RPM", "TPS", "MAF", "O2 (L)", "O2 (R)", "A/F", "INJ", "Timing", "IACV",
                                    "Water", "Fuel", "Batt"}));
    auto* view = static_cast<QChartView*>(w.plot());
    w.checkBox(0)->click();  // Speed
    QCOMPARE(sensorSeries(view).size(), 7);
    QCOMPARE(sensorSeries(view).first()->objectName(), QStringLiteral("SeriesSpeed"));
    QTest::keyClick(w.checkBox(1), Qt::Key_Space);  // RPM off by the keyboard
    QCOMPARE(sensorSeries(view).size(), 6);
    QVERIFY(!w.chart().ticked(1));
    for (int k = 0; k < 13; ++k)
        w.checkBox(k)->setChecked(false);
    QVERIFY(sensorSeries(view).isEmpty());
}

void LogChartTest::wheelDragAndKeysZoomAndPan()
{
    LogChartWindow w;
    QVERIFY(w.load(writeLog(dir, QStringLiteral("zoom.log"), 1000)));
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    auto* view = static_cast<QChartView*>(w.plot());
    QCOMPARE(w.chart().range().from, 1.0);
    QCOMPARE(w.chart().range().to, 1000.0);

    // The wheel zooms about the pointer.
    const QPoint at = pointOf(view, 250);
    QWheelEvent wheel(at, view->viewport()->mapToGlobal(at), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(view->viewport(), &wheel);
    QVERIFY(w.chart().range().span() < 999 * 0.81);
    QVERIFY(qAbs(w.chart().range().from + (250 - 1) * 0.8 - 250) < 2);
    // Fewer frames on view: the series shows them all.
    QVERIFY(sensorSeries(view).first()->count() > 0);

    // A drag to the right shows earlier frames; it is no click.
    const double from = w.chart().range().from;
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, pointOf(view, 500));
    QTest::mouseMove(view->viewport(), pointOf(view, 500) + QPoint(60, 0));
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, pointOf(view, 500) + QPoint(60, 0));
    QVERIFY(w.chart().range().from < from);
    QCOMPARE(w.chart().probe(), -1);  // nothing was chosen

    // Keys: 0 shows all, + and - zoom, Shift+Right pans.
    view->setFocus();
    QTest::keyClick(view, Qt::Key_0);
    QCOMPARE(w.chart().range().span(), 999.0);
    QTest::keyClick(view, Qt::Key_Plus);
    QCOMPARE(w.chart().range().span(), 499.5);
    QTest::keyClick(view, Qt::Key_Right, Qt::ShiftModifier);
    QVERIFY(w.chart().range().from > 1);
    QTest::keyClick(view, Qt::Key_Minus);
    QCOMPARE(w.chart().range().span(), 999.0);
    // The buttons do the same for the mouse alone.
    findButton(&w, QStringLiteral("Zoom In"))->click();
    QCOMPARE(w.chart().range().span(), 499.5);
    findButton(&w, QStringLiteral("Show All"))->click();
    QCOMPARE(w.chart().range().span(), 999.0);
}

void LogChartTest::readoutNamesTheFrameUnderThePointer()
{
    LogChartWindow w;
    QVERIFY(w.load(writeLog(dir, QStringLiteral("readout.log"), 20)));
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    auto* view = static_cast<QChartView*>(w.plot());
    QCOMPARE(w.readout()->text(), QStringLiteral("Point at the chart to read a frame."));
    QTest::mouseMove(view->viewport(), pointOf(view, 5));
    QCOMPARE(w.readout()->text(),
             QStringLiteral("Frame 5: RPM 1400, TPS 0.46, MAF 1.01, O2 (L) 0.45, INJ 2.5, Timing -5"));
    // The arrows step the readout's frame.
    view->setFocus();
    QTest::keyClick(view, Qt::Key_Right);
    QVERIFY(w.readout()->text().startsWith(QStringLiteral("Frame 6: RPM 1500,")));
    QTest::keyClick(view, Qt::Key_End);
    QVERIFY(w.readout()->text().startsWith(QStringLiteral("Frame 20: RPM 2900,")));
    w.checkBox(1)->setChecked(false);
    QCOMPARE(w.readout()->text(), QStringLiteral("Frame 20: TPS 0.46, MAF 1.01, O2 (L) 0.45, INJ 2.5, Timing -5"));
}

void LogChartTest::badEmptyAndMissingLogs()
{
    LogChartWindow bad;
    QVERIFY(bad.load(writeLog(dir, QStringLiteral("bad.log"), 3, "junk\r\n11/22/202619:28:59\r\n 5 \r\n")));
    QCOMPARE(bad.chart().data().frames(), 3);
    auto* note = bad.findChild<QLabel*>(QStringLiteral("UnreadableNote"));
    QCOMPARE(note->text(), QStringLiteral("2 frames could not be read."));
    QVERIFY(!note->isHidden());

    LogChartWindow empty;
    QVERIFY(empty.load(writeLog(dir, QStringLiteral("empty.log"), 0)));
    QCOMPARE(empty.readout()->text(), QStringLiteral("The log holds no frames."));
    QVERIFY(sensorSeries(static_cast<QChartView*>(empty.plot())).size() == 6);
    QTest::keyClick(empty.plot(), Qt::Key_Right);  // nothing to step to, and no harm
    QTest::keyClick(empty.plot(), Qt::Key_Plus);

    LogChartWindow missing;
    QVERIFY(!missing.load(dir.filePath(QStringLiteral("none.log"))));
    QCOMPARE(boxes.size(), 1);
    QVERIFY(boxes.first().startsWith(QStringLiteral("The log file could not be opened: ")));
}

void LogChartTest::cursorFollowsThePlayerAndAClickMovesIt()
{
    AppRig rig;
    rig.open();
    const QString log = writeLog(dir, QStringLiteral("linked.log"), 30);
    answers << log;
    rig.window->findChild<QAction*>(QStringLiteral("LogChart"))->trigger();
    QCOMPARE(requests, QStringList{QStringLiteral("open .log Log Files (*.log)|*.log")});
    LogChartWindow* chart = rig.window->logChartWindow();
    QVERIFY(chart);
    QVERIFY(QTest::qWaitForWindowExposed(chart));
    QCOMPARE(chart->chart().cursor(), -1);  // the player shows no log yet

    // The player loads the log: the cursor stands on its frame and follows it.
    LogPlayerWindow* playerWindow = rig.window->logPlayerWindow();
    QVERIFY(playerWindow);
    LogPlayer& player = playerWindow->player();
    player.loadChosen(log);
    QCOMPARE(chart->chart().cursor(), 0);
    player.ReadNext();
    player.ReadNext();
    QCOMPARE(chart->chart().cursor(), 2);
    QCOMPARE(chart->readout()->text().left(8), QStringLiteral("Frame 3:"));

    // A click on frame 12 moves the player there; its labels show that frame.
    auto* view = static_cast<QChartView*>(chart->plot());
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, pointOf(view, 12));
    QCOMPARE(player.label(15), QStringLiteral(" 2100 "));
    QCOMPARE(playerWindow->valueLabel(15)->text(), QStringLiteral(" 2100 "));
    QCOMPARE(player.positionBox(), QStringLiteral("168"));
    QCOMPARE(chart->chart().cursor(), 11);
    QVERIFY(playerWindow->isVisible());
    // The player steps on from there.
    player.ReadNext();
    QCOMPARE(player.label(15), QStringLiteral(" 2200 "));
    QCOMPARE(chart->chart().cursor(), 12);

    // Enter on the keyboard's frame does the same.
    view->setFocus();
    QTest::keyClick(view, Qt::Key_Home);
    QTest::keyClick(view, Qt::Key_Enter);
    QCOMPARE(player.label(15), QStringLiteral(" 1000 "));
    QCOMPARE(chart->chart().cursor(), 0);

    // Another log in the player: the cursor goes, and a click brings this log back.
    const QString other = writeLog(dir, QStringLiteral("other.log"), 5);
    player.loadChosen(other);
    QCOMPARE(chart->chart().cursor(), -1);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, pointOf(view, 20));
    QCOMPARE(player.pathBox(), log);
    QCOMPARE(player.label(15), QStringLiteral(" 2900 "));
    QCOMPARE(chart->chart().cursor(), 19);

    // Tools, Log Chart for the same log raises the same window.
    answers << log;
    rig.window->findChild<QAction*>(QStringLiteral("LogChart"))->trigger();
    QCOMPARE(rig.window->windows().all(WindowRegistry::Kind::LogChart).size(), 1);
    answers << QString();  // cancelled: no window
    rig.window->findChild<QAction*>(QStringLiteral("LogChart"))->trigger();
    QCOMPARE(rig.window->windows().all(WindowRegistry::Kind::LogChart).size(), 1);
}

void LogChartTest::playersChartButtonOpensItsLog()
{
    AppRig rig;
    rig.open();
    rig.window->findChild<QAction*>(QStringLiteral("LogPlayer"))->trigger();
    LogPlayerWindow* playerWindow = rig.window->logPlayerWindow();
    QPushButton* chartButton = findButton(playerWindow, QStringLiteral("Chart"));
    QVERIFY(chartButton);
    QVERIFY(!chartButton->isEnabled());
    const QString log = writeLog(dir, QStringLiteral("button.log"), 8);
    playerWindow->player().loadChosen(log);
    playerWindow->player().ReadNext();
    chartButton->click();
    LogChartWindow* chart = rig.window->logChartWindow();
    QVERIFY(chart);
    QCOMPARE(chart->windowTitle(), QStringLiteral("Log Chart - button.log"));
    QCOMPARE(chart->chart().cursor(), 1);
    QVERIFY(requests.isEmpty());  // no dialog: the player's log
}

void LogChartTest::frameBoxAndShowButtonWorkForAnyInput()
{
    AppRig rig;
    rig.open();
    const QString log = writeLog(dir, QStringLiteral("any-input.log"), 30);
    LogChartWindow* chart = rig.window->openLogChart(log);
    QVERIFY(chart);
    QSpinBox* box = chart->frameBox();
    QCOMPARE(box->maximum(), 30);
    QCOMPARE(box->accessibleName(), QStringLiteral("Frame"));

    // A screen reader sets the frame and presses the button.
    QAccessibleInterface* boxAccess = QAccessible::queryAccessibleInterface(box);
    QVERIFY(boxAccess && boxAccess->valueInterface());
    boxAccess->valueInterface()->setCurrentValue(7);
    QVERIFY(chart->readout()->text().startsWith(QStringLiteral("Frame 7: RPM 1600,")));
    QPushButton* show = findButton(chart, QStringLiteral("Show in Log Player"));
    QVERIFY(show);
    QAccessibleInterface* showAccess = QAccessible::queryAccessibleInterface(show);
    showAccess->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    LogPlayer& player = rig.window->logPlayerWindow()->player();
    QTRY_COMPARE(player.label(15), QStringLiteral(" 1600 "));  // an accessible press is an animated click
    QCOMPARE(chart->chart().cursor(), 6);

    // The keyboard types a frame; the mouse presses the button.
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, QStringLiteral("25"));
    QVERIFY(chart->readout()->text().startsWith(QStringLiteral("Frame 25: RPM 3400,")));
    QVERIFY(chart->chart().range().from <= 25 && chart->chart().range().to >= 25);
    QTest::mouseClick(show, Qt::LeftButton);
    QCOMPARE(player.label(15), QStringLiteral(" 3400 "));
    // The box follows the keys on the chart.
    QTest::keyClick(chart->plot(), Qt::Key_Left);
    QCOMPARE(box->value(), 24);
}

QTEST_MAIN(LogChartTest)
#include "log_chart_test.moc"
