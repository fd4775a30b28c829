// The Map Viewer's logic against BIN files and the simulated ECU: loading all
// six maps from a file, downloading one map over Consult, and editing.
#include "consult/link_writes.h"
#include "consult/simulator_transport.h"
#include "fifo.h"
#include "link_wait.h"
#include "rom/map_viewer.h"
#include "rom/rom_image.h"
#include "map_rig.h"
#include "session_rig.h"
#include "sim/ecu_simulator.h"
#include "ui/binary_files.h"

#include <QDir>
#include <QFile>
#include <QPointer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <unistd.h>

using namespace vexorin::rom;

namespace {
int romAt(const Rom& rom, int offset)
{
    return rom[std::size_t(offset)];
}
}  // namespace

class MapViewerTest : public QObject {
    Q_OBJECT
private slots:
    void startsEmpty();
    void loadsAllSixMapsFromABinFile();
    void menuLoadSaysLoadingBinFile();
    void missingOrShortFileStopsTheLoadWithAMessage();
    void longFileLoadsAsAFullImage();
    void downloadNeedsAConnectedPort();
    void activationByteTestSendsItsSixBytesAndReadsNothing();
    void buttonsRefuseWhileMonitoringButTheMenuItemDoesNot();
    void fuelDownloadRequestsScalesThenTheBank();
    void timingDownloadReadsFourScaleRequestsFirst();
    void downloadedMapEqualsTheSameMapFromTheBinFile();
    void downloadDoesNotTouchTheDisplayCache();
    void clearBeforeDownloadFollowsTheFirstTab();
    void stopDataFlowLeavesTheNextDownloadFreeToStart();
    void doneReturnsToMapStatusThreeSecondsLater();
    void silentEcuStopsTheDownloadWithAMessage();
    void loadAllEcuDataMapsDependsOnTheLastDownload();
    void clearMatrixRebuildsOneGridOnly();
    void nextViewerCaptionsCount();
    void builtInSimulatorServesTheToolsRom();
    void pipeStopsTheLoadWithAMessage();

    void editModeNeedsAFile();
    void editModeWarnsAndOutlinesTheFirstCell();
    void fuelStepsFollowOneLineOfRatios();
    void fuelLimitsShowMessagesAndStillWrite();
    void repeatedFuelValueRunsIntoTheCorruptMessage();
    void timingStepsWrap();
    void rpmScaleStepsAndLimits();
    void tpScaleStepsAndLimits();
    void selectingTheCornerChangesNothing();
    void vanishedOrReadOnlyFileIsNeverWritten();
};

void MapViewerTest::startsEmpty()
{
    MapRig r;
    for (int t = 0; t < MapViewer::kTabs; ++t) {
        QCOMPARE(r.viewer.tab(t).pathBox, QStringLiteral("C:\\"));
        QCOMPARE(r.viewer.tab(t).grid.text(0, 0), QStringLiteral("RPM / TP"));
        QVERIFY(!r.viewer.tab(t).editMode);
        QVERIFY(!r.viewer.mapTimers[std::size_t(t)].isActive());
        QCOMPARE(r.viewer.mapTimers[std::size_t(t)].interval(), 150);
    }
    QCOMPARE(r.viewer.status(), QStringLiteral("Map Status"));
    QCOMPARE(r.viewer.MapStatusTimer.interval(), 3000);
    QCOMPARE(r.viewer.caption(), QStringLiteral("Vexorin Map Viewer/Editor"));
    QCOMPARE(r.viewer.TxtFormCount(), 0);
}

