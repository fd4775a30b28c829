#include "app/settings/settings_access.h"
#include "voice/voice_types.h"
#include "voice_rig.h"

#include <QTest>

using vexorin::sensors::SensorId;

class VoiceMonitorTest : public QObject {
    Q_OBJECT
private slots:
    void switchRefusesWithoutConnection();
    void switchRefusesWithoutMonitoring();
    void switchOnAndOff();
    void voiceOffMonitorOnSaysNothing();
    void announcementsOfEverySensor();
    void speedNeedsAUnit();
    void tickDoesNotSelectTheVoice();
    void intervalWhileOffDoesNotStartTheTimer();
    void intervalWhileOnRestartsTheTimer();
    void everyIntervalItem();
    void storedIntervalAtStart();
    void storedVoiceEightDependsOnTheColumn();
    void storedVoiceSixWithXpMatchesNothing();
    void storedVoiceOneIsFemale();
    void changedColumnDoesNotReselect();
    void voiceTypeWritesTheColumnInForce();
    void femaleWritesOneWithNeitherColumn();
    void voiceOnItemTogglesAndStores();
    void monitorOffStopsTheVoiceMonitor();
};

void VoiceMonitorTest::switchRefusesWithoutConnection()
{
    VoiceRig r;
    r.monitor.VoiceMonitorSwitch();
    QCOMPARE(r.messages, QStringList{QStringLiteral("Consult port not connected.")});
    QVERIFY(!r.session.VoiceMonitorTimer.isActive());
}

void VoiceMonitorTest::switchRefusesWithoutMonitoring()
{
    VoiceRig r;
    r.connect();
    r.monitor.VoiceMonitorSwitch();
    QCOMPARE(r.messages, QStringList{QStringLiteral("Sensor monitoring must be on.")});
    QCOMPARE(r.session.VoiceMonitorOnLabel(), QStringLiteral("OFF"));
}

void VoiceMonitorTest::switchOnAndOff()
{
    VoiceRig r;
    r.monitoring();
    r.voice.setCurrentVoice(11);
    r.monitor.VoiceMonitorSwitch();
    QVERIFY(r.session.VoiceMonitorTimer.isActive());
    QCOMPARE(r.session.VoiceMonitorTimer.interval(), 5000);
    QCOMPARE(r.session.VoiceMonitorOnLabel(), QStringLiteral("ON"));
    QVERIFY(r.session.voiceMonitorChecked());
    QCOMPARE(r.speech.selected(), QList<int>{11});
    QCOMPARE(r.speech.spoken(), QStringList{QStringLiteral("Voice Monitor on.")});
    QCOMPARE(r.log.messages().last(), QStringLiteral(": Voice Monitor on."));
    QVERIFY(r.log.text().endsWith(QStringLiteral("\r\n: Voice Monitor on.\r\n")));
    r.monitor.VoiceMonitorSwitch();
    QVERIFY(!r.session.VoiceMonitorTimer.isActive());
    QCOMPARE(r.session.VoiceMonitorOnLabel(), QStringLiteral("OFF"));
    QVERIFY(!r.session.voiceMonitorChecked());
    QCOMPARE(r.speech.spoken().last(), QStringLiteral("Voice Monitor off."));
    QCOMPARE(r.log.messages().last(), QStringLiteral(": Voice Monitor off."));
}

void VoiceMonitorTest::voiceOffMonitorOnSaysNothing()
{
    VoiceRig r;
    r.monitoring();
    r.voice.setVoiceOnChecked(false);
    r.monitor.VoiceMonitorSwitch();
    QCOMPARE(r.session.VoiceMonitorOnLabel(), QStringLiteral("ON"));
    QVERIFY(r.session.VoiceMonitorTimer.isActive());
    r.monitor.VoiceMonitorTimerTick();
    r.monitor.VoiceMonitorTimerTick();
    QVERIFY(r.speech.spoken().isEmpty());
}

void VoiceMonitorTest::announcementsOfEverySensor()
{
    VoiceRig r;
    r.setFrame(typicalFrame());
    r.connect();
    r.stream.ReadAllSensors();
    const std::pair<SensorId, const char*> expected[] = {
        {SensorId::Speed, "Vehicle Speed37.2MPH"},
        {SensorId::RPM, "1012R P M"},
        {SensorId::TPS, "Throttle position voltage is0.46volts."},
        {SensorId::MAF, "Maff voltage is1.01volts."},
        {SensorId::O2L, "Left oxygen voltage is0.45volts."},
        {SensorId::O2R, "Right oxygen voltage is0.46volts."},
        {SensorId::AF, "Air fuel alfa is100"},
        {SensorId::INJ, "Injector pulse time is3milliseconds"},
        {SensorId::Timing, "Ignition timing is14degrees"},
        {SensorId::IACV, "Idle air control valve is30.5"},
        {SensorId::Water, "Water temperature is176degrees."},
        {SensorId::Fuel, "Fuel temperature is104degrees."},
        {SensorId::Battery, "Battery voltage is12.00volts."},
    };
    for (const auto& [id, text] : expected) {
        r.selection.SelectSensor(id);
        r.speech.clear();
        r.monitor.VoiceMonitorTimerTick();
        QCOMPARE(r.speech.spoken(), QStringList{QLatin1String(text)});
    }
}

