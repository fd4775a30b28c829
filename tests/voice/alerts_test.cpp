#include "app/settings/settings_access.h"
#include "voice_rig.h"

#include <QTest>

using vexorin::sensors::SensorId;

class AlertsTest : public QObject {
    Q_OBJECT
private slots:
    void textComparison();
    void speedOverLimitSpeaksAndShows();
    void alertBoxOnlySpeaks();
    void voiceOffMessageOnly();
    void boxOffDoesNothing();
    void waterAlertUsesItsOwnTexts();
    void storedOneStartsTheTimer();
    void clickingTwiceLeavesTheTimer();
    void okWritesCancelKeeps();
    void framesShareOneSpot();
    void everyTickRepeats();
};

void AlertsTest::textComparison()
{
    QVERIFY(Alert::overLimit(QStringLiteral("90"), QStringLiteral("80")));
    QVERIFY(!Alert::overLimit(QStringLiteral("100"), QStringLiteral("80")));
    QVERIFY(Alert::overLimit(QStringLiteral("62"), QStringLiteral("100")));
    QVERIFY(Alert::overLimit(QStringLiteral("120"), QStringLiteral("100")));
    QVERIFY(Alert::overLimit(QStringLiteral("1000"), QStringLiteral("100")));  // a longer text with the same start sorts after it
    QVERIFY(Alert::overLimit(QStringLiteral("9"), QStringLiteral("80")));
    QVERIFY(Alert::overLimit(QStringLiteral("0"), QString()));
    QVERIFY(!Alert::overLimit(QString(), QString()));
    QVERIFY(!Alert::overLimit(QStringLiteral("80"), QStringLiteral("80")));
}

void AlertsTest::speedOverLimitSpeaksAndShows()
{
    VoiceRig r;
    r.speedAlert.setLimit(QStringLiteral("80"));
    r.speedAlert.ClickAlertBox();
    r.speedAlert.ClickMessageBox();
    QCOMPARE(r.speedAlert.timer.interval(), 3000);
    QVERIFY(r.speedAlert.timer.isActive());
    r.displays.setLabel(SensorId::Speed, QStringLiteral("90"));
    r.speedAlert.Tick();
    QCOMPARE(r.speech.spoken(), QStringList{QStringLiteral("Vehicle Speed Alert!")});
    QCOMPARE(r.messages, QStringList{QStringLiteral("Vehicle Speed Alert!.")});
    QVERIFY(r.speech.selected().isEmpty());
    r.displays.setLabel(SensorId::Speed, QStringLiteral("100"));
    r.speedAlert.Tick();
    QCOMPARE(r.speech.spoken().size(), 1);
    QCOMPARE(r.messages.size(), 1);
}

void AlertsTest::alertBoxOnlySpeaks()
{
    VoiceRig r;
    r.speedAlert.setLimit(QStringLiteral("80"));
    r.speedAlert.ClickAlertBox();
    r.displays.setLabel(SensorId::Speed, QStringLiteral("90"));
    r.speedAlert.Tick();
    QCOMPARE(r.speech.spoken().size(), 1);
    QVERIFY(r.messages.isEmpty());
}

void AlertsTest::voiceOffMessageOnly()
{
    VoiceRig r;
    r.voice.setVoiceOnChecked(false);
    r.speedAlert.setLimit(QStringLiteral("80"));
    r.speedAlert.ClickAlertBox();
    r.speedAlert.ClickMessageBox();
    r.displays.setLabel(SensorId::Speed, QStringLiteral("90"));
    r.speedAlert.Tick();
    QVERIFY(r.speech.spoken().isEmpty());
    QCOMPARE(r.messages, QStringList{QStringLiteral("Vehicle Speed Alert!.")});
}

void AlertsTest::boxOffDoesNothing()
{
    VoiceRig r;
    r.speedAlert.setLimit(QStringLiteral("80"));
    r.speedAlert.ClickMessageBox();
    r.displays.setLabel(SensorId::Speed, QStringLiteral("90"));
    r.speedAlert.Tick();
    QVERIFY(r.speech.spoken().isEmpty());
    QVERIFY(r.messages.isEmpty());
}

void AlertsTest::waterAlertUsesItsOwnTexts()
{
    VoiceRig r;
    r.waterAlert.setLimit(QStringLiteral("200"));
    QCOMPARE(r.waterAlert.echo(), QStringLiteral("200"));
    r.waterAlert.ClickAlertBox();
    r.waterAlert.ClickMessageBox();
    r.displays.setLabel(SensorId::Water, QStringLiteral("212"));
    r.displays.setLabel(SensorId::Speed, QStringLiteral("999"));
    r.waterAlert.Tick();
    QCOMPARE(r.speech.spoken(), QStringList{QStringLiteral("Water temperature Alert!")});
    QCOMPARE(r.messages, QStringList{QStringLiteral("Water Temperature Alert!.")});
    QCOMPARE(QLatin1String(r.waterAlert.spec().timer), QStringLiteral("WaterTempAlertTimer"));
}

