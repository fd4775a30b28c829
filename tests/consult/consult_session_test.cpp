#include "consult/link_writes.h"
#include "consult/wire.h"
#include "link_wait.h"
#include "session_harness.h"

#include <QSignalSpy>
#include <QTest>

class ConsultSessionTest : public QObject {
    Q_OBJECT
private slots:
    void startState();
    void connectSendsInitAndShowsPortConnected();
    void handshake239Then16Succeeds();
    void handshake16Then239Fails();
    void handshakeByteSurvivesDisconnect();
    void disconnectSoonAfterConnectLeavesIdentityTimerOn();
    void initializeAfterFailedHandshakeIsIgnored();
    void connectedAndUnansweredLookAlikeInPanelOne();
    void disconnectStepsInOrder();
    void disconnectWithVoiceOffSpeaksNothing();
    void openFailureShowsMessageAndChangesNoFlag();
    void receiveEventOncePerByteWhileThresholdIsOne();
    void identityReadsFillLabelsAndCells();
    void partNumberWithZeroByte();
    void identityRepeatsAfterMonitoring();
    void silentEcuTimesOutAndStaysUsable();
    void portPulledOutDisconnects();
    void maintenanceButtons();
};

void ConsultSessionTest::startState()
{
    SessionHarness h;
    QCOMPARE(h.session.PortAvailableSwitch, QStringLiteral("0"));
    QCOMPARE(h.session.InitializedSwitch, QStringLiteral("No"));
    QCOMPARE(h.session.KeepInitializationTimerOffSwitch, QStringLiteral("Off"));
    QCOMPARE(h.session.PollingSwitch, QStringLiteral("1"));
    QCOMPARE(h.session.ConnectedLabel(), QStringLiteral("Disconnected"));
    QCOMPARE(h.session.MonitorSensorsOnLabel(), QStringLiteral("OFF"));
    QCOMPARE(h.session.VoiceMonitorOnLabel(), QStringLiteral("OFF"));
    QCOMPARE(h.session.EcuPartNumberLabel(), QStringLiteral("23710-xxxxx"));
    QCOMPARE(h.session.KValueLabel(), QStringLiteral("000"));
    QCOMPARE(h.session.HandshakeByte, 0);
    QCOMPARE(h.link.RThreshold(), 1);
    QCOMPARE(h.link.InputMode(), 0);
    QCOMPARE(h.panels.text(1), QStringLiteral("Consult Port Disconnected"));
    QCOMPARE(h.panels.text(2), QStringLiteral("Consult Port"));
    QCOMPARE(h.panels.text(3), QStringLiteral("Standby"));
    QCOMPARE(h.panels.text(4), QStringLiteral("External Port Disconnected"));
    QCOMPARE(h.panels.text(5), QStringLiteral("External Port 0"));
    QCOMPARE(h.panels.text(6), QStringLiteral("Standby"));
    QCOMPARE(StatusPanels::toolTip(1), QStringLiteral("Consult Port Connection State"));
    QCOMPARE(StatusPanels::toolTip(6), QStringLiteral("External Port State"));
    QCOMPARE(h.session.InitializationTimer.interval(), 10);
    QCOMPARE(h.session.GetSerialNumberKValue.interval(), 500);
}

void ConsultSessionTest::connectSendsInitAndShowsPortConnected()
{
    SessionHarness h;
    h.link.setCommPort(3);
    h.session.ConnectDisconnect();
    QVERIFY(h.link.PortOpen());
    QCOMPARE(h.transport->written(), QByteArray::fromHex("ffffef"));
    QCOMPARE(h.transport->writes().size(), 3);  // one byte per write
    QCOMPARE(h.session.PortAvailableSwitch, QStringLiteral("1"));
    QCOMPARE(h.session.KeepInitializationTimerOffSwitch, QStringLiteral("On"));
    QCOMPARE(h.panels.text(1), QStringLiteral("Consult Port Connected"));
    QCOMPARE(h.panels.text(2), QStringLiteral("Consult Port 3"));
    QVERIFY(h.session.connectDisconnectChecked());
    QCOMPARE(h.session.ConnectedLabel(), QStringLiteral("Disconnected"));  // until the ECU answers
}

