#include "consult/link_writes.h"
#include "link_wait.h"
#include "monitor_rig.h"

#include <QTest>

using vexorin::sensors::SensorId;

class SensorStreamTest : public QObject {
    Q_OBJECT
private slots:
    void monitorOnSetsEverything();
    void monitorOffSetsEverything();
    void monitorOffOpensAClosedPort();
    void refusesWhileDisconnected();
    void refusesWhileAToolIsShowingInOrder();
    void stopsTheGraphTestFirst();
    void readSendsTheRequestThenStops();
    void decodesAFrameInOrder();
    void largeViewFollowsTheStreamWord();
    void highByteAboveThreeLeavesTheSensorAlone();
    void extraByteInFrontDropsTheFrame();
    void frameStartByChanceIsDecoded();
    void speed255IsAnOrdinaryFrame();
    void droppedFrameWritesNoDateLine();
    void logGetsWholeFrames();
    void o2LeftDoesNotMoveTheLargeView();
    void onlyPollingTwoReads();
    void timeoutLogsOncePerOutageAndRecovers();
    void portPulledOutStopsMonitoring();
    void disconnectedLabelStopsMonitorButton();
    void mafFeedsTheVqTable();
};

void SensorStreamTest::monitorOnSetsEverything()
{
    MonitorRig r;
    r.connect();
    r.speech.clear();
    r.stream.MonitorOnOff();
    QVERIFY(r.selection.DisplaySensorValues.isActive());
    QCOMPARE(r.selection.DisplaySensorValues.interval(), 100);
    QCOMPARE(r.session.PollingSwitch, QStringLiteral("2"));
    QVERIFY(r.session.GetAllSensorDataTimer.isActive());
    QCOMPARE(r.session.GetAllSensorDataTimer.interval(), 100);
    QCOMPARE(r.session.MonitorSensorsOnLabel(), QStringLiteral("ON"));
    QCOMPARE(r.panels.text(3), QStringLiteral("Monitoring Sensors"));
    QCOMPARE(r.speech.spoken(), QStringList{QStringLiteral("Sensor Monitor on.")});
    QCOMPARE(r.log.messages().last(), QStringLiteral(": Sensor Monitor on."));
}

void SensorStreamTest::monitorOffSetsEverything()
{
    MonitorRig r;
    r.connect();
    r.stream.MonitorOnOff();
    r.session.VoiceMonitorTimer.start();
    r.session.setVoiceMonitorOnLabel(QStringLiteral("ON"));
    r.session.setVoiceMonitorChecked(true);
    r.speech.clear();
    r.transport->clearWritten();
    r.transport->arrive(QByteArray::fromHex("0102"));
    r.stream.MonitorOnOff();
    QVERIFY(!r.selection.DisplaySensorValues.isActive());
    QVERIFY(!r.session.GetAllSensorDataTimer.isActive());
    QCOMPARE(r.session.PollingSwitch, QStringLiteral("1"));
    QVERIFY(!r.session.VoiceMonitorTimer.isActive());
    QCOMPARE(r.session.VoiceMonitorOnLabel(), QStringLiteral("OFF"));
    QVERIFY(!r.session.voiceMonitorChecked());
    QCOMPARE(r.session.MonitorSensorsOnLabel(), QStringLiteral("OFF"));
    QCOMPARE(r.panels.text(3), QStringLiteral("Standby"));
    // Spoken with the colon, logged without: kept as it is.
    QCOMPARE(r.speech.spoken(), QStringList{QStringLiteral(": Sensor and voice Monitor off.")});
    QCOMPARE(r.log.messages().last(), QStringLiteral("Sensor and voice Monitor off."));
    QCOMPARE(r.transport->written(), QByteArray::fromHex("3030"));
    QCOMPARE(r.link.InBufferCount(), 0);
    QVERIFY(r.session.SensorOffTimer.isActive());
    QCOMPARE(r.session.ConnectedLabel(), QStringLiteral("Connected"));
}

