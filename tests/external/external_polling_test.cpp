// The External Gauge Monitor's polling round with Options, "Poll Checked
// Channels Only": the letters on the wire with the option off and on, boxes
// ticked and cleared while polling, the setting, the menu item, and whether
// polling runs.
#include "consult/fake_transport.h"
#include "external/external_link.h"
#include "external/external_sensors.h"
#include "external/external_sensors_window.h"
#include "external_rig.h"
#include "ui/message_box.h"
#include "widget_helpers.h"

#include <QAction>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <memory>

namespace {
const QString kIdle = QStringLiteral("0.00V");

// A link on a double that answers each letter with a reading of its own:
// channel n reads n * 0.5 volts ("Z" gives "0.50V", "V" gives "2.00V").
struct Link {
    Link()
    {
        link = std::make_unique<ExternalLink>([this](int, QString*) -> SerialTransport* {
            transport = new FakeTransport;
            transport->setResponder([](FakeTransport& t, const QByteArray& b) {
                t.arrive(QByteArray::number(double(QByteArrayView("ZXCVBNM,").indexOf(b.at(0)) + 1) * 0.5, 'f', 2) +
                         'V');
            });
            return transport;
        });
    }
    void open() { QVERIFY(link->setPortOpen(true)); }
    // One 100 ms slot: the request tick and, 50 ms later, the reply tick.
    void slot()
    {
        link->ChannelRequestTimerTick();
        link->ChannelReplyTimerTick();
    }
    QByteArray written() const { return transport ? transport->written() : QByteArray(); }
    QStringList readings() const
    {
        QStringList r;
        for (int n = 1; n <= 8; ++n)
            r << link->reading(n);
        return r;
    }
    std::unique_ptr<ExternalLink> link;
    QPointer<FakeTransport> transport;
};

QString storedCheckedOnly(const ExternalRig& r)
{
    return r.settings.store->ReadSetting(QStringLiteral("ExternalPolling"), QStringLiteral("CheckedOnly"));
}
}  // namespace

class ExternalPollingTest : public QObject {
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
    void optionOffAsksAllEightWhateverIsChecked();
    void checkedOnlyAsksChannelsOneAndFourInTurn();
    void checkedOnlyKeepsTheSlotPaceOnRealTimers();
    void checkedOnlyWithNoneCheckedSendsNothing();
    void boxesChangedWhilePollingCountFromTheNextSlot();
    void switchingTheOptionWhilePolling();
    void settingIsReadAtLoadAndWrittenOnToggle();
    void menuItemShowsAndTogglesTheOption();
    void windowBoxesDriveTheCheckedOnlyRound();
    void eachCheckedReplyIsReportedAsTaken();
    void pollingFollowsStartAndStop();
    void pollingEndsWithTheControllerAndTheWindow();

private:
    QStringList boxes;
};

void ExternalPollingTest::optionOffAsksAllEightWhateverIsChecked()
{
    Link l;
    QVERIFY(!l.link->checkedOnly());
    l.open();
    l.link->setChecked(1, true);
    l.link->setChecked(4, true);
    l.link->Start();
    for (int i = 0; i < 16; ++i)
        l.slot();
    QCOMPARE(l.written(), QByteArray("ZXCVBNM,ZXCVBNM,"));
    QCOMPARE(l.transport->writes().size(), 16);
    QCOMPARE(l.readings(), (QStringList{"0.50V", kIdle, kIdle, "2.00V", kIdle, kIdle, kIdle, kIdle}));
    // Switched on and off again, the round is the whole eight once more.
    l.link->setCheckedOnly(true);
    l.link->setCheckedOnly(false);
    l.transport->clearWritten();
    for (int i = 0; i < 8; ++i)
        l.slot();
    QCOMPARE(l.written(), QByteArray("ZXCVBNM,"));
}