void ConsultSessionTest::handshake239Then16Succeeds()
{
    SessionHarness h;
    h.handshakeReply = QByteArray::fromHex("ef10");
    h.session.ConnectDisconnect();
    SessionHarness::settle();
    QVERIFY(h.session.InitializationTimer.isActive());  // the receive event enabled it
    h.session.InitializationTimerTick();
    QCOMPARE(h.session.HandshakeByte, 16);
    QCOMPARE(h.session.ConnectedLabel(), QStringLiteral("Connected"));
    QCOMPARE(h.session.InitializedSwitch, QStringLiteral("Yes"));
    QCOMPARE(h.session.KeepInitializationTimerOffSwitch, QStringLiteral("Off"));
    QVERIFY(!h.session.InitializationTimer.isActive());
    QVERIFY(h.session.GetSerialNumberKValue.isActive());
    QCOMPARE(h.link.RThreshold(), 0);
    QCOMPARE(h.link.InputMode(), 1);
    QCOMPARE(h.log.messages(), QStringList{QStringLiteral(": Consult Port Connected.")});
    QCOMPARE(h.speech.spoken(), QStringList{QStringLiteral("Consult port connected.")});
    QCOMPARE(h.log.text(), QStringLiteral("\r\n: Consult Port Connected.\r\n"));
}

void ConsultSessionTest::handshake16Then239Fails()
{
    SessionHarness h;
    h.handshakeReply = QByteArray::fromHex("10ef");
    h.session.ConnectDisconnect();
    SessionHarness::settle();
    h.session.InitializationTimerTick();
    QCOMPARE(h.session.HandshakeByte, 239);
    QCOMPARE(h.session.ConnectedLabel(), QStringLiteral("Disconnected"));
    QCOMPARE(h.session.InitializedSwitch, QStringLiteral("No"));
    QCOMPARE(h.session.KeepInitializationTimerOffSwitch, QStringLiteral("Off"));
    QVERIFY(!h.session.InitializationTimer.isActive());
    QVERIFY(!h.session.GetSerialNumberKValue.isActive());
    QVERIFY(h.log.messages().isEmpty());
    QVERIFY(h.messages.isEmpty());
    QVERIFY(h.speech.spoken().isEmpty());
}

void ConsultSessionTest::handshakeByteSurvivesDisconnect()
{
    SessionHarness h;
    h.connectAndHandshake();
    QCOMPARE(h.session.HandshakeByte, 16);
    h.session.ConnectDisconnect();  // disconnect
    QCOMPARE(h.session.HandshakeByte, 16);
    h.silent = true;  // the next connection brings no characters at all
    h.session.ConnectDisconnect();
    SessionHarness::settle();
    h.session.ReceiveEvent();  // a port event with nothing waiting
    QVERIFY(h.session.InitializationTimer.isActive());
    h.session.InitializationTimerTick();
    QCOMPARE(h.session.ConnectedLabel(), QStringLiteral("Connected"));
}

void ConsultSessionTest::disconnectSoonAfterConnectLeavesIdentityTimerOn()
{
    SessionHarness h;
    h.connectAndHandshake();
    QVERIFY(h.session.GetSerialNumberKValue.isActive());
    h.session.ConnectDisconnect();
    QVERIFY(h.session.GetSerialNumberKValue.isActive());
}

void ConsultSessionTest::initializeAfterFailedHandshakeIsIgnored()
{
    SessionHarness h;
    h.handshakeReply = QByteArray::fromHex("00");
    h.session.ConnectDisconnect();
    SessionHarness::settle();
    h.session.InitializationTimerTick();
    QCOMPARE(h.session.KeepInitializationTimerOffSwitch, QStringLiteral("Off"));
    h.ecu->handshakeReply = QByteArray(1, char(0x10));
    h.transport->clearWritten();
    h.session.Initialize();
    QCOMPARE(h.transport->written(), QByteArray::fromHex("ffffef"));
    SessionHarness::settle();
    QVERIFY(!h.session.InitializationTimer.isActive());
    QCOMPARE(h.session.ConnectedLabel(), QStringLiteral("Disconnected"));
    QCOMPARE(h.session.KeepInitializationTimerOffSwitch, QStringLiteral("Off"));
}

