// The Map Viewer window: its tabs, menus, status bar, the red outline of
// edit mode, extra viewers and the close rules, and the monitor refusal.
#include "app_rig.h"
#include "consult/consult_session.h"
#include "rom/map_grid_widget.h"
#include "rom/map_surface_window.h"
#include "rom/map_viewer.h"
#include "rom/map_viewer_window.h"
#include "sensors/sensor_stream.h"
#include "sim/ecu_simulator.h"
#include "ui/binary_files.h"
#include "ui/common_dialog.h"
#include "ui/message_box.h"
#include "widget_helpers.h"

#include <QAction>
#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

class MapViewerWindowTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void layoutMenusAndStatusBar();
    void viewItemsSelectTabs();
    void loadsTheSimulatorRomIntoAllTabs();
    void editModeOutlinesTheSelectedCell();
    void newViewersCountAndExitClosesThemAll();
    void firstViewerIsHiddenByItsCloseBox();
    void monitoringRefusesWhileTheViewerShows();
    void liveTraceIsOneSwitchForTheWindow();
    void closingTheWindowEndsTheTrace();
    void threeDViewButtonOpensTheTabsSurfaceOnce();

private:
    QString writeRom();
    QTemporaryDir dir_;
    QStringList boxes_;
    QStringList answers_;
};

void MapViewerWindowTest::init()
{
    MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes_ << t; });
    mCommonDialog::setAnswerer([this](const mCommonDialog::DialogRequest& req, bool save) {
        if (!save && req.filter != QStringLiteral("BIN Files (*.BIN)|*.bin"))
            return QString();
        return answers_.isEmpty() ? QString() : answers_.takeFirst();
    });
}

void MapViewerWindowTest::cleanup()
{
    MessageBoxes::setPresenter({});
    mCommonDialog::setAnswerer({});
    boxes_.clear();
    answers_.clear();
}

QString MapViewerWindowTest::writeRom()
{
    const auto rom = vexorin::sim::makeSyntheticRom(3);
    const QString path = dir_.filePath(QStringLiteral("sim.bin"));
    vexorin::files::WriteBytes(path.toStdString(), std::vector<std::uint8_t>(rom.begin(), rom.end()), nullptr);
    return path;
}

void MapViewerWindowTest::layoutMenusAndStatusBar()
{
    AppRig app;
    MapViewerWindow w(app.core.session());
    w.show();
    QCOMPARE(w.windowTitle(), QStringLiteral("Vexorin Map Viewer/Editor"));
    QCOMPARE(w.size(), QSize(978, 512));
    QCOMPARE(w.tabs()->count(), 6);
    QCOMPARE(w.tabs()->tabText(0), QStringLiteral("Fuel (High Octane)"));
    QCOMPARE(w.tabs()->tabText(5), QStringLiteral("Timing (Low Octane)"));
    for (const char* name : {"Exit", "DownloadMapData", "LiveTrace", "LoadAllMapsFromBINFile", "OpenNewViewer",
                             "LoadAllECUDataMaps", "FuelMapHighOct", "TimgMapLowOct"})
        QVERIFY2(w.action(QLatin1String(name)), name);
    QCOMPARE(w.action(QStringLiteral("LoadAllMapsFromBINFile"))->text(), QStringLiteral("Load BIN File"));
    QCOMPARE(w.statusPanel()->text(), QStringLiteral("Map Status"));
    QVERIFY(w.progressBar()->isVisible());
    QCOMPARE(w.progressBar()->accessibleName(), QStringLiteral("Progress"));
    for (const char* caption : {"Download Map Data", "Stop Data Flow", "Live Trace", "Clear Matrix", "Save Snapshot",
                                "Load BIN File", "3D View"})
        QVERIFY2(findButton(w.tabs()->widget(0), QLatin1String(caption)), caption);
    // Every tab's "ECU Data" frame has the Activation Byte Test.
    for (int t = 0; t < 6; ++t) {
        QPushButton* activation = findButton(w.tabs()->widget(t), QStringLiteral("Activation Byte Test"));
        QVERIFY(activation);
        QCOMPARE(activation->parentWidget()->property("title").toString(), QStringLiteral("ECU Data"));
    }
    QVERIFY(w.findChild<QCheckBox*>(QStringLiteral("ClearMatrix1")));
    QVERIFY(w.findChild<QCheckBox*>(QStringLiteral("EditMode6")));
    QVERIFY(w.findChild<QLabel*>(QStringLiteral("Viewing3")));
    QVERIFY(w.findChild<QLineEdit*>(QStringLiteral("TextValue")));
    QVERIFY(w.findChild<QLineEdit*>(QStringLiteral("TextValue2")));
    QVERIFY(w.findChild<QFrame*>(QStringLiteral("SpinFrame6")));
    // The grid fits its tab: heading column 1085 twips, the others 510.
    QVERIFY(w.grid(0)->columnWidth(0) >= 72);
    QVERIFY(w.grid(0)->columnWidth(1) >= 34);
    // No figure is cut short.
    const QFontMetrics fm(w.grid(0)->font());
    QVERIFY(w.grid(0)->columnWidth(1) > fm.horizontalAdvance(QStringLiteral("19.60")));
    QVERIFY(w.grid(0)->visibleRegion().boundingRect().width() >= w.grid(0)->sizeHint().width() - 4);
    // Not connected: the download button says so.
    findButton(w.tabs()->widget(0), QStringLiteral("Download Map Data"))->click();
    QCOMPARE(boxes_, QStringList{QStringLiteral("Consult port not connected.")});
    findButton(w.tabs()->widget(3), QStringLiteral("Activation Byte Test"))->click();
    QCOMPARE(boxes_, QStringList(2, QStringLiteral("Consult port not connected.")));
}