void VoiceMonitorTest::speedNeedsAUnit()
{
    VoiceRig r;
    r.displays.setLabel(SensorId::Speed, QStringLiteral("62"));
    r.monitor.VoiceMonitorTimerTick();
    QCOMPARE(r.speech.spoken().last(), QStringLiteral("Vehicle Speed62MPH"));
    r.options.ChooseKph();
    r.monitor.VoiceMonitorTimerTick();
    QCOMPARE(r.speech.spoken().last(), QStringLiteral("Vehicle Speed62kilo meters per hour"));
    r.options.setChecks(false, false, false, true);
    r.speech.clear();
    r.monitor.VoiceMonitorTimerTick();
    QVERIFY(r.speech.spoken().isEmpty());
}

void VoiceMonitorTest::tickDoesNotSelectTheVoice()
{
    VoiceRig r;
    r.monitor.VoiceMonitorTimerTick();
    QVERIFY(r.speech.selected().isEmpty());
    QCOMPARE(r.speech.spoken().size(), 1);
}

void VoiceMonitorTest::intervalWhileOffDoesNotStartTheTimer()
{
    VoiceRig r;
    r.voice.setCurrentVoice(3);
    r.monitor.ChooseInterval(2);
    QCOMPARE(r.session.VoiceMonitorTimer.interval(), 15000);
    QVERIFY(!r.session.VoiceMonitorTimer.isActive());
    QCOMPARE(readSetting(*r.settings.store, Settings::VoiceMonitorInterval), QStringLiteral("15"));
    QCOMPARE(r.monitor.checkedInterval(), 2);
    QCOMPARE(r.speech.selected(), QList<int>{3});
    QCOMPARE(r.speech.spoken(), QStringList{QStringLiteral("Voice monitor announce set to fifteen seconds.")});
    // One-break form: nothing behind the line.
    QVERIFY(r.log.text().endsWith(QStringLiteral("\r\n: Voice monitor announce set to fifteen seconds.")));
}

void VoiceMonitorTest::intervalWhileOnRestartsTheTimer()
{
    VoiceRig r;
    r.monitoring();
    r.monitor.VoiceMonitorSwitch();
    r.monitor.ChooseInterval(6);
    QVERIFY(r.session.VoiceMonitorTimer.isActive());
    QCOMPARE(r.session.VoiceMonitorTimer.interval(), 60000);
    QVERIFY(r.session.VoiceMonitorTimer.remainingTime() > 59000);
}

void VoiceMonitorTest::everyIntervalItem()
{
    const std::tuple<const char*, int, const char*> rows[] = {
        {"5", 5000, "five seconds."},     {"10", 10000, "ten seconds."},     {"15", 15000, "fifteen seconds."},
        {"20", 20000, "twenty seconds."}, {"25", 25000, "twentyfive seconds."}, {"30", 30000, "thirty seconds."},
        {"1min", 60000, "one minute."},   {"2min", 120000, "two minutes."},  {"3min", 180000, "three minutes."},
        {"4min", 240000, "four minutes."}, {"5min", 300000, "five minutes."}};
    VoiceRig r;
    for (int i = 0; i < 11; ++i) {
        const auto& [value, ms, tail] = rows[i];
        r.monitor.ChooseInterval(i);
        QCOMPARE(r.session.VoiceMonitorTimer.interval(), ms);
        QCOMPARE(readSetting(*r.settings.store, Settings::VoiceMonitorInterval), QLatin1String(value));
        QCOMPARE(r.speech.spoken().last(), QStringLiteral("Voice monitor announce set to ") + QLatin1String(tail));
        QCOMPARE(r.log.messages().last(), QStringLiteral(": Voice monitor announce set to ") + QLatin1String(tail));
    }
}

void VoiceMonitorTest::storedIntervalAtStart()
{
    VoiceRig r;
    writeSetting(*r.settings.store, Settings::VoiceMonitorInterval, QStringLiteral("2min"));
    r.monitor.restoreInterval();
    QCOMPARE(r.session.VoiceMonitorTimer.interval(), 120000);
    QCOMPARE(r.monitor.checkedInterval(), 7);
    QVERIFY(!r.session.VoiceMonitorTimer.isActive());
    VoiceRig unknown;
    writeSetting(*unknown.settings.store, Settings::VoiceMonitorInterval, QStringLiteral("7"));
    unknown.monitor.restoreInterval();
    QCOMPARE(unknown.session.VoiceMonitorTimer.interval(), 5000);
    QCOMPARE(unknown.monitor.checkedInterval(), 0);
}

