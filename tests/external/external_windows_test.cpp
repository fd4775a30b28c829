// The External Gauge Monitor and the Sensor Name window: the controls, the
// menus, the rename by heading, and the monitor opened from the main window
// with live readings from the built-in DLP-IO8-G simulator.
#include "app_rig.h"
#include "external/external_sensors.h"
#include "external/external_sensors_window.h"
#include "external/sensor_name_window.h"
#include "external_rig.h"
#include "ui/gradient_bar_widget.h"
#include "ui/message_box.h"
#include "ui/status_panels.h"
#include "widget_helpers.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <QTest>

class ExternalWindowsTest : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes << t; });
    }
    void cleanup()
    {
        MessageBoxes::setPresenter({});
        boxes.clear();
    }
    void controlsAndMenus();
    void checkBoxesDriveTheChannels();
    void displayPercentageGivesCaptions();
    void doubleClickRenamesByTheHeading();
    void namesAreShownAsTheyWereTyped();
    void openedFromTheMainWindowWithLiveReadings();

private:
    QStringList boxes;
};

void ExternalWindowsTest::controlsAndMenus()
{
    ExternalRig r;
    r.setting(QStringLiteral("ExSensor3"), QStringLiteral("True"));
    ExternalSensorsWindow w(r.forWindow());
    QCOMPARE(w.windowTitle(), QStringLiteral("Vexorin External Gauge Monitor"));
    QCOMPARE(w.objectName(), QStringLiteral("ExternalSensors"));
    for (const char* caption : {"Connect/Disconnect", "Start", "Stop"})
        QVERIFY2(findButton(&w, QString::fromLatin1(caption)), caption);
    const struct {
        const char* name;
        const char* caption;
    } items[] = {{"Exit", "Exit"},
                 {"ConnectDisconnect", "Connect/Disconnect"},
                 {"ExternalPort1", "USB  Serial Port (COM3)"},
                 {"InterfaceCheck", "Interface Check"},
                 {"UpdatePortInfo", "Update Port Information"},
                 {"NotifySelected", "Notify When Selecting Ports"},
                 {"DisplayPercentage", "Display Percentage in Valuebar"}};
    for (const auto& it : items) {
        QAction* a = w.action(QString::fromLatin1(it.name));
        QVERIFY2(a, it.name);
        QCOMPARE(a->text(), QString::fromLatin1(it.caption));
    }
    QVERIFY(w.action(QStringLiteral("ExternalPort1"))->isChecked());
    QVERIFY(w.action(QStringLiteral("DisplayPercentage"))->isChecked());
    QVERIFY(!w.action(QStringLiteral("NotifySelected"))->isChecked());
    QVERIFY(w.findChild<QMenu*>(QStringLiteral("Ports")));
    for (int n = 1; n <= 8; ++n) {
        QCOMPARE(w.checkBox(n)->objectName(), QStringLiteral("ExSensor%1").arg(n));
        QCOMPARE(w.checkBox(n)->text(), QString::number(n));
        QCOMPARE(w.checkBox(n)->isChecked(), n == 3);
        QCOMPARE(w.readingBox(n)->text(), QStringLiteral("0.00V"));
        QCOMPARE(w.bar(n)->orientation(), Qt::Vertical);
        QCOMPARE(w.bar(n)->maximum(), 5);
        QCOMPARE(w.bar(n)->backColor(), QColor(128, 128, 255));
        QCOMPARE(w.bar(n)->startColor(), QColor(0, 0, 255));
    }
    QCOMPARE(w.nameLabel(2)->text(), QStringLiteral("Boost PSI"));
    QCOMPARE(w.findChild<QLabel*>(QStringLiteral("StatusText"))->text(), QStringLiteral("Disconnected"));

    findButton(&w, QStringLiteral("Start"))->click();
    QCOMPARE(boxes, QStringList{QStringLiteral("Port is not connected")});
    findButton(&w, QStringLiteral("Connect/Disconnect"))->click();
    QCOMPARE(w.findChild<QLabel*>(QStringLiteral("StatusText"))->text(), QStringLiteral("Connected"));

    bool asked = false;
    connect(&w, &ExternalSensorsWindow::interfaceCheckRequested, this, [&asked] { asked = true; });
    w.action(QStringLiteral("InterfaceCheck"))->trigger();
    QVERIFY(asked);
}