void MapViewerTest::loadsAllSixMapsFromABinFile()
{
    MapRig r;
    r.writeBin(r.path);
    int yields = 0;
    r.viewer.setYield([&yields] { ++yields; });
    QVERIFY(r.viewer.LoadBinFile(r.path));
    QCOMPARE(yields, 6 * (16 + 16 + 256));
    QCOMPARE(r.beeps, 1);
    QCOMPARE(r.viewer.status(), QStringLiteral("Map Status"));
    for (int t = 0; t < MapViewer::kTabs; ++t) {
        const MapSpec& map = kMaps[std::size_t(t)];
        const MapViewer::Tab& tab = r.viewer.tab(t);
        QCOMPARE(tab.pathBox, r.path);
        QCOMPARE(tab.viewing, QStringLiteral("Viewing : BIN File Data"));
        QVERIFY(!tab.grid.enabled);
        QCOMPARE(tab.grid.text(0, 0), QStringLiteral("RPM / TP"));
        for (int i = 0; i < 16; ++i) {
            QCOMPARE(tab.grid.text(i + 1, 0), QString::number(romAt(r.rom, 0x7B00 + i) * 50));
            QCOMPARE(tab.grid.text(0, i + 1), QString::number(romAt(r.rom, map.tpScaleOffset() + i)));
            QCOMPARE(r.viewer.displayCache(0x7B00 + i + 1), tab.grid.text(i + 1, 0));
        }
        for (int row = 1; row <= 16; ++row) {
            for (int col = 1; col <= 16; ++col) {
                const int offset = map.fileOffset() + (row - 1) * 16 + (col - 1);
                const int v = romAt(r.rom, offset);
                QCOMPARE(tab.grid.text(row, col), QString::fromStdString(formatMapByte(map.fuel, v)));
                QVERIFY(tab.grid.color(row, col) == mapByteColor(map.fuel, v));
                QCOMPARE(r.viewer.displayCache(offset + 1), tab.grid.text(row, col));
            }
        }
        // Headings take no band colour.
        QVERIFY(!tab.grid.color(0, 1));
        QVERIFY(!tab.grid.color(1, 0));
    }
    // The first map drives the progress bar through its bank.
    QCOMPARE(r.viewer.progress(), 255);
    QCOMPARE(r.viewer.displayCache(0), QString());
    QCOMPARE(r.viewer.displayCache(32769), QString());
}

void MapViewerTest::menuLoadSaysLoadingBinFile()
{
    MapRig r;
    r.writeBin(r.path);
    QStringList statuses;
    QObject::connect(&r.viewer, &MapViewer::statusChanged, [&] { statuses.append(r.viewer.status()); });
    r.viewer.LoadBinFile(r.path, true);
    QCOMPARE(statuses.first(), QStringLiteral("Loading Bin File"));
    QVERIFY(r.viewer.LoadBinFile(QString()) == false);  // a cancelled dialog changes nothing
    QCOMPARE(r.viewer.tab(0).pathBox, r.path);
}

void MapViewerTest::missingOrShortFileStopsTheLoadWithAMessage()
{
    MapRig r;
    QVERIFY(!r.viewer.LoadBinFile(r.dir.filePath(QStringLiteral("gone.bin"))));
    QVERIFY(r.messages.last().contains(QStringLiteral("File not found.")));
    QCOMPARE(r.beeps, 0);

    // A file that ends before the first map's bank: its scales load, then the load stops.
    const QString shortPath = r.dir.filePath(QStringLiteral("short.bin"));
    r.writeBin(shortPath, 0x7C80);
    r.messages.clear();
    QVERIFY(!r.viewer.LoadBinFile(shortPath));
    QCOMPARE(r.messages, QStringList{QStringLiteral("BIN File corrupted or not the correct size.")});
    QVERIFY(!r.viewer.tab(0).grid.text(16, 0).isEmpty());
    QVERIFY(!r.viewer.tab(0).grid.text(0, 16).isEmpty());
    QVERIFY(r.viewer.tab(0).grid.text(1, 1).isEmpty());
    QVERIFY(r.viewer.tab(1).grid.text(1, 0).isEmpty());
    QCOMPARE(QFileInfo(shortPath).size(), 0x7C80);
    QVERIFY(!r.viewer.loading());
}

void MapViewerTest::longFileLoadsAsAFullImage()
{
    MapRig r;
    r.writeBin(r.path, 40000);
    QVERIFY(r.viewer.LoadBinFile(r.path));
    QVERIFY(r.messages.isEmpty());
    QCOMPARE(r.viewer.tab(5).grid.text(16, 16),
             QString::fromStdString(FormatTiming(romAt(r.rom, 0x7C00 + 255))));
}

void MapViewerTest::downloadNeedsAConnectedPort()
{
    MapRig r;
    r.viewer.DownloadButton(0);
    r.viewer.DownloadMapData();
    r.viewer.StopDataFlow();
    QCOMPARE(r.messages, QStringList(3, QStringLiteral("Consult port not connected.")));
    QVERIFY(!r.viewer.mapTimers[0].isActive());
}

