// The application's frame: what the start-up restores, the Options items,
// the colour frame, the splash and credits, and the order of the shutdown.
#include "app/color_frame.h"
#include "app/color_frame_panel.h"
#include "app/credits_scroll.h"
#include "app/credits_window.h"
#include "app/options_menu.h"
#include "app/platform_tools.h"
#include "app/settings/settings_keys.h"
#include "app/settings/settings_store.h"
#include "app/splash.h"
#include "app/splash_window.h"
#include "app_rig.h"
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/recording_transport.h"
#include "consult/session_log.h"
#include "logging/log_capture.h"
#include "rom/bin_viewer_window.h"
#include "rom/map_viewer_window.h"
#include "sensors/sensor_displays.h"
#include "ui/color_picker_widget.h"
#include "ui/message_box.h"
#include "ui/status_panels.h"
#include "voice/alerts.h"
#include "voice/voice_gate.h"
#include "voice/voice_monitor.h"
#include "widget_helpers.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>

namespace {

// Everything the program wrote on the line, from a recording.
QByteArray writtenBytes(const QString& recording)
{
    QFile f(recording);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    QByteArray all;
    for (const RecordedExchange& e : parseRecording(QString::fromLatin1(f.readAll())))
        if (e.direction == RecordedExchange::Write)
            all += e.bytes;
    return all;
}

constexpr int px(int twips)
{
    return twips / 15;
}
}  // namespace

class AppShellTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void firstRunWithAnEmptyStore();
    void storedValuesAreApplied();
    void storedVoiceOffStillLeavesVoiceOnChecked();
    void oddUnitValueLeavesTheDesign();
    void stateFlagsAfterStart();
    void optionsItemsWriteTheirSettings();
    void colorFramePreviewsAndCancelStoresNothing();
    void colorFrameOkForAllWritesFortyTwoSettings();
    void colorSwitchSevenIsTheAfBar();
    void stayOnTopRefusesOnlyTheCustomDialog();
    void splashShowsOnceAndGoesAfterItsTimer();
    void splashGoesAtAKeyOrClick();
    void creditsScrollAndComeRound();
    void creditsCloseAtAClick();
    void desktopToolsWhereInstalled();
    void shutdownWhileConnectedStopsAndLogs();
    void fileExitWhileConnectedClosesThePortToo();
    void voiceOffClosingSpeaksNothing();
    void captureIsClosedFirst();
    void windowsUnloadInTheirOrder();

private:
    QStringList boxes_;
};

void AppShellTest::init()
{
    MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes_ << t; });
}

void AppShellTest::cleanup()
{
    MessageBoxes::setPresenter({});
    boxes_.clear();
}

void AppShellTest::firstRunWithAnEmptyStore()
{
    AppRig app;
    app.open();
    MainWindow& w = *app.window;
    const QRect frame = w.frameGeometry();
    QCOMPARE(frame.topLeft(), QPoint(px(1140), px(375)));
    QCOMPARE(frame.size(), QSize(px(13080), px(8040)));
    for (const char* item : {"MPH", "WindowsXP", "FiveSeconds", "Female", "VoiceOn"})
        QVERIFY2(w.action(QLatin1String(item))->isChecked(), item);
    for (const char* item : {"KPH", "WindowsSeven", "StayOnTop", "NotifyPorts", "UseConZultInterface"})
        QVERIFY2(!w.action(QLatin1String(item))->isChecked(), item);
    QCOMPARE(app.core.session().VoiceMonitorTimer.interval(), 5000);
    // Voice index 0 goes to the speech output as it is: no voice of its own is chosen.
    QCOMPARE(app.speech.selected(), QList<int>{0});
    QVERIFY(app.speech.spoken().isEmpty());
    // A first run keeps the design colours of the bars instead of painting them black.
    QCOMPARE(app.core.displays().barColors(0).back, quint32(0xFF8080));
    QVERIFY(!(w.windowFlags() & Qt::WindowStaysOnTopHint));
    QVERIFY(boxes_.isEmpty());
}