void ExternalWindowsTest::checkBoxesDriveTheChannels()
{
    ExternalRig r;
    ExternalSensorsWindow w(r.forWindow());
    findButton(&w, QStringLiteral("Connect/Disconnect"))->click();
    w.checkBox(7)->click();
    QVERIFY(w.sensors().link().checked(7));
    findButton(&w, QStringLiteral("Start"))->click();
    r.round();
    QCOMPARE(w.readingBox(7)->text(), QStringLiteral("3.50V"));
    QCOMPARE(w.bar(7)->value(), 4);
    QCOMPARE(w.readingBox(6)->text(), QStringLiteral("0.00V"));
    findButton(&w, QStringLiteral("Stop"))->click();
    QCOMPARE(w.readingBox(7)->text(), QStringLiteral("0.00V"));
    QCOMPARE(w.bar(7)->value(), 0);
    // Unticking a box is not saved.
    QCOMPARE(r.setting(QStringLiteral("ExSensor7")), QString());
}

void ExternalWindowsTest::displayPercentageGivesCaptions()
{
    ExternalRig r;
    r.setting(QStringLiteral("CaptionType"), QStringLiteral("0"));
    ExternalSensorsWindow w(r.forWindow());
    QVERIFY(!w.action(QStringLiteral("DisplayPercentage"))->isChecked());
    QCOMPARE(w.bar(1)->text(), QString());
    w.action(QStringLiteral("DisplayPercentage"))->trigger();
    QVERIFY(w.action(QStringLiteral("DisplayPercentage"))->isChecked());
    QCOMPARE(r.setting(QStringLiteral("CaptionType")), QStringLiteral("1"));
    QStringList steps;
    for (int v = 0; v <= 5; ++v) {
        w.bar(1)->setValue(v);
        steps << w.bar(1)->text();
    }
    QCOMPARE(steps, (QStringList{"0%", "20%", "40%", "60%", "80%", "100%"}));
}

void ExternalWindowsTest::doubleClickRenamesByTheHeading()
{
    ExternalRig r;
    r.setting(QStringLiteral("ExternalSensor6"), QStringLiteral("EGT"));
    ExternalSensorsWindow w(r.forWindow());
    w.show();
    QVERIFY(!w.sensorNameWindow());
    for (int n = 1; n <= 8; ++n) {
        QTest::mouseDClick(w.nameLabel(n), Qt::LeftButton);
        QVERIFY(w.sensorNameWindow());
        QCOMPARE(w.sensorNameWindow()->heading(), QStringLiteral("External Sensor %1").arg(n));
    }
    SensorNameWindow* rename = w.sensorNameWindow();
    QCOMPARE(w.findChildren<SensorNameWindow*>().size(), 1);
    QCOMPARE(rename->windowTitle(), QStringLiteral("Sensor Name"));

    // Opened for 2, then for 6: OK files under 6, the heading's gauge.
    QTest::mouseDClick(w.nameLabel(2), Qt::LeftButton);
    QCOMPARE(rename->text(), QString());  // the saved setting, not the label's default
    QTest::mouseDClick(w.nameLabel(6), Qt::LeftButton);
    QCOMPARE(rename->text(), QStringLiteral("EGT"));
    rename->findChild<QLineEdit*>()->setText(QStringLiteral("EGT Cyl 6"));
    findButton(rename, QStringLiteral("OK"))->click();
    QVERIFY(!rename->isVisible());
    QCOMPARE(w.nameLabel(6)->text(), QStringLiteral("EGT Cyl 6"));
    QCOMPARE(w.nameLabel(2)->text(), QStringLiteral("Boost PSI"));
    QCOMPARE(r.setting(QStringLiteral("ExternalSensor6")), QStringLiteral("EGT Cyl 6"));
    QCOMPARE(r.setting(QStringLiteral("ExternalSensor2")), QString());

    // Cancel and File, Exit close without saving.
    w.rename(1);
    rename->findChild<QLineEdit*>()->setText(QStringLiteral("Nope"));
    findButton(rename, QStringLiteral("Cancel"))->click();
    w.rename(1);
    rename->findChild<QLineEdit*>()->setText(QStringLiteral("Nope"));
    rename->findChild<QAction*>(QStringLiteral("Exit"))->trigger();
    QVERIFY(!rename->isVisible());
    QCOMPARE(w.nameLabel(1)->text(), QStringLiteral("Fuel"));
    QCOMPARE(r.setting(QStringLiteral("ExternalSensor1")), QString());
}