void MapViewerTest::activationByteTestSendsItsSixBytesAndReadsNothing()
{
    MapRig r;
    r.viewer.ActivationByteTest();
    QCOMPARE(r.messages, QStringList{QStringLiteral("Consult port not connected.")});
    r.connect();
    r.messages.clear();
    r.sim->written.clear();
    r.viewer.ActivationByteTest();
    QVERIFY(r.messages.isEmpty());
    QCOMPARE(r.sim->written, QByteArray::fromHex("0afd08fd0ff0"));
    for (const QTimer& t : r.viewer.mapTimers)
        QVERIFY(!t.isActive());
}

void MapViewerTest::buttonsRefuseWhileMonitoringButTheMenuItemDoesNot()
{
    MapRig r;
    r.connect();
    r.session.setMonitorSensorsOnLabel(QStringLiteral("ON"));
    r.viewer.DownloadButton(0);
    QCOMPARE(r.messages, QStringList{QStringLiteral("Sensor monitoring must be off.")});
    QVERIFY(!r.viewer.mapTimers[0].isActive());
    r.viewer.StopDataFlow();
    QCOMPARE(r.messages.size(), 2);
    r.viewer.DownloadMapData();
    QCOMPARE(r.messages.size(), 2);
    QVERIFY(r.viewer.mapTimers[0].isActive());
    // The menu item leaves the Viewing label and the edit mode alone.
    QCOMPARE(r.viewer.tab(0).viewing, QStringLiteral("Viewing : "));
}

void MapViewerTest::fuelDownloadRequestsScalesThenTheBank()
{
    MapRig r;
    r.connect();
    r.viewer.DownloadButton(2);
    QVERIFY(!r.viewer.tab(2).clearMatrixEnabled);
    QCOMPARE(r.viewer.tab(2).viewing, QStringLiteral("Viewing : ECU Data"));
    QCOMPARE(r.viewer.readState().high, 251);
    QCOMPARE(r.viewer.readState().low, -1);
    QVERIFY(!r.viewer.MapStatusTimer.isActive());

    QList<QByteArray> requests;
    for (int i = 0; i < 3; ++i) {
        r.sim->written.clear();
        r.viewer.MapTimerTick(2);
        requests.append(r.sim->written);
    }
    auto expected = [](int high, int firstLow) {
        QByteArray b;
        for (int i = 0; i < 8; ++i)
            b.append(char(201)).append(char(high)).append(char(firstLow + i));
        b.append(char(240)).append(char(48));
        return b;
    };
    QCOMPARE(requests[0], expected(251, 0x00));
    QCOMPARE(requests[1], expected(251, 0x08));
    // The third request: 201 250 240, 201 250 241 … 201 250 247, then 240.
    QCOMPARE(requests[2], expected(250, 0xF0));
    QCOMPARE(r.viewer.status(), QStringLiteral("Getting RPM and TP Tables"));

    r.sim->written.clear();
    r.viewer.MapTimerTick(2);  // 0xFAF8
    r.viewer.MapTimerTick(2);  // the scales are done: no request
    QCOMPARE(r.sim->written, expected(250, 0xF8));
    QCOMPARE(r.viewer.readState().high, 242);
    QCOMPARE(r.viewer.readState().low, -1);
    r.sim->written.clear();
    r.viewer.MapTimerTick(2);
    QCOMPARE(r.sim->written, expected(242, 0x00));
    QCOMPARE(r.viewer.status(), QStringLiteral("Getting Fuel Map (Low Octane)"));
    QCOMPARE(r.viewer.progress(), 7);
}

void MapViewerTest::timingDownloadReadsFourScaleRequestsFirst()
{
    MapRig r;
    r.connect();
    r.viewer.DownloadButton(4);
    for (int i = 0; i < 4; ++i)
        r.viewer.MapTimerTick(4);
    QCOMPARE(r.viewer.readState().scalePhase, 2);
    QCOMPARE(r.viewer.readState().low, 31);
    r.viewer.MapTimerTick(4);
    QCOMPARE(r.viewer.readState().high, 248);
    r.sim->written.clear();
    r.viewer.MapTimerTick(4);
    QCOMPARE(r.sim->written.mid(0, 3), QByteArray::fromHex("c9f800"));
}

