// Options, "Fast Logging": off at first, the item writes "True"/"False" and
// switches the stream, a stored "True" alone checks it at start, and with it
// on the built-in simulator's frames come at the line's pace while monitoring.
#include "app/options_menu.h"
#include "app/settings/settings_store.h"
#include "app_rig.h"
#include "consult/link_owner.h"
#include "sensors/sensor_stream.h"

#include <QAction>
#include <QMenu>
#include <QTest>

class FastLoggingOptionTest : public QObject {
    Q_OBJECT
private slots:
    void offAtFirstLastInTheOptionsMenu();
    void itemWritesTrueAndFalseAndSwitchesTheStream();
    void storedTrueAloneChecksItAtStart_data();
    void storedTrueAloneChecksItAtStart();
    void framesComeAtTheLinesPaceWhileMonitoring();
};

void FastLoggingOptionTest::offAtFirstLastInTheOptionsMenu()
{
    AppRig app;
    app.open();
    QAction* item = app.window->action(QStringLiteral("FastLogging"));
    QVERIFY(item);
    QCOMPARE(item->text(), QStringLiteral("Fast Logging"));
    QVERIFY(item->isCheckable());
    QVERIFY(!item->isChecked());
    QVERIFY(!app.core.options().fastLogging());
    QVERIFY(!app.core.stream().fastLogging());
    auto* options = qobject_cast<QMenu*>(app.window->action(QStringLiteral("StayOnTop"))->associatedObjects().value(0));
    QVERIFY(options);
    QCOMPARE(options->actions().last(), item);
}

void FastLoggingOptionTest::itemWritesTrueAndFalseAndSwitchesTheStream()
{
    AppRig app;
    app.open();
    SettingsStore& s = *app.settings.store;
    QAction* item = app.window->action(QStringLiteral("FastLogging"));
    item->trigger();
    QCOMPARE(s.ReadSetting(QStringLiteral("FastLogging"), QStringLiteral("Setting")), QStringLiteral("True"));
    QVERIFY(item->isChecked());
    QVERIFY(app.core.stream().fastLogging());
    item->trigger();
    QCOMPARE(s.ReadSetting(QStringLiteral("FastLogging"), QStringLiteral("Setting")), QStringLiteral("False"));
    QVERIFY(!item->isChecked());
    QVERIFY(!app.core.stream().fastLogging());
}

void FastLoggingOptionTest::storedTrueAloneChecksItAtStart_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<bool>("on");
    QTest::newRow("True") << QStringLiteral("True") << true;
    QTest::newRow("False") << QStringLiteral("False") << false;
    QTest::newRow("yes") << QStringLiteral("yes") << false;
}

void FastLoggingOptionTest::storedTrueAloneChecksItAtStart()
{
    QFETCH(QString, stored);
    QFETCH(bool, on);
    AppRig app;
    app.settings.store->WriteSetting(QStringLiteral("FastLogging"), QStringLiteral("Setting"), stored);
    app.open();
    QCOMPARE(app.window->action(QStringLiteral("FastLogging"))->isChecked(), on);
    QCOMPARE(app.core.stream().fastLogging(), on);
}

void FastLoggingOptionTest::framesComeAtTheLinesPaceWhileMonitoring()
{
    AppRig app;
    app.open();
    QVERIFY(app.connectToSimulator());
    app.window->action(QStringLiteral("FastLogging"))->trigger();
    SensorStream& stream = app.core.stream();
    stream.MonitorOnOff();
    QTRY_VERIFY(stream.fastStreaming());
    const qint64 first = stream.framesDecoded();
    QTest::qWait(2000);
    // The reads of every tick give ten a second at most; the stream about 53.
    const qint64 frames = stream.framesDecoded() - first;
    QVERIFY2(frames > 40, qPrintable(QString::number(frames)));
    QVERIFY(app.core.session().owner().streaming());
    stream.MonitorOnOff();
    QVERIFY(!app.core.session().owner().busy());
}

QTEST_MAIN(FastLoggingOptionTest)
#include "fast_logging_option_test.moc"
