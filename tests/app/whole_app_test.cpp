// The whole application as its main routine builds it: started, connected to
// the built-in simulator, every window opened once, then File, Exit. Runs
// offscreen and, as its own test, on a real X server (Xvfb).
#include "app/app_core.h"
#include "app/app_identity.h"
#include "app/main_window.h"
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "sensors/sensor_stream.h"
#include "temp_settings.h"
#include "ui/common_dialog.h"
#include "ui/message_box.h"
#include "ui/plain_text.h"
#include "voice/recording_speech_out.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

class WholeAppTest : public QObject {
    Q_OBJECT
private slots:
    void everyWindowOpensAndTheAppStopsCleanly();
};

void WholeAppTest::everyWindowOpensAndTheAppStopsCleanly()
{
    vexorin::app::setApplicationIdentity();  // as the main routine does
    const QImage iconImage = vexorin::app::applicationIcon().pixmap(48).toImage();
    QStringList boxes;
    MessageBoxes::setPresenter([&](const QString& t, const QString&, bool) { boxes << t; });
    mCommonDialog::setAnswerer([](const mCommonDialog::DialogRequest&, bool) { return QString(); });
    TempSettings settings;
    RecordingSpeechOut speech;
    AppCore core(*settings.store, speech);
    core.ports().setSystemPorts([] { return QList<SystemPort>{}; });
    auto window = std::make_unique<MainWindow>(core);
    core.start();
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));

    for (QAction* a : window->portMenu()->actions())
        if (a->text().startsWith(QStringLiteral("Vexorin ECU Simulator")))
            a->trigger();
    window->action(QStringLiteral("ConnectDisconnect"))->trigger();
    QTRY_COMPARE(core.session().ConnectedLabel(), QStringLiteral("Connected"));
    core.stream().MonitorOnOff();
    QTest::qWait(300);
    core.stream().MonitorOnOff();

    // Every item that opens a window.
    const char* items[] = {"Dash", "ByteViewer", "LargeSensorViewer", "ViewAllSensors", "UseExternalSensors",
                           "StartupAnnounce", "SpeechEngines", "GraphTest", "LogPlayer", "MapViewer",
                           "BinFileViewer", "BinFileDownloader", "ECURegisterViewer", "ActiveTest",
                           "CheckAvailableInterfaces", "FaultCodes", "About", "Credits", "AllSensorColors",
                           "Speed", "WaterTempAlert"};
    int opened = 0;
    for (const char* name : items) {
        QAction* a = window->action(QLatin1String(name));
        QVERIFY2(a, name);
        if (!a->isEnabled())
            continue;
        a->trigger();
        QTest::qWait(20);
        ++opened;
    }
    QVERIFY(opened >= 18);
    int topLevels = 0;
    for (QWidget* w : QApplication::topLevelWidgets())
        topLevels += w->isVisible() ? 1 : 0;
    QVERIFY(topLevels >= 12);
    // Every window carries the application's icon.
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->isVisible())
            QVERIFY2(w->windowIcon().pixmap(48).toImage() == iconImage, qPrintable(w->objectName()));
    // No label of any window reads its text as markup, save the fixed ones made so.
    int labels = 0;
    for (QWidget* w : QApplication::allWidgets())
        if (auto* l = qobject_cast<QLabel*>(w)) {
            ++labels;
            if (!vexorin::ui::isMarkupByDesign(l))
                QVERIFY2(l->textFormat() == Qt::PlainText,
                         qPrintable(l->objectName() + QLatin1String(" in ") + l->window()->objectName() +
                                    QLatin1String(": ") + l->text()));
        }
    QVERIFY(labels > 100);

    window->action(QStringLiteral("Exit"))->trigger();
    QVERIFY(!window->isVisible());
    QVERIFY(!core.link().PortOpen());
    QCOMPARE(core.session().ConnectedLabel(), QStringLiteral("Disconnected"));
    int stillShown = 0;
    for (QWidget* w : QApplication::topLevelWidgets())
        stillShown += w->isVisible() ? 1 : 0;
    QCOMPARE(stillShown, 0);
    window.reset();
    MessageBoxes::setPresenter({});
    mCommonDialog::setAnswerer({});
}

QTEST_MAIN(WholeAppTest)
#include "whole_app_test.moc"
