// The Fuel Correction's controller and recorder: the targets beside the BIN
// file, runs from files, Apply's bytes on disk as one undo step with the
// backup, Export CSV, the settings, and a recording from a scripted ECU and
// DLP-IO8-G with every way it ends.
#include "external_rig.h"
#include "monitor_rig.h"
#include "temp_settings.h"

#include "app/settings/settings_access.h"
#include "external/channel_scale.h"
#include "rom/file_edits.h"
#include "rom/map_figures.h"
#include "rom/rules/map_decoding.h"
#include "sim/ecu_simulator.h"
#include "tools/fuel_correction.h"
#include "tools/fuel_run_file.h"
#include "tools/fuel_run_recorder.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace vexorin::tools;

namespace {
constexpr int kFuelMap = 0x7D00;

std::vector<std::uint8_t> synthImage()
{
    const auto rom = vexorin::sim::makeSyntheticRom();
    return {rom.begin(), rom.end()};
}

QString writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

QString writeImage(const QString& path, const std::vector<std::uint8_t>& image)
{
    return writeFile(path, QByteArray(reinterpret_cast<const char*>(image.data()), qsizetype(image.size())));
}

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// A run at 2400 rpm, 2.00 V, warm and steady for 3 s, the wideband reading `afr` every 100 ms.
QByteArray steadyRun(double afr, int alpha = 100)
{
    std::string text = std::string(kRunHeader) + "\n";
    for (int t = 0; t <= 3000; t += 100) {
        text += ecuRowLine(t, "2400", "2.00", "0.80", "185", std::to_string(alpha));
        if (t >= 400)
            text += afrRowLine(t + 10, twoDecimals(afr));
    }
    return QByteArray::fromStdString(text);
}

int cellOf(const std::vector<std::uint8_t>& image)
{
    const FuelMap map = fuelMapOf(image, kFuelMap, 1024);
    const auto p = vexorin::rom::tracePoint(map.tables, 2400, 200, 1024);
    return (p.row - 1) * 16 + (p.fuelColumn - 1);
}

struct Rig {
    Rig()
    {
        FileEdits::shared().forgetAll();
        QObject::connect(&correction, &FuelCorrection::message, [this](const QString& m) { messages << m; });
    }
    QString path(const QString& name) const { return dir.filePath(name); }
    TempSettings settings;
    QTemporaryDir dir;
    FuelCorrection correction{*settings.store};
    QStringList messages;
};
}  // namespace

class FuelCorrectionTest : public QObject {
    Q_OBJECT
private slots:
    void refusesWhatIsNoBinFile();
    void targetsStartFromTheBackupAndAreKeptAtTheFirstEdit();
    void targetsStartFromTheFileWithoutABackup();
    void runsFromFilesAddUp();
    void unreadableRowsAndWrongFiles();
    void applyWritesOneUndoStepWithTheBackup();
    void nothingToChange();
    void exportCsv();
    void settingsAreStoredAndReanalysed();
    void recordingRefusals();
    void recordingWritesTheRunFile();
    void recordingEndsWithMonitoringPollingOrDisconnect();
};

void FuelCorrectionTest::refusesWhatIsNoBinFile()
{
    Rig rig;
    QVERIFY(!rig.correction.openBin(writeFile(rig.path("short.bin"), QByteArray(100, 0))));
    QVERIFY(!rig.correction.openBin(rig.dir.path()));
    QVERIFY(!rig.correction.openBin(rig.path("missing.bin")));
    QCOMPARE(rig.messages.size(), 3);
    QCOMPARE(rig.messages[0], QStringLiteral("short.bin could not be opened: it is not a BIN file of 32768 bytes."));
    QVERIFY(rig.correction.binPath().isEmpty());
}

