// The External Gauge Monitor's controller: loading from the settings, the
// port items, the buttons and menu items, the status panels and the rename.
#include "app/settings/settings_access.h"
#include "external/dlp_simulator_transport.h"
#include "external/external_ports.h"
#include "external_rig.h"
#include "consult/port_catalog.h"

#include <QRegularExpression>
#include <QTest>

namespace {
const QString kIdle = QStringLiteral("0.00V");
}

class ExternalSensorsTest : public QObject {
    Q_OBJECT
private slots:
    void loadGivesDefaultsAndPanelsStartAsDesigned();
    void checkBoxesComeFromSettingsAndAreNeverSaved();
    void namesComeFromSettingsAndEmptyOnesTakeTheDefault();
    void savedOneChecksCom12AndCom1();
    void savedPortMatchingNothingLeavesThePort();
    void choosingAnItemSavesAndNotifies();
    void itemsAboveSixteenCannotBeChosen();
    void connectButtonOpensAndClosesWithPanels();
    void portThatCannotOpenSaysSo();
    void startAndStopNeedTheOpenPort();
    void menuDisconnectDuringPollingLeavesTimersRunning();
    void displayPercentageAndNotifyAreSaved();
    void updatePortInfoSpeaksAndRefreshes();
    void longDeviceNameGivesErrorBox();
    void renameFilesByTheHeading();
    void simulatorRowIsListedAndAnswers();
};

void ExternalSensorsTest::loadGivesDefaultsAndPanelsStartAsDesigned()
{
    ExternalRig r;
    QCOMPARE(r.panels.text(4), QStringLiteral("External Port Disconnected"));
    QCOMPARE(r.panels.text(5), QStringLiteral("External Port 0"));
    QCOMPARE(r.panels.text(6), QStringLiteral("Standby"));
    ExternalSensors& s = r.load();
    QCOMPARE(s.StatusText(), QStringLiteral("Disconnected"));
    QVERIFY(s.displayPercentageChecked());
    QVERIFY(!s.notifySelectedChecked());
    for (int n = 1; n <= 8; ++n) {
        QVERIFY(!s.link().checked(n));
        QCOMPARE(s.link().reading(n), kIdle);
    }
    QCOMPARE(s.name(1), QStringLiteral("Fuel"));
    QCOMPARE(s.name(4), QStringLiteral("Wideband L"));
    QCOMPARE(s.name(8), QStringLiteral("Spare"));
    // With nothing saved the one device is checked and its number taken.
    QCOMPARE(s.portItems().count(), 1);
    QVERIFY(s.portItems().checked(1));
    QCOMPARE(s.link().CommPort(), 3);
    QCOMPARE(r.panels.text(5), QStringLiteral("Consult Port 3"));
}

void ExternalSensorsTest::checkBoxesComeFromSettingsAndAreNeverSaved()
{
    ExternalRig r;
    r.setting(QStringLiteral("ExSensor2"), QStringLiteral("True"));
    r.setting(QStringLiteral("ExSensor5"), QStringLiteral("True"));
    r.setting(QStringLiteral("ExSensor6"), QStringLiteral("true"));  // only "True" checks
    for (int opening = 0; opening < 2; ++opening) {
        ExternalSensors& s = r.load();
        QList<bool> checks;
        for (int n = 1; n <= 8; ++n)
            checks << s.link().checked(n);
        QCOMPARE(checks, (QList<bool>{false, true, false, false, true, false, false, false}));
        // Use changes the boxes of this opening only.
        s.link().setChecked(1, true);
        s.link().setChecked(2, false);
    }
    QCOMPARE(r.setting(QStringLiteral("ExSensor1")), QString());
    QCOMPARE(r.setting(QStringLiteral("ExSensor2")), QStringLiteral("True"));
}

void ExternalSensorsTest::namesComeFromSettingsAndEmptyOnesTakeTheDefault()
{
    ExternalRig r;
    r.setting(QStringLiteral("ExternalSensor2"), QStringLiteral("Boost"));
    r.setting(QStringLiteral("ExternalSensor7"), QString());
    ExternalSensors& s = r.load();
    QCOMPARE(s.name(2), QStringLiteral("Boost"));
    QCOMPARE(s.name(7), QStringLiteral("Spare"));
    QCOMPARE(s.savedName(7), QString());
}

void ExternalSensorsTest::savedOneChecksCom12AndCom1()
{
    ExternalRig r({QStringLiteral("USB  Serial Port (COM1)"), QStringLiteral("Bluetooth Link (COM5)"),
                   QStringLiteral("USB  Serial Port (COM12)")});
    r.setting(QStringLiteral("ExternalPortNumber"), QStringLiteral("1"));
    ExternalSensors& s = r.load();
    QVERIFY(s.portItems().checked(1));
    QVERIFY(!s.portItems().checked(2));
    QVERIFY(s.portItems().checked(3));
    // The last match wins the port, and panel 5 keeps the Consult wording.
    QCOMPARE(s.link().CommPort(), 12);
    QCOMPARE(r.panels.text(5), QStringLiteral("Consult Port 12"));
}