void ExternalPollingTest::checkedOnlyAsksChannelsOneAndFourInTurn()
{
    Link l;
    l.open();
    l.link->setChecked(1, true);
    l.link->setChecked(4, true);
    l.link->setCheckedOnly(true);
    QVERIFY(l.link->checkedOnly());
    l.link->Start();
    QByteArray expected;
    for (int i = 0; i < 6; ++i) {
        const bool first = i % 2 == 0;
        // The request tick sends the one letter and hands over to the reply timer...
        l.link->ChannelRequestTimerTick();
        expected += first ? 'Z' : 'V';
        QCOMPARE(l.written(), expected);
        QVERIFY(!l.link->ChannelRequestTimer.isActive() && l.link->ChannelReplyTimer.isActive());
        // ...whose tick reads that channel and hands back: one checked channel a slot.
        l.link->ChannelReplyTimerTick();
        QVERIFY(l.link->ChannelRequestTimer.isActive() && !l.link->ChannelReplyTimer.isActive());
        QCOMPARE(l.link->reading(first ? 1 : 4), first ? QStringLiteral("0.50V") : QStringLiteral("2.00V"));
    }
    QCOMPARE(l.written(), QByteArray("ZVZVZV"));
    QCOMPARE(l.transport->writes().size(), 6);
    QCOMPARE(l.readings(), (QStringList{"0.50V", kIdle, kIdle, "2.00V", kIdle, kIdle, kIdle, kIdle}));
    QCOMPARE(l.link->bar(4), 2);
    QCOMPARE(l.link->ChannelRequestTimer.interval(), 50);
    QCOMPARE(l.link->ChannelReplyTimer.interval(), 50);
}

void ExternalPollingTest::checkedOnlyKeepsTheSlotPaceOnRealTimers()
{
    Link l;
    l.open();
    l.link->setChecked(1, true);
    l.link->setChecked(4, true);
    l.link->setCheckedOnly(true);
    QElapsedTimer clock;
    clock.start();
    l.link->Start();
    // The fourth letter goes in the fourth slot, 350 ms in; never sooner.
    QTRY_VERIFY_WITH_TIMEOUT(l.written().size() >= 4, 10000);
    const qint64 elapsed = clock.elapsed();
    l.link->Stop();
    QVERIFY2(elapsed >= 300, qPrintable(QString::number(elapsed)));
    const QByteArray w = l.written();
    for (int i = 0; i < w.size(); ++i)
        QCOMPARE(w.at(i), i % 2 == 0 ? 'Z' : 'V');
}

void ExternalPollingTest::checkedOnlyWithNoneCheckedSendsNothing()
{
    Link l;
    l.open();
    l.link->setCheckedOnly(true);
    l.link->Start();
    for (int i = 0; i < 16; ++i) {
        l.slot();
        // The timers keep their pace.
        QVERIFY(l.link->ChannelRequestTimer.isActive() && !l.link->ChannelReplyTimer.isActive());
    }
    QVERIFY(l.link->polling());
    QCOMPARE(l.written(), QByteArray());
    QVERIFY(l.transport->writes().isEmpty());
    QCOMPARE(l.readings(), QStringList(8, kIdle));
    // Bytes nobody asked for are dropped, not handed to the next channel asked.
    l.transport->arrive("4.44V");
    l.slot();
    QCOMPARE(l.link->tracker(), 1);
    l.link->setChecked(1, true);
    l.slot();
    QCOMPARE(l.written(), QByteArray("Z"));
    QCOMPARE(l.link->reading(1), QStringLiteral("0.50V"));
}