void FuelCorrectionTest::targetsStartFromTheBackupAndAreKeptAtTheFirstEdit()
{
    Rig rig;
    std::vector<std::uint8_t> original = synthImage();
    original[kFuelMap] = 192;  // 14.70
    std::vector<std::uint8_t> tuned = original;
    tuned[kFuelMap] = 20;  // 12.70
    const QString bin = writeImage(rig.path("tune.bin"), tuned);
    writeImage(rig.path("tune.orig.bin"), original);
    QVERIFY(rig.correction.openBin(bin));
    QCOMPARE(rig.correction.target(1, 1), 14.70);
    QCOMPARE(rig.correction.targetPath(), bin + QStringLiteral(".target.csv"));
    QVERIFY(!QFile::exists(rig.correction.targetPath()));
    QCOMPARE(rig.correction.rpmHeading(1), QString::number(original[0x7B00] * 50));
    QCOMPARE(rig.correction.tpHeading(16), QString::number(original[0x7AFF]));

    // A figure out of range is refused with the message of typed fuel figures.
    QVERIFY(!rig.correction.setTarget(1, 2, QStringLiteral("19.61")));
    QCOMPARE(rig.messages.value(0), QStringLiteral("The figure must be between 6.56 and 19.60."));
    QVERIFY(!QFile::exists(rig.correction.targetPath()));
    QVERIFY(rig.correction.setTarget(1, 2, QStringLiteral("13.5")));
    const QList<QByteArray> lines = readFile(rig.correction.targetPath()).split('\n');
    QCOMPARE(lines.size(), 17);
    QVERIFY(lines[0].startsWith("14.70,13.50,"));
    QCOMPARE(lines[0].count(','), 15);

    // A later opening reads the file, whatever the map holds now.
    Rig again;
    QVERIFY(again.correction.openBin(bin));
    QCOMPARE(again.correction.target(1, 2), 13.5);
    QVERIFY(again.correction.targetsKept());
}

void FuelCorrectionTest::targetsStartFromTheFileWithoutABackup()
{
    Rig rig;
    std::vector<std::uint8_t> image = synthImage();
    image[0x7100] = 160;                // Fuel (High Oct/High Gear), cell (1, 1): 19.60
    const QString bin = writeImage(rig.path("plain.bin"), image);
    QVERIFY(rig.correction.openBin(bin));
    QCOMPARE(rig.correction.target(1, 1), vexorin::rom::figureOfByte(vexorin::rom::FigureKind::Fuel, image[kFuelMap]));
    rig.correction.setMapIndex(1);
    QCOMPARE(rig.correction.target(1, 1), 19.60);
    QCOMPARE(FuelCorrection::mapCaptions(),
             QStringList({"Fuel (High Octane)", "Fuel (High Oct/High Gear)", "Fuel (Low Octane)", "Fuel (Low Oct/High Gear)"}));
    // A target file that cannot be read is said, and the map serves.
    writeFile(rig.correction.targetPath(), "14.70\n");
    Rig broken;
    QVERIFY(broken.correction.openBin(bin));
    QCOMPARE(broken.messages.value(0), QStringLiteral("The targets in plain.bin.target.csv could not be read: it does not "
                                                      "hold 16 lines. They start from the map."));
}

void FuelCorrectionTest::runsFromFilesAddUp()
{
    Rig rig;
    const std::vector<std::uint8_t> image = synthImage();
    QVERIFY(rig.correction.openBin(writeImage(rig.path("a.bin"), image)));
    const QString one = writeFile(rig.path("one.csv"), steadyRun(15.0));
    const QString two = writeFile(rig.path("two.csv"), steadyRun(15.0));
    rig.correction.openRuns({one});
    QCOMPARE(rig.correction.status(), QStringLiteral("27 samples in 1 cells; 1 cells to change"));
    rig.correction.openRuns({two});
    QCOMPARE(rig.correction.advice().samples, 54);
    QCOMPARE(rig.correction.runCount(), 2);
    const CellAdvice& a = rig.correction.cell(cellOf(image) / 16 + 1, cellOf(image) % 16 + 1);
    QCOMPARE(a.samples, 54);
    QVERIFY(std::abs(a.measured - 15.0) < 1e-9);
    rig.correction.clear();
    QCOMPARE(rig.correction.status(), QStringLiteral("0 samples in 0 cells; 0 cells to change"));
    QVERIFY(rig.messages.isEmpty());
}

