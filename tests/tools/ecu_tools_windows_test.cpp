// The three ECU tool windows in the application: the main window's commands
// and their refusals, the monitor's refusal while a tool shows, the windows'
// controls, and pictures of each window at work on the simulator.
#include "app/ecu_tools_window.h"
#include "app_rig.h"
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/simulator_transport.h"
#include "rom/map_grid_widget.h"
#include "sensors/sensor_stream.h"
#include "tools/active_test_window.h"
#include "tools/bin_file_downloader_window.h"
#include "tools/register_viewer_window.h"
#include "ui/common_dialog.h"
#include "ui/gradient_bar_widget.h"
#include "ui/message_box.h"
#include "widget_helpers.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>

class EcuToolsWindowsTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void commandsRefuseAndTheMonitorRefusesWhileAToolShows();
    void downloaderWindowAtWork();
    void registerViewerWindowAtWork();
    void activeTestWindowAtWork();

private:
    void connect(AppRig& app);
    QTemporaryDir dir_;
    QStringList boxes_;
};

void EcuToolsWindowsTest::init()
{
    MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes_ << t; });
    mCommonDialog::setAnswerer([this](const mCommonDialog::DialogRequest&, bool save) {
        return save ? dir_.filePath(QStringLiteral("ecu.bin")) : QString();
    });
}

void EcuToolsWindowsTest::cleanup()
{
    MessageBoxes::setPresenter({});
    mCommonDialog::setAnswerer({});
    boxes_.clear();
}

void EcuToolsWindowsTest::connect(AppRig& app)
{
    QVERIFY(app.connectToSimulator());
}

void EcuToolsWindowsTest::commandsRefuseAndTheMonitorRefusesWhileAToolShows()
{
    AppRig app;
    app.open();
    EcuToolWindows* tools = app.window->ecuTools();
    QVERIFY(tools);
    // With the link down the Register Viewer and the Active Test refuse; the Downloader opens.
    app.window->action(QStringLiteral("ECURegisterViewer"))->trigger();
    app.window->action(QStringLiteral("ActiveTest"))->trigger();
    QCOMPARE(boxes_, (QStringList{QStringLiteral("Consult port not connected."),
                                  QStringLiteral("Consult port not connected.")}));
    QVERIFY(!tools->registerViewer());
    QVERIFY(!tools->activeTest());
    app.window->action(QStringLiteral("BinFileDownloader"))->trigger();
    QVERIFY(tools->binFileDownloader() && tools->binFileDownloader()->isVisible());
    QCOMPARE(tools->binFileDownloader()->windowTitle(), QStringLiteral("Vexorin BIN File Downloader"));

    connect(app);
    boxes_.clear();
    app.core.stream().MonitorOnOff();
    QCOMPARE(boxes_, QStringList{QStringLiteral("Please close the Bin File Downloader first.")});
    tools->binFileDownloader()->close();
    QTRY_VERIFY(!tools->binFileDownloader());

    app.core.stream().MonitorOnOff();
    QCOMPARE(app.core.session().MonitorSensorsOnLabel(), QStringLiteral("ON"));
    app.window->action(QStringLiteral("ActiveTest"))->trigger();
    app.window->action(QStringLiteral("ECURegisterViewer"))->trigger();
    QCOMPARE(boxes_.mid(1), (QStringList{QStringLiteral("Sensor monitoring must be off."),
                                         QStringLiteral("Sensor monitoring must be off.")}));
    app.core.stream().MonitorOnOff();
    boxes_.clear();

    app.window->action(QStringLiteral("ECURegisterViewer"))->trigger();
    QCOMPARE(tools->registerViewer()->windowTitle(), QStringLiteral("Vexorin E.C.U. Register Viewer"));
    app.core.stream().MonitorOnOff();
    QCOMPARE(boxes_.last(), QStringLiteral("Please close the E.C.U. Register Viewer first."));
    // Its close box hides it and keeps it.
    tools->registerViewer()->close();
    QVERIFY(tools->registerViewer() && !tools->registerViewer()->isVisible());

    app.window->action(QStringLiteral("ActiveTest"))->trigger();
    QCOMPARE(tools->activeTest()->windowTitle(), QStringLiteral("Vexorin Active Test"));
    app.core.stream().MonitorOnOff();
    QCOMPARE(boxes_.last(), QStringLiteral("Please close the Active Test first."));
    tools->activeTest()->close();
    QTRY_VERIFY(!tools->activeTest());
    QCOMPARE(app.core.session().MonitorSensorsOnLabel(), QStringLiteral("OFF"));
}

