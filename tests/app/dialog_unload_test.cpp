// Windows closed or unloaded while a real file dialog of theirs waits for an
// answer: the dialog ends as cancelled, the windows go, nothing is freed twice
// (run under AddressSanitizer in the sanitizer build).
#include "app/ecu_tools_window.h"
#include "app_rig.h"
#include "consult/consult_session.h"
#include "logging/log_player_window.h"
#include "rom/bin_viewer_window.h"
#include "rom/map_viewer_window.h"
#include "tools/bin_file_downloader_window.h"
#include "ui/message_box.h"
#include "widget_helpers.h"

#include <QAction>
#include <QFileDialog>
#include <QMenu>
#include <QPointer>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

namespace {
// Once a file dialog of `owner` shows, runs `then` (from inside the dialog's wait).
// The flag says whether it ran.
std::shared_ptr<bool> whenDialogShows(QWidget* owner, std::function<void()> then)
{
    auto ran = std::make_shared<bool>(false);
    auto* poll = new QTimer;
    QPointer<QWidget> guard(owner);
    QObject::connect(poll, &QTimer::timeout, [poll, guard, then, ran] {
        QFileDialog* dialog = guard ? guard->findChild<QFileDialog*>() : nullptr;
        if (!dialog || !dialog->isVisible())
            return;
        poll->stop();
        poll->deleteLater();
        *ran = true;
        then();
    });
    poll->start(20);
    return ran;
}

void settle()
{
    for (int i = 0; i < 5; ++i) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QTest::qWait(10);
    }
}
}  // namespace

class DialogUnloadTest : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        MessageBoxes::setPresenter([](const QString&, const QString&, bool) {});
    }
    void cleanup() { MessageBoxes::setPresenter({}); }
    void secondMapViewerExitsWhileTheFirstAsksForAFile();
    void secondBinViewerExitsWhileTheFirstAsksForAFile();
    void mainWindowExitsWhileTheLogPlayerAsksForAFile();
    void mainWindowExitsWhileTheDownloaderAsksForAFile();
};

void DialogUnloadTest::secondMapViewerExitsWhileTheFirstAsksForAFile()
{
    AppRig app;
    QPointer<MapViewerWindow> first = new MapViewerWindow(app.core.session());
    first->show();
    QPointer<MapViewerWindow> second = first->openNewViewer();
    const auto ran = whenDialogShows(first, [second] { second->action(QStringLiteral("Exit"))->trigger(); });
    findButton(first->tabs()->widget(0), QStringLiteral("Load BIN File"))->click();  // returns once cancelled
    QVERIFY(*ran);
    settle();
    QVERIFY(!first);
    QVERIFY(!second);
}

void DialogUnloadTest::secondBinViewerExitsWhileTheFirstAsksForAFile()
{
    QPointer<BinViewerWindow> first = new BinViewerWindow(1);
    first->show();
    QPointer<BinViewerWindow> second = first->openNewViewer();
    const auto ran = whenDialogShows(first, [second] { second->action(QStringLiteral("Exit"))->trigger(); });
    first->action(QStringLiteral("OpenBINFile"))->trigger();
    QVERIFY(*ran);
    settle();
    QVERIFY(!first);
    QVERIFY(!second);
}

void DialogUnloadTest::mainWindowExitsWhileTheLogPlayerAsksForAFile()
{
    AppRig app;
    app.open();
    app.window->action(QStringLiteral("LogPlayer"))->trigger();
    QPointer<LogPlayerWindow> player = app.window->logPlayerWindow();
    QVERIFY(player);
    MainWindow* main = app.window.get();
    const auto ran = whenDialogShows(player, [main] { main->action(QStringLiteral("Exit"))->trigger(); });
    findButton(player, QStringLiteral("Load File"))->click();
    QVERIFY(*ran);
    settle();
    QVERIFY(!player);
    QVERIFY(!app.window->isVisible());
}

void DialogUnloadTest::mainWindowExitsWhileTheDownloaderAsksForAFile()
{
    AppRig app;
    app.open();
    QVERIFY(app.connectToSimulator());
    app.window->action(QStringLiteral("BinFileDownloader"))->trigger();
    QPointer<BinFileDownloaderWindow> downloader = app.window->ecuTools()->binFileDownloader();
    QVERIFY(downloader);
    MainWindow* main = app.window.get();
    const auto ran = whenDialogShows(downloader, [main] { main->action(QStringLiteral("Exit"))->trigger(); });
    findButton(downloader, QStringLiteral("Download BIN File"))->click();
    QVERIFY(*ran);
    settle();
    QVERIFY(!downloader);
    QCOMPARE(app.core.session().ConnectedLabel(), QStringLiteral("Disconnected"));
}

QTEST_MAIN(DialogUnloadTest)
#include "dialog_unload_test.moc"
