// Capture through the main window's menu against the built-in simulator, then
// replay in the Log Player window; the file dialogs are answered by the test.
#include "app/app_core.h"
#include "app/main_window.h"
#include "app/port_selection.h"
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/simulator_transport.h"
#include "logging/log_capture.h"
#include "logging/log_player.h"
#include "logging/log_player_window.h"
#include "sensors/sensor_stream.h"
#include "temp_settings.h"
#include "ui/common_dialog.h"
#include "ui/gradient_bar_widget.h"
#include "ui/message_box.h"
#include "voice/recording_speech_out.h"
#include "widget_helpers.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

class LogWindowsTest : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes << t; });
        mCommonDialog::setAnswerer([this](const mCommonDialog::DialogRequest& req, bool save) {
            requests << (save ? QStringLiteral("save ") : QStringLiteral("open ")) + req.defaultExtension + QLatin1Char(' ') + req.filter;
            return answers.isEmpty() ? QString() : answers.takeFirst();
        });
    }
    void cleanup()
    {
        MessageBoxes::setPresenter({});
        mCommonDialog::setAnswerer({});
        boxes.clear();
        answers.clear();
        requests.clear();
    }
    void filterConversion();
    void cancelledDialogs();
    void captureThenReplay();

private:
    QStringList boxes;
    QStringList answers;
    QStringList requests;
};

void LogWindowsTest::filterConversion()
{
    using mCommonDialog::filterList;
    QCOMPARE(filterList(QStringLiteral("LOG Files (*.log)|*.log")), QStringList{QStringLiteral("LOG Files (*.log)")});
    QCOMPARE(filterList(QStringLiteral("|*.bin")), QStringList{QStringLiteral("*.bin (*.bin)")});
    QCOMPARE(filterList(QStringLiteral("Bitmaps:*.bmp|All|*.*")),
             (QStringList{QStringLiteral("Bitmaps (*.bmp)"), QStringLiteral("All (*.*)")}));
    QCOMPARE(filterList(QStringLiteral("Pictures|*.bmp;*.png")), QStringList{QStringLiteral("Pictures (*.bmp *.png)")});
}

void LogWindowsTest::cancelledDialogs()
{
    mCommonDialog::DialogRequest req;
    req.filter = QStringLiteral("LOG Files (*.log)|*.log");
    req.defaultExtension = QStringLiteral(".log");
    mCommonDialog::DialogResult res;
    QVERIFY(!mCommonDialog::OpenFile(req, res));
    QCOMPARE(res.filterIndex, -1);
    QVERIFY(res.fileSpec.isEmpty() && res.fileTitle.isEmpty() && res.filter.isEmpty());
    QCOMPARE(res.flags, 0u);
    QVERIFY(!mCommonDialog::SaveFile(req, res));
    QCOMPARE(res.filterIndex, 0);
    answers << QStringLiteral("/tmp/some/drive");
    QVERIFY(mCommonDialog::SaveFile(req, res));
    QCOMPARE(res.fileSpec, QStringLiteral("/tmp/some/drive.log"));
    QCOMPARE(res.fileTitle, QStringLiteral("drive.log"));
    QCOMPARE(res.filterIndex, 1);
    QCOMPARE(res.filter, QStringLiteral("LOG Files (*.log)"));
}