void FuelCorrectionTest::unreadableRowsAndWrongFiles()
{
    Rig rig;
    QVERIFY(rig.correction.openBin(writeImage(rig.path("a.bin"), synthImage())));
    const QString odd = writeFile(rig.path("odd.csv"), steadyRun(15.0) + "12,afr,,,,,,x\nnonsense\n\n");
    const QString wrong = writeFile(rig.path("wrong.csv"), "time,kind\n1,afr,,,,,,14.7\n");
    rig.correction.openRuns({odd, wrong, rig.dir.path()});
    QCOMPARE(rig.correction.runCount(), 1);
    QCOMPARE(rig.correction.advice().samples, 27);
    QCOMPARE(rig.messages.size(), 3);
    QCOMPARE(rig.messages[0], QStringLiteral("wrong.csv is not a run file: its first line must be "
                                             "\"time_ms,kind,rpm,maf_v,tps_v,water_f,af_alpha,afr\"."));
    QVERIFY(rig.messages[1].startsWith(QFileInfo(rig.dir.path()).fileName() + QStringLiteral(" could not be opened: ")));
    QCOMPARE(rig.messages[2], QStringLiteral("2 rows could not be read."));
}

void FuelCorrectionTest::applyWritesOneUndoStepWithTheBackup()
{
    Rig rig;
    const std::vector<std::uint8_t> image = synthImage();
    const QString bin = writeImage(rig.path("car.bin"), image);
    QVERIFY(rig.correction.openBin(bin));
    const int cell = cellOf(image);
    const int row = cell / 16 + 1, column = cell % 16 + 1;
    const double x = vexorin::rom::figureOfByte(vexorin::rom::FigureKind::Fuel, image[std::size_t(kFuelMap + cell)]);
    // Measured 4 % lean of the map: the cell is made 4 % richer.
    rig.correction.openRuns({writeFile(rig.path("run.csv"), steadyRun(x * 1.04))});
    QCOMPARE(rig.correction.changes().size(), 1);
    const FuelCorrection::Change change = rig.correction.changes().first();
    QCOMPARE(change.row, row);
    QCOMPARE(change.column, column);
    const int newByte = vexorin::rom::byteForFigure(vexorin::rom::FigureKind::Fuel, x / 1.04);
    QCOMPARE(change.newFigure, QString::fromStdString(vexorin::rom::FormatAfr(newByte)));
    QSignalSpy written(&FileEdits::shared(), &FileEdits::bytesChanged);

    QVERIFY(rig.correction.apply());
    QByteArray now = readFile(bin);
    QCOMPARE(std::uint8_t(now[kFuelMap + cell]), std::uint8_t(newByte));
    now[kFuelMap + cell] = char(image[std::size_t(kFuelMap + cell)]);
    QCOMPARE(now, QByteArray(reinterpret_cast<const char*>(image.data()), qsizetype(image.size())));
    QCOMPARE(readFile(rig.path("car.orig.bin")), now);  // the backup holds the file as it was
    QVERIFY(QFile::exists(rig.correction.targetPath()));
    QCOMPARE(written.size(), 1);
    QVERIFY(rig.messages.last().startsWith(QStringLiteral("1 cells written.")));
    // The samples were of the old map.
    QCOMPARE(rig.correction.advice().samples, 0);
    QCOMPARE(rig.correction.mapByte(row, column), newByte);

    // One step of the file's journal takes it back.
    QVERIFY(FileEdits::shared().canUndo(bin));
    QVERIFY(FileEdits::shared().step(bin, true));
    QCOMPARE(readFile(bin), now);
    QVERIFY(!FileEdits::shared().canUndo(bin));
    QCOMPARE(rig.correction.mapByte(row, column), int(image[std::size_t(kFuelMap + cell)]));
}