void AppShellTest::storedValuesAreApplied()
{
    AppRig app;
    SettingsStore& s = *app.settings.store;
    s.WriteSetting(QStringLiteral("SetWindowSize"), QStringLiteral("Height"), QStringLiteral("9000"));
    s.WriteSetting(QStringLiteral("SetWindowSize"), QStringLiteral("Width"), QStringLiteral("15000"));
    s.WriteSetting(QStringLiteral("SetWindowSize"), QStringLiteral("Top"), QStringLiteral("1500"));
    s.WriteSetting(QStringLiteral("SetWindowSize"), QStringLiteral("Left"), QStringLiteral("3000"));
    s.WriteSetting(QStringLiteral("RPMbar"), QStringLiteral("BackColor"), QStringLiteral("255"));
    s.WriteSetting(QStringLiteral("RPMbar"), QStringLiteral("BarStartColor"), QStringLiteral("65280"));
    s.WriteSetting(QStringLiteral("RPMbar"), QStringLiteral("BarEndColor"), QStringLiteral("16711680"));
    s.WriteSetting(QStringLiteral("StayOnTop"), QStringLiteral("Setting"), QStringLiteral("True"));
    s.WriteSetting(QStringLiteral("MPH"), QStringLiteral("Setting"), QStringLiteral("False"));
    s.WriteSetting(QStringLiteral("WindowsSeven"), QStringLiteral("Setting"), QStringLiteral("True"));
    s.WriteSetting(QStringLiteral("VoiceMonitorInterval"), QStringLiteral("Interval"), QStringLiteral("25"));
    s.WriteSetting(QStringLiteral("NotifyPorts"), QStringLiteral("Setting"), QStringLiteral("True"));
    s.WriteSetting(QStringLiteral("StartupAnnounce"), QStringLiteral("Setting"), QStringLiteral("Ready to drive."));
    app.open();
    MainWindow& w = *app.window;
    QCOMPARE(w.frameGeometry(), QRect(200, 100, 1000, 600));
    const BarColors rpm = app.core.displays().barColors(int(vexorin::sensors::SensorId::RPM));
    QCOMPARE(rpm.back, quint32(255));
    QCOMPARE(rpm.start, quint32(65280));
    QCOMPARE(rpm.end, quint32(16711680));
    // Other bars of a store that has colours read missing values as 0: black.
    QCOMPARE(app.core.displays().barColors(0).back, quint32(0));
    QVERIFY(w.action(QStringLiteral("StayOnTop"))->isChecked());
    QVERIFY(w.windowFlags() & Qt::WindowStaysOnTopHint);
    QVERIFY(w.action(QStringLiteral("KPH"))->isChecked());
    QVERIFY(!w.action(QStringLiteral("MPH"))->isChecked());
    QVERIFY(w.action(QStringLiteral("WindowsSeven"))->isChecked());
    QCOMPARE(app.core.session().VoiceMonitorTimer.interval(), 25000);
    QVERIFY(w.action(QStringLiteral("NotifyPorts"))->isChecked());
    QCOMPARE(app.speech.spoken(), QStringList{QStringLiteral("Ready to drive.")});
}

void AppShellTest::storedVoiceOffStillLeavesVoiceOnChecked()
{
    AppRig app;
    app.settings.store->WriteSetting(QStringLiteral("VoiceOn"), QStringLiteral("Setting"), QStringLiteral("Off"));
    app.settings.store->WriteSetting(QStringLiteral("StartupAnnounce"), QStringLiteral("Setting"),
                                     QStringLiteral("Hello."));
    app.open();
    QVERIFY(app.window->action(QStringLiteral("VoiceOn"))->isChecked());
    QCOMPARE(app.speech.spoken(), QStringList{QStringLiteral("Hello.")});
}