void SensorStreamTest::monitorOffOpensAClosedPort()
{
    MonitorRig r;
    r.connect();
    r.stream.MonitorOnOff();
    r.session.MiscCommand();  // the service button closes the port under the session
    QVERIFY(!r.link.PortOpen());
    r.stream.MonitorOnOff();
    QVERIFY(r.link.PortOpen());
    QCOMPARE(r.transport->written(), QByteArray::fromHex("3030"));
}

void SensorStreamTest::refusesWhileDisconnected()
{
    MonitorRig r;
    r.stream.MonitorOnOff();
    QCOMPARE(r.messages, QStringList{QStringLiteral("Consult port not connected.")});
    QCOMPARE(r.session.MonitorSensorsOnLabel(), QStringLiteral("OFF"));
    QVERIFY(!r.session.GetAllSensorDataTimer.isActive());
}

void SensorStreamTest::refusesWhileAToolIsShowingInOrder()
{
    MonitorRig r;
    r.connect();
    bool map = true, downloader = true, registers = true, active = true;
    r.session.owner().setToolShowing(LinkOwner::Tool::MapViewer, [&] { return map; });
    r.session.owner().setToolShowing(LinkOwner::Tool::BinFileDownloader, [&] { return downloader; });
    r.session.owner().setToolShowing(LinkOwner::Tool::RegisterViewer, [&] { return registers; });
    r.session.owner().setToolShowing(LinkOwner::Tool::ActiveTest, [&] { return active; });
    const QStringList expected{QStringLiteral("Please close the Map Viewer first."),
                               QStringLiteral("Please close the Bin File Downloader first."),
                               QStringLiteral("Please close the E.C.U. Register Viewer first."),
                               QStringLiteral("Please close the Active Test first.")};
    for (int i = 0; i < 4; ++i) {
        r.messages.clear();
        r.stream.MonitorOnOff();
        QCOMPARE(r.messages, QStringList{expected[i]});
        QCOMPARE(r.session.MonitorSensorsOnLabel(), QStringLiteral("OFF"));
        bool* flags[] = {&map, &downloader, &registers, &active};
        *flags[i] = false;
    }
    r.messages.clear();
    r.stream.MonitorOnOff();
    QVERIFY(r.messages.isEmpty());
    QCOMPARE(r.session.MonitorSensorsOnLabel(), QStringLiteral("ON"));
}

void SensorStreamTest::stopsTheGraphTestFirst()
{
    MonitorRig r;
    r.connect();
    int stops = 0;
    r.stream.setGraphTestStopHook([&] { ++stops; });
    r.stream.MonitorOnOff();
    r.stream.MonitorOnOff();
    QCOMPARE(stops, 2);
    r.session.ConnectDisconnect();
    r.stream.MonitorOnOff();  // refused before the graph is touched
    QCOMPARE(stops, 2);
}

void SensorStreamTest::readSendsTheRequestThenStops()
{
    MonitorRig r;
    r.connect();
    r.setFrame(typicalFrame());
    r.transport->clearWritten();
    r.stream.ReadAllSensors();
    QByteArray expected = allSensorsRequestKey();
    QCOMPARE(expected.size(), 32);
    expected.append(char(0xF0));
    expected.append(QByteArray::fromHex("3030"));
    QCOMPARE(r.transport->written(), expected);
    // One byte per write.
    QCOMPARE(r.transport->writes().size(), 35);
}