void LogWindowsTest::captureThenReplay()
{
    QTemporaryDir dir;
    const QString logPath = dir.filePath(QStringLiteral("run.log"));
    TempSettings settings;
    RecordingSpeechOut speech;
    AppCore core(*settings.store, speech);
    core.ports().setSystemPorts([] { return QList<SystemPort>{}; });
    MainWindow window(core);
    core.start();
    window.show();
    core.portSelection().PickPort(1);
    core.session().ConnectDisconnect();
    QTRY_COMPARE(core.session().ConnectedLabel(), QStringLiteral("Connected"));
    auto& ecu = qobject_cast<SimulatorTransport*>(core.link().transport())->ecu();
    ecu.forcePhase(vexorin::sim::EnginePhase::Drive);
    ecu.advance(6000);

    answers << logPath;
    window.action(QStringLiteral("Capturetologfile"))->trigger();
    QCOMPARE(requests, QStringList{QStringLiteral("save .log LOG Files (*.log)|*.log")});
    QVERIFY(window.action(QStringLiteral("Capturetologfile"))->isChecked());
    core.stream().MonitorOnOff();
    for (int i = 0; i < 20; ++i) {
        ecu.advance(500);
        core.stream().GetAllSensorDataTimerTick();
    }
    core.session().ConnectDisconnect();  // capture goes on, with no more frames
    QVERIFY(core.capture().checked());
    window.action(QStringLiteral("Capturetologfile"))->trigger();
    QVERIFY(!window.action(QStringLiteral("Capturetologfile"))->isChecked());
    QFile f(logPath);
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = f.readAll().split('\n');
    QCOMPARE(lines.size(), 20 * 14 + 1);
    for (int i = 0; i + 1 < lines.size(); ++i)
        QVERIFY(lines[i].endsWith('\r'));

    window.action(QStringLiteral("LogPlayer"))->trigger();
    LogPlayerWindow* player = window.logPlayerWindow();
    QVERIFY(player && player->isVisible());
    QCOMPARE(player->windowTitle(), QStringLiteral("Vexorin Log Player"));
    QCOMPARE(player->size(), QSize(384, 757));
    answers << logPath;
    findButton(player, QStringLiteral("Load File"))->click();
    QCOMPARE(player->pathBox()->text(), logPath);
    QCOMPARE(player->valueLabel(27)->text().toLatin1() + "\r", lines[0]);
    for (int i = 0; i < 7; ++i)
        findButton(player, QStringLiteral("Read next"))->click();
    QCOMPARE(player->valueLabel(15)->text().toLatin1() + "\r", lines[7 * 14 + 2]);  // RPM of frame 8
    QVERIFY(player->bar(1)->value() > 0);
    QCOMPARE(player->positionBox()->text(), QStringLiteral("112"));
    saveShot(player, QStringLiteral("log-player.png"));

    const QString bmp = dir.filePath(QStringLiteral("player.bmp"));
    answers << bmp;
    findButton(player, QStringLiteral("Snapshot"))->click();
    QFile shot(bmp);
    QVERIFY(shot.open(QIODevice::ReadOnly));
    QCOMPARE(shot.read(2), QByteArray("BM"));
    QVERIFY(!player->snapshotPicture()->pixmap().isNull());
    QCOMPARE(requests.last(), QStringLiteral("save .bmp BMP Files (*.bmp)|*.bmp"));

    findButton(player, QStringLiteral("Fast Forward"))->click();
    QVERIFY(player->player().PlayLogTimer.isActive());
    player->close();
    QVERIFY(!player->player().PlayLogTimer.isActive());
    QVERIFY(boxes.isEmpty());

    // File, Exit unloads the player: opened again it is as at first load.
    window.action(QStringLiteral("LogPlayer"))->trigger();
    player->findChild<QAction*>(QStringLiteral("Exit"))->trigger();
    QVERIFY(!player->isVisible());
    window.action(QStringLiteral("LogPlayer"))->trigger();
    QVERIFY(player->isVisible());
    QCOMPARE(player->player().pathBox(), QStringLiteral("C:\\"));
    QCOMPARE(player->pathBox()->text(), QString());  // as at first load: no file named
    QCOMPARE(player->positionBox()->text(), QStringLiteral("Text14"));
    QCOMPARE(player->valueLabel(27)->text(), QString());
    findButton(player, QStringLiteral("Read next"))->click();
    findButton(player, QStringLiteral("Play"))->click();
    QVERIFY(boxes.isEmpty());
    QVERIFY(!player->player().PlayLogTimer.isActive());
}

QTEST_MAIN(LogWindowsTest)
#include "log_windows_test.moc"