void AppShellTest::oddUnitValueLeavesTheDesign()
{
    AppRig app;
    app.settings.store->WriteSetting(QStringLiteral("MPH"), QStringLiteral("Setting"), QStringLiteral("yes"));
    app.settings.store->WriteSetting(QStringLiteral("SetWindowSize"), QStringLiteral("Height"), QStringLiteral("tall"));
    app.open();
    QVERIFY(app.window->action(QStringLiteral("MPH"))->isChecked());
    QVERIFY(!app.window->action(QStringLiteral("KPH"))->isChecked());
    QCOMPARE(app.window->frameGeometry().height(), px(8040));
}

void AppShellTest::stateFlagsAfterStart()
{
    AppRig app;
    app.open();
    ConsultSession& s = app.core.session();
    QCOMPARE(s.PortAvailableSwitch, QStringLiteral("0"));
    QCOMPARE(s.PollingSwitch, QStringLiteral("1"));
    QCOMPARE(s.InitializedSwitch, QStringLiteral("No"));
    QCOMPARE(s.KeepInitializationTimerOffSwitch, QStringLiteral("Off"));
    QCOMPARE(app.core.voiceMonitor().VoiceSwitch, QStringLiteral("Voice On"));
    QVERIFY(app.core.UnloadSwitch.isEmpty());
    QCOMPARE(app.core.startupFactor, 0.15f);
    QCOMPARE(app.core.panels().text(1), QStringLiteral("Consult Port Disconnected"));
    QVERIFY(app.core.splash().SplashTimer.isActive());
    QCOMPARE(app.core.splash().SplashTimer.interval(), 5000);
}

void AppShellTest::optionsItemsWriteTheirSettings()
{
    AppRig app;
    app.open();
    MainWindow& w = *app.window;
    SettingsStore& s = *app.settings.store;
    w.action(QStringLiteral("StayOnTop"))->trigger();
    QCOMPARE(s.ReadSetting(QStringLiteral("StayOnTop"), QStringLiteral("Setting")), QStringLiteral("True"));
    QVERIFY(w.windowFlags() & Qt::WindowStaysOnTopHint);
    QVERIFY(w.isVisible());
    const QRect before = w.frameGeometry();
    w.action(QStringLiteral("StayOnTop"))->trigger();
    QCOMPARE(s.ReadSetting(QStringLiteral("StayOnTop"), QStringLiteral("Setting")), QStringLiteral("False"));
    QVERIFY(!(w.windowFlags() & Qt::WindowStaysOnTopHint));
    QCOMPARE(w.frameGeometry().size(), before.size());

    w.setGeometry(300, 150, 900, 560);
    w.action(QStringLiteral("SetWindowSize"))->trigger();
    const QRect g = w.frameGeometry();
    QCOMPARE(s.ReadSetting(QStringLiteral("SetWindowSize"), QStringLiteral("Height")), QString::number(g.height() * 15));
    QCOMPARE(s.ReadSetting(QStringLiteral("SetWindowSize"), QStringLiteral("Width")), QString::number(g.width() * 15));
    QCOMPARE(s.ReadSetting(QStringLiteral("SetWindowSize"), QStringLiteral("Top")), QString::number(g.y() * 15));
    QCOMPARE(s.ReadSetting(QStringLiteral("SetWindowSize"), QStringLiteral("Left")), QString::number(g.x() * 15));
    QStringList names;
    for (QAction* a : w.action(QStringLiteral("StayOnTop"))->associatedObjects().isEmpty()
                          ? QList<QAction*>{}
                          : qobject_cast<QMenu*>(w.action(QStringLiteral("StayOnTop"))->associatedObjects().first())->actions())
        if (!a->isSeparator())
            names << a->objectName();
    QCOMPARE(names, (QStringList{QStringLiteral("StayOnTop"), QStringLiteral("SetWindowSize"), QStringLiteral("MPH"),
                                 QStringLiteral("KPH"), QStringLiteral("WindowsSeven"), QStringLiteral("WindowsXP"),
                                 QStringLiteral("UseConZultInterface"), QStringLiteral("NotifyPorts"),
                                 QStringLiteral("FastLogging")}));
}