void MapViewerWindowTest::viewItemsSelectTabs()
{
    AppRig app;
    MapViewerWindow w(app.core.session());
    w.show();
    w.action(QStringLiteral("TimingMapHighOct"))->trigger();
    QCOMPARE(w.tabs()->currentIndex(), 4);
    QCOMPARE(w.viewer().currentTab(), 4);
    QVERIFY(findButton(w.tabs()->widget(4), QStringLiteral("Download Map Data"))->hasFocus()
            || !QApplication::focusWindow());
    w.action(QStringLiteral("FuelMapLowOct"))->trigger();
    QCOMPARE(w.tabs()->currentIndex(), 2);
}

void MapViewerWindowTest::loadsTheSimulatorRomIntoAllTabs()
{
    AppRig app;
    MapViewerWindow w(app.core.session());
    w.show();
    answers_ << writeRom();
    findButton(w.tabs()->widget(0), QStringLiteral("Load BIN File"))->click();
    QCOMPARE(w.pathBox(3)->text(), dir_.filePath(QStringLiteral("sim.bin")));
    const MapViewer::Tab& tab = w.viewer().tab(0);
    QCOMPARE(w.grid(0)->item(1, 1)->text(), tab.grid.text(1, 1));
    QCOMPARE(w.grid(0)->item(1, 1)->background().color(),
             QColor(tab.grid.color(1, 1)->r, tab.grid.color(1, 1)->g, tab.grid.color(1, 1)->b));
    QCOMPARE(w.grid(5)->item(16, 16)->text(), w.viewer().tab(5).grid.text(16, 16));
    QCOMPARE(w.findChild<QLabel*>(QStringLiteral("Viewing1"))->text(), QStringLiteral("Viewing : BIN File Data"));
    QVERIFY(boxes_.isEmpty());
    saveShot(&w, QStringLiteral("map-viewer-fuel.png"));
    w.tabs()->setCurrentIndex(4);
    saveShot(&w, QStringLiteral("map-viewer-timing.png"));
}

