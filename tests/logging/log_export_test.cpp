// "Export Log as CSV...": the export of crafted logs, the files it never
// damages, the long log's progress, and the two ways in (File menu, Log Player).
#include "answered_dialogs.h"
#include "app_rig.h"
#include "log_text.h"
#include "logging/csv_export_window.h"
#include "logging/log_csv_export.h"
#include "logging/log_player.h"
#include "logging/log_player_window.h"
#include "ui/common_dialog.h"
#include "ui/message_box.h"
#include "widget_helpers.h"

#include <QDir>
#include <QFile>
#include <QPointer>
#include <QProgressDialog>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {
const QByteArray kHeader =
    "time,speed_mph,rpm,tps_v,maf_v,o2_left_v,o2_right_v,inj_ms,timing_deg,iacv_pct,water_f,fuel_f,battery_v,af_alpha\n";

QByteArray frame(const QByteArray& stamp, const QByteArray& rpm = " 1012.5 ", const QByteArray& tps = "0.46")
{
    QList<QByteArray> values = kLogValues;
    values[1] = rpm;
    values[2] = tps;
    return logFrame(stamp, values);
}

void write(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

QByteArray read(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}
}  // namespace

class LogExportTest : public QObject {
    Q_OBJECT
private slots:
    void init() { dialogs.install(); }
    void cleanup() { dialogs.uninstall(); }

    void exportsFramesWithBadAndPartialOnes();
    void anEmptyLogGivesTheHeaderAlone();
    void neverDamagesAFile();
    void aLongLogShowsProgressAndCanBeCancelled();
    void fileMenuAsksForTheLogThenTheCsv();
    void logPlayerExportsItsLoadedLog();

private:
    AnsweredDialogs dialogs;
    QStringList& boxes = dialogs.boxes;
    QStringList& answers = dialogs.answers;
    QStringList& requests = dialogs.requests;
    QTemporaryDir dir;
};

void LogExportTest::exportsFramesWithBadAndPartialOnes()
{
    const QString log = dir.filePath(QStringLiteral("mixed.log"));
    QByteArray partial = frame("11/22/202619:28:34");
    partial.chop(20);
    write(log, frame("11/22/202619:28:31") + frame("11.22.202619.28.32", " 1012,5 ", "0,46") +
                   frame("11/22/202619:28:33", " 1012.5 ", "bad") + frame("11/22/2026 19:28:35", "-12 ") + partial);
    LogCsvExport job;
    QString error;
    QVERIFY(job.open(log, dir.filePath(QStringLiteral("mixed.csv")), &error));
    job.runToEnd();
    QCOMPARE(job.frames(), 3);
    QCOMPARE(job.unreadable(), 2);
    const QByteArray row = ",18.6,1012.5,0.46,1.01,0.45,0.46,2.5,-5,12.5,176,86,12.00,100\n";
    QCOMPARE(read(dir.filePath(QStringLiteral("mixed.csv"))),
             kHeader + "2026-11-22T19:28:31" + row + "2026-11-22T19:28:32" + row +
                 "2026-11-22T19:28:35,18.6,-12,0.46,1.01,0.45,0.46,2.5,-5,12.5,176,86,12.00,100\n");
}

void LogExportTest::anEmptyLogGivesTheHeaderAlone()
{
    const QString log = dir.filePath(QStringLiteral("empty.log"));
    write(log, {});
    LogCsvExport job;
    QString error;
    QVERIFY(job.open(log, dir.filePath(QStringLiteral("empty.csv")), &error));
    job.runToEnd();
    QCOMPARE(read(dir.filePath(QStringLiteral("empty.csv"))), kHeader);
    QCOMPARE(job.unreadable(), 0);
}

void LogExportTest::neverDamagesAFile()
{
    const QString log = dir.filePath(QStringLiteral("keep.log"));
    write(log, frame("11/22/202619:28:31"));
    QString error;
    {
        LogCsvExport job;  // the log itself as the CSV
        QVERIFY(!job.open(log, log, &error));
        QVERIFY(error.contains(QStringLiteral("CSV")));
        QCOMPARE(read(log), frame("11/22/202619:28:31"));
    }
    {
        LogCsvExport job;  // no log
        QVERIFY(!job.open(dir.filePath(QStringLiteral("none.log")), dir.filePath(QStringLiteral("x.csv")), &error));
        QVERIFY(error.startsWith(QStringLiteral("The log file could not be opened")));
        QVERIFY(!job.open(dir.path(), dir.filePath(QStringLiteral("x.csv")), &error));  // a folder
    }
    {
        LogCsvExport job;  // a CSV in a folder that is not there
        QVERIFY(!job.open(log, dir.filePath(QStringLiteral("no/such/place.csv")), &error));
        QVERIFY(error.startsWith(QStringLiteral("The CSV file could not be written")));
    }
    {
        // A cancelled export leaves the older CSV of that name as it was.
        const QString csv = dir.filePath(QStringLiteral("older.csv"));
        write(csv, "older\n");
        LogCsvExport job;
        QVERIFY(job.open(log, csv, &error));
        job.cancel();
        QVERIFY(job.cancelled());
        QCOMPARE(read(csv), QByteArray("older\n"));
        QVERIFY(!job.step());
    }
}