void AppShellTest::colorFramePreviewsAndCancelStoresNothing()
{
    AppRig app;
    app.open();
    MainWindow& w = *app.window;
    w.action(QStringLiteral("TPSSensorColor"))->trigger();
    ColorFramePanel* panel = w.colorFramePanel();
    QVERIFY(panel->isVisible());
    QCOMPARE(panel->title(), QStringLiteral("TPS Sensor Color"));
    QCOMPARE(app.core.frameSpot().shown(), FrameSpot::Color);
    const int tps = int(vexorin::sensors::SensorId::TPS);
    const BarColors otherBefore = app.core.displays().barColors(0);
    panel->picker(0)->pick(5);
    panel->picker(2)->pick(9);
    QCOMPARE(app.core.displays().barColors(tps).back, ColorPicker::kPalette[5]);
    QCOMPARE(app.core.displays().barColors(tps).end, ColorPicker::kPalette[9]);
    QCOMPARE(app.core.displays().barColors(0).back, otherBefore.back);
    findButton(panel, QStringLiteral("Cancel"))->click();
    QVERIFY(!panel->isVisible());
    QCOMPARE(app.core.displays().barColors(tps).back, ColorPicker::kPalette[5]);  // the preview stays
    QVERIFY(app.settings.store->ReadSetting(QStringLiteral("TPSbar"), QStringLiteral("BackColor")).isEmpty());
    // The alert frames and the colour frame share the spot.
    app.core.alert(0).ShowFrame();
    QVERIFY(!panel->isVisible());
    w.action(QStringLiteral("WaterSensorColor"))->trigger();
    QCOMPARE(app.core.frameSpot().shown(), FrameSpot::Color);
    saveShot(&w, QStringLiteral("colour-frame.png"));
}

void AppShellTest::colorFrameOkForAllWritesFortyTwoSettings()
{
    AppRig app;
    app.open();
    ColorFrame& cf = app.core.colorFrame();
    cf.ShowFrame(0);
    QCOMPARE(cf.caption(), QStringLiteral("All Sensor Colors"));
    cf.pick(ColorFrame::Back, 0x112233);
    cf.pick(ColorFrame::Start, 0x445566);
    cf.pick(ColorFrame::End, 0x778899);
    for (int bar = 0; bar < 14; ++bar)
        QCOMPARE(app.core.displays().barColors(bar).start, quint32(0x445566));
    cf.OK();
    QCOMPARE(app.core.frameSpot().shown(), FrameSpot::None);
    int written = 0;
    for (QLatin1StringView section : Settings::BarSections) {
        QCOMPARE(app.settings.store->ReadSetting(section, QStringLiteral("BackColor")), QString::number(0x112233));
        QCOMPARE(app.settings.store->ReadSetting(section, QStringLiteral("BarStartColor")), QString::number(0x445566));
        QCOMPARE(app.settings.store->ReadSetting(section, QStringLiteral("BarEndColor")), QString::number(0x778899));
        written += 3;
    }
    QCOMPARE(written, 42);
}

void AppShellTest::colorSwitchSevenIsTheAfBar()
{
    AppRig app;
    app.open();
    QCOMPARE(QLatin1String(ColorFrame::kTargetTable[7].caption), QStringLiteral("A/F Sensor Color"));
    QCOMPARE(ColorFrame::kTargetTable[7].bar, int(vexorin::sensors::SensorId::AF));
    QCOMPARE(ColorFrame::kTargetTable[6].bar, int(vexorin::sensors::SensorId::O2R));
    QCOMPARE(ColorFrame::kTargetTable[8].bar, int(vexorin::sensors::SensorId::INJ));
    app.window->action(QStringLiteral("AFSensorColor"))->trigger();
    QCOMPARE(app.core.colorFrame().ColorSwitch(), 7);
    app.core.colorFrame().pick(ColorFrame::Start, 0x00ABCDEF);
    app.core.colorFrame().OK();
    QCOMPARE(app.settings.store->ReadSetting(QStringLiteral("AFbar"), QStringLiteral("BarStartColor")),
             QString::number(0x00ABCDEF));
    QVERIFY(app.settings.store->ReadSetting(QStringLiteral("INJECTORbar"), QStringLiteral("BarStartColor")).isEmpty());
    // The menu shows the A/F item last.
    QMenu* colors = qobject_cast<QMenu*>(app.window->action(QStringLiteral("AFSensorColor"))->associatedObjects().first());
    QCOMPARE(colors->actions().last()->objectName(), QStringLiteral("AFSensorColor"));
}

