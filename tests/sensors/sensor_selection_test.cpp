#include "monitor_rig.h"

#include <QTest>

using vexorin::sensors::SensorId;
using vexorin::sensors::kPanelOrder;

class SensorSelectionTest : public QObject {
    Q_OBJECT
private slots:
    void startState();
    void buttonBeforeConnecting();
    void buttonStepsCopyColoursAndMaximum();
    void injectorWordsDiffer();
    void waterGraphTitleAsWritten();
    void everyButtonLogsAndSpeaksItsText();
    void sameButtonTwiceRepeats();
    void o2LeftFreezesLargeValueWhileMonitoring();
    void displaySensorValuesCopiesTheChosenLabel();
    void voiceOffSpeaksNothing();
};

void SensorSelectionTest::startState()
{
    MonitorRig r;
    QCOMPARE(r.displays.selectedSensor(), QStringLiteral("Speed"));
    QCOMPARE(r.displays.largeSensorWord(), QStringLiteral("Speed"));
    QCOMPARE(r.displays.graphSensorLabel(), QStringLiteral("Speed Sensor"));
    QCOMPARE(r.displays.largeBarMax(), 160);
    QVERIFY(!r.selection.DisplaySensorValues.isActive());
    for (SensorId id : kPanelOrder) {
        QVERIFY(!r.displays.hasLabelColor(id));  // no label green until a button is pressed
        QCOMPARE(r.displays.label(id), QStringLiteral("0"));
    }
}

void SensorSelectionTest::buttonBeforeConnecting()
{
    MonitorRig r;
    r.selection.SelectSensor(SensorId::RPM);
    QCOMPARE(r.displays.graphSensorLabel(), QStringLiteral("RPM Sensor"));
    QCOMPARE(r.displays.largeSensorWord(), QStringLiteral("RPM"));
    QCOMPARE(r.displays.largeBarMax(), 7000);
    QCOMPARE(r.displays.labelColor(SensorId::RPM), quint32(0x00FF00));
    QCOMPARE(r.displays.labelColor(SensorId::Speed), quint32(0xFF8080));
    QCOMPARE(r.speech.spoken(), QStringList{QStringLiteral("Voice monitor set to RPM.")});
    QCOMPARE(r.log.messages(), QStringList{QStringLiteral(": Voice monitor set to RPM.")});
    QCOMPARE(r.session.ConnectedLabel(), QStringLiteral("Disconnected"));
}

void SensorSelectionTest::buttonStepsCopyColoursAndMaximum()
{
    MonitorRig r;
    int graphMax = -1;
    r.selection.setGraphMaximumHook([&](int m) { graphMax = m; });
    r.displays.setLabel(SensorId::Battery, QStringLiteral("13.84"));
    r.displays.setBarColors(int(SensorId::Battery), {0x112233, 0x445566, 0x778899, 0});
    r.selection.SelectSensor(SensorId::Battery);
    QCOMPARE(r.displays.largeValue(), QStringLiteral("13.84"));
    const BarColors large = r.displays.barColors(SensorDisplays::kLargeBarIndex);
    QCOMPARE(large.back, quint32(0x112233));
    QCOMPARE(large.start, quint32(0x445566));
    QCOMPARE(large.end, quint32(0x778899));
    QCOMPARE(graphMax, 20);
    QCOMPARE(r.displays.largeBarMax(), 20);
    QCOMPARE(r.displays.largeSensorWord(), QStringLiteral("Battery"));
    QCOMPARE(r.displays.selectedSensor(), QStringLiteral("Battery"));
    for (SensorId id : kPanelOrder)
        QCOMPARE(r.displays.labelColor(id), id == SensorId::Battery ? quint32(0x00FF00) : quint32(0xFF8080));
}

void SensorSelectionTest::injectorWordsDiffer()
{
    MonitorRig r;
    r.connect();
    r.setFrame(typicalFrame());
    r.selection.SelectSensor(SensorId::INJ);
    QCOMPARE(r.displays.largeSensorWord(), QStringLiteral("INJ"));
    QCOMPARE(r.displays.selectedSensor(), QStringLiteral("Injector"));
    r.stream.ReadAllSensors();
    QCOMPARE(r.displays.largeValue(), QStringLiteral("3"));  // the stream's test matched
    r.displays.setLargeValue(QStringLiteral("x"));
    r.selection.DisplaySensorValuesTick();
    QCOMPARE(r.displays.largeValue(), QStringLiteral("3"));  // and DisplaySensorValues' test too
    QCOMPARE(r.displays.selectedSensorValue(), QStringLiteral("3"));
}