void MapViewerTest::downloadedMapEqualsTheSameMapFromTheBinFile()
{
    MapRig fromFile;
    fromFile.writeBin(fromFile.path);
    fromFile.viewer.LoadBinFile(fromFile.path);

    MapRig r;
    r.connect();
    for (int t : {2, 5}) {
        r.download(t);
        QCOMPARE(r.viewer.status(), QStringLiteral("Done!"));
        const MapGrid& got = r.viewer.tab(t).grid;
        const MapGrid& want = fromFile.viewer.tab(t).grid;
        for (int row = 0; row < MapGrid::kSize; ++row) {
            for (int col = 0; col < MapGrid::kSize; ++col) {
                QCOMPARE(got.text(row, col), want.text(row, col));
                QVERIFY(got.color(row, col) == want.color(row, col));
            }
        }
        QVERIFY(!r.viewer.mapTimers[std::size_t(t)].isActive());
        QCOMPARE(r.viewer.progress(), 0);
        QVERIFY(r.viewer.MapStatusTimer.isActive());
        for (int other = 0; other < MapViewer::kTabs; ++other)
            QVERIFY(r.viewer.tab(other).clearMatrixEnabled);
    }
    QVERIFY(r.messages.isEmpty());
}

void MapViewerTest::downloadDoesNotTouchTheDisplayCache()
{
    MapRig r;
    r.writeBin(r.path);
    r.viewer.LoadBinFile(r.path);
    const int position = 0x7D00 + 1;
    const QString atLoad = r.viewer.displayCache(position);
    r.connect();
    Rom changed = r.rom;
    changed[0x7D00] = std::uint8_t(changed[0x7D00] + 9);
    r.sim->ecu().setRom(changed);
    r.download(0);
    QCOMPARE(r.viewer.tab(0).grid.text(1, 1), QString::fromStdString(FormatAfr(changed[0x7D00])));
    QCOMPARE(r.viewer.displayCache(position), atLoad);
    r.viewer.setEditMode(0, false);
}

void MapViewerTest::clearBeforeDownloadFollowsTheFirstTab()
{
    MapRig r;
    r.writeBin(r.path);
    r.viewer.LoadBinFile(r.path);
    r.connect();
    r.viewer.setClearMatrixBeforeDownload(1, true);
    r.viewer.DownloadButton(1);
    QVERIFY(!r.viewer.tab(1).grid.text(8, 8).isEmpty());
    r.viewer.StopDataFlow();

    r.viewer.setClearMatrixBeforeDownload(0, true);
    r.viewer.setClearMatrixBeforeDownload(1, false);
    r.viewer.DownloadButton(3);
    QVERIFY(r.viewer.tab(3).grid.text(8, 8).isEmpty());
    QCOMPARE(r.viewer.tab(3).grid.text(0, 0), QStringLiteral("RPM / TP"));
}

void MapViewerTest::stopDataFlowLeavesTheNextDownloadFreeToStart()
{
    MapRig r;
    r.connect();
    r.viewer.DownloadButton(0);
    for (int i = 0; i < 6; ++i)
        r.viewer.MapTimerTick(0);
    const MapViewer::MapReadState before = r.viewer.readState();
    r.sim->written.clear();
    r.viewer.StopDataFlow();
    QCOMPARE(r.sim->written, QByteArray(1, char(48)));
    QCOMPARE(r.viewer.status(), QStringLiteral("Stopped!"));
    QCOMPARE(r.viewer.progress(), 0);
    QVERIFY(r.viewer.MapStatusTimer.isActive());
    for (const QTimer& t : r.viewer.mapTimers)
        QVERIFY(!t.isActive());
    QCOMPARE(r.viewer.readState().high, before.high);
    QCOMPARE(r.viewer.readState().low, before.low);

    r.viewer.DownloadButton(0);
    QCOMPARE(r.viewer.readState().high, 251);
    QCOMPARE(r.viewer.readState().low, -1);
    r.download(0, false);
    QCOMPARE(r.viewer.status(), QStringLiteral("Done!"));
}

void MapViewerTest::doneReturnsToMapStatusThreeSecondsLater()
{
    MapRig r;
    r.connect();
    r.download(1);
    QCOMPARE(r.viewer.status(), QStringLiteral("Done!"));
    QVERIFY(r.viewer.MapStatusTimer.isActive());
    QCOMPARE(r.viewer.MapStatusTimer.interval(), 3000);
    r.viewer.MapStatusTimerTick();
    QCOMPARE(r.viewer.status(), QStringLiteral("Map Status"));
    QVERIFY(!r.viewer.MapStatusTimer.isActive());
}

