// The voice, alert and fault code windows and menus of the main window, and start-up.
#include "app/app_core.h"
#include "app/fault_codes_window.h"
#include "app/main_window.h"
#include "app/options_menu.h"
#include "app/port_selection.h"
#include "app_rig.h"
#include "consult/consult_session.h"
#include "temp_settings.h"
#include "ui/message_box.h"
#include "voice/alert_frame_panel.h"
#include "voice/alerts.h"
#include "voice/qt_speech_out.h"
#include "voice/recording_speech_out.h"
#include "voice/speech_engines_window.h"
#include "voice/speech_recognition.h"
#include "voice/startup_announce_window.h"
#include "voice/voice_gate.h"
#include "voice/voice_monitor.h"
#include "widget_helpers.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QTextToSpeech>

using App = AppRig;

class VoiceWindowsTest : public QObject {
    Q_OBJECT
private slots:
    void init() { MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes << t; }); }
    void cleanup() { MessageBoxes::setPresenter({}); boxes.clear(); }
    void firstRunWithAnEmptyStore();
    void storedVoiceOffStillSpeaksTheAnnouncement();
    void menusOfVoiceAlertsOptionsAndHelp();
    void alertFramesShowOneAtATime();
    void startupAnnounceWindow();
    void faultCodesWindowFromHelp();
    void recognitionWithOrWithoutPort();
    void speechEnginesWindowListsWhatQtSees();
    void realEngineIsReady();

private:
    QStringList boxes;
};

void VoiceWindowsTest::firstRunWithAnEmptyStore()
{
    App a;
    a.open();
    QVERIFY(a.core.options().mph() && !a.core.options().kph());
    QVERIFY(a.core.options().windowsXP() && !a.core.options().windowsSeven());
    QCOMPARE(a.core.voiceMonitor().checkedInterval(), 0);
    QCOMPARE(a.core.voiceMonitor().checkedVoiceType(), 0);
    QVERIFY(a.core.voice().voiceOnChecked());
    QCOMPARE(a.core.session().VoiceMonitorTimer.interval(), 5000);
    QCOMPARE(a.core.voice().currentVoice(), 0);
    QVERIFY(a.speech.spoken().isEmpty());
    for (const char* checked : {"MPH", "WindowsXP", "FiveSeconds", "Female", "VoiceOn"})
        QVERIFY2(a.window->action(QLatin1String(checked))->isChecked(), checked);
    for (const char* unchecked : {"KPH", "WindowsSeven", "TenSeconds", "Male"})
        QVERIFY2(!a.window->action(QLatin1String(unchecked))->isChecked(), unchecked);
}

void VoiceWindowsTest::storedVoiceOffStillSpeaksTheAnnouncement()
{
    App a;
    a.settings.store->WriteSetting(QStringLiteral("VoiceOn"), QStringLiteral("Setting"), QStringLiteral("Off"));
    a.settings.store->WriteSetting(QStringLiteral("StartupAnnounce"), QStringLiteral("Setting"), QStringLiteral("Hello driver."));
    a.settings.store->WriteSetting(QStringLiteral("MPH"), QStringLiteral("Setting"), QStringLiteral("maybe"));
    a.settings.store->WriteSetting(QStringLiteral("VoiceMonitorInterval"), QStringLiteral("Interval"), QStringLiteral("30"));
    a.open();
    QVERIFY(a.window->action(QStringLiteral("VoiceOn"))->isChecked());
    QCOMPARE(a.speech.spoken(), QStringList{QStringLiteral("Hello driver.")});
    QVERIFY(a.window->action(QStringLiteral("MPH"))->isChecked());  // a value other than True or False leaves the design
    QVERIFY(a.window->action(QStringLiteral("ThirtySeconds"))->isChecked());
    QVERIFY(!a.window->action(QStringLiteral("FiveSeconds"))->isChecked());
}

