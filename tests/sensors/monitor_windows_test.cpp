// The windows that show the stream: the all-sensors panel, the large view,
// the Dash and the Byte Viewer, driven by the built-in simulated ECU.
#include "app/app_core.h"
#include "app/main_window.h"
#include "app/port_selection.h"
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/simulator_transport.h"
#include "sensors/byte_viewer_cells.h"
#include "sensors/byte_viewer_window.h"
#include "sensors/dash_window.h"
#include "sensors/large_view_panel.h"
#include "sensors/sensor_displays.h"
#include "sensors/sensor_stream.h"
#include "temp_settings.h"
#include "ui/gradient_bar_widget.h"
#include "ui/message_box.h"
#include "voice/recording_speech_out.h"
#include "widget_helpers.h"

#include <QAction>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

using vexorin::sensors::SensorId;

namespace {
struct Monitoring {
    Monitoring()
        : core(*settings.store, speech)
    {
        core.ports().setSystemPorts([] { return QList<SystemPort>{}; });
        window = std::make_unique<MainWindow>(core);
        core.start();
        window->show();
    }
    // Connects to the simulator (the only row) and runs the identity reads.
    bool connect()
    {
        core.portSelection().PickPort(1);
        window->action(QStringLiteral("ConnectDisconnect"))->trigger();
        if (!QTest::qWaitFor([this] { return core.session().ConnectedLabel() == QLatin1String("Connected"); }))
            return false;
        core.session().GetSerialNumberKValueTick();
        core.session().GetSerialNumberKValueTick();
        return true;
    }
    vexorin::sim::EcuSimulator& ecu()
    {
        return qobject_cast<SimulatorTransport*>(core.link().transport())->ecu();
    }
    QLabel* label(const QString& name) const { return window->findChild<QLabel*>(name); }
    QPushButton* button(const QString& caption) const { return findButton(window.get(), caption); }
    TempSettings settings;
    RecordingSpeechOut speech;
    AppCore core;
    std::unique_ptr<MainWindow> window;
};

}  // namespace

class MonitorWindowsTest : public QObject {
    Q_OBJECT
private slots:
    void init() { MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes << t; }); }
    void cleanup() { MessageBoxes::setPresenter({}); boxes.clear(); }
    void gradientBarClampsAndLabels();
    void monitoringMovesTheBarsAndLabels();
    void sensorButtonTurnsItsLabelGreen();
    void largeViewLiesOverThePanel();
    void dashShowsTwelveValuesAndExits();
    void byteViewerShowsTheFrame();
    void monitorButtonWhileDisconnectedShowsMessage();

private:
    QStringList boxes;
};

void MonitorWindowsTest::gradientBarClampsAndLabels()
{
    GradientBar bar;
    bar.setMaximum(160);
    bar.setValue(316);
    QCOMPARE(bar.fraction(), 1.0);
    bar.setValue(-58);
    QCOMPARE(bar.fraction(), 0.0);
    bar.setValue(40);
    QCOMPARE(bar.fraction(), 0.25);
    QCOMPARE(bar.text(), QString());
    bar.setTextVisible(true);
    bar.setTextBefore(QStringLiteral("Downloaded "));
    bar.setTextAfter(QStringLiteral("% of the ROM"));
    QCOMPARE(bar.text(), QStringLiteral("Downloaded 25% of the ROM"));
    bar.setMaximum(0);
    QCOMPARE(bar.fraction(), 0.0);
    bar.resize(200, 20);
    QImage img = bar.grab().toImage();  // paints without trouble at any value
    QVERIFY(!img.isNull());
}