void MapViewerTest::silentEcuStopsTheDownloadWithAMessage()
{
    MapRig r;
    r.connect();
    r.viewer.DownloadButton(0);
    r.viewer.MapTimerTick(0);
    r.sim->ecu().setFaults({false, true, false});  // replies stop halfway
    r.viewer.MapTimerTick(0);
    QVERIFY(waitForIdleLink(r.session.owner()));
    QVERIFY(r.viewer.status().startsWith(QStringLiteral("Stopped!")));
    QVERIFY(!r.viewer.mapTimers[0].isActive());
    QCOMPARE(r.log.messages().last(), vexorin::consult::timeoutMessage());
    QVERIFY(r.viewer.MapStatusTimer.isActive());

    r.sim->ecu().setFaults({});
    r.download(0);
    QCOMPARE(r.viewer.status(), QStringLiteral("Done!"));
}

void MapViewerTest::loadAllEcuDataMapsDependsOnTheLastDownload()
{
    MapRig r;
    r.connect();
    r.download(0);
    // The state left behind says "map done": every step ends at once, with no request.
    r.sim->written.clear();
    r.viewer.LoadAllECUDataMaps();
    QCOMPARE(r.sim->written, QByteArray());
    for (int t = 0; t < MapViewer::kTabs; ++t) {
        QCOMPARE(r.viewer.tab(t).viewing, QStringLiteral("Viewing : ECU Data"));
        QVERIFY(r.viewer.tab(t).grid.text(1, 1).isEmpty());
        QVERIFY(!r.viewer.mapTimers[std::size_t(t)].isActive());
    }
    QCOMPARE(r.viewer.status(), QStringLiteral("Done!"));

    // Stopped in the middle of a fuel map's bank: each step goes on reading
    // that bank for the map it belongs to.
    r.viewer.DownloadButton(0);
    for (int i = 0; i < 6; ++i)
        r.viewer.MapTimerTick(0);
    r.viewer.StopDataFlow();
    QCOMPARE(r.viewer.readState().high, 253);
    r.viewer.LoadAllECUDataMaps();
    QCOMPARE(r.viewer.readState().low, 7 + 6 * 8);
    QVERIFY(!r.viewer.tab(0).grid.text(1, 1).isEmpty());
}

void MapViewerTest::clearMatrixRebuildsOneGridOnly()
{
    MapRig r;
    r.writeBin(r.path);
    r.viewer.LoadBinFile(r.path);
    const auto before = r.onDisk();
    r.viewer.ClearMatrix(2);
    QVERIFY(r.viewer.tab(2).grid.text(5, 5).isEmpty());
    QVERIFY(r.viewer.tab(2).grid.text(1, 0).isEmpty());
    QVERIFY(!r.viewer.tab(2).grid.fixedColumn);
    QCOMPARE(r.viewer.tab(2).grid.text(0, 0), QStringLiteral("RPM / TP"));
    QVERIFY(!r.viewer.tab(1).grid.text(5, 5).isEmpty());
    QVERIFY(!r.viewer.displayCache(0x7205 + 1).isEmpty());
    QVERIFY(r.onDisk() == before);
}

void MapViewerTest::nextViewerCaptionsCount()
{
    MapRig r;
    QCOMPARE(r.viewer.nextViewerCaption(), QStringLiteral("Vexorin Map Viewer/Editor 1"));
    QCOMPARE(r.viewer.nextViewerCaption(), QStringLiteral("Vexorin Map Viewer/Editor 2"));
    QCOMPARE(r.viewer.nextFormCount(), 1);
}

void MapViewerTest::editModeNeedsAFile()
{
    MapRig r;
    r.viewer.setEditMode(0, true);
    QVERIFY(!r.viewer.tab(0).editMode);
    QCOMPARE(r.messages, QStringList{QStringLiteral("File not loaded. Please load a BIN file first.")});
    r.viewer.selectCell(0, 3, 3);
    QVERIFY(r.viewer.tab(0).origVal.isEmpty());
}