void ExternalWindowsTest::namesAreShownAsTheyWereTyped()
{
    ExternalRig r;
    r.setting(QStringLiteral("ExternalSensor1"), QStringLiteral("<h1>Oil</h1>"));
    r.setting(QStringLiteral("ExternalSensor2"), QStringLiteral("<img src=\"/dev/zero\">"));
    ExternalSensorsWindow w(r.forWindow());
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    QCOMPARE(w.nameLabel(1)->text(), QStringLiteral("<h1>Oil</h1>"));
    QCOMPARE(w.nameLabel(1)->textFormat(), Qt::PlainText);
    QCOMPARE(w.nameLabel(2)->textFormat(), Qt::PlainText);
    // Laid out and painted: the markup is text, and nothing reads /dev/zero.
    QVERIFY(!w.grab().isNull());
    QCOMPARE(w.nameLabel(2)->text(), QStringLiteral("<img src=\"/dev/zero\">"));

    // A name typed in the rename box is plain text too.
    w.rename(3);
    w.sensorNameWindow()->findChild<QLineEdit*>()->setText(QStringLiteral("<b>EGT</b>"));
    findButton(w.sensorNameWindow(), QStringLiteral("OK"))->click();
    QCOMPARE(w.nameLabel(3)->text(), QStringLiteral("<b>EGT</b>"));
    QCOMPARE(w.nameLabel(3)->textFormat(), Qt::PlainText);
    for (QLabel* l : w.findChildren<QLabel*>())
        QCOMPARE(l->textFormat(), Qt::PlainText);
}

void ExternalWindowsTest::openedFromTheMainWindowWithLiveReadings()
{
    AppRig a;
    a.settings.store->WriteSetting(QStringLiteral("ExternalSensor1"), QStringLiteral("Setting"), QStringLiteral("Fuel Level"));
    for (int n = 1; n <= 8; ++n)
        a.settings.store->WriteSetting(QStringLiteral("ExSensor%1").arg(n), QStringLiteral("Setting"), QStringLiteral("True"));
    a.open();
    QAction* use = a.window->action(QStringLiteral("UseExternalSensors"));
    QVERIFY(use);
    use->trigger();
    ExternalSensorsWindow* w = a.window->externalSensorsWindow();
    QVERIFY(w);
    QVERIFY(w->isVisible());
    use->trigger();
    QCOMPARE(a.window->externalSensorsWindow(), w);

    // Pick the built-in simulator, connect and poll two rounds by hand.
    QAction* simItem = nullptr;
    for (QAction* item : w->findChild<QMenu*>(QStringLiteral("Ports"))->actions())
        if (item->text().startsWith(QStringLiteral("Vexorin DLP-IO8-G Simulator (COM")))
            simItem = item;
    QVERIFY(simItem);
    simItem->trigger();
    QVERIFY(simItem->isChecked());
    findButton(w, QStringLiteral("Connect/Disconnect"))->click();
    findButton(w, QStringLiteral("Start"))->click();
    StatusPanels& panels = a.core.panels();
    QCOMPARE(panels.text(4), QStringLiteral("External Port Connected"));
    QCOMPARE(panels.text(6), QStringLiteral("Monitoring Sensors"));
    ExternalLink& link = w->sensors().link();
    link.ChannelRequestTimer.stop();
    for (int i = 0; i < 16; ++i) {
        link.ChannelRequestTimerTick();
        link.ChannelReplyTimerTick();
    }
    link.ChannelRequestTimer.stop();
    const QRegularExpression reading(QStringLiteral("^[0-5]\\.\\d\\dV$"));
    for (int n = 1; n <= 8; ++n) {
        QVERIFY2(reading.match(w->readingBox(n)->text()).hasMatch(), qPrintable(w->readingBox(n)->text()));
        QCOMPARE(w->bar(n)->value(), *vexorin::external::barValueFor(n, w->readingBox(n)->text()));
    }
    QCOMPARE(w->nameLabel(1)->text(), QStringLiteral("Fuel Level"));
    QCOMPARE(a.window->findChild<QLabel*>(QStringLiteral("StatusPanel4"))->text(), QStringLiteral("External Port Connected"));
    w->resize(w->sizeHint());
    QTest::qWait(20);
    saveShot(w, QStringLiteral("external-gauge-monitor.png"));

    // Closing the window closes its port; the next opening starts afresh.
    w->action(QStringLiteral("Exit"))->trigger();
    QTRY_VERIFY(!a.window->externalSensorsWindow());
    use->trigger();
    QVERIFY(a.window->externalSensorsWindow());
    QCOMPARE(a.window->externalSensorsWindow()->sensors().StatusText(), QStringLiteral("Disconnected"));
    QVERIFY(!a.window->externalSensorsWindow()->sensors().link().PortOpen());
}

QTEST_MAIN(ExternalWindowsTest)
#include "external_windows_test.moc"