void AlertsTest::storedOneStartsTheTimer()
{
    VoiceRig r;
    r.settings.store->WriteSetting(QStringLiteral("SpeedAlert"), QStringLiteral("SpeedAlertValue"), QStringLiteral("70"));
    r.settings.store->WriteSetting(QStringLiteral("SpeedAlert"), QStringLiteral("SpeedAlert"), QStringLiteral("1"));
    r.settings.store->WriteSetting(QStringLiteral("SpeedAlert"), QStringLiteral("SpeedAlertMessage"), QStringLiteral("1"));
    r.settings.store->WriteSetting(QStringLiteral("WaterAlert"), QStringLiteral("Alert"), QStringLiteral("0"));
    r.speedAlert.restore();
    r.waterAlert.restore();
    QVERIFY(r.speedAlert.timer.isActive());
    QVERIFY(!r.speedAlert.frameVisible());
    QCOMPARE(r.speedAlert.limit(), QStringLiteral("70"));
    QCOMPARE(r.speedAlert.echo(), QStringLiteral("70"));
    QCOMPARE(r.speedAlert.alertBoxValue(), 1);
    QCOMPARE(r.speedAlert.messageBoxValue(), 1);
    QVERIFY(!r.waterAlert.timer.isActive());
    QCOMPARE(r.waterAlert.limit(), QString());
    QCOMPARE(r.waterAlert.messageBoxValue(), 0);
}

void AlertsTest::clickingTwiceLeavesTheTimer()
{
    VoiceRig r;
    r.speedAlert.ClickAlertBox();
    r.speedAlert.ClickAlertBox();
    QVERIFY(!r.speedAlert.timer.isActive());
    // The timer and the box disagree; two clicks still leave the timer as it was.
    r.speedAlert.timer.start();
    r.speedAlert.ClickAlertBox();
    r.speedAlert.ClickAlertBox();
    QVERIFY(r.speedAlert.timer.isActive());
    QCOMPARE(r.speedAlert.alertBoxValue(), 0);
}

void AlertsTest::okWritesCancelKeeps()
{
    VoiceRig r;
    r.waterAlert.ShowFrame();
    r.waterAlert.setLimit(QStringLiteral("220"));
    r.waterAlert.ClickAlertBox();
    r.waterAlert.OK();
    QVERIFY(!r.waterAlert.frameVisible());
    QCOMPARE(r.settings.store->ReadSetting(QStringLiteral("WaterAlert"), QStringLiteral("WaterAlertValue")), QStringLiteral("220"));
    QCOMPARE(r.settings.store->ReadSetting(QStringLiteral("WaterAlert"), QStringLiteral("Alert")), QStringLiteral("1"));
    QCOMPARE(r.settings.store->ReadSetting(QStringLiteral("WaterAlert"), QStringLiteral("WaterAlertMessage")), QStringLiteral("0"));
    r.waterAlert.ShowFrame();
    r.waterAlert.setLimit(QStringLiteral("150"));
    r.waterAlert.Cancel();
    QVERIFY(!r.waterAlert.frameVisible());
    QCOMPARE(r.waterAlert.limit(), QStringLiteral("150"));  // nothing is undone
    QCOMPARE(r.settings.store->ReadSetting(QStringLiteral("WaterAlert"), QStringLiteral("WaterAlertValue")), QStringLiteral("220"));
}

void AlertsTest::framesShareOneSpot()
{
    VoiceRig r;
    r.speedAlert.ShowFrame();
    QVERIFY(r.speedAlert.frameVisible());
    r.waterAlert.ShowFrame();
    QVERIFY(r.waterAlert.frameVisible());
    QVERIFY(!r.speedAlert.frameVisible());
    r.spot.show(FrameSpot::Color);
    QVERIFY(!r.waterAlert.frameVisible());
}

void AlertsTest::everyTickRepeats()
{
    VoiceRig r;
    r.speedAlert.setLimit(QString());
    r.speedAlert.ClickAlertBox();
    r.speedAlert.ClickMessageBox();
    for (int i = 0; i < 3; ++i)
        r.speedAlert.Tick();  // with no data the caption stands at "0", over an empty limit
    QCOMPARE(r.speech.spoken().size(), 3);
    QCOMPARE(r.messages.size(), 3);
}

QTEST_GUILESS_MAIN(AlertsTest)
#include "alerts_test.moc"