void EcuToolsWindowsTest::downloaderWindowAtWork()
{
    AppRig app;
    app.open();
    connect(app);
    app.window->ecuTools()->showBinFileDownloader();
    BinFileDownloaderWindow* w = app.window->ecuTools()->binFileDownloader();
    for (const char* name : {"DownloadBINFile2", "CancelBinFileDownload", "Exit", "MatrixTheme", "ProgressbarBackcolor",
                             "ProgressbarStartColor", "ProgressbarEndColor", "ProgressbarTextColor", "tenmilliseconds",
                             "onethoumilliseconds"})
        QVERIFY2(w->action(QLatin1String(name)), name);
    QVERIFY(w->action(QStringLiteral("tenmilliseconds"))->isChecked());
    QVERIFY(findButton(w, QStringLiteral("Download BIN File")));
    QPushButton* verify = findButton(w, QStringLiteral("Verify"));
    QVERIFY(verify && !verify->isEnabled());
    QCOMPARE(w->progressBar()->maximum(), 32768);

    findButton(w, QStringLiteral("Download BIN File"))->click();
    BinFileDownloader& d = w->downloader();
    QVERIFY(d.DownLoadBinFileTimer.isActive());
    d.DownLoadBinFileTimer.stop();
    for (int i = 0; i < 1700; ++i)
        d.DownLoadBinFileTimerTick();
    QCOMPARE(w->progressBar()->value(), 1700 * 8);
    // 13600 of 32768: one percent sign, between the number and "BIN Data".
    QCOMPARE(w->progressBar()->text(), QStringLiteral("Received 42 % BIN Data"));
    QCOMPARE(w->findChild<QLineEdit*>(QStringLiteral("SaveTo"))->text(), dir_.filePath(QStringLiteral("ecu.bin")));
    QApplication::processEvents();
    saveShot(w, QStringLiteral("bin-file-downloader.png"));

    // The plain look hides the pictures and the binary box.
    w->action(QStringLiteral("MatrixTheme"))->trigger();
    QVERIFY(!w->findChild<QLineEdit*>(QStringLiteral("BinaryBox"))->isVisible());
    saveShot(w, QStringLiteral("bin-file-downloader-plain.png"));
    w->action(QStringLiteral("MatrixTheme"))->trigger();

    // One damaged echo: the window says at once, in red, what that does to the file.
    auto* sim = qobject_cast<SimulatorTransport*>(app.core.link().transport());
    QVERIFY(sim);
    vexorin::sim::SimFaults faults = sim->ecu().faults();
    faults.corruptNextEcho = true;
    sim->ecu().setFaults(faults);
    d.DownLoadBinFileTimerTick();
    QCOMPARE(d.retries(), 1);
    auto* warning = w->findChild<QLabel*>(QStringLiteral("RetryWarning"));
    QVERIFY(warning && warning->isVisible());
    QCOMPARE(warning->text(), QStringLiteral("Retry: the file will be 7 bytes short; Cancel and start again"));
    QApplication::processEvents();
    saveShot(w, QStringLiteral("bin-file-downloader-retry.png"));
    d.DownLoadBinFileTimer.start();  // the test ticks by hand; Cancel acts on a running download
    findButton(w, QStringLiteral("Cancel"))->click();
    QVERIFY(!warning->isVisible());
    findButton(w, QStringLiteral("Download BIN File"))->click();
    d.DownLoadBinFileTimer.stop();

    while (d.DownLoadBinFileTimer.isActive() || d.labels().DataReceivedStatus.endsWith(QStringLiteral("Good")))
        d.DownLoadBinFileTimerTick();
    QVERIFY(verify->isEnabled());
    w->action(QStringLiteral("Exit"))->trigger();
    QTRY_VERIFY(!app.window->ecuTools()->binFileDownloader());
}

void EcuToolsWindowsTest::registerViewerWindowAtWork()
{
    AppRig app;
    app.open();
    connect(app);
    app.window->ecuTools()->showRegisterViewer();
    RegisterViewerWindow* w = app.window->ecuTools()->registerViewer();
    QCOMPARE(w->bankSelector()->count(), 128);
    QCOMPARE(w->regionList()->count(), 24);
    QVERIFY(findButton(w, QStringLiteral("Stop Data Flow")));
    w->viewer().selectBank(255);
    for (int i = 0; i < 21; ++i)
        w->viewer().FindRegisterHexTimerTick();
    w->viewer().StopDataFlow();
    w->viewer().RegionDoubleClicked(5);
    w->viewer().CellClicked(3, 12);
    QCOMPARE(w->matrixWidget()->item(0, 1)->text(), QStringLiteral("20"));
    QVERIFY(w->findChild<QLabel*>(QStringLiteral("ConvertedLabel"))->text().startsWith(QStringLiteral("Converted: ")));
    QApplication::processEvents();
    saveShot(w, QStringLiteral("register-viewer.png"));
    w->findChild<QAction*>(QStringLiteral("Exit"))->trigger();
    QVERIFY(!w->isVisible());
}

void EcuToolsWindowsTest::activeTestWindowAtWork()
{
    AppRig app;
    app.open();
    connect(app);
    app.window->ecuTools()->showActiveTest();
    ActiveTestWindow* w = app.window->ecuTools()->activeTest();
    QVERIFY(!w->scroll(QStringLiteral("WaterTempScroll"))->isEnabled());
    QCOMPARE(w->scroll(QStringLiteral("TimingScroll"))->value(), 6);
    findButton(w, QStringLiteral("Check Actual"))->click();
    QVERIFY(w->scroll(QStringLiteral("WaterTempScroll"))->isEnabled());
    w->scroll(QStringLiteral("TimingScroll"))->setValue(9);
    QCOMPARE(w->findChild<QLabel*>(QStringLiteral("TimingLabel"))->text(), QStringLiteral("+3*"));
    w->scroll(QStringLiteral("InjectorFuelScroll"))->setValue(4);
    QCOMPARE(w->findChild<QLabel*>(QStringLiteral("IgnitionFuelLabel"))->text(), QStringLiteral("98%"));
    w->test().pressOnOff(0);
    w->test().pressOnOff(4);
    w->test().pressOnOff(4);
    w->test().selectCylinder(2);
    w->test().CylinderOnOff();
    QCOMPARE(w->findChild<QLabel*>(QStringLiteral("OnOffLabel"))->text(), QStringLiteral("OFF"));
    w->test().ClearSelfLearn();
    QApplication::processEvents();
    saveShot(w, QStringLiteral("active-test.png"));
    w->close();
    QTRY_VERIFY(!app.window->ecuTools()->activeTest());
}

QTEST_MAIN(EcuToolsWindowsTest)
#include "ecu_tools_windows_test.moc"
