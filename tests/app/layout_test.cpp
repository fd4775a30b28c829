// Every window of the application, as the screen tour leaves it at each stop,
// shows every text whole and no control over another, at the scale the test
// runs with (QT_SCALE_FACTOR 1 and 1.5 are two entries of the suite).
#include "app/main_window.h"
#include "app/screen_tour.h"
#include "app_rig.h"
#include "ui/layout_audit.h"

#include <QApplication>
#include <QSet>
#include <QTest>

class LayoutTest : public QObject {
    Q_OBJECT
private slots:
    void everyWindowShowsWholeTextsAndNoOverlap();
};

void LayoutTest::everyWindowShowsWholeTextsAndNoOverlap()
{
    AppRig app;
    app.open();
    QVERIFY(QTest::qWaitForWindowExposed(app.window.get()));
    QStringList problems;
    QSet<QString> looked;
    QStringList pictures;
    ScreenTour tour(app.core, *app.window);
    const bool done = tour.run([&](const QString& picture, QWidget*) {
        pictures << picture;
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (!w->isVisible())
                continue;
            looked << w->objectName();
            for (const QString& p : vexorin::ui::layoutProblems(w))
                problems << picture + QStringLiteral(": ") + p;
        }
        // The maintenance frames lie below the client area, out of sight.
        QWidget* service = app.window->findChild<QWidget*>(QStringLiteral("ServicePanel"));
        QWidget* client = service->parentWidget();
        if (service->geometry().intersects(client->rect()))
            problems << picture + QStringLiteral(": the service panel shows in the main window");
    });
    QVERIFY2(done, qPrintable(tour.error()));
    problems.removeDuplicates();
    for (const QString& p : problems)
        qInfo().noquote() << p;
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
    for (const char* name : {"MainWindow", "Dash", "ByteViewer", "LogPlayer", "GraphTest", "ExternalSensors", "SensorName",
                             "StartupAnnounce", "SpeechEngines", "FaultCodes", "InterfaceCheck", "Credits", "Splash",
                             "MapViewer", "BINViewer", "HexChart", "BinCompare", "MapSurface", "BinFileDownloaderWindow",
                             "RegisterViewerWindow", "ActiveTestWindow", "LogChart", "ChannelScale", "FuelCorrection"})
        QVERIFY2(looked.contains(QLatin1String(name)), name);
    for (const char* picture : {"speed-alert", "water-alert", "colour-frame", "main-window-large-view",
                                "bin-file-downloader", "bin-file-downloader-plain", "map-viewer-edit-mode", "bin-compare",
                                "map-viewer-live-trace", "map-viewer-compare", "map-3d", "log-chart", "log-export",
                                "channel-scale", "fuel-correction"})
        QVERIFY2(pictures.contains(QLatin1String(picture)), picture);
}

QTEST_MAIN(LayoutTest)
#include "layout_test.moc"