void VoiceWindowsTest::menusOfVoiceAlertsOptionsAndHelp()
{
    App a;
    a.open();
    const std::pair<const char*, const char*> items[] = {
        {"VoiceMonitor", "Voice Monitor"}, {"FiveMinuteIntervals", "5 Minute Intervals"},
        {"TwentyFiveSeconds", "25 Second intervals"}, {"CylonOne", "Female Cylon"},
        {"ElectronicTwo", "Male Electronic"}, {"StartupAnnounce", "Startup Announce"},
        {"Speed", "Speed Alert"}, {"WaterTempAlert", "Water Temp Alert"}, {"KPH", "KPH"},
        {"WindowsSeven", "Windows 7"}, {"WindowsXP", "Windows XP/Windows Vista"},
        {"StartVoiceRecognition", "Start Microsoft Speech Recognition"},
        {"SpeechEngines", "Check or Tweak Installed Speech Engines"}, {"FaultCodes", "Fault Codes"}};
    for (const auto& [name, caption] : items) {
        QAction* act = a.window->action(QLatin1String(name));
        QVERIFY2(act, name);
        QCOMPARE(act->text(), QLatin1String(caption));
    }
    a.window->action(QStringLiteral("KPH"))->trigger();
    QVERIFY(a.window->action(QStringLiteral("KPH"))->isChecked());
    QVERIFY(!a.window->action(QStringLiteral("MPH"))->isChecked());
    QCOMPARE(a.settings.store->ReadSetting(QStringLiteral("KPH"), QStringLiteral("Setting")), QStringLiteral("True"));
    QCOMPARE(a.settings.store->ReadSetting(QStringLiteral("MPH"), QStringLiteral("Setting")), QStringLiteral("False"));
    a.window->action(QStringLiteral("TenSeconds"))->trigger();
    QVERIFY(a.window->action(QStringLiteral("TenSeconds"))->isChecked());
    QVERIFY(!a.window->action(QStringLiteral("FiveSeconds"))->isChecked());
    a.window->action(QStringLiteral("VoiceOn"))->trigger();
    QVERIFY(!a.window->action(QStringLiteral("VoiceOn"))->isChecked());
    // The voice monitor button refuses without a connection.
    findButton(a.window.get(), QStringLiteral("Voice On/Off"))->click();
    QCOMPARE(boxes, QStringList{QStringLiteral("Consult port not connected.")});
}

void VoiceWindowsTest::alertFramesShowOneAtATime()
{
    App a;
    a.open();
    auto* speed = a.window->findChild<AlertFramePanel*>(QStringLiteral("SpeedAlert"));
    auto* water = a.window->findChild<AlertFramePanel*>(QStringLiteral("WaterAlert"));
    QVERIFY(speed && water);
    QVERIFY(!speed->isVisible() && !water->isVisible());
    a.window->action(QStringLiteral("Speed"))->trigger();
    QVERIFY(speed->isVisible());
    QCOMPARE(speed->title(), QStringLiteral("Speed Alert"));
    QTest::keyClicks(speed->limitBox(), QStringLiteral("80"));
    QCOMPARE(speed->echo()->text(), QStringLiteral("80"));
    speed->alertBox()->click();
    QVERIFY(a.core.alert(0).timer.isActive());
    QCOMPARE(speed->messageBox()->text(), QStringLiteral("Display Alert Message"));
    saveShot(a.window.get(), QStringLiteral("speed-alert.png"));
    a.window->action(QStringLiteral("WaterTempAlert"))->trigger();
    QVERIFY(!speed->isVisible());
    QVERIFY(water->isVisible());
    QCOMPARE(water->title(), QStringLiteral("Water Temp Alert"));
    saveShot(water, QStringLiteral("water-alert.png"));
    findButton(water, QStringLiteral("OK"))->click();
    QVERIFY(!water->isVisible());
    QCOMPARE(a.settings.store->ReadSetting(QStringLiteral("WaterAlert"), QStringLiteral("Alert")), QStringLiteral("0"));
}