void SensorSelectionTest::waterGraphTitleAsWritten()
{
    MonitorRig r;
    r.selection.SelectSensor(SensorId::Water);
    QCOMPARE(r.displays.graphSensorLabel(), QStringLiteral("Water Srnsor"));
    QCOMPARE(r.speech.spoken(), QStringList{QStringLiteral("Voice monitor set to Water Temperature.")});
}

void SensorSelectionTest::everyButtonLogsAndSpeaksItsText()
{
    const std::pair<SensorId, const char*> logs[] = {
        {SensorId::Speed, ": Voice monitor set to Vehicle Speed."},
        {SensorId::TPS, ": Voice monitor set to Throttle Position Sensor."},
        {SensorId::MAF, ": Voice monitor set to mass airflow sensor."},
        {SensorId::O2L, ": Voice monitor set to Left Oxygen Sensor."},
        {SensorId::O2R, ": Voice monitor set to Right Oxygen Sensor."},
        {SensorId::INJ, ": Voice monitor set to Injector Pulse."},
        {SensorId::Timing, ": Voice monitor set to Ignition Timing."},
        {SensorId::IACV, ": Voice monitor set to Idle Air Control Valve."},
        {SensorId::Fuel, ": Voice monitor set to Fuel Temperature."},
        {SensorId::Battery, ": Voice monitor set to Battery Voltage."},
        {SensorId::AF, ": Voice monitor set to Air Fuel Alfa."},
    };
    MonitorRig r;
    for (const auto& [id, text] : logs) {
        r.selection.SelectSensor(id);
        QCOMPARE(r.log.messages().last(), QLatin1String(text));
    }
    QCOMPARE(r.speech.spoken().last(), QStringLiteral("Voice monitor set to air fuel alfa."));
    QCOMPARE(r.speech.spoken().first(), QStringLiteral("Voice monitor set to vehicle speed."));
    QVERIFY(r.speech.spoken().contains(QStringLiteral("Voice monitor set to idle air control valve.")));
}

void SensorSelectionTest::sameButtonTwiceRepeats()
{
    MonitorRig r;
    r.selection.SelectSensor(SensorId::Timing);
    r.selection.SelectSensor(SensorId::Timing);
    QCOMPARE(r.log.messages().size(), 2);
    QCOMPARE(r.log.messages().at(0), r.log.messages().at(1));
    QCOMPARE(r.speech.spoken(), (QStringList{QStringLiteral("Voice monitor set to ignition timing."),
                                             QStringLiteral("Voice monitor set to ignition timing.")}));
}

void SensorSelectionTest::o2LeftFreezesLargeValueWhileMonitoring()
{
    MonitorRig r;
    r.connect();
    r.setFrame(typicalFrame());
    r.stream.MonitorOnOff();
    r.stream.ReadAllSensors();
    r.selection.SelectSensor(SensorId::O2R);
    QCOMPARE(r.displays.largeValue(), QStringLiteral("0.46"));
    QCOMPARE(r.displays.selectedSensor(), QStringLiteral("O2 (R)"));
    FrameData d = typicalFrame();
    d[7] = 10;
    r.setFrame(d);
    for (int i = 0; i < 3; ++i) {
        r.stream.ReadAllSensors();
        r.selection.DisplaySensorValuesTick();
    }
    QCOMPARE(r.displays.label(SensorId::O2R), QStringLiteral("0.10"));
    QCOMPARE(r.displays.largeValue(), QStringLiteral("0.46"));
}

void SensorSelectionTest::displaySensorValuesCopiesTheChosenLabel()
{
    MonitorRig r;
    r.displays.setLabel(SensorId::Timing, QStringLiteral("22"));
    r.selection.SelectSensor(SensorId::Timing);
    r.displays.setLabel(SensorId::Timing, QStringLiteral("24"));
    r.selection.DisplaySensorValuesTick();
    QCOMPARE(r.displays.largeValue(), QStringLiteral("24"));
    QCOMPARE(r.displays.selectedSensorValue(), QStringLiteral("24"));
}

void SensorSelectionTest::voiceOffSpeaksNothing()
{
    MonitorRig r;
    r.voice.setVoiceOnChecked(false);
    r.selection.SelectSensor(SensorId::Fuel);
    QVERIFY(r.speech.spoken().isEmpty());
    QCOMPARE(r.log.messages().size(), 1);
}

QTEST_GUILESS_MAIN(SensorSelectionTest)
#include "sensor_selection_test.moc"