void SensorStreamTest::decodesAFrameInOrder()
{
    MonitorRig r;
    r.connect();
    r.setFrame(typicalFrame());
    QStringList activeTestRpm;
    r.stream.setActiveTestRpmHook([&](const QString& t) { activeTestRpm << t; });
    r.stream.ReadAllSensors();

    const std::pair<SensorId, const char*> labels[] = {
        {SensorId::Speed, "37.2"}, {SensorId::RPM, "1012"},  {SensorId::TPS, "0.46"},    {SensorId::MAF, "1.01"},
        {SensorId::O2L, "0.45"},   {SensorId::O2R, "0.46"},  {SensorId::INJ, "3"},       {SensorId::Timing, "14"},
        {SensorId::IACV, "30.5"},  {SensorId::Water, "176"}, {SensorId::Fuel, "104"},    {SensorId::Battery, "12.00"},
        {SensorId::AF, "100"}};
    for (const auto& [id, text] : labels)
        QCOMPARE(r.displays.label(id), QLatin1String(text));
    const std::pair<SensorId, int> bars[] = {
        {SensorId::Speed, 37}, {SensorId::RPM, 1012}, {SensorId::TPS, 0},     {SensorId::MAF, 1},
        {SensorId::O2L, 4},    {SensorId::O2R, 5},    {SensorId::INJ, 3},     {SensorId::Timing, 14},
        {SensorId::IACV, 30},  {SensorId::Water, 176}, {SensorId::Fuel, 104}, {SensorId::Battery, 12},
        {SensorId::AF, 100}};
    for (const auto& [id, bar] : bars)
        QCOMPARE(r.displays.bar(id), bar);
    QCOMPARE(r.displays.dash(SensorId::RPM), QStringLiteral("1012"));
    QCOMPARE(r.displays.dash(SensorId::Battery), QStringLiteral("12.00"));
    QCOMPARE(r.displays.dash(SensorId::AF), QStringLiteral("0"));  // no A/F on the Dash
    QCOMPARE(activeTestRpm, QStringList{QStringLiteral("1012")});

    const int cells[] = {30, 0, 81, 23, 0, 201, 45, 46, 1, 44, 96, 61, 130, 90, 150};
    for (int i = 0; i < 15; ++i)
        QCOMPARE(r.cells.cell(i + 1), QString::number(cells[i]));
    QCOMPARE(r.cells.cell(33), QStringLiteral("100"));
    QCOMPARE(r.cells.cell(16), QString());
}

void SensorStreamTest::mafFeedsTheVqTable()
{
    MonitorRig r;
    r.connect();
    r.setFrame(typicalFrame());  // MAF 1.01 V, 1012 rpm
    r.stream.ReadAllSensors();
    QCOMPARE(r.stream.vqTable().airQuantity(), 73);
    QCOMPARE(r.stream.vqTable().rpmBin(), 3);
    QCOMPARE(r.stream.vqTable().tpBin(), 1);

    // 5.00 V: the quantity does not fit its field; the call stops and nothing changes.
    FrameData f = typicalFrame();
    f[1] = 0;
    f[2] = 200;  // 2500 rpm
    f[4] = 1000 >> 8;
    f[5] = 1000 & 0xFF;
    r.setFrame(f);
    r.stream.ReadAllSensors();
    QCOMPARE(r.displays.label(SensorId::MAF), QStringLiteral("5.00"));
    QCOMPARE(r.stream.vqTable().airQuantity(), 73);
    QCOMPARE(r.stream.vqTable().rpmBin(), 3);

    // 2.00 V gives the row 1.52, the first to round to 2.
    f[4] = 400 >> 8;
    f[5] = 400 & 0xFF;
    r.setFrame(f);
    r.stream.ReadAllSensors();
    QCOMPARE(r.stream.vqTable().airQuantity(), 1399);
    QCOMPARE(r.stream.vqTable().rpmBin(), 7);
}

void SensorStreamTest::largeViewFollowsTheStreamWord()
{
    MonitorRig r;
    r.connect();
    r.setFrame(typicalFrame());
    r.selection.SelectSensor(SensorId::RPM);
    r.stream.ReadAllSensors();
    // The unrounded value goes to the large view; the label has the whole number.
    QCOMPARE(r.displays.largeValue(), QStringLiteral("1012.5"));
    QCOMPARE(r.displays.largeBar(), 1012);
    QCOMPARE(r.displays.label(SensorId::RPM), QStringLiteral("1012"));
    // DisplaySensorValues overwrites it with the label's whole number.
    r.selection.DisplaySensorValuesTick();
    QCOMPARE(r.displays.largeValue(), QStringLiteral("1012"));

    r.selection.SelectSensor(SensorId::MAF);
    r.stream.ReadAllSensors();
    QCOMPARE(r.displays.largeValue(), QStringLiteral("1.01"));
    QCOMPARE(r.displays.largeBar(), 1);
}