void MapViewerTest::editModeWarnsAndOutlinesTheFirstCell()
{
    MapRig r;
    r.rom[0x7D0F] = 0x99;
    r.writeBin(r.path);
    r.viewer.LoadBinFile(r.path);
    r.viewer.setEditMode(0, true);
    QCOMPARE(r.messages.size(), 1);
    QVERIFY(r.messages[0].startsWith(QStringLiteral("Edit mode will overwrite the file. Please make a backup")));
    QVERIFY(r.messages[0].endsWith(QStringLiteral("Use the up/down arrow button to change the value.")));
    QVERIFY(r.exclamations[0]);
    const MapViewer::Tab& tab = r.viewer.tab(0);
    QVERIFY(tab.editMode);
    QVERIFY(tab.framesRed);
    QVERIFY(tab.overlayVisible);
    QCOMPARE(tab.overlayRow, 1);
    QCOMPARE(tab.overlayColumn, 16);
    QCOMPARE(tab.grid.row, 1);
    QCOMPARE(tab.grid.column, 16);
    QVERIFY(tab.grid.enabled);
    QCOMPARE(r.viewer.currentByte(), 0x99);
    // Steps do nothing until a cell is chosen.
    r.viewer.spinDown(0);
    QVERIFY(r.onDisk()[0x7D0F] == 0x99);

    r.viewer.selectCell(0, 2, 3);
    QCOMPARE(tab.editName, QStringLiteral("A/F Ratio"));
    QCOMPARE(tab.origVal, tab.grid.text(2, 3));
    QCOMPARE(tab.textValue, tab.grid.text(2, 3));
    QVERIFY(tab.textValueColor == tab.grid.color(2, 3));
    QCOMPARE(r.viewer.bytePosition(), 0x7D00 + 16 + 3);
    QCOMPARE(tab.byteValueDisplayed, QString::number(r.rom[0x7D00 + 16 + 2]));
    QCOMPARE(tab.overlayRow, 2);
    QCOMPARE(tab.overlayColumn, 3);

    r.viewer.setEditMode(0, false);
    QVERIFY(!tab.overlayVisible);
    QVERIFY(!tab.framesRed);
    QVERIFY(!tab.grid.enabled);
    QVERIFY(tab.textValue.isEmpty());
    QVERIFY(tab.origVal.isEmpty());
    QVERIFY(!tab.textValueColor);
}

void MapViewerTest::fuelStepsFollowOneLineOfRatios()
{
    MapRig r;
    r.rom[0x7D00] = 192;
    r.rom[0x7D01] = 1;
    r.writeBin(r.path);
    r.viewer.LoadBinFile(r.path);
    const auto original = r.onDisk();

    r.editAt(0, 1, 1);
    r.viewer.spinDown(0);
    QCOMPARE(r.viewer.tab(0).textValue, QStringLiteral("14.59"));
    QCOMPARE(r.viewer.tab(0).grid.text(1, 1), QStringLiteral("14.59"));
    QCOMPARE(r.viewer.tab(0).origVal, QStringLiteral("14.70"));  // the value at load stays beside the new one
    auto expected = original;
    expected[0x7D00] = 1;
    QVERIFY(r.onDisk() == expected);

    r.viewer.selectCell(0, 1, 2);
    r.viewer.spinUp(0);
    QCOMPARE(r.viewer.tab(0).textValue, QStringLiteral("14.70"));
    QVERIFY(r.viewer.tab(0).textValueColor == (Rgb{0x80, 0xFF, 0x80}));
    expected[0x7D01] = 192;
    QVERIFY(r.onDisk() == expected);
    QCOMPARE(r.viewer.tab(0).byteValueWhenChanged, QStringLiteral("192"));
    QVERIFY(r.messages.size() == 1);  // only the warning
}

void MapViewerTest::fuelLimitsShowMessagesAndStillWrite()
{
    MapRig r;
    r.rom[0x7D00] = 159;
    r.rom[0x7D01] = 160;
    r.writeBin(r.path);
    r.viewer.LoadBinFile(r.path);
    r.editAt(0, 1, 1);
    r.messages.clear();
    r.viewer.spinDown(0);
    QCOMPARE(r.messages, QStringList{QStringLiteral("The minimum range has been reached.")});
    QCOMPARE(r.viewer.tab(0).textValue, QStringLiteral("6.56"));
    QCOMPARE(int(r.onDisk()[0x7D00]), 159);

    r.viewer.selectCell(0, 1, 2);
    r.messages.clear();
    r.viewer.spinUp(0);
    QCOMPARE(r.messages, QStringList{QStringLiteral("The maximum range has been reached.")});
    QCOMPARE(r.viewer.tab(0).textValue, QStringLiteral("19.60"));
    QCOMPARE(int(r.onDisk()[0x7D01]), 160);
    QCOMPARE(r.onDisk().size(), std::size_t(kRomSize));
}