void LogExportTest::aLongLogShowsProgressAndCanBeCancelled()
{
    const QString log = dir.filePath(QStringLiteral("long.log"));
    {
        QFile f(log);
        QVERIFY(f.open(QIODevice::WriteOnly));
        const QByteArray one = frame("11/22/202619:28:31");
        QByteArray block;
        for (int i = 0; i < 1000; ++i)
            block += one;
        while (f.size() <= LogCsvExport::kSliceBytes * 2)
            f.write(block);
    }
    QWidget owner;
    const QString csv = dir.filePath(QStringLiteral("long.csv"));
    answers << csv;
    QPointer<LogCsvExport> job = vexorin::logging::exportLogAsCsv(&owner, log);
    QVERIFY(job);
    QVERIFY(job->long_());
    auto* progress = owner.findChild<QProgressDialog*>(QStringLiteral("ExportProgress"));
    QVERIFY(progress);
    // Cancelled by its button after the first slice.
    int shown = -1;
    connect(job.data(), &LogCsvExport::progress, progress, [progress, &shown] {
        shown = progress->value();
        if (QPushButton* cancel = findButton(progress, QStringLiteral("Cancel")))
            cancel->click();
    });
    QTRY_VERIFY(!job);
    QVERIFY(shown > 0 && shown < 1000);
    QVERIFY(!QFile::exists(csv));
    QVERIFY(boxes.isEmpty());

    // Run to its end: the whole file, and the progress dialog gone.
    answers << csv;
    job = vexorin::logging::exportLogAsCsv(&owner, log);
    QVERIFY(job);
    QSignalSpy done(job.data(), &LogCsvExport::finished);
    QTRY_VERIFY_WITH_TIMEOUT(!done.isEmpty(), 30000);
    QCOMPARE(done.first().first().toString(), QString());
    QTRY_VERIFY(!owner.findChild<QProgressDialog*>(QStringLiteral("ExportProgress")));
    QVERIFY(read(csv).startsWith(kHeader + "2026-11-22T19:28:31,18.6,"));
    QVERIFY(boxes.isEmpty());
}

void LogExportTest::fileMenuAsksForTheLogThenTheCsv()
{
    AppRig rig;
    rig.open();
    const QString log = dir.filePath(QStringLiteral("drive.log"));
    QByteArray bad = frame("11/22/202619:28:31", "x");
    write(log, frame("11/22/202619:28:30") + bad + bad);
    answers << log << QString();  // the CSV dialog cancelled: nothing is written
    rig.window->findChild<QAction*>(QStringLiteral("ExportLogAsCsv"))->trigger();
    QCOMPARE(rig.window->findChild<QAction*>(QStringLiteral("ExportLogAsCsv"))->text(),
             QStringLiteral("Export Log as CSV..."));
    QCOMPARE(requests.size(), 2);
    QCOMPARE(requests[0], QStringLiteral("open .log Log Files (*.log)|*.log"));
    QCOMPARE(requests[1], QStringLiteral("save .csv CSV Files (*.csv)|*.csv ") + dir.filePath(QStringLiteral("drive.csv")));
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("drive.csv"))));

    answers << log << dir.filePath(QStringLiteral("drive.csv"));
    rig.window->findChild<QAction*>(QStringLiteral("ExportLogAsCsv"))->trigger();
    QTRY_COMPARE(boxes, QStringList{QStringLiteral("2 frames could not be read.")});
    QCOMPARE(read(dir.filePath(QStringLiteral("drive.csv"))),
             kHeader + "2026-11-22T19:28:30,18.6,1012.5,0.46,1.01,0.45,0.46,2.5,-5,12.5,176,86,12.00,100\n");

    answers << QString();  // no log chosen: no second dialog
    requests.clear();
    rig.window->findChild<QAction*>(QStringLiteral("ExportLogAsCsv"))->trigger();
    QCOMPARE(requests.size(), 1);
}

void LogExportTest::logPlayerExportsItsLoadedLog()
{
    LogPlayerWindow w;
    QPushButton* exportButton = findButton(&w, QStringLiteral("Export CSV"));
    QVERIFY(exportButton);
    QVERIFY(!exportButton->isEnabled());  // no log yet
    const QString log = dir.filePath(QStringLiteral("played.log"));
    write(log, frame("11/22/202619:28:30"));
    w.player().loadChosen(log);
    QVERIFY(exportButton->isEnabled());
    answers << dir.filePath(QStringLiteral("played.csv"));
    exportButton->click();
    QCOMPARE(requests, QStringList{QStringLiteral("save .csv CSV Files (*.csv)|*.csv ") +
                                   dir.filePath(QStringLiteral("played.csv"))});
    QTRY_VERIFY(read(dir.filePath(QStringLiteral("played.csv"))).startsWith(kHeader + "2026-11-22T19:28:30,"));
    QVERIFY(boxes.isEmpty());
    // What the player shows is untouched by the export.
    QCOMPARE(w.player().label(15), QStringLiteral(" 1012.5 "));
}

QTEST_MAIN(LogExportTest)
#include "log_export_test.moc"