void AppShellTest::stayOnTopRefusesOnlyTheCustomDialog()
{
    AppRig app;
    app.open();
    app.window->action(QStringLiteral("StayOnTop"))->trigger();
    app.window->action(QStringLiteral("AllSensorColors"))->trigger();
    ColorFramePanel* panel = app.window->colorFramePanel();
    panel->picker(1)->pick(3);
    QCOMPARE(app.core.displays().barColors(0).start, ColorPicker::kPalette[3]);
    panel->picker(1)->openCustomDialog();
    QCOMPARE(boxes_, QStringList{QStringLiteral("Stay on Top in options must be off to use this function.")});
    // The graph frame's pickers refuse the same way.
    auto* data = app.window->findChild<ColorPicker*>();
    QVERIFY(data);
    for (ColorPicker* p : app.window->findChildren<ColorPicker*>()) {
        if (p->parentWidget() == panel)
            continue;
        boxes_.clear();
        p->openCustomDialog();
        QCOMPARE(boxes_.size(), 1);
    }
}

void AppShellTest::splashShowsOnceAndGoesAfterItsTimer()
{
    AppRig app;
    app.open();
    Splash& splash = app.core.splash();
    splash.mainWindowActivated();  // the first activation, if the platform has not reported one
    QTRY_VERIFY(app.window->splashWindow() && app.window->splashWindow()->isVisible());
    QCOMPARE(splash.SplashSwitch, QStringLiteral("1"));
    QVERIFY(app.window->splashWindow()->windowFlags() & Qt::WindowStaysOnTopHint);
    QCOMPARE(app.window->splashWindow()->findChild<QLabel*>(QStringLiteral("Version"))->text(),
             QStringLiteral("Version 2.5.1"));
    saveShot(app.window->splashWindow(), QStringLiteral("splash.png"));
    QPointer<SplashWindow> shown = app.window->splashWindow();
    splash.mainWindowActivated();  // later activations show nothing new
    QCOMPARE(app.window->splashWindow(), shown.data());
    splash.SplashTimerTick();
    QTRY_VERIFY(!shown);
    QVERIFY(!splash.SplashTimer.isActive());
    // Help, About shows it again.
    app.window->action(QStringLiteral("About"))->trigger();
    QVERIFY(app.window->splashWindow()->isVisible());
}

void AppShellTest::splashGoesAtAKeyOrClick()
{
    AppRig app;
    app.open();
    app.window->showSplash();
    QPointer<SplashWindow> s = app.window->splashWindow();
    QTest::keyClick(s.data(), Qt::Key_Space);
    QTRY_VERIFY(!s);
    app.window->showSplash();
    s = app.window->splashWindow();
    QTest::mouseClick(s.data(), Qt::LeftButton);
    QTRY_VERIFY(!s);
}

void AppShellTest::creditsScrollAndComeRound()
{
    CreditsScroll scroll;
    QCOMPARE(scroll.ScrollTimer.interval(), 40);
    QCOMPARE(CreditsScroll::text().first(), QStringLiteral("Vexorin"));
    scroll.prepare(200, 10);
    QVERIFY(scroll.ScrollTimer.isActive());
    QCOMPARE(scroll.top(), 200);
    scroll.ScrollTimerTick();
    QCOMPARE(scroll.top(), 199);
    while (scroll.top() > -379)
        scroll.ScrollTimerTick();
    scroll.ScrollTimerTick();  // the top reaches minus the inner height: round again
    QCOMPARE(scroll.top(), 200);
    QVERIFY(scroll.ScrollTimer.isActive());
}