void ExternalSensorsTest::savedPortMatchingNothingLeavesThePort()
{
    ExternalRig r({QStringLiteral("A (COM2)"), QStringLiteral("B (COM3)")});
    r.setting(QStringLiteral("ExternalPortNumber"), QStringLiteral("9"));
    ExternalSensors& s = r.load();
    QVERIFY(!s.portItems().checked(1) && !s.portItems().checked(2));
    QCOMPARE(s.link().CommPort(), 1);
    QCOMPARE(r.panels.text(5), QStringLiteral("External Port 0"));
    QVERIFY(r.errors.isEmpty() && r.messages.isEmpty());
}

void ExternalSensorsTest::choosingAnItemSavesAndNotifies()
{
    ExternalRig r({QStringLiteral("A (COM3)"), QStringLiteral("B (COM7)")});
    r.setting(QStringLiteral("ExternalPortNumber"), QStringLiteral("3"));
    ExternalSensors& s = r.load();
    s.ChooseExternalPort(2);
    QVERIFY(!s.portItems().checked(1) && s.portItems().checked(2));
    QCOMPARE(s.link().CommPort(), 7);
    QCOMPARE(r.setting(QStringLiteral("ExternalPortNumber")), QStringLiteral("7"));
    QVERIFY(r.messages.isEmpty());
    s.ToggleNotifySelected();
    s.ChooseExternalPort(1);
    QCOMPARE(r.messages, QStringList{QStringLiteral("External Sensor port set to A (COM3)")});
    // While the port is open the number stays, but the choice is saved.
    s.ConnectDisconnectClicked();
    s.ChooseExternalPort(2);
    QCOMPARE(s.link().CommPort(), 3);
    QCOMPARE(r.setting(QStringLiteral("ExternalPortNumber")), QStringLiteral("7"));
}

void ExternalSensorsTest::itemsAboveSixteenCannotBeChosen()
{
    QStringList names;
    for (int i = 1; i <= 17; ++i)
        names << QStringLiteral("Port %1 (COM%2)").arg(i).arg(i <= 16 ? i : 2);
    ExternalRig r(names);
    r.setting(QStringLiteral("ExternalPortNumber"), QStringLiteral("4"));
    ExternalSensors& s = r.load();
    QCOMPARE(s.portItems().count(), 17);
    s.ChooseExternalPort(17);
    QCOMPARE(s.link().CommPort(), 14);  // from the load: "4" is in (COM4) and (COM14)
    QVERIFY(!s.portItems().checked(17));
    QVERIFY(!s.portItems().checked(4));
    QCOMPARE(r.setting(QStringLiteral("ExternalPortNumber")), QStringLiteral("4"));
}

void ExternalSensorsTest::connectButtonOpensAndClosesWithPanels()
{
    ExternalRig r;
    ExternalSensors& s = r.load();
    s.ConnectDisconnectClicked();
    QVERIFY(s.link().PortOpen());
    QCOMPARE(r.openedPorts, QList<int>{3});
    QCOMPARE(s.link().Settings(), QStringLiteral("115200,N,8,1"));
    QCOMPARE(s.link().RThreshold(), 1);
    QCOMPARE(s.StatusText(), QStringLiteral("Connected"));
    QCOMPARE(r.panels.text(4), QStringLiteral("External Port Connected"));
    s.link().setChecked(2, true);
    s.StartClicked();
    QCOMPARE(r.panels.text(6), QStringLiteral("Monitoring Sensors"));
    r.round();
    QCOMPARE(s.link().reading(2), QStringLiteral("1.00V"));
    s.ConnectDisconnectClicked();
    QVERIFY(!s.link().PortOpen());
    QCOMPARE(s.StatusText(), QStringLiteral("Disconnected"));
    QCOMPARE(r.panels.text(4), QStringLiteral("External Port Disconnected"));
    QCOMPARE(r.panels.text(6), QStringLiteral("Standby"));
    QVERIFY(!s.link().ChannelRequestTimer.isActive() && !s.link().ChannelReplyTimer.isActive());
    QCOMPARE(s.link().reading(2), kIdle);
    QCOMPARE(s.link().bar(2), 0);
}