void ConsultSessionTest::connectedAndUnansweredLookAlikeInPanelOne()
{
    SessionHarness good;
    good.connectAndHandshake();
    SessionHarness bad;
    bad.handshakeReply = QByteArray::fromHex("ef");
    bad.connectAndHandshake();
    QCOMPARE(good.panels.text(1), bad.panels.text(1));
    QCOMPARE(good.panels.text(1), QStringLiteral("Consult Port Connected"));
    QVERIFY(good.session.ConnectedLabel() != bad.session.ConnectedLabel());
}

void ConsultSessionTest::disconnectStepsInOrder()
{
    SessionHarness h;
    h.connectAndHandshake();
    h.session.PollingSwitch = QStringLiteral("2");
    h.session.GetAllSensorDataTimer.start();
    h.session.VoiceMonitorTimer.start();
    h.session.setVoiceMonitorOnLabel(QStringLiteral("ON"));
    h.session.setVoiceMonitorChecked(true);
    h.session.setMonitorSensorsOnLabel(QStringLiteral("ON"));
    h.panels.setText(3, QStringLiteral("Monitoring Sensors"));
    h.speech.clear();
    QPointer<FakeTransport> t = h.transport;
    t->clearWritten();
    QByteArray writtenAtClose;
    h.session.ConnectDisconnect();

    QVERIFY(!h.session.GetAllSensorDataTimer.isActive());
    QCOMPARE(h.session.PollingSwitch, QStringLiteral("1"));
    QVERIFY(!h.session.VoiceMonitorTimer.isActive());
    QCOMPARE(h.session.VoiceMonitorOnLabel(), QStringLiteral("OFF"));
    QVERIFY(!h.session.voiceMonitorChecked());
    QCOMPARE(h.session.MonitorSensorsOnLabel(), QStringLiteral("OFF"));
    QCOMPARE(h.panels.text(3), QStringLiteral("Standby"));
    QVERIFY(!h.link.PortOpen());
    QCOMPARE(h.session.PortAvailableSwitch, QStringLiteral("0"));
    QCOMPARE(h.session.ConnectedLabel(), QStringLiteral("Disconnected"));
    QCOMPARE(h.link.RThreshold(), 1);
    QCOMPARE(h.link.InputMode(), 0);
    QCOMPARE(h.log.messages().last(), QStringLiteral(": Consult Port Disconnected."));
    QCOMPARE(h.session.InitializedSwitch, QStringLiteral("No"));
    QVERIFY(h.session.SensorOffTimer.isActive());
    QCOMPARE(h.speech.spoken(), QStringList{QStringLiteral("Consult Port Disconnected.")});
    QCOMPARE(h.panels.text(1), QStringLiteral("Consult Port Disconnected"));
    QVERIFY(!h.session.connectDisconnectChecked());
    // The stop bytes went out before the port closed.
    QVERIFY(t);
    QCOMPARE(t->written(), QByteArray::fromHex("3030"));
    QCOMPARE(h.session.KeepInitializationTimerOffSwitch, QStringLiteral("Off"));
}

void ConsultSessionTest::disconnectWithVoiceOffSpeaksNothing()
{
    SessionHarness h;
    h.voice.setVoiceOnChecked(false);
    h.connectAndHandshake();
    h.session.ConnectDisconnect();
    QVERIFY(h.speech.spoken().isEmpty());
    QCOMPARE(h.log.messages().last(), QStringLiteral(": Consult Port Disconnected."));
}

void ConsultSessionTest::openFailureShowsMessageAndChangesNoFlag()
{
    SessionHarness h;
    h.openError = QStringLiteral("Permission denied");
    h.session.ConnectDisconnect();
    QCOMPARE(h.messages,
             QStringList{QStringLiteral("Consult interface not connected or port not selected/available.")});
    QCOMPARE(h.session.PortAvailableSwitch, QStringLiteral("0"));
    QCOMPARE(h.session.KeepInitializationTimerOffSwitch, QStringLiteral("Off"));
    QCOMPARE(h.panels.text(1), QStringLiteral("Consult Port Disconnected"));
    QVERIFY(!h.link.PortOpen());
    QVERIFY(h.log.messages().last().contains(QStringLiteral("Permission denied")));
}