void ExternalPollingTest::boxesChangedWhilePollingCountFromTheNextSlot()
{
    Link l;
    l.open();
    l.link->setChecked(1, true);
    l.link->setCheckedOnly(true);
    l.link->Start();
    l.slot();
    l.slot();
    QCOMPARE(l.written(), QByteArray("ZZ"));  // one checked channel: read every slot

    // Ticked while channel 1's reply is awaited: 1's slot runs out, 3 comes next.
    l.link->ChannelRequestTimerTick();
    l.link->setChecked(3, true);
    l.link->ChannelReplyTimerTick();
    l.slot();
    l.slot();
    QCOMPARE(l.written(), QByteArray("ZZZCZ"));
    QCOMPARE(l.link->reading(3), QStringLiteral("1.50V"));

    // Cleared between slots: no longer asked.
    l.link->setChecked(1, false);
    l.slot();
    l.slot();
    QCOMPARE(l.written(), QByteArray("ZZZCZCC"));

    // Cleared while its reply is awaited: the reply is not shown, and the
    // channel is not asked again.
    l.link->setChecked(8, true);
    l.link->setReading(3, QStringLiteral("3.00V"));
    l.slot();                           // ','
    l.slot();                           // C
    l.link->ChannelRequestTimerTick();  // ','
    l.link->setChecked(8, false);
    l.link->setReading(8, QStringLiteral("3.00V"));
    l.link->ChannelReplyTimerTick();
    QCOMPARE(l.link->reading(8), QStringLiteral("3.00V"));
    l.slot();
    l.slot();
    QCOMPARE(l.written(), QByteArray("ZZZCZCC,C,CC"));
    QCOMPARE(l.link->reading(3), QStringLiteral("1.50V"));
}

void ExternalPollingTest::switchingTheOptionWhilePolling()
{
    Link l;
    l.open();
    l.link->setChecked(2, true);
    l.link->setChecked(7, true);
    l.link->Start();
    l.slot();
    l.slot();
    l.slot();  // Z X C; channel 4 is in turn
    l.link->setCheckedOnly(true);
    l.slot();
    l.slot();
    l.slot();
    QCOMPARE(l.written(), QByteArray("ZXCMXM"));
    // Off again: the whole round from the channel in turn, channel 8.
    l.link->setCheckedOnly(false);
    QCOMPARE(l.link->tracker(), 8);
    for (int i = 0; i < 8; ++i)
        l.slot();
    QCOMPARE(l.written(), QByteArray("ZXCMXM,ZXCVBNM"));
}

void ExternalPollingTest::settingIsReadAtLoadAndWrittenOnToggle()
{
    {
        ExternalRig r;
        ExternalSensors& s = r.load();
        QVERIFY(!s.pollCheckedOnlyChecked());
        QVERIFY(!s.link().checkedOnly());
        QCOMPARE(storedCheckedOnly(r), QString());  // nothing written by the load
        QSignalSpy changed(&s, &ExternalSensors::changed);
        s.TogglePollCheckedOnly();
        QCOMPARE(changed.size(), 1);
        QVERIFY(s.pollCheckedOnlyChecked());
        QVERIFY(s.link().checkedOnly());
        QCOMPARE(storedCheckedOnly(r), QStringLiteral("True"));
        QVERIFY(r.load().pollCheckedOnlyChecked());
        QVERIFY(r.sensors->link().checkedOnly());
        r.sensors->TogglePollCheckedOnly();
        QCOMPARE(storedCheckedOnly(r), QStringLiteral("False"));
        QVERIFY(!r.sensors->link().checkedOnly());
        QVERIFY(!r.load().pollCheckedOnlyChecked());
    }
    {
        ExternalRig r;
        r.settings.store->WriteSetting(QStringLiteral("ExternalPolling"), QStringLiteral("CheckedOnly"),
                                       QStringLiteral("True"));
        r.setting(QStringLiteral("ExSensor4"), QStringLiteral("True"));
        ExternalSensors& s = r.load();
        QVERIFY(s.pollCheckedOnlyChecked());
        s.ConnectDisconnectClicked();
        s.StartClicked();
        r.round();
        QCOMPARE(r.transport->written(), QByteArray("VVVVVVVV"));
        QCOMPARE(s.link().reading(4), QStringLiteral("2.00V"));
    }
    {
        ExternalRig r;  // only "True" turns it on
        r.settings.store->WriteSetting(QStringLiteral("ExternalPolling"), QStringLiteral("CheckedOnly"),
                                       QStringLiteral("true"));
        QVERIFY(!r.load().pollCheckedOnlyChecked());
    }
}