void MapViewerWindowTest::editModeOutlinesTheSelectedCell()
{
    AppRig app;
    MapViewerWindow w(app.core.session());
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    auto* edit = w.findChild<QCheckBox*>(QStringLiteral("EditMode1"));
    edit->click();
    QVERIFY(!edit->isChecked());
    QCOMPARE(boxes_, QStringList{QStringLiteral("File not loaded. Please load a BIN file first.")});

    answers_ << writeRom();
    w.action(QStringLiteral("LoadAllMapsFromBINFile"))->trigger();
    boxes_.clear();
    edit->click();
    QVERIFY(edit->isChecked());
    QCOMPARE(boxes_.size(), 1);
    QVERIFY(w.overlay(0)->isVisible());
    QRect cell = w.grid(0)->cellRect(1, 16, w.tabs()->widget(0));
    QVERIFY(w.overlay(0)->geometry().contains(cell));

    // A click on a cell moves the outline there and shows its values.
    const QRect target = w.grid(0)->visualRect(w.grid(0)->model()->index(6, 9));
    QTest::mouseClick(w.grid(0)->viewport(), Qt::LeftButton, {}, target.center());
    QCOMPARE(w.viewer().tab(0).overlayRow, 6);
    cell = w.grid(0)->cellRect(6, 9, w.tabs()->widget(0));
    QVERIFY(w.overlay(0)->geometry().contains(cell));
    QCOMPARE(w.overlayBox(0)->text(), w.grid(0)->item(6, 9)->text());
    QCOMPARE(w.findChild<QLineEdit*>(QStringLiteral("OrigVal"))->text(), w.grid(0)->item(6, 9)->text());
    QCOMPARE(w.findChild<QLabel*>(QStringLiteral("EditName"))->text(), QStringLiteral("A/F Ratio"));
    const QString before = w.grid(0)->item(6, 9)->text();
    auto* down = w.findChild<QWidget*>(QStringLiteral("SpinButton1"))->findChildren<QToolButton*>().at(1);
    down->click();
    QVERIFY(w.grid(0)->item(6, 9)->text() != before);
    QCOMPARE(w.overlayBox(0)->text(), w.grid(0)->item(6, 9)->text());
    QCOMPARE(w.findChild<QLineEdit*>(QStringLiteral("OrigVal"))->text(), before);
    saveShot(&w, QStringLiteral("map-viewer-edit-mode.png"));

    edit->click();
    QVERIFY(!w.overlay(0)->isVisible());
    // Clicks on the grid are ignored outside edit mode.
    QTest::mouseClick(w.grid(0)->viewport(), Qt::LeftButton, {}, target.center() + QPoint(0, 19));
    QCOMPARE(w.viewer().bytePosition(), 0x7D00 + 5 * 16 + 9);
}

void MapViewerWindowTest::newViewersCountAndExitClosesThemAll()
{
    AppRig app;
    QWidget owner;
    auto* first = new MapViewerWindow(app.core.session(), 0, &owner);
    first->show();
    QPointer<MapViewerWindow> second = first->openNewViewer();
    QPointer<MapViewerWindow> third = first->openNewViewer();
    QCOMPARE(second->windowTitle(), QStringLiteral("Vexorin Map Viewer/Editor 1"));
    QCOMPARE(third->windowTitle(), QStringLiteral("Vexorin Map Viewer/Editor 2"));
    QCOMPARE(second->viewer().TxtFormCount(), 1);
    QVERIFY(!second->action(QStringLiteral("OpenNewViewer"))->isEnabled());
    QVERIFY(first->action(QStringLiteral("OpenNewViewer"))->isEnabled());
    QCOMPARE(first->family().size(), 3);
    QCOMPARE(third->family().size(), 3);

    QPointer<MapViewerWindow> firstGuard(first);
    second->action(QStringLiteral("Exit"))->trigger();
    QTRY_VERIFY(!second && !third && !firstGuard);
}

void MapViewerWindowTest::firstViewerIsHiddenByItsCloseBox()
{
    AppRig app;
    app.open();
    app.window->showMapViewer();
    QPointer<MapViewerWindow> viewer = app.window->mapViewerWindow();
    QVERIFY(viewer && viewer->isVisible());
    viewer->viewer().setClearMatrixBeforeDownload(0, true);
    viewer->close();
    QCoreApplication::processEvents();
    QVERIFY(viewer);
    QVERIFY(!viewer->isVisible());
    app.window->showMapViewer();
    QCOMPARE(app.window->mapViewerWindow(), viewer.data());
    QVERIFY(viewer->viewer().tab(0).clearMatrixBeforeDownload);

    // Its Exit unloads it; the next open makes a fresh one.
    viewer->action(QStringLiteral("Exit"))->trigger();
    QTRY_VERIFY(!viewer);
    app.window->showMapViewer();
    QVERIFY(app.window->mapViewerWindow());
    QVERIFY(!app.window->mapViewerWindow()->viewer().tab(0).clearMatrixBeforeDownload);
}

void MapViewerWindowTest::monitoringRefusesWhileTheViewerShows()
{
    AppRig app;
    app.open();
    QVERIFY(app.connectToSimulator());
    app.window->showMapViewer();
    app.core.stream().MonitorOnOff();
    QCOMPARE(boxes_.last(), QStringLiteral("Please close the Map Viewer first."));
    QCOMPARE(app.core.session().MonitorSensorsOnLabel(), QStringLiteral("OFF"));
    app.window->mapViewerWindow()->close();
    app.core.stream().MonitorOnOff();
    QCOMPARE(app.core.session().MonitorSensorsOnLabel(), QStringLiteral("ON"));
    app.core.stream().MonitorOnOff();
}