void VoiceMonitorTest::storedVoiceEightDependsOnTheColumn()
{
    VoiceRig seven;
    seven.options.setChecks(true, false, true, false);
    writeSetting(*seven.settings.store, Settings::VoiceType, QStringLiteral("8"));
    seven.monitor.restoreVoiceType();
    QCOMPARE(QLatin1String(kVoiceTypes[std::size_t(seven.monitor.checkedVoiceType())].item), QStringLiteral("ElectronicOne"));
    QCOMPARE(seven.speech.selected(), QList<int>{8});

    VoiceRig xp;
    writeSetting(*xp.settings.store, Settings::VoiceType, QStringLiteral("8"));
    xp.monitor.restoreVoiceType();
    QCOMPARE(QLatin1String(kVoiceTypes[std::size_t(xp.monitor.checkedVoiceType())].item), QStringLiteral("FemaleReverb"));
    QCOMPARE(xp.voice.currentVoice(), 8);
}

void VoiceMonitorTest::storedVoiceSixWithXpMatchesNothing()
{
    VoiceRig r;
    writeSetting(*r.settings.store, Settings::VoiceType, QStringLiteral("6"));
    r.monitor.restoreVoiceType();
    QCOMPARE(r.monitor.checkedVoiceType(), 0);  // Female stays checked
    QVERIFY(r.speech.selected().isEmpty());
    QCOMPARE(r.voice.currentVoice(), 0);
}

void VoiceMonitorTest::storedVoiceOneIsFemale()
{
    VoiceRig r;
    writeSetting(*r.settings.store, Settings::VoiceType, QStringLiteral("1"));
    r.monitor.restoreVoiceType();
    QCOMPARE(r.monitor.checkedVoiceType(), 0);
    QCOMPARE(r.speech.selected(), QList<int>{1});
    QCOMPARE(r.voice.currentVoice(), 1);
}

void VoiceMonitorTest::changedColumnDoesNotReselect()
{
    VoiceRig r;
    r.monitor.ChooseVoiceType(4);  // Male, XP column: 3
    QCOMPARE(r.voice.currentVoice(), 3);
    r.speech.clear();
    r.options.ChooseWindowsSeven();
    QVERIFY(r.speech.selected().isEmpty());
    QCOMPARE(r.voice.currentVoice(), 3);
    r.monitor.ChooseVoiceType(4);  // the next click takes the new column: 14
    QCOMPARE(r.voice.currentVoice(), 14);
}

void VoiceMonitorTest::voiceTypeWritesTheColumnInForce()
{
    VoiceRig r;
    r.monitor.ChooseVoiceType(6);  // Male Cylon
    QCOMPARE(readSetting(*r.settings.store, Settings::VoiceType), QStringLiteral("15"));
    QCOMPARE(r.monitor.checkedVoiceType(), 6);
    r.options.ChooseWindowsSeven();
    r.monitor.ChooseVoiceType(6);
    QCOMPARE(readSetting(*r.settings.store, Settings::VoiceType), QStringLiteral("13"));
    QCOMPARE(r.speech.selected(), (QList<int>{15, 13}));
}

void VoiceMonitorTest::femaleWritesOneWithNeitherColumn()
{
    VoiceRig r;
    r.options.setChecks(true, false, false, false);
    r.monitor.ChooseVoiceType(2);
    QCOMPARE(readSetting(*r.settings.store, Settings::VoiceType), QString());
    QVERIFY(r.speech.selected().isEmpty());
    QCOMPARE(r.monitor.checkedVoiceType(), 2);
    r.monitor.ChooseVoiceType(0);
    QCOMPARE(readSetting(*r.settings.store, Settings::VoiceType), QStringLiteral("1"));
    QVERIFY(r.speech.selected().isEmpty());
}

void VoiceMonitorTest::voiceOnItemTogglesAndStores()
{
    VoiceRig r;
    r.voice.setCurrentVoice(10);
    r.monitor.ToggleVoiceOn();
    QVERIFY(!r.voice.voiceOnChecked());
    QCOMPARE(r.monitor.VoiceSwitch, QStringLiteral("Voice Off"));
    QCOMPARE(readSetting(*r.settings.store, Settings::VoiceOn), QStringLiteral("Off"));
    QCOMPARE(r.speech.selected(), QList<int>{10});
    QVERIFY(r.speech.spoken().isEmpty());
    r.monitor.ToggleVoiceOn();
    QVERIFY(r.voice.voiceOnChecked());
    QCOMPARE(r.monitor.VoiceSwitch, QStringLiteral("Voice On"));
    QCOMPARE(readSetting(*r.settings.store, Settings::VoiceOn), QStringLiteral("On"));
}

void VoiceMonitorTest::monitorOffStopsTheVoiceMonitor()
{
    VoiceRig r;
    r.monitoring();
    r.monitor.VoiceMonitorSwitch();
    r.stream.MonitorOnOff();
    QVERIFY(!r.session.VoiceMonitorTimer.isActive());
    QCOMPARE(r.session.VoiceMonitorOnLabel(), QStringLiteral("OFF"));
}

QTEST_GUILESS_MAIN(VoiceMonitorTest)
#include "voice_monitor_test.moc"