void FuelCorrectionTest::nothingToChange()
{
    Rig rig;
    const std::vector<std::uint8_t> image = synthImage();
    const QString bin = writeImage(rig.path("car.bin"), image);
    QVERIFY(rig.correction.openBin(bin));
    const double x = vexorin::rom::figureOfByte(vexorin::rom::FigureKind::Fuel, image[std::size_t(kFuelMap + cellOf(image))]);
    rig.correction.openRuns({writeFile(rig.path("run.csv"), steadyRun(x))});
    QCOMPARE(rig.correction.advice().cellsToChange, 0);
    QVERIFY(!rig.correction.apply());
    QCOMPARE(rig.messages, QStringList{QStringLiteral("Nothing to change.")});
    QVERIFY(!FileEdits::shared().canUndo(bin));
    QVERIFY(!QFile::exists(rig.path("car.orig.bin")));
}

void FuelCorrectionTest::exportCsv()
{
    Rig rig;
    const std::vector<std::uint8_t> image = synthImage();
    QVERIFY(rig.correction.openBin(writeImage(rig.path("car.bin"), image)));
    const int cell = cellOf(image);
    const int byte = image[std::size_t(kFuelMap + cell)];
    const double x = vexorin::rom::figureOfByte(vexorin::rom::FigureKind::Fuel, byte);
    rig.correction.openRuns({writeFile(rig.path("run.csv"), steadyRun(15.0, 98))});
    QVERIFY(rig.correction.exportCsv(rig.path("out.csv")));
    const QList<QByteArray> lines = readFile(rig.path("out.csv")).split('\n');
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines[0], QByteArray(FuelCorrection::kCsvHeader));
    const CellAdvice& a = rig.correction.cell(cell / 16 + 1, cell % 16 + 1);
    const QByteArray expected = QStringLiteral("%1,%2,%3,%4,27,14.70,%5,%6,%7,%8,%9")
                                    .arg(cell / 16 + 1)
                                    .arg(cell % 16 + 1)
                                    .arg(image[std::size_t(0x7B00 + cell / 16)] * 50)
                                    .arg(image[std::size_t(0x7AF0 + cell % 16)])
                                    .arg(QString::fromStdString(twoDecimals(x)), QString::fromStdString(twoDecimals(x)),
                                         QString::fromStdString(twoDecimals(a.suggested)))
                                    .arg(byte)
                                    .arg(a.byteNew)
                                    .toLatin1();
    QCOMPARE(lines[1], expected);
}

void FuelCorrectionTest::settingsAreStoredAndReanalysed()
{
    Rig rig;
    QVERIFY(rig.correction.openBin(writeImage(rig.path("car.bin"), synthImage())));
    rig.correction.openRuns({writeFile(rig.path("run.csv"), steadyRun(15.0))});
    QCOMPARE(rig.correction.advice().cellsToChange, 1);
    FuelSettings s = rig.correction.settings();
    QCOMPARE(s.lagMs, 300);
    QCOMPARE(s.minSamples, 5);
    QVERIFY(s.useAlpha);
    s.minSamples = 28;
    s.steadyTps = 0.2;
    rig.correction.setSettings(s);
    QCOMPARE(rig.correction.advice().cellsToChange, 0);
    QCOMPARE(rig.correction.status(), QStringLiteral("27 samples in 1 cells; 0 cells to change"));
    QCOMPARE(readSetting(*rig.settings.store, Settings::FuelCorrectionMinSamples), QStringLiteral("28"));
    QCOMPARE(readSetting(*rig.settings.store, Settings::FuelCorrectionSteadyTps), QStringLiteral("0.20"));
    QCOMPARE(readSetting(*rig.settings.store, Settings::FuelCorrectionUseAlpha), QStringLiteral("True"));
    FuelCorrection again(*rig.settings.store);
    QCOMPARE(again.settings().minSamples, 28);
    QCOMPARE(again.settings().steadyTps, 0.2);
    // Out of range in the store: the default.
    writeSetting(*rig.settings.store, Settings::FuelCorrectionLag, QStringLiteral("-5"));
    QCOMPARE(FuelCorrection(*rig.settings.store).settings().lagMs, 300);
}