void MapViewerTest::repeatedFuelValueRunsIntoTheCorruptMessage()
{
    MapRig r;
    r.rom[0x7D20] = 200;
    r.writeBin(r.path);
    r.viewer.LoadBinFile(r.path);
    r.editAt(0, 3, 1);
    r.messages.clear();
    for (int i = 0; i < 55; ++i)
        r.viewer.spinDown(0);
    QVERIFY(r.messages.isEmpty());
    QCOMPARE(int(r.onDisk()[0x7D20]), 255);
    const auto before = r.onDisk();
    r.viewer.spinDown(0);
    QCOMPARE(r.messages, QStringList{QStringLiteral("The BIN file appears to be corrupt.")});
    QVERIFY(r.exclamations.last());
    QVERIFY(r.onDisk() == before);
}

void MapViewerTest::timingStepsWrap()
{
    MapRig r;
    r.rom[0x7800] = 161;
    r.rom[0x7801] = 0;
    r.rom[0x7802] = 255;
    r.writeBin(r.path);
    r.viewer.LoadBinFile(r.path);
    r.editAt(4, 1, 1);
    QCOMPARE(r.viewer.tab(4).editName, QStringLiteral("Timing"));
    r.messages.clear();
    r.viewer.spinDown(4);
    QCOMPARE(r.viewer.tab(4).textValue, QStringLiteral("32"));
    QCOMPARE(int(r.onDisk()[0x7800]), 160);
    r.viewer.selectCell(4, 1, 2);
    r.viewer.spinDown(4);
    QCOMPARE(r.viewer.tab(4).textValue, QStringLiteral("-1"));
    QCOMPARE(int(r.onDisk()[0x7801]), 255);
    r.viewer.selectCell(4, 1, 3);
    r.viewer.spinUp(4);
    QCOMPARE(r.viewer.tab(4).textValue, QStringLiteral("0"));
    QVERIFY(r.viewer.tab(4).textValueColor == (Rgb{0x80, 0x80, 0xFF}));
    QCOMPARE(int(r.onDisk()[0x7802]), 0);
    QVERIFY(r.messages.isEmpty());
}

void MapViewerTest::rpmScaleStepsAndLimits()
{
    MapRig r;
    r.rom[0x7B04] = 199;  // 9950
    r.writeBin(r.path);
    r.viewer.LoadBinFile(r.path);
    r.editAt(2, 5, 0);
    QCOMPARE(r.viewer.tab(2).editName, QStringLiteral("RPM"));
    QCOMPARE(r.viewer.bytePosition(), 31489 + 4);
    QVERIFY(!r.viewer.tab(2).textValueColor);
    r.messages.clear();
    r.viewer.spinUp(2);
    QCOMPARE(r.viewer.tab(2).textValue, QStringLiteral("10000"));
    QCOMPARE(int(r.onDisk()[0x7B04]), 200);
    for (int t = 0; t < MapViewer::kTabs; ++t)
        QCOMPARE(r.viewer.tab(t).grid.text(5, 0), QStringLiteral("10000"));
    const auto before = r.onDisk();
    r.viewer.spinUp(2);
    QCOMPARE(r.messages, QStringList{QStringLiteral("The maximum range has been reached.")});
    QCOMPARE(r.viewer.tab(2).textValue, QStringLiteral("10000"));
    QVERIFY(r.onDisk() == before);
}