void AppShellTest::creditsCloseAtAClick()
{
    AppRig app;
    app.open();
    app.window->action(QStringLiteral("Credits"))->trigger();
    QPointer<CreditsWindow> c = app.window->creditsWindow();
    QVERIFY(c && c->isVisible());
    QCOMPARE(c->windowTitle(), QStringLiteral("Credits"));
    QVERIFY(c->scroll().ScrollTimer.isActive());
    const int top = c->inner()->y();
    c->scroll().ScrollTimerTick();
    QCOMPARE(c->inner()->y(), top - 1);
    QTest::mouseClick(c->inner(), Qt::LeftButton);
    QTRY_VERIFY(!c);
}

void AppShellTest::desktopToolsWhereInstalled()
{
    const PlatformTools none([](const QString&) { return QString(); });
    QVERIFY(none.search().program.isEmpty());
    QVERIFY(none.search().missingTip.contains(QStringLiteral("catfish")));
    const PlatformTools some([](const QString& name) {
        return name == QStringLiteral("xfce4-taskmanager") ? QStringLiteral("/usr/bin/xfce4-taskmanager") : QString();
    });
    QCOMPARE(some.performanceMonitor().program, QStringLiteral("/usr/bin/xfce4-taskmanager"));

    AppRig app;
    app.open();
    const PlatformTools here;
    QAction* search = app.window->action(QStringLiteral("Search"));
    QCOMPARE(search->isEnabled(), !here.search().program.isEmpty());
    QVERIFY(!search->toolTip().isEmpty());
    QCOMPARE(app.window->action(QStringLiteral("PerformanceMonitor"))->isEnabled(),
             !here.performanceMonitor().program.isEmpty());
    QVERIFY(!app.window->action(QStringLiteral("LaunchDeviceManager"))->isEnabled());
}

namespace {
// An application connected to the simulator with every byte on the line recorded.
struct RecordedApp {
    RecordedApp()
    {
        recording = dir.filePath(QStringLiteral("line.txt"));
        app.settings.store->WriteSetting(QStringLiteral("RecordConsult"), QStringLiteral("File"), recording);
        app.open();
        QVERIFY(app.connectToSimulator());
        app.speech.clear();
    }
    bool endsWithTheStopBytes() const { return writtenBytes(recording).endsWith(QByteArray("\x30\x30", 2)); }
    QTemporaryDir dir;
    AppRig app;
    QString recording;
};
}  // namespace

void AppShellTest::shutdownWhileConnectedStopsAndLogs()
{
    RecordedApp r;
    AppRig& app = r.app;
    app.window->close();
    QVERIFY(r.endsWithTheStopBytes());
    QCOMPARE(app.core.log().messages().last(), QStringLiteral(": Consult Port Disconnected."));
    QCOMPARE(app.core.session().ConnectedLabel(), QStringLiteral("Disconnected"));
    QVERIFY(app.speech.spoken().contains(QStringLiteral("Consult Port Disconnected.")));
    QVERIFY(app.core.UnloadSwitch.isEmpty());
}

void AppShellTest::fileExitWhileConnectedClosesThePortToo()
{
    RecordedApp r;
    AppRig& app = r.app;
    app.window->action(QStringLiteral("Exit"))->trigger();
    QVERIFY(!app.window->isVisible());
    QVERIFY(!app.core.link().PortOpen());
    QVERIFY(r.endsWithTheStopBytes());
    QCOMPARE(app.core.log().messages().last(), QStringLiteral(": Consult Port Disconnected."));
}

void AppShellTest::voiceOffClosingSpeaksNothing()
{
    AppRig app;
    app.open();
    QVERIFY(app.connectToSimulator());
    app.window->action(QStringLiteral("VoiceOn"))->trigger();
    QVERIFY(!app.window->action(QStringLiteral("VoiceOn"))->isChecked());
    app.speech.clear();
    app.window->close();
    QVERIFY(app.speech.spoken().isEmpty());
    QCOMPARE(app.core.log().messages().last(), QStringLiteral(": Consult Port Disconnected."));
}