void ExternalPollingTest::menuItemShowsAndTogglesTheOption()
{
    ExternalRig r;
    ExternalSensorsWindow w(r.forWindow());
    QAction* a = w.action(QStringLiteral("PollCheckedOnly"));
    QVERIFY(a);
    QCOMPARE(a->text(), QStringLiteral("Poll Checked Channels Only"));
    QVERIFY(a->isCheckable());
    QVERIFY(a->isEnabled());
    QVERIFY(!a->isChecked());
    // In the Options menu, after the two items there.
    QMenu* options = nullptr;
    for (QAction* top : w.menuBar()->actions())
        if (top->menu() && top->text().remove(QLatin1Char('&')) == QLatin1String("Options"))
            options = top->menu();
    QVERIFY(options);
    QCOMPARE(options->actions().size(), 3);
    QCOMPARE(options->actions().last(), a);

    a->trigger();
    QVERIFY(w.sensors().pollCheckedOnlyChecked());
    QVERIFY(w.sensors().link().checkedOnly());
    QVERIFY(a->isChecked());
    QCOMPARE(storedCheckedOnly(r), QStringLiteral("True"));

    // By keyboard: the item chosen in the open menu and Return pressed.
    options->popup(w.mapToGlobal(QPoint(0, 0)));
    QVERIFY(QTest::qWaitForWindowExposed(options));
    options->setActiveAction(a);
    QTest::keyClick(options, Qt::Key_Return);
    QTRY_VERIFY(!w.sensors().pollCheckedOnlyChecked());
    QVERIFY(!a->isChecked());
    QCOMPARE(storedCheckedOnly(r), QStringLiteral("False"));

    // The check mark follows the controller.
    w.sensors().TogglePollCheckedOnly();
    QVERIFY(a->isChecked());

    // A saved "True" shows checked at opening.
    ExternalRig again;
    again.settings.store->WriteSetting(QStringLiteral("ExternalPolling"), QStringLiteral("CheckedOnly"),
                                       QStringLiteral("True"));
    ExternalSensorsWindow w2(again.forWindow());
    QVERIFY(w2.action(QStringLiteral("PollCheckedOnly"))->isChecked());
}

void ExternalPollingTest::windowBoxesDriveTheCheckedOnlyRound()
{
    ExternalRig r;
    ExternalSensorsWindow w(r.forWindow());
    w.action(QStringLiteral("PollCheckedOnly"))->trigger();
    findButton(&w, QStringLiteral("Connect/Disconnect"))->click();
    w.checkBox(2)->click();
    findButton(&w, QStringLiteral("Start"))->click();
    w.sensors().link().ChannelRequestTimerTick();
    w.sensors().link().ChannelReplyTimerTick();
    w.checkBox(6)->click();
    for (int i = 0; i < 4; ++i) {
        w.sensors().link().ChannelRequestTimerTick();
        w.sensors().link().ChannelReplyTimerTick();
    }
    QCOMPARE(r.transport->written(), QByteArray("XNXNX"));
    QCOMPARE(w.readingBox(2)->text(), QStringLiteral("1.00V"));
    QCOMPARE(w.readingBox(6)->text(), QStringLiteral("3.00V"));
    QCOMPARE(w.readingBox(1)->text(), kIdle);
    QVERIFY(boxes.isEmpty());
}

void ExternalPollingTest::eachCheckedReplyIsReportedAsTaken()
{
    Link l;
    l.open();
    l.link->setChecked(2, true);
    QList<QPair<int, QString>> taken;
    QObject::connect(l.link.get(), &ExternalLink::readingTaken,
                     [&taken](int channel, const QString& reply) { taken.append({channel, reply}); });
    // The whole round: only the checked channel's reply counts, every round,
    // though its text stays the same.
    for (int i = 0; i < 16; ++i)
        l.slot();
    QCOMPARE(taken, (QList<QPair<int, QString>>{{2, "1.00V"}, {2, "1.00V"}}));
    taken.clear();
    l.link->setCheckedOnly(true);
    for (int i = 0; i < 3; ++i)
        l.slot();
    QCOMPARE(taken, (QList<QPair<int, QString>>{{2, "1.00V"}, {2, "1.00V"}, {2, "1.00V"}}));
    // Nothing asked, nothing taken.
    taken.clear();
    l.link->setChecked(2, false);
    l.transport->arrive("1.11V");
    for (int i = 0; i < 3; ++i)
        l.slot();
    QVERIFY(taken.isEmpty());
}