void SensorStreamTest::highByteAboveThreeLeavesTheSensorAlone()
{
    MonitorRig r;
    r.connect();
    r.setFrame(typicalFrame());
    r.stream.ReadAllSensors();
    FrameData d = typicalFrame();
    d[1] = 4;    // RPM high byte
    d[2] = 200;  // RPM low byte
    d[0] = 40;   // speed moves on
    r.setFrame(d);
    r.sink.on = true;
    r.selection.SelectSensor(SensorId::RPM);
    r.stream.ReadAllSensors();
    QCOMPARE(r.displays.label(SensorId::RPM), QStringLiteral("1012"));
    QCOMPARE(r.displays.bar(SensorId::RPM), 1012);
    QCOMPARE(r.displays.dash(SensorId::RPM), QStringLiteral("1012"));
    QCOMPARE(r.displays.label(SensorId::Speed), QStringLiteral("49.6"));
    // The large view and the log take the plain low byte, so the log keeps its place.
    QCOMPARE(r.displays.largeValue(), QStringLiteral("200"));
    QCOMPARE(r.displays.largeBar(), 200);
    QCOMPARE(r.sink.lines.size(), 14);
    QCOMPARE(r.sink.lines.at(2), QStringLiteral("200"));
    QCOMPARE(r.cells.cell(2), QStringLiteral("4"));
}

void SensorStreamTest::extraByteInFrontDropsTheFrame()
{
    MonitorRig r;
    r.connect();
    r.setReply(QByteArray(1, char(0x00)) + allSensorsReply(typicalFrame()));
    r.stream.ReadAllSensors();
    QCOMPARE(r.displays.label(SensorId::Speed), QStringLiteral("0"));
    QCOMPARE(r.displays.label(SensorId::RPM), QStringLiteral("0"));
    QCOMPARE(r.cells.cell(1), QString());
    QVERIFY(r.log.messages().isEmpty() || !r.log.messages().last().contains(QStringLiteral("No reply")));
}

void SensorStreamTest::frameStartByChanceIsDecoded()
{
    MonitorRig r;
    r.connect();
    // Shifted by two: position 33 holds the echo byte... made 255 by chance.
    QByteArray reply = QByteArray(2, char(0x11)) + allSensorsReply(typicalFrame());
    reply[32] = char(0xFF);
    r.setReply(reply);
    r.stream.ReadAllSensors();
    // Decoded as if good: position 35 now holds the frame start 0xFF of the real frame.
    QCOMPARE(r.displays.label(SensorId::Speed), QStringLiteral("316.2"));
    QCOMPARE(r.cells.cell(1), QStringLiteral("255"));
}

void SensorStreamTest::speed255IsAnOrdinaryFrame()
{
    MonitorRig r;
    r.connect();
    FrameData d = typicalFrame();
    d[0] = 255;
    r.setFrame(d);
    r.stream.ReadAllSensors();
    QCOMPARE(r.displays.label(SensorId::Speed), QStringLiteral("316.2"));
    QCOMPARE(r.displays.bar(SensorId::Speed), 316);
    QCOMPARE(r.displays.label(SensorId::RPM), QStringLiteral("1012"));
}

void SensorStreamTest::droppedFrameWritesNoDateLine()
{
    MonitorRig r;
    r.connect();
    r.sink.on = true;
    r.setReply(QByteArray(1, char(0x00)) + allSensorsReply(typicalFrame()));
    r.stream.ReadAllSensors();
    QVERIFY(r.sink.lines.isEmpty());
}

void SensorStreamTest::logGetsWholeFrames()
{
    MonitorRig r;
    r.connect();
    r.sink.on = true;
    r.setFrame(typicalFrame());
    r.stream.ReadAllSensors();
    const QStringList expected{QStringLiteral("<date>"), "37.2", "1012.5", "T:0.46", "T:1.01", "T:0.45", "T:0.46",
                               "3", "14", "30.5", "176", "104", "T:12.00", "100"};
    QCOMPARE(r.sink.lines, expected);
    r.sink.on = false;
    r.stream.ReadAllSensors();
    QCOMPARE(r.sink.lines.size(), 14);
}