namespace {
QList<QPushButton*> traceButtons(MapViewerWindow& w)
{
    QList<QPushButton*> out;
    for (int t = 1; t <= 6; ++t)
        out << w.findChild<QPushButton*>(QStringLiteral("LiveTrace%1").arg(t));
    return out;
}

bool allChecked(MapViewerWindow& w, bool on)
{
    for (QPushButton* b : traceButtons(w))
        if (!b || !b->isCheckable() || b->isChecked() != on)
            return false;
    QAction* item = w.action(QStringLiteral("LiveTrace"));
    return item->isCheckable() && item->isChecked() == on && item->text() == QStringLiteral("Live Trace");
}
}  // namespace

void MapViewerWindowTest::liveTraceIsOneSwitchForTheWindow()
{
    AppRig app;
    app.open();
    app.window->showMapViewer();
    MapViewerWindow& w = *app.window->mapViewerWindow();
    // Refused: the button goes back off, and says why.
    traceButtons(w)[0]->click();
    QCOMPARE(boxes_.last(), QStringLiteral("Consult port not connected."));
    QVERIFY(allChecked(w, false));

    QVERIFY(app.connectToSimulator());
    answers_ << writeRom();
    w.loadBinFile(false);
    traceButtons(w)[2]->click();
    QVERIFY(allChecked(w, true));
    QTRY_VERIFY(w.statusPanel()->text().startsWith(QStringLiteral("Trace: RPM ")));
    // The grid on view outlines the traced cell.
    QTRY_VERIFY(w.grid(0)->traceMarks().row > 0);
    const auto point = w.viewer().trace().point();
    QTRY_COMPARE(w.grid(0)->traceMarks().row, w.viewer().trace().point()->row);
    QCOMPARE(w.grid(4)->traceMarks().column, w.viewer().trace().point()->timingColumn);
    QVERIFY(point.has_value());
    // A picture of the trace shows the outline's colour, which no band has.
    const QImage picture = w.grid(0)->viewport()->grab().toImage();
    const QRect cell = w.grid(0)->visualRect(w.grid(0)->model()->index(w.grid(0)->traceMarks().row,
                                                                       w.grid(0)->traceMarks().column));
    QCOMPARE(picture.pixelColor(cell.left() + 2, cell.center().y()).rgb(), MapGridWidget::kTraceColor.rgb());

    w.action(QStringLiteral("LiveTrace"))->trigger();
    QVERIFY(allChecked(w, false));
    QCOMPARE(w.statusPanel()->text(), QStringLiteral("Map Status"));
    QVERIFY(!app.core.session().owner().busy());
}

void MapViewerWindowTest::closingTheWindowEndsTheTrace()
{
    AppRig app;
    app.open();
    QVERIFY(app.connectToSimulator());
    app.window->showMapViewer();
    MapViewerWindow& w = *app.window->mapViewerWindow();
    answers_ << writeRom();
    w.loadBinFile(false);
    w.action(QStringLiteral("LiveTrace"))->trigger();
    QVERIFY(allChecked(w, true));
    QVERIFY(app.core.session().owner().streaming());
    w.close();
    QVERIFY(!w.viewer().trace().isOn());
    QVERIFY(!app.core.session().owner().busy());
    QVERIFY(allChecked(w, false));
}

void MapViewerWindowTest::threeDViewButtonOpensTheTabsSurfaceOnce()
{
    AppRig app;
    app.open();
    app.window->showMapViewer();
    MapViewerWindow& w = *app.window->mapViewerWindow();
    answers_ << writeRom();
    w.loadBinFile(false);
    for (int t = 0; t < 6; ++t)
        QVERIFY(w.findChild<QPushButton*>(QStringLiteral("View3D%1").arg(t + 1)));
    w.findChild<QPushButton*>(QStringLiteral("View3D5"))->click();
    QPointer<MapSurfaceWindow> surface = w.findChild<MapSurfaceWindow*>();
    QVERIFY(surface);
    QVERIFY(surface->isVisible());
    QCOMPARE(surface->windowTitle(), QStringLiteral("3D Map - Timing (High Octane)"));
    QCOMPARE(surface->tab(), 4);
    // Offscreen there is no OpenGL: the window says so.
    QVERIFY(!surface->hasSurface());
    QCOMPARE(surface->messageLabel()->text(), QStringLiteral("3D view needs OpenGL, which this system does not provide."));
    // Again: the same window.
    w.findChild<QPushButton*>(QStringLiteral("View3D5"))->click();
    QCOMPARE(w.findChildren<MapSurfaceWindow*>().size(), 1);
    QCOMPARE(w.show3dView(4), surface.data());
    // It goes with the viewer.
    w.close();
    QTRY_VERIFY(!surface);
}

QTEST_MAIN(MapViewerWindowTest)
#include "map_viewer_window_test.moc"