void ConsultSessionTest::receiveEventOncePerByteWhileThresholdIsOne()
{
    SessionHarness h;
    h.silent = true;
    h.session.ConnectDisconnect();
    QSignalSpy spy(&h.link, &ConsultLink::OnComm);
    h.transport->arrive(QByteArray::fromHex("0102ef"));
    SessionHarness::settle();
    QCOMPARE(spy.count(), 3);
    h.link.setRThreshold(0);
    h.transport->arrive(QByteArray::fromHex("10"));
    SessionHarness::settle();
    QCOMPARE(spy.count(), 3);
}

void ConsultSessionTest::identityReadsFillLabelsAndCells()
{
    SessionHarness h;
    h.replies[QByteArray::fromHex("d0")] = partNumberReply("30P00");
    h.replies[QByteArray::fromHex("c9ff2bc9ff2c")] = kValueReply(0x12, 0x34);
    h.connectAndHandshake();
    h.transport->clearWritten();

    h.session.GetSerialNumberKValueTick();
    QCOMPARE(h.session.PollingSwitch, QStringLiteral("3"));
    QCOMPARE(h.transport->written(), QByteArray::fromHex("d0f03030"));
    QCOMPARE(h.session.EcuPartNumberLabel(), QStringLiteral("23710 - 30P00"));
    QCOMPARE(h.cells.cell(1), QStringLiteral("2F"));
    QCOMPARE(h.cells.cell(2), QStringLiteral("FF"));
    QCOMPARE(h.cells.cell(3), QStringLiteral("16"));
    QCOMPARE(h.cells.cell(4), QStringLiteral("0"));
    QCOMPARE(h.cells.cell(21), QStringLiteral("33"));
    QCOMPARE(h.cells.cell(27), QStringLiteral("0"));
    QCOMPARE(h.cells.cell(32), QStringLiteral("0"));
    QVERIFY(h.session.GetSerialNumberKValue.isActive());

    h.transport->clearWritten();
    h.session.GetSerialNumberKValueTick();
    QCOMPARE(h.session.PollingSwitch, QStringLiteral("1"));
    QCOMPARE(h.transport->written(), QByteArray::fromHex("c9ff2bc9ff2cf03030"));
    QCOMPARE(h.session.KValueLabel(), QStringLiteral("4660"));
    QCOMPARE(h.cells.cell(1), QStringLiteral("54"));
    QCOMPARE(h.cells.cell(9), QStringLiteral("18"));
    QCOMPARE(h.cells.cell(10), QStringLiteral("52"));
    QCOMPARE(h.cells.cell(11), QStringLiteral("0"));
    QVERIFY(!h.session.GetSerialNumberKValue.isActive());
}

void ConsultSessionTest::partNumberWithZeroByte()
{
    SessionHarness h;
    QByteArray five("30P00");
    five[2] = '\0';
    h.replies[QByteArray::fromHex("d0")] = partNumberReply(five);
    h.connectAndHandshake();
    h.session.ReadECUSerialNumber();
    const QString expected = QStringLiteral("23710 - 30") + QChar(0) + QStringLiteral("00");
    QCOMPARE(h.session.EcuPartNumberLabel(), expected);
    QCOMPARE(h.cells.cell(23), QStringLiteral("0"));
}

void ConsultSessionTest::identityRepeatsAfterMonitoring()
{
    SessionHarness h;
    h.replies[QByteArray::fromHex("d0")] = partNumberReply("30P00");
    h.connectAndHandshake();
    h.session.PollingSwitch = QStringLiteral("2");  // monitoring
    const int before = h.ecu->requests;
    h.session.GetSerialNumberKValueTick();
    QCOMPARE(h.ecu->requests, before);
    QCOMPARE(h.session.PollingSwitch, QStringLiteral("2"));
    QVERIFY(h.session.GetSerialNumberKValue.isActive());
    h.session.PollingSwitch = QStringLiteral("1");  // monitoring ended
    h.session.GetSerialNumberKValueTick();
    QCOMPARE(h.session.PollingSwitch, QStringLiteral("3"));
    QCOMPARE(h.session.EcuPartNumberLabel(), QStringLiteral("23710 - 30P00"));
}