void ExternalPollingTest::pollingFollowsStartAndStop()
{
    Link l;
    QSignalSpy spy(l.link.get(), &ExternalLink::pollingChanged);
    QVERIFY(!l.link->polling());
    l.open();
    QVERIFY(!l.link->polling());
    QVERIFY(spy.isEmpty());
    l.link->Start();
    QVERIFY(l.link->polling());
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(0).toBool(), true);
    // The timers handing over is no change.
    l.link->ChannelRequestTimerTick();
    QVERIFY(l.link->polling());
    l.link->ChannelReplyTimerTick();
    QVERIFY(l.link->polling());
    QCOMPARE(spy.size(), 1);
    // A pulled-out device leaves the round running.
    l.transport->unplug();
    QTRY_VERIFY(!l.link->PortOpen());
    l.slot();
    QVERIFY(l.link->polling());
    QCOMPARE(spy.size(), 1);
    // Stopped while the reply is awaited.
    l.link->ChannelRequestTimerTick();
    l.link->Stop();
    QVERIFY(!l.link->polling());
    QCOMPARE(spy.size(), 2);
    QCOMPARE(spy.at(1).at(0).toBool(), false);
    l.link->Stop();
    QCOMPARE(spy.size(), 2);

    // Through the controller's buttons.
    ExternalRig r;
    ExternalSensors& s = r.load();
    QSignalSpy buttons(&s.link(), &ExternalLink::pollingChanged);
    s.StartClicked();  // refused: the port is closed
    QVERIFY(!s.link().polling());
    QVERIFY(buttons.isEmpty());
    s.ConnectDisconnectClicked();
    s.StartClicked();
    QVERIFY(s.link().polling());
    QCOMPARE(buttons.size(), 1);
    s.StopClicked();
    QVERIFY(!s.link().polling());
    QCOMPARE(buttons.size(), 2);
    s.StartClicked();
    s.ConnectDisconnectClicked();  // the button disconnects and stops
    QVERIFY(!s.link().polling());
    QCOMPARE(buttons.size(), 4);
    QCOMPARE(buttons.last().at(0).toBool(), false);
}

void ExternalPollingTest::pollingEndsWithTheControllerAndTheWindow()
{
    {
        Link l;
        l.open();
        QList<bool> seen;
        QObject::connect(l.link.get(), &ExternalLink::pollingChanged, [&seen](bool on) { seen << on; });
        l.link->Start();
        l.link.reset();
        QCOMPARE(seen, (QList<bool>{true, false}));
    }
    {
        // Closed without going away: polling stops with the window.
        ExternalRig r;
        ExternalSensorsWindow w(r.forWindow());
        findButton(&w, QStringLiteral("Connect/Disconnect"))->click();
        findButton(&w, QStringLiteral("Start"))->click();
        QVERIFY(w.sensors().link().polling());
        QSignalSpy spy(&w.sensors().link(), &ExternalLink::pollingChanged);
        w.show();
        QVERIFY(w.close());
        QVERIFY(!w.sensors().link().polling());
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.at(0).at(0).toBool(), false);
    }
    {
        // Closed as the program does: the window goes, and its link with it.
        ExternalRig r;
        auto* w = new ExternalSensorsWindow(r.forWindow());
        w->setAttribute(Qt::WA_DeleteOnClose);
        QPointer<ExternalSensorsWindow> alive(w);
        findButton(w, QStringLiteral("Connect/Disconnect"))->click();
        findButton(w, QStringLiteral("Start"))->click();
        QList<bool> seen;
        QObject::connect(&w->sensors().link(), &ExternalLink::pollingChanged, [&seen](bool on) { seen << on; });
        w->show();
        w->close();
        QTRY_VERIFY(!alive);
        QCOMPARE(seen, QList<bool>{false});
    }
}

QTEST_MAIN(ExternalPollingTest)
#include "external_polling_test.moc"