namespace {
// A warm engine at 2400 rpm, 2.00 V on the air flow meter, alpha 100.
FrameData warmFrame()
{
    FrameData d{};
    d[1] = 0;
    d[2] = 192;   // 192 x 12.5 = 2400 rpm
    d[3] = 40;    // TPS 0.80 V
    d[4] = 1;
    d[5] = 144;   // 400 x 5 = 2000 mV
    d[12] = 135;  // water 135 - 50 = 85 C = 185 F
    d[15] = 100;  // alpha
    return d;
}

std::vector<std::uint8_t> bytesOf(const QByteArray& b)
{
    return {b.begin(), b.end()};
}

struct RecordRig {
    RecordRig()
    {
        gauges.answer = [](char) { return QByteArray("2.34V"); };
        gauges.load();
        QObject::connect(&recorder, &FuelRunRecorder::message, [this](const QString& m) { messages << m; });
        recorder.setClock([this] { return now; });
    }
    void monitorOn()
    {
        monitor.connect();
        monitor.setFrame(warmFrame());
        monitor.stream.MonitorOnOff();
    }
    void pollChannel1()
    {
        gauges.sensors->setScale(1, vexorin::external::kScalePresets[0].scale());
        gauges.sensors->link().setChecked(1, true);
        gauges.sensors->link().setCheckedOnly(true);  // every request reads channel 1
        gauges.sensors->ConnectDisconnectClicked();
        gauges.sensors->StartClicked();
    }
    // The frames of the test come by hand: the stream's timer stops and a read under way ends.
    void handTicks()
    {
        monitor.session.GetAllSensorDataTimer.stop();
        QTest::qWait(150);
    }
    void frame() { monitor.stream.decodeFrame(bytesOf(allSensorsReply(warmFrame()))); }
    void reading()
    {
        gauges.sensors->link().ChannelRequestTimerTick();
        gauges.sensors->link().ChannelReplyTimerTick();
        gauges.sensors->link().ChannelRequestTimer.stop();  // the tick hands over to the timer
    }
    MonitorRig monitor;
    ExternalRig gauges;
    TempSettings settings;
    FuelCorrection correction{*settings.store};
    FuelRunRecorder recorder{monitor.session, monitor.stream, monitor.displays, [this] { return gauges.sensors; },
                             correction};
    QTemporaryDir dir;
    QStringList messages;
    qint64 now = 1000;
};
}  // namespace

void FuelCorrectionTest::recordingRefusals()
{
    RecordRig rig;
    QSignalSpy switched(&rig.recorder, &FuelRunRecorder::switched);
    const QString path = rig.dir.filePath(QStringLiteral("run.csv"));
    QVERIFY(!rig.recorder.start(path, 1));
    rig.monitor.connect();
    QVERIFY(!rig.recorder.start(path, 1));
    rig.monitor.setFrame(warmFrame());
    rig.monitor.stream.MonitorOnOff();
    QVERIFY(!rig.recorder.start(path, 1));
    rig.gauges.sensors->ConnectDisconnectClicked();
    rig.gauges.sensors->StartClicked();
    QVERIFY(!rig.recorder.start(path, 1));
    QCOMPARE(rig.messages, QStringList({QStringLiteral("Consult port not connected."),
                                        QStringLiteral("Sensor monitoring must be on."),
                                        QStringLiteral("Start the External Gauge Monitor first."),
                                        QStringLiteral("Channel 1 has no scale: give it one with its \"Scale...\" "
                                                       "button in the External Gauge Monitor.")}));
    QCOMPARE(switched.size(), 4);
    QVERIFY(!switched.last().first().toBool());
    QVERIFY(!QFile::exists(path));
    QVERIFY(rig.recorder.defaultFileName().contains(QRegularExpression(QStringLiteral("^run-\\d{8}-\\d{6}\\.csv$"))));
}