void ConsultSessionTest::silentEcuTimesOutAndStaysUsable()
{
    SessionHarness h;
    h.connectAndHandshake();
    h.ecu->silent = true;
    h.session.GetSerialNumberKValue.setInterval(60000);  // the test ticks by hand
    h.session.GetSerialNumberKValueTick();
    QVERIFY(waitForIdleLink(h.session.owner()));
    QCOMPARE(h.session.EcuPartNumberLabel(), QStringLiteral("23710-xxxxx"));
    QCOMPARE(h.log.messages().last(), vexorin::consult::timeoutMessage());
    QCOMPARE(h.log.messages().last(),
             QStringLiteral(": No reply from the ECU within 2 seconds; request abandoned."));
    h.session.GetSerialNumberKValueTick();
    QVERIFY(waitForIdleLink(h.session.owner()));
    QCOMPARE(h.session.KValueLabel(), QStringLiteral("000"));
    QVERIFY(!h.session.GetSerialNumberKValue.isActive());
    QCOMPARE(h.transport->timeouts(), 2);
    // Still usable: the disconnect works as ever.
    h.session.ConnectDisconnect();
    QCOMPARE(h.log.messages().last(), QStringLiteral(": Consult Port Disconnected."));
}

void ConsultSessionTest::portPulledOutDisconnects()
{
    SessionHarness h;
    h.connectAndHandshake();
    h.transport->unplug(QStringLiteral("Device removed"));
    SessionHarness::settle();
    QVERIFY(!h.link.PortOpen());
    QCOMPARE(h.session.ConnectedLabel(), QStringLiteral("Disconnected"));
    QCOMPARE(h.panels.text(1), QStringLiteral("Consult Port Disconnected"));
    const QStringList m = h.log.messages();
    QCOMPARE(m.at(m.size() - 2), QStringLiteral(": Consult port lost (Device removed)."));
    QCOMPARE(m.last(), QStringLiteral(": Consult Port Disconnected."));
    // A new connect opens afresh.
    h.session.ConnectDisconnect();
    QVERIFY(h.link.PortOpen());
}

void ConsultSessionTest::maintenanceButtons()
{
    SessionHarness h;
    h.silent = true;
    h.session.ConnectDisconnect();
    QPointer<FakeTransport> t = h.transport;
    t->clearWritten();
    h.session.Initialize();
    QCOMPARE(t->written(), QByteArray::fromHex("ffffef"));
    QCOMPARE(h.session.KeepInitializationTimerOffSwitch, QStringLiteral("On"));  // unchanged by the button

    t->clearWritten();
    h.session.SensorCommands();
    QCOMPARE(t->written(), QByteArray::fromHex("5a0b5a005a015a0d5a045a055a095a0a5a145a155a165a175a085a0f5a0cf0"));

    t->clearWritten();
    h.session.Command29();
    QCOMPARE(t->written(), QByteArray::fromHex("5a005a015a045a05f0"));

    h.cells.setCell(5, QStringLiteral("7"));
    h.cells.setCell(33, QStringLiteral("9"));
    h.cells.setCell(40, QStringLiteral("x"));
    t->arrive(QByteArray::fromHex("0102"));
    h.session.ClearBuffer();
    QCOMPARE(h.link.InBufferCount(), 0);
    QCOMPARE(h.cells.cell(5), QString());
    QCOMPARE(h.cells.cell(33), QString());
    QCOMPARE(h.cells.cell(40), QStringLiteral("x"));

    h.session.MiscCommand();
    QVERIFY(!h.link.PortOpen());
    h.session.StopDataFlow();  // opens the port, then sends one stop byte
    QVERIFY(h.link.PortOpen());
    QCOMPARE(h.transport->written(), QByteArray::fromHex("30"));
    h.session.MiscCommand();
    QVERIFY(!h.link.PortOpen());
}

QTEST_GUILESS_MAIN(ConsultSessionTest)
#include "consult_session_test.moc"