void ExternalSensorsTest::portThatCannotOpenSaysSo()
{
    ExternalRig r;
    r.openError = QStringLiteral("No such file or directory");
    ExternalSensors& s = r.load();
    QStringList logLines;
    QObject::connect(&s, &ExternalSensors::logLine, [&logLines](const QString& l) { logLines << l; });
    s.ConnectDisconnectClicked();
    // The session log gets the cause too.
    QCOMPARE(logLines, QStringList{QStringLiteral(": Could not open External Sensor port COM3: No such file or directory")});
    QVERIFY(!s.link().PortOpen());
    QCOMPARE(s.StatusText(), QStringLiteral("Disconnected"));
    QCOMPARE(r.panels.text(4), QStringLiteral("External Port Disconnected"));
    QCOMPARE(r.messages.size(), 1);
    QVERIFY(r.messages.first().contains(QStringLiteral("COM3")));
    QVERIFY(r.messages.first().contains(r.openError));
}

void ExternalSensorsTest::startAndStopNeedTheOpenPort()
{
    ExternalRig r;
    r.setting(QStringLiteral("ExSensor1"), QStringLiteral("True"));
    ExternalSensors& s = r.load();
    s.StartClicked();
    QCOMPARE(r.messages, QStringList{QStringLiteral("Port is not connected")});
    QVERIFY(!s.link().ChannelRequestTimer.isActive());
    QCOMPARE(r.panels.text(6), QStringLiteral("Standby"));
    // Stop with the port closed resets nothing.
    s.link().setReading(1, QStringLiteral("3.00V"));
    s.StopClicked();
    QCOMPARE(r.messages.size(), 2);
    QCOMPARE(r.messages.last(), QStringLiteral("Port is not connected"));
    QCOMPARE(s.link().reading(1), QStringLiteral("3.00V"));
    QCOMPARE(s.link().bar(1), 3);

    s.ConnectDisconnectClicked();
    s.StartClicked();
    r.round();
    s.StopClicked();
    QCOMPARE(r.panels.text(6), QStringLiteral("Standby"));
    QVERIFY(s.link().PortOpen());
    QCOMPARE(s.link().reading(1), kIdle);
    QVERIFY(!s.link().ChannelRequestTimer.isActive() && !s.link().ChannelReplyTimer.isActive());
}

void ExternalSensorsTest::menuDisconnectDuringPollingLeavesTimersRunning()
{
    ExternalRig r;
    r.setting(QStringLiteral("ExSensor1"), QStringLiteral("True"));
    ExternalSensors& s = r.load();
    s.ConnectDisconnectClicked();
    s.StartClicked();
    r.round();
    QCOMPARE(s.link().reading(1), QStringLiteral("0.50V"));
    s.ConnectDisconnectMenu();
    QVERIFY(!s.link().PortOpen());
    QCOMPARE(s.StatusText(), QStringLiteral("Disconnected"));
    // No panels, no stop, no reset.
    QCOMPARE(r.panels.text(4), QStringLiteral("External Port Connected"));
    QCOMPARE(r.panels.text(6), QStringLiteral("Monitoring Sensors"));
    QVERIFY(s.link().ChannelRequestTimer.isActive());
    QCOMPARE(s.link().reading(1), QStringLiteral("0.50V"));
    // The ticks fail silently: the checked box reads empty.
    r.round();
    QVERIFY(s.link().ChannelRequestTimer.isActive());
    QCOMPARE(s.link().reading(1), QString());
    QCOMPARE(s.link().reading(2), kIdle);
    QVERIFY(r.messages.isEmpty());
    s.ConnectDisconnectMenu();
    QCOMPARE(s.StatusText(), QStringLiteral("Connected"));
    QCOMPARE(r.panels.text(4), QStringLiteral("External Port Connected"));
}

void ExternalSensorsTest::displayPercentageAndNotifyAreSaved()
{
    ExternalRig r;
    r.setting(QStringLiteral("CaptionType"), QStringLiteral("0"));
    r.setting(QStringLiteral("NotifySelected"), QStringLiteral("True"));
    ExternalSensors& s = r.load();
    QVERIFY(!s.displayPercentageChecked());
    QVERIFY(s.notifySelectedChecked());
    s.ToggleDisplayPercentage();
    QVERIFY(s.displayPercentageChecked());
    QCOMPARE(r.setting(QStringLiteral("CaptionType")), QStringLiteral("1"));
    s.ToggleDisplayPercentage();
    QCOMPARE(r.setting(QStringLiteral("CaptionType")), QStringLiteral("0"));
    s.ToggleNotifySelected();
    QCOMPARE(r.setting(QStringLiteral("NotifySelected")), QStringLiteral("False"));
    ExternalSensors& again = r.load();
    QVERIFY(!again.displayPercentageChecked());
    QVERIFY(!again.notifySelectedChecked());
}