void AppShellTest::captureIsClosedFirst()
{
    QTemporaryDir dir;
    AppRig app;
    // A stored log name that was never opened is no trouble.
    app.settings.store->WriteSetting(QStringLiteral("LogFile"), QStringLiteral("FileName"),
                                     dir.filePath(QStringLiteral("never.log")));
    app.open();
    QVERIFY(app.connectToSimulator());
    const QString log = dir.filePath(QStringLiteral("drive.log"));
    app.core.capture().CapturetologfileClicked([&](const QString&) { return log; });
    QVERIFY(app.core.capture().fileOpen());
    QStringList order;
    connect(&app.core.capture(), &LogCapture::checkedChanged, this, [&](bool on) {
        if (!on)
            order << QStringLiteral("capture closed");
    });
    connect(&app.core.log(), &SessionLog::messageAdded, this, [&](const QString& m) { order << m; });
    app.window->close();
    QVERIFY(!app.core.capture().fileOpen());
    QVERIFY(order.indexOf(QStringLiteral("capture closed")) >= 0);
    QVERIFY(order.indexOf(QStringLiteral("capture closed")) < order.indexOf(QStringLiteral(": Consult Port Disconnected.")));
    QVERIFY(boxes_.isEmpty());
}

void AppShellTest::windowsUnloadInTheirOrder()
{
    AppRig app;
    app.open();
    MainWindow& w = *app.window;
    for (const char* item : {"Dash", "ByteViewer", "GraphTest", "LogPlayer", "MapViewer", "BinFileViewer",
                             "CheckAvailableInterfaces", "FaultCodes", "Credits", "About", "StartupAnnounce",
                             "UseExternalSensors", "BinFileDownloader"})
        w.action(QLatin1String(item))->trigger();
    w.binViewerWindow()->action(QStringLiteral("HexChart"))->trigger();
    // A second Map Viewer, opened from the first, belongs to the registry too.
    QPointer<MapViewerWindow> second = w.mapViewerWindow()->openNewViewer();
    QCOMPARE(w.windows().all(WindowRegistry::Kind::MapViewer).size(), 2);
    QVERIFY(w.windows().showing(WindowRegistry::Kind::MapViewer));
    QCOMPARE(w.windows().existing(WindowRegistry::Kind::HexChart)->objectName(), QStringLiteral("HexChart"));
    QStringList order;
    connect(&w, &MainWindow::windowUnloading, this, [&](const QString& name) { order << name; });
    w.close();
    const QStringList expected = {QStringLiteral("Credits"),       QStringLiteral("HexChart"),
                                  QStringLiteral("MapViewer"),     QStringLiteral("StartupAnnounce"),
                                  QStringLiteral("ByteViewer"),    QStringLiteral("GraphTest"),
                                  QStringLiteral("BINViewer"),     QStringLiteral("BinFileDownloaderWindow"),
                                  QStringLiteral("LogPlayer"),     QStringLiteral("InterfaceCheck"),
                                  QStringLiteral("FaultCodes"),    QStringLiteral("Dash"),
                                  QStringLiteral("ExternalSensors"), QStringLiteral("Splash")};
    QStringList seen;
    for (const QString& name : order)
        if (expected.contains(name) && !seen.contains(name))
            seen << name;
    QCOMPARE(seen, expected);
    QCOMPARE(order.count(QStringLiteral("MapViewer")), 2);
    QTRY_VERIFY(!second);
    QTRY_VERIFY(w.windows().all(WindowRegistry::Kind::MapViewer).isEmpty());
    QVERIFY(w.windows().all(WindowRegistry::Kind::BinViewer).isEmpty());
}

QTEST_MAIN(AppShellTest)
#include "app_shell_test.moc"
