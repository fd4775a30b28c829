#include "app/settings/settings_access.h"
#include "fifo.h"
#include "logging/log_capture.h"
#include "logging/log_format.h"
#include "monitor_rig.h"
#include "temp_settings.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using vexorin::sensors::SensorId;

namespace {
struct CaptureRig : MonitorRig {
    CaptureRig() : capture(*settings.store, log)
    {
        QLocale::setDefault(QLocale::c());
        stream.setLogSink(&capture);
        capture.setClock([] { return QDateTime(QDate(2026, 11, 21), QTime(8, 30, 5)); });
        path = dir.filePath(QStringLiteral("drive.log"));
    }
    void start(const QString& p)
    {
        capture.CapturetologfileClicked([p](const QString&) { return p; });
    }
    QByteArray file() const
    {
        QFile f(path);
        f.open(QIODevice::ReadOnly);
        return f.readAll();
    }
    QTemporaryDir dir;
    TempSettings settings;
    LogCapture capture;
    QString path;
};

const QByteArray kTypicalFrame =
    "11/21/202608:30:05\r\n 37.2 \r\n 1012.5 \r\n0.46\r\n1.01\r\n0.45\r\n0.46\r\n 3 \r\n 14 \r\n 30.5 \r\n"
    " 176 \r\n 104 \r\n12.00\r\n 100 \r\n";
}  // namespace

class LogCaptureTest : public QObject {
    Q_OBJECT
private slots:
    void numberAndDateForms();
    void zeroFramesLeaveAnEmptyFile();
    void frameIsByteExact();
    void negativeAndLowByteValues();
    void droppedFrameWritesNothing();
    void existingFileIsReplaced();
    void cancelStaysIdleAndClickEnds();
    void initialNameComesFromTheSettings();
    void captureSurvivesADisconnect();
    void unopenableFileStaysChecked();
    void pipeIsRefusedWithoutWaiting();
};

void LogCaptureTest::numberAndDateForms()
{
    using namespace vexorin::logging;
    QCOMPARE(numberLine(QStringLiteral("62")), QStringLiteral(" 62 "));
    QCOMPARE(numberLine(QStringLiteral("-5")), QStringLiteral("-5 "));
    QCOMPARE(numberLine(QStringLiteral("1012.5")), QStringLiteral(" 1012.5 "));
    const QDateTime t(QDate(2026, 1, 2), QTime(3, 4, 5));
    QCOMPARE(dateTimeLine(t, QLocale::c()), QStringLiteral("01/02/202603:04:05"));
    QCOMPARE(dateTimeLine(t, QLocale(QLocale::German, QLocale::Germany)), QStringLiteral("01.02.202603:04:05"));
}

void LogCaptureTest::zeroFramesLeaveAnEmptyFile()
{
    CaptureRig r;
    r.start(r.path);
    QVERIFY(r.capture.checked());
    r.capture.CapturetologfileClicked({});
    QVERIFY(!r.capture.checked());
    QVERIFY(QFile::exists(r.path));
    QCOMPARE(r.file(), QByteArray());
}

void LogCaptureTest::frameIsByteExact()
{
    CaptureRig r;
    r.connect();
    r.setFrame(typicalFrame());
    r.start(r.path);
    r.stream.ReadAllSensors();
    QCOMPARE(r.file(), kTypicalFrame);  // whole frames reach the disk as they are written
    r.stream.ReadAllSensors();
    r.capture.close();
    QCOMPARE(r.file(), kTypicalFrame + kTypicalFrame);
}

void LogCaptureTest::negativeAndLowByteValues()
{
    CaptureRig r;
    r.connect();
    FrameData d = typicalFrame();
    d[10] = 120;  // Timing -10
    d[12] = 0;    // Water -58
    d[4] = 9;     // MAF high byte above 3: the plain low byte is logged as a number
    r.setFrame(d);
    r.start(r.path);
    r.stream.ReadAllSensors();
    r.capture.close();
    const QList<QByteArray> lines = r.file().split('\n');
    QCOMPARE(lines.at(4), QByteArray(" 201 \r"));
    QCOMPARE(lines.at(8), QByteArray("-10 \r"));
    QCOMPARE(lines.at(10), QByteArray("-58 \r"));
    QCOMPARE(lines.size(), 15);  // fourteen lines and the empty rest after the last CR LF
}