void ExternalSensorsTest::updatePortInfoSpeaksAndRefreshes()
{
    ExternalRig r;
    ExternalSensors& s = r.load();
    s.ConnectDisconnectClicked();  // no refusal while connected
    s.UpdatePortInfo();
    QCOMPARE(r.speech.spoken(), QStringList{QStringLiteral("Port information has been updated!.")});
    QCOMPARE(r.messages, QStringList{QStringLiteral("Port information has been updated.\n")});
    QCOMPARE(s.portItems().count(), 1);
    r.voice.setVoiceOnChecked(false);
    s.UpdatePortInfo();
    QCOMPARE(r.speech.spoken().size(), 1);
    QCOMPARE(r.messages.size(), 2);
}

void ExternalSensorsTest::longDeviceNameGivesErrorBox()
{
    ExternalRig r({QString(520, QLatin1Char('x'))});
    ExternalSensors& s = r.load();
    QCOMPARE(r.errors.size(), 1);
    QVERIFY(r.errors.first().startsWith(QStringLiteral("Error Getting Device List: Buffer too small 521 vs 500")));
    QCOMPARE(s.portItems().count(), 0);
}

void ExternalSensorsTest::renameFilesByTheHeading()
{
    ExternalRig r;
    r.setting(QStringLiteral("ExternalSensor5"), QStringLiteral("AFR R"));
    ExternalSensors& s = r.load();
    QCOMPARE(ExternalSensors::renameHeading(3), QStringLiteral("External Sensor 3"));
    QCOMPARE(s.savedName(5), QStringLiteral("AFR R"));
    QCOMPARE(s.savedName(3), QString());
    QVERIFY(s.RenameOk(QStringLiteral("External Sensor 3"), QStringLiteral("Oil Temp")));
    QCOMPARE(s.name(3), QStringLiteral("Oil Temp"));
    QCOMPARE(r.setting(QStringLiteral("ExternalSensor3")), QStringLiteral("Oil Temp"));
    QVERIFY(!s.RenameOk(QStringLiteral("External Sensor"), QStringLiteral("Lost")));
    QVERIFY(!s.RenameOk(QStringLiteral("External Sensor 9"), QStringLiteral("Lost")));
    // An empty name is saved as it stands and shown; the default comes back at the next load.
    QVERIFY(s.RenameOk(QStringLiteral("External Sensor 5"), QString()));
    QCOMPARE(s.name(5), QString());
    QCOMPARE(r.setting(QStringLiteral("ExternalSensor5")), QString());
    QCOMPARE(r.load().name(5), QStringLiteral("Wideband R"));
}

void ExternalSensorsTest::simulatorRowIsListedAndAnswers()
{
    TempSettings settings;
    PortCatalog catalog(*settings.store);
    catalog.setSystemPorts([] { return QList<SystemPort>{{QStringLiteral("/dev/ttyUSB0"), QStringLiteral("FT232R")}}; });
    StatusPanels panels;
    RecordingSpeechOut speech;
    VoiceGate voice(speech);
    ExternalSensors s(*settings.store, panels, voice, ExternalPorts::deviceSource(catalog),
                      [&catalog](int n, QString* e) { return ExternalPorts::makeTransport(catalog, n, e); });
    s.Load();
    QCOMPARE(s.portItems().count(), 3);
    QCOMPARE(s.portItems().caption(1), QStringLiteral("FT232R - /dev/ttyUSB0 (COM1)"));
    QCOMPARE(s.portItems().caption(2), QStringLiteral("Vexorin ECU Simulator (COM2)"));
    QCOMPARE(s.portItems().caption(3), QStringLiteral("Vexorin DLP-IO8-G Simulator (COM3)"));
    s.ChooseExternalPort(3);
    s.ConnectDisconnectClicked();
    QVERIFY(qobject_cast<DlpSimulatorTransport*>(s.link().findChild<SerialTransport*>()));
    for (int n = 1; n <= 8; ++n)
        s.link().setChecked(n, true);
    s.StartClicked();
    for (int i = 0; i < 8; ++i) {
        s.link().ChannelRequestTimerTick();
        s.link().ChannelReplyTimerTick();
    }
    const QRegularExpression reading(QStringLiteral("^[0-5]\\.\\d\\dV$"));
    for (int n = 1; n <= 8; ++n)
        QVERIFY2(reading.match(s.link().reading(n)).hasMatch(), qPrintable(s.link().reading(n)));
    // The number stays with the simulator from run to run; the Consult list does not show it.
    QCOMPARE(catalog.numberFor(ExternalPorts::kDlpSimulatorPath), 3);
    QCOMPARE(catalog.devices(true).size(), 2);
}

QTEST_MAIN(ExternalSensorsTest)
#include "external_sensors_test.moc"