void MonitorWindowsTest::monitoringMovesTheBarsAndLabels()
{
    Monitoring m;
    QVERIFY(m.connect());
    m.ecu().forcePhase(vexorin::sim::EnginePhase::Drive);
    m.ecu().advance(8000);
    m.button(QStringLiteral("Monitor On/Off"))->click();
    QCOMPARE(m.label(QStringLiteral("MonitorSensorsOnLabel"))->text(), QStringLiteral("ON"));
    QStringList rpm;
    for (int i = 0; i < 5; ++i) {
        m.ecu().advance(700);
        m.core.stream().GetAllSensorDataTimerTick();
        rpm << m.label(QStringLiteral("RPMLabel"))->text();
    }
    QVERIFY2(rpm.removeDuplicates() < 4, qPrintable(rpm.join(QLatin1Char(' '))));  // values move
    QVERIFY(m.label(QStringLiteral("RPMLabel"))->text().toInt() > 0);
    auto* rpmBar = m.window->findChild<GradientBar*>(QStringLiteral("RPMbar"));
    QCOMPARE(rpmBar->value(), m.core.displays().bar(SensorId::RPM));
    QVERIFY(rpmBar->value() > 0);
    QVERIFY(!m.label(QStringLiteral("WATERLabel"))->text().isEmpty());
    saveShot(m.window.get(), QStringLiteral("main-window-monitoring.png"));

    m.button(QStringLiteral("Monitor On/Off"))->click();
    QCOMPARE(m.label(QStringLiteral("MonitorSensorsOnLabel"))->text(), QStringLiteral("OFF"));
    QVERIFY(m.core.session().SensorOffTimer.isActive());
    QTRY_COMPARE_WITH_TIMEOUT(m.label(QStringLiteral("RPMLabel"))->text(), QStringLiteral("0"), 3000);
    QCOMPARE(rpmBar->value(), 0);
    QVERIFY(boxes.isEmpty());
}

void MonitorWindowsTest::sensorButtonTurnsItsLabelGreen()
{
    Monitoring m;
    m.button(QStringLiteral("Timing"))->click();
    QCOMPARE(m.label(QStringLiteral("TIMINGLabel"))->palette().color(QPalette::WindowText), QColor(0, 255, 0));
    QCOMPARE(m.label(QStringLiteral("RPMLabel"))->palette().color(QPalette::WindowText), QColor(0x80, 0x80, 0xFF));
    QCOMPARE(m.label(QStringLiteral("LargeSensorWord"))->text(), QStringLiteral("Timing"));
    QCOMPARE(m.speech.spoken().last(), QStringLiteral("Voice monitor set to ignition timing."));
}

void MonitorWindowsTest::largeViewLiesOverThePanel()
{
    Monitoring m;
    QVERIFY(m.connect());
    m.ecu().forcePhase(vexorin::sim::EnginePhase::Rev);
    m.ecu().advance(3000);
    m.button(QStringLiteral("RPM"))->click();
    m.window->action(QStringLiteral("LargeSensorViewer"))->trigger();
    LargeViewPanel* large = m.window->largeViewer();
    QVERIFY(large->isVisible());
    QCOMPARE(large->geometry(), QRect(36, 24, 622, 145));
    QVERIFY(m.window->action(QStringLiteral("LargeSensorViewer"))->isChecked());
    QVERIFY(!m.window->action(QStringLiteral("ViewAllSensors"))->isChecked());
    QCOMPARE(large->bar()->maximum(), 7000);
    m.button(QStringLiteral("Monitor On/Off"))->click();
    m.core.stream().GetAllSensorDataTimerTick();
    QVERIFY(large->value()->text().toDouble() > 0);
    QCOMPARE(large->word()->text(), QStringLiteral("RPM"));
    QVERIFY(large->bar()->value() > 0);
    saveShot(m.window.get(), QStringLiteral("main-window-large-view.png"));
    m.window->action(QStringLiteral("ViewAllSensors"))->trigger();
    QVERIFY(!large->isVisible());
    QVERIFY(m.window->action(QStringLiteral("ViewAllSensors"))->isChecked());
}