void LogCaptureTest::droppedFrameWritesNothing()
{
    CaptureRig r;
    r.connect();
    r.setReply(QByteArray(1, char(0)) + allSensorsReply(typicalFrame()));
    r.start(r.path);
    r.stream.ReadAllSensors();
    r.capture.close();
    QCOMPARE(r.file(), QByteArray());
}

void LogCaptureTest::existingFileIsReplaced()
{
    CaptureRig r;
    {
        QFile f(r.path);
        f.open(QIODevice::WriteOnly);
        f.write(QByteArray(5000, 'x'));
    }
    r.connect();
    r.setFrame(typicalFrame());
    r.start(r.path);
    r.stream.ReadAllSensors();
    r.capture.close();
    QCOMPARE(r.file(), kTypicalFrame);
}

void LogCaptureTest::cancelStaysIdleAndClickEnds()
{
    CaptureRig r;
    r.capture.CapturetologfileClicked([](const QString&) { return QString(); });
    QVERIFY(!r.capture.checked());
    QVERIFY(!r.capture.fileOpen());
    r.start(r.path);
    QVERIFY(r.capture.fileOpen());
    int asked = 0;
    r.capture.CapturetologfileClicked([&](const QString&) { ++asked; return r.path; });
    QCOMPARE(asked, 0);  // a click while checked ends capture without a dialog
    QVERIFY(!r.capture.checked());
    QVERIFY(!r.capture.fileOpen());
}

void LogCaptureTest::initialNameComesFromTheSettings()
{
    CaptureRig r;
    writeSetting(*r.settings.store, Settings::LogFileName, QStringLiteral("/tmp/previous.log"));
    QString initial;
    r.capture.CapturetologfileClicked([&](const QString& i) { initial = i; return QString(); });
    QCOMPARE(initial, QStringLiteral("/tmp/previous.log"));
}

void LogCaptureTest::captureSurvivesADisconnect()
{
    CaptureRig r;
    r.connect();
    r.setFrame(typicalFrame());
    r.start(r.path);
    r.stream.ReadAllSensors();
    r.session.ConnectDisconnect();
    QVERIFY(r.capture.checked());
    QVERIFY(r.capture.fileOpen());
    r.connect();
    r.stream.ReadAllSensors();
    r.capture.close();
    QCOMPARE(r.file(), kTypicalFrame + kTypicalFrame);
}

void LogCaptureTest::unopenableFileStaysChecked()
{
    CaptureRig r;
    r.start(r.dir.path());  // a folder cannot be opened as a file
    QVERIFY(r.capture.checked());
    QVERIFY(!r.capture.fileOpen());
    QVERIFY(r.log.messages().last().startsWith(QStringLiteral(": Could not open the log file")));
    r.connect();
    r.setFrame(typicalFrame());
    r.stream.ReadAllSensors();  // writes go nowhere, without a crash
    QCOMPARE(r.displays.label(SensorId::RPM), QStringLiteral("1012"));
}

void LogCaptureTest::pipeIsRefusedWithoutWaiting()
{
    CaptureRig r;
    const QString pipe = r.dir.filePath(QStringLiteral("drive.log"));
    QVERIFY(makeFifo(pipe.toStdString()));
    r.start(pipe);  // opening a pipe for writing would wait for a reader
    QVERIFY(!r.capture.fileOpen());
    QCOMPARE(r.log.messages().last(),
             QStringLiteral(": Could not open the log file %1: drive.log is not a regular file.").arg(pipe));
}

QTEST_GUILESS_MAIN(LogCaptureTest)
#include "log_capture_test.moc"