void VoiceWindowsTest::startupAnnounceWindow()
{
    App a;
    a.open();
    a.window->action(QStringLiteral("StartupAnnounce"))->trigger();
    StartupAnnounceWindow* w = a.window->startupAnnounceWindow();
    QVERIFY(w && w->isVisible());
    QCOMPARE(w->windowTitle(), QStringLiteral("Startup Announce"));
    QCOMPARE(w->text(), QString());  // the stored text (none) replaced the design text
    QCOMPARE(StartupAnnounceWindow::kDesignText, QStringLiteral("E mods. Engine management, observation and diagnostic system."));
    w->setText(QStringLiteral("Ready to drive."));
    a.window->action(QStringLiteral("VoiceOn"))->trigger();  // voice off
    findButton(w, QStringLiteral("Test"))->click();
    QCOMPARE(a.speech.spoken(), QStringList{QStringLiteral("Ready to drive.")});
    saveShot(w, QStringLiteral("startup-announce.png"));
    findButton(w, QStringLiteral("Cancel"))->click();
    QVERIFY(!w->isVisible());
    QCOMPARE(a.settings.store->ReadSetting(QStringLiteral("StartupAnnounce"), QStringLiteral("Setting")), QString());
    a.window->action(QStringLiteral("StartupAnnounce"))->trigger();
    w->setText(QStringLiteral("Ready to drive."));
    findButton(w, QStringLiteral("OK"))->click();
    QCOMPARE(a.settings.store->ReadSetting(QStringLiteral("StartupAnnounce"), QStringLiteral("Setting")), QStringLiteral("Ready to drive."));
    a.window->action(QStringLiteral("StartupAnnounce"))->trigger();
    QCOMPARE(w->text(), QStringLiteral("Ready to drive."));
}

void VoiceWindowsTest::faultCodesWindowFromHelp()
{
    App a;
    a.open();
    a.window->action(QStringLiteral("FaultCodes"))->trigger();
    FaultCodesWindow* w = a.window->faultCodesWindow();
    QVERIFY(w && w->isVisible());
    QCOMPARE(w->lines().size(), 18);
    saveShot(w, QStringLiteral("fault-codes.png"));
}

void VoiceWindowsTest::recognitionWithOrWithoutPort()
{
    App a;
    a.open();
    // Windows speech recognition has no counterpart here: the item is shown disabled and says why.
    QAction* item = a.window->action(QStringLiteral("StartVoiceRecognition"));
    QVERIFY(!item->isEnabled());
    QVERIFY(item->toolTip().contains(QStringLiteral("Windows only")));
    a.core.recognition().StartVoiceRecognition();
    a.core.recognition().StartVoiceRecognition();
    QCOMPARE(a.core.recognition().contextsCreated(), 1);
    QVERIFY(a.core.recognition().dictationActive());
    QVERIFY(boxes.isEmpty());
    QCOMPARE(a.core.session().ConnectedLabel(), QStringLiteral("Disconnected"));
}

void VoiceWindowsTest::speechEnginesWindowListsWhatQtSees()
{
    App a;
    a.open();
    a.window->action(QStringLiteral("SpeechEngines"))->trigger();
    SpeechEnginesWindow* w = a.window->speechEnginesWindow();
    QVERIFY(w && w->isVisible());
    const QString report = w->report();
    for (const QString& e : QTextToSpeech::availableEngines())
        QVERIFY(report.contains(QStringLiteral("Engine: ") + e));
    QVERIFY(report.contains(QStringLiteral("Male Cylon: voice kal16")));
    saveShot(w, QStringLiteral("speech-engines.png"));
}

void VoiceWindowsTest::realEngineIsReady()
{
    if (QTextToSpeech::availableEngines().isEmpty())
        QSKIP("no speech engine installed here: Vexorin runs silently");
    QtSpeechOut out;
    QVERIFY(out.ready());
    QVERIFY(!out.voiceNames().isEmpty());
    bool seven = false;
    out.setWindowsSevenQuery([&] { return seven; });
    out.Select(3);  // Male Normal in the XP column
    if (out.voiceNames().contains(QStringLiteral("rms")))
        QCOMPARE(out.currentVoice(), QStringLiteral("rms"));
    QCOMPARE(out.pitch(), 0.0);
    out.Select(15);  // Male Cylon in the XP column
    QVERIFY(out.pitch() < -0.5);
    seven = true;
    out.Select(15);  // Male Reverb in the Windows 7 column
    QVERIFY(out.pitch() > -0.5 && out.pitch() < 0);
    out.Select(99);  // no type uses it: nothing changes
    QVERIFY(out.pitch() > -0.5 && out.pitch() < 0);
    out.Speak(QStringLiteral("Vexorin speech test."));  // accepted, with or without an audio device
}

QTEST_MAIN(VoiceWindowsTest)
#include "voice_windows_test.moc"