void MapViewerTest::tpScaleStepsAndLimits()
{
    MapRig r;
    r.rom[0x7AF0] = 0;
    r.rom[0x7AF1] = 40;
    r.writeBin(r.path);
    r.viewer.LoadBinFile(r.path);
    const auto original = r.onDisk();
    r.editAt(0, 0, 1);
    QCOMPARE(r.viewer.tab(0).editName, QStringLiteral("TP"));
    r.messages.clear();
    r.viewer.spinDown(0);
    QCOMPARE(r.messages, QStringList{QStringLiteral("The minimum range has been reached.")});
    QVERIFY(r.onDisk() == original);

    r.viewer.selectCell(0, 0, 2);
    r.viewer.spinUp(0);
    QCOMPARE(int(r.onDisk()[0x7AF1]), 41);
    // The four fuel grids show it at the scale; the two timing grids get the
    // figure in whatever cell is current in them.
    for (int t = 0; t < 4; ++t)
        QCOMPARE(r.viewer.tab(t).grid.text(0, 2), QStringLiteral("41"));
    for (int t = 4; t < 6; ++t) {
        const MapGrid& g = r.viewer.tab(t).grid;
        QCOMPARE(g.text(g.row, g.column), QStringLiteral("41"));
    }
    auto expected = original;
    expected[0x7AF1] = 41;
    QVERIFY(r.onDisk() == expected);

    // At 99 the next step up is refused.
    for (int i = 41; i < 99; ++i)
        r.viewer.spinUp(0);
    r.messages.clear();
    r.viewer.spinUp(0);
    QCOMPARE(r.messages, QStringList{QStringLiteral("The maximum range has been reached.")});
    QCOMPARE(int(r.onDisk()[0x7AF1]), 99);

    // A timing TP step moves the timing scale only.
    r.editAt(4, 0, 1);
    QCOMPARE(r.viewer.bytePosition(), 31505);
    r.viewer.spinUp(4);
    QCOMPARE(int(r.onDisk()[0x7B10]), r.rom[0x7B10] + 1);
}

void MapViewerTest::selectingTheCornerChangesNothing()
{
    MapRig r;
    r.writeBin(r.path);
    r.viewer.LoadBinFile(r.path);
    r.editAt(0, 4, 4);
    const int position = r.viewer.bytePosition();
    const QString value = r.viewer.tab(0).textValue;
    r.viewer.selectCell(0, 0, 0);
    QCOMPARE(r.viewer.bytePosition(), position);
    QCOMPARE(r.viewer.tab(0).textValue, value);
    QCOMPARE(r.viewer.tab(0).overlayRow, 4);
}

void MapViewerTest::vanishedOrReadOnlyFileIsNeverWritten()
{
    MapRig r;
    r.writeBin(r.path);
    r.viewer.LoadBinFile(r.path);
    r.editAt(5, 2, 2);
    QFile::remove(r.path);
    r.messages.clear();
    r.viewer.spinUp(5);
    QCOMPARE(r.messages, QStringList{QStringLiteral("The BIN file appears to be corrupt.")});
    QVERIFY(!QFile::exists(r.path));

    if (::geteuid() != 0) {
        r.writeBin(r.path);
        QFile::setPermissions(r.path, QFileDevice::ReadOwner);
        const auto before = r.onDisk();
        r.messages.clear();
        r.viewer.spinUp(5);
        QCOMPARE(r.messages, QStringList{QStringLiteral("The BIN file appears to be corrupt.")});
        QVERIFY(r.onDisk() == before);
        QFile::setPermissions(r.path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    }
}

void MapViewerTest::pipeStopsTheLoadWithAMessage()
{
    MapRig r;
    QVERIFY(makeFifo(r.path.toStdString()));
    QVERIFY(!r.viewer.LoadBinFile(r.path));
    QCOMPARE(r.messages.size(), 1);
    QVERIFY2(r.messages[0].contains(QStringLiteral("ecu.bin is not a regular file.")), qPrintable(r.messages[0]));
}

void MapViewerTest::builtInSimulatorServesTheToolsRom()
{
    const QString bin = QDir(QDir::tempPath()).filePath(QStringLiteral("vexorin-default-rom-%1.bin").arg(getpid()));
    QCOMPARE(QProcess::execute(QStringLiteral(VEXORIN_ECU_SIM), {QStringLiteral("--write-rom"), bin}), 0);
    std::vector<std::uint8_t> written;
    QVERIFY(readImage(bin.toStdString(), written));
    QFile::remove(bin);
    SimulatorTransport builtIn;
    const auto& rom = builtIn.ecu().rom();
    QCOMPARE(written.size(), rom.size());
    QVERIFY(std::equal(rom.begin(), rom.end(), written.begin()));
}

QTEST_MAIN(MapViewerTest)
#include "map_viewer_test.moc"