void FuelCorrectionTest::recordingWritesTheRunFile()
{
    RecordRig rig;
    rig.monitorOn();
    rig.pollChannel1();
    const QString path = rig.dir.filePath(QStringLiteral("run.csv"));
    rig.handTicks();
    QVERIFY(rig.recorder.start(path, 1));
    QVERIFY(rig.recorder.recording());
    QCOMPARE(readFile(path), QByteArray("time_ms,kind,rpm,maf_v,tps_v,water_f,af_alpha,afr\n"));
    // The readings come by hand too: the polling timers stop, and a reply still waiting goes.
    rig.gauges.sensors->link().ChannelRequestTimer.stop();
    rig.gauges.sensors->link().ChannelReplyTimer.stop();
    QTest::qWait(20);
    rig.gauges.transport->readAll();
    rig.now = 1100;
    rig.frame();
    rig.now = 1150;
    rig.reading();
    rig.gauges.answer = [](char) { return QByteArray("no reading"); };
    rig.now = 1250;
    rig.reading();  // left out
    rig.gauges.answer = [](char) { return QByteArray("2.34V"); };
    rig.now = 1337;
    rig.frame();
    rig.reading();
    const QByteArray rows = "100,ecu,2400,2.00,0.80,185,100,\n"
                            "150,afr,,,,,,14.68\n"
                            "337,ecu,2400,2.00,0.80,185,100,\n"
                            "337,afr,,,,,,14.68\n";
    // On disk within a second, while the recording goes on.
    QTRY_COMPARE_WITH_TIMEOUT(readFile(path), QByteArray("time_ms,kind,rpm,maf_v,tps_v,water_f,af_alpha,afr\n") + rows, 1000);
    QVERIFY(rig.recorder.recording());
    rig.recorder.stop();
    QCOMPARE(readFile(path), QByteArray("time_ms,kind,rpm,maf_v,tps_v,water_f,af_alpha,afr\n") + rows);
    QVERIFY(!rig.correction.live());
}

void FuelCorrectionTest::recordingEndsWithMonitoringPollingOrDisconnect()
{
    const std::vector<std::function<void(RecordRig&)>> ends = {
        [](RecordRig& r) { r.monitor.stream.MonitorOnOff(); },
        [](RecordRig& r) { r.gauges.sensors->StopClicked(); },
        [](RecordRig& r) { r.monitor.session.ConnectDisconnect(); },
        [](RecordRig& r) { r.gauges.owned.reset(); r.gauges.sensors = nullptr; },
    };
    for (std::size_t i = 0; i < ends.size(); ++i) {
        RecordRig rig;
        rig.monitorOn();
        rig.pollChannel1();
        const QString path = rig.dir.filePath(QStringLiteral("run.csv"));
        QSignalSpy switched(&rig.recorder, &FuelRunRecorder::switched);
        rig.handTicks();
        QVERIFY(rig.recorder.start(path, 1));
        rig.frame();
        ends[i](rig);
        QTRY_VERIFY2(!rig.recorder.recording(), qPrintable(QString::number(i)));
        QCOMPARE(switched.size(), 2);
        QVERIFY(readFile(path).endsWith("ecu,2400,2.00,0.80,185,100,\n"));
        rig.frame();  // nothing more reaches the file
        QVERIFY(readFile(path).endsWith("ecu,2400,2.00,0.80,185,100,\n"));
        QCOMPARE(readFile(path).count('\n'), 2);
    }
}

QTEST_GUILESS_MAIN(FuelCorrectionTest)
#include "fuel_correction_test.moc"