void SensorStreamTest::o2LeftDoesNotMoveTheLargeView()
{
    MonitorRig r;
    r.connect();
    r.setFrame(typicalFrame());
    r.stream.MonitorOnOff();
    r.stream.ReadAllSensors();
    r.selection.SelectSensor(SensorId::O2L);
    QCOMPARE(r.displays.largeValue(), QStringLiteral("0.45"));  // the button copies the label once
    FrameData d = typicalFrame();
    d[6] = 90;  // O2 (L) moves to 0.90
    r.setFrame(d);
    r.stream.ReadAllSensors();
    r.selection.DisplaySensorValuesTick();
    QCOMPARE(r.displays.label(SensorId::O2L), QStringLiteral("0.90"));
    QCOMPARE(r.displays.largeValue(), QStringLiteral("0.45"));
}

void SensorStreamTest::onlyPollingTwoReads()
{
    MonitorRig r;
    r.connect();
    r.setFrame(typicalFrame());
    const int before = r.ecu->requests;
    r.stream.GetAllSensorDataTimerTick();
    QCOMPARE(r.ecu->requests, before);
    r.transport->arrive(QByteArray::fromHex("aabb"));
    r.stream.GetAllSensorDataTimerTick();
    QCOMPARE(r.link.InBufferCount(), 0);  // the tick clears the input even when idle
    r.session.PollingSwitch = QStringLiteral("2");
    r.stream.GetAllSensorDataTimerTick();
    QCOMPARE(r.ecu->requests, before + 1);
    QCOMPARE(r.displays.label(SensorId::Speed), QStringLiteral("37.2"));
    QCOMPARE(r.link.InBufferCount(), 0);
}

void SensorStreamTest::timeoutLogsOncePerOutageAndRecovers()
{
    MonitorRig r;
    r.connect();
    r.setFrame(typicalFrame());
    r.stream.MonitorOnOff();
    r.session.GetAllSensorDataTimer.setInterval(60000);  // the test ticks by hand
    r.ecu->silent = true;
    for (int i = 0; i < 3; ++i) {
        r.stream.GetAllSensorDataTimerTick();
        QVERIFY(waitForIdleLink(r.session.owner()));
    }
    QCOMPARE(r.log.messages().count(vexorin::consult::timeoutMessage()), 1);
    QCOMPARE(r.displays.label(SensorId::Speed), QStringLiteral("0"));
    r.ecu->silent = false;
    r.stream.GetAllSensorDataTimerTick();
    QCOMPARE(r.displays.label(SensorId::Speed), QStringLiteral("37.2"));
    r.ecu->silent = true;
    r.stream.GetAllSensorDataTimerTick();
    QVERIFY(waitForIdleLink(r.session.owner()));
    QCOMPARE(r.log.messages().count(vexorin::consult::timeoutMessage()), 2);
}

void SensorStreamTest::portPulledOutStopsMonitoring()
{
    MonitorRig r;
    r.connect();
    r.setFrame(typicalFrame());
    r.stream.MonitorOnOff();
    r.stream.GetAllSensorDataTimerTick();
    r.transport->unplug(QStringLiteral("Device removed"));
    SessionRig::settle();
    QCOMPARE(r.session.MonitorSensorsOnLabel(), QStringLiteral("OFF"));
    QVERIFY(!r.session.GetAllSensorDataTimer.isActive());
    QCOMPARE(r.session.PollingSwitch, QStringLiteral("1"));
    QVERIFY(r.log.messages().contains(QStringLiteral(": Consult port lost (Device removed).")));
    // A tick that was already due does nothing harmful.
    r.stream.GetAllSensorDataTimerTick();
    QVERIFY(r.session.SensorOffTimer.isActive());
}

void SensorStreamTest::disconnectedLabelStopsMonitorButton()
{
    MonitorRig r;
    r.connect();
    r.stream.MonitorOnOff();
    r.session.ConnectDisconnect();
    QCOMPARE(r.session.ConnectedLabel(), QStringLiteral("Disconnected"));
    r.messages.clear();
    r.stream.MonitorOnOff();
    QCOMPARE(r.messages, QStringList{QStringLiteral("Consult port not connected.")});
}

QTEST_GUILESS_MAIN(SensorStreamTest)
#include "sensor_stream_test.moc"