void MonitorWindowsTest::dashShowsTwelveValuesAndExits()
{
    Monitoring m;
    QVERIFY(m.connect());
    m.ecu().forcePhase(vexorin::sim::EnginePhase::Drive);
    m.ecu().advance(12000);
    m.button(QStringLiteral("Monitor On/Off"))->click();
    m.core.stream().GetAllSensorDataTimerTick();  // before the window exists
    m.window->action(QStringLiteral("Dash"))->trigger();
    DashWindow* dash = m.window->dashWindow();
    QVERIFY(dash && dash->isVisible());
    QCOMPARE(dash->windowTitle(), QStringLiteral("Vexorin Dash"));
    const char* names[] = {"DashSpeed", "DashRPM",    "DashTPS",  "DashMAF",   "DashO2L",  "DashoO2R",
                           "DashINJ",   "DashTiming", "DashIACV", "DashWater", "DashFuel", "DashBattery"};
    for (const char* n : names)
        QVERIFY2(dash->valueLabel(QLatin1String(n)), n);
    QCOMPARE(dash->valueLabel(QStringLiteral("DashRPM"))->text(), m.label(QStringLiteral("RPMLabel"))->text());
    QStringList captions;
    for (auto* l : dash->findChildren<QLabel*>())
        captions << l->text();
    for (const char* c : {"Speed", "RPM", "TPS", "MAF", "O2 (L)", "O2 (R)", "INJ", "Timing", "IACV", "Water", "Fuel", "Battery"})
        QVERIFY2(captions.contains(QLatin1String(c)), c);
    QVERIFY(!captions.contains(QStringLiteral("A/F")));
    // Twelve pairs, each with its unit beside the caption.
    QCOMPARE(dash->findChildren<QLabel*>().size(), 36);
    QCOMPARE(dash->findChild<QLabel*>(QStringLiteral("DashSpeedUnit"))->text(), QStringLiteral("mph"));
    QCOMPARE(dash->findChild<QLabel*>(QStringLiteral("DashWaterUnit"))->text(), QStringLiteral("\u00b0F"));
    saveShot(dash, QStringLiteral("dash.png"));
    QAction* exit = dash->findChild<QAction*>(QStringLiteral("Exit"));
    QVERIFY(exit);
    exit->trigger();
    QVERIFY(!dash->isVisible());
    QVERIFY(m.core.session().GetAllSensorDataTimer.isActive());  // closing stops nothing
}

void MonitorWindowsTest::byteViewerShowsTheFrame()
{
    Monitoring m;
    m.window->action(QStringLiteral("ByteViewer"))->trigger();
    ByteViewerWindow* bv = m.window->byteViewerWindow();
    QVERIFY(bv && bv->isVisible());
    QCOMPARE(bv->windowTitle(), QStringLiteral("Form6"));
    const auto frames = bv->findChildren<QGroupBox*>();
    QCOMPARE(frames.size(), 2);
    for (auto* f : frames)
        QCOMPARE(f->title(), QStringLiteral("Bytes"));
    for (int i = 1; i <= 64; ++i)
        QVERIFY(bv->findChild<QLabel*>(QStringLiteral("ByteViewerCell%1").arg(i)));
    QVERIFY(m.connect());
    QCOMPARE(bv->cell(1)->text(), QStringLiteral("54"));  // the K value read's echo, in decimal
    m.button(QStringLiteral("Monitor On/Off"))->click();
    m.core.stream().GetAllSensorDataTimerTick();
    QCOMPARE(bv->cell(2)->text(), QString::number(m.core.byteViewer().cell(2).toInt()));
    QCOMPARE(bv->cell(33)->text(), m.core.byteViewer().cell(33));
    QVERIFY(!bv->cell(33)->text().isEmpty());
    saveShot(bv, QStringLiteral("byte-viewer.png"));
}

void MonitorWindowsTest::monitorButtonWhileDisconnectedShowsMessage()
{
    Monitoring m;
    m.button(QStringLiteral("Monitor On/Off"))->click();
    QCOMPARE(boxes, QStringList{QStringLiteral("Consult port not connected.")});
}

QTEST_MAIN(MonitorWindowsTest)
#include "monitor_windows_test.moc"
