// Editing a BIN file beyond the spin buttons, through the Map Viewer's and
// the BIN File Viewer/Editor's logic: the backup before the first edit, typed
// figures, block edits with the bytes on disk compared with hand-computed
// ones, and the shared journal (undo, redo, revert) across editors.
#include "map_rig.h"
#include "rom/bin_viewer.h"
#include "rom/file_edits.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace vexorin::rom;

namespace {
constexpr int kFuelTab = 0, kTimingTab = 4;
constexpr int kFuelBank = 0x7D00, kTimingBank = 0x7800;

long cellOffset(int bank, int row, int column)
{
    return bank + (row - 1) * 16 + (column - 1);
}

// A Map Viewer rig whose file holds crafted maps, loaded.
struct EditRig : MapRig {
    EditRig()
    {
        for (int i = 0; i < 256; ++i) {
            rom[std::size_t(kTimingBank + i)] = std::uint8_t(i % 40);  // 0..39 degrees
            rom[std::size_t(kFuelBank + i)] = std::uint8_t(20);        // 12.71
        }
        writeBin(path);
        viewer.LoadBinFile(path);
        original = onDisk();
    }
    QString backup() const { return dir.filePath(QStringLiteral("ecu.orig.bin")); }
    std::vector<std::uint8_t> original;
};

std::vector<std::uint8_t> bytesOf(const QString& path)
{
    std::vector<std::uint8_t> b;
    readImage(path.toStdString(), b);
    return b;
}

// Every byte differs from `before` only at the given offsets.
bool onlyChanged(const std::vector<std::uint8_t>& before, const std::vector<std::uint8_t>& after,
                 const std::function<bool(long)>& allowed)
{
    if (before.size() != after.size())
        return false;
    for (std::size_t i = 0; i < before.size(); ++i)
        if (before[i] != after[i] && !allowed(long(i)))
            return false;
    return true;
}
}  // namespace

class MapEditingTest : public QObject {
    Q_OBJECT
private slots:
    void cleanup() { FileEdits::shared().forgetAll(); }
    void theFirstEditModeMakesTheBackupOnce();
    void aBackupGetsNoBackup();
    void aBackupThatCannotBeWrittenIsSaidAndEditModeGoesOn();
    void theBinViewerSaysWhereTheBackupIs();
    void typedFiguresBecomeTheirBytes();
    void aFigureOutsideItsRangeIsRefused();
    void typedFiguresNeedEditMode();
    void blockEditsWriteTheHandComputedBytesInsideTheSelection();
    void blockEditsAreOneUndoStep();
    void revertRestoresTheBackupAndIsOneUndoStep();
    void revertRefusesWithoutABackupOrWithAnotherLength();
    void undoAndRedoReachEveryViewerOfTheFile();
    void theBinViewersTypedByteIsUndoneFromTheMapViewer();
    void spinStepsEnterTheJournal();
    void selectionFollowsTheAnchorAndNeverHoldsHeadings();
};

void MapEditingTest::theFirstEditModeMakesTheBackupOnce()
{
    EditRig r;
    QVERIFY(!QFile::exists(r.backup()));
    r.viewer.setEditMode(kFuelTab, true);
    QCOMPARE(r.viewer.status(), QStringLiteral("Backup: %1").arg(r.backup()));
    QCOMPARE(bytesOf(r.backup()), r.original);
    // Edits change the file, never the backup; later switches make none.
    r.viewer.selectCell(kFuelTab, 2, 2);
    r.viewer.spinDown(kFuelTab);
    r.viewer.setEditMode(kFuelTab, false);
    r.viewer.setEditMode(kTimingTab, true);
    MapViewer other(r.session);
    other.LoadBinFile(r.path);
    other.setEditMode(kFuelTab, true);
    QVERIFY(r.onDisk() != r.original);
    QCOMPARE(bytesOf(r.backup()), r.original);
    QCOMPARE(QDir(r.dir.path()).entryList(QDir::Files).size(), 2);
}

void MapEditingTest::aBackupGetsNoBackup()
{
    EditRig r;
    const QString orig = r.backup();
    QVERIFY(QFile::copy(r.path, orig));
    r.viewer.LoadBinFile(orig);
    r.viewer.setEditMode(kFuelTab, true);
    QVERIFY(!r.viewer.status().startsWith(QLatin1String("Backup:")));
    QCOMPARE(QDir(r.dir.path()).entryList(QDir::Files).size(), 2);
    QVERIFY(r.viewer.tab(kFuelTab).editMode);
}

void MapEditingTest::aBackupThatCannotBeWrittenIsSaidAndEditModeGoesOn()
{
    EditRig r;
    QVERIFY(QDir(r.dir.path()).mkdir(QStringLiteral("ecu.orig.bin.part")));  // in the way of the copy
    r.messages.clear();
    r.viewer.setEditMode(kFuelTab, true);
    QCOMPARE(r.messages.size(), 2);
    QVERIFY(r.messages[0].startsWith(QLatin1String("Edit mode will overwrite the file.")));
    QVERIFY2(r.messages[1].startsWith(QLatin1String("No backup could be made: ")), qPrintable(r.messages[1]));
    QVERIFY(r.messages[1].endsWith(QLatin1String(". Edits go to the file itself.")));
    QVERIFY(r.messages[1].size() > int(strlen("No backup could be made: . Edits go to the file itself.")));
    QVERIFY(r.viewer.tab(kFuelTab).editMode);
    QVERIFY(!QFile::exists(r.backup()));
    r.viewer.selectCell(kFuelTab, 1, 1);
    QVERIFY(r.viewer.typeFigure(kFuelTab, QStringLiteral("14.7")));
    QCOMPARE(int(r.onDisk()[std::size_t(kFuelBank)]), 192);
}

void MapEditingTest::theBinViewerSaysWhereTheBackupIs()
{
    EditRig r;
    BinViewer bin;
    QStringList messages;
    connect(&bin, &BinViewer::message, [&](const QString& t, bool) { messages << t; });
    bin.OpenBINFile(r.path);
    bin.setEditMode(true);
    QCOMPARE(messages.size(), 2);
    QVERIFY(messages[0].startsWith(QLatin1String("Edit mode will overwrite the current file.")));
    QCOMPARE(messages[1], QStringLiteral("Backup: %1").arg(r.backup()));
    QCOMPARE(bytesOf(r.backup()), r.original);
    // Once a run: the next switch says the warning alone.
    bin.setEditMode(false);
    bin.setEditMode(true);
    QCOMPARE(messages.size(), 3);
}

void MapEditingTest::typedFiguresBecomeTheirBytes()
{
    EditRig r;
    r.editAt(kFuelTab, 3, 4);
    QVERIFY(r.viewer.typeFigure(kFuelTab, QStringLiteral("14.645")));  // a tie: the richer 14.59
    QCOMPARE(int(r.onDisk()[std::size_t(cellOffset(kFuelBank, 3, 4))]), 1);
    QCOMPARE(r.viewer.tab(kFuelTab).grid.text(3, 4), QStringLiteral("14.59"));
    QCOMPARE(r.viewer.tab(kFuelTab).textValue, QStringLiteral("14.59"));

    r.editAt(kTimingTab, 2, 2);
    QVERIFY(r.viewer.typeFigure(kTimingTab, QStringLiteral("-95")));
    QCOMPARE(int(r.onDisk()[std::size_t(cellOffset(kTimingBank, 2, 2))]), 161);
    QCOMPARE(r.viewer.tab(kTimingTab).grid.text(2, 2), QStringLiteral("-95"));

    // An RPM heading: every tab shows it; a fuel TP heading: the fuel tabs.
    r.viewer.selectCell(kTimingTab, 16, 0);
    QVERIFY(r.viewer.typeFigure(kTimingTab, QStringLiteral("10000")));
    QCOMPARE(int(r.onDisk()[std::size_t(kRpmScaleOffset + 15)]), 200);
    for (int t = 0; t < MapViewer::kTabs; ++t)
        QCOMPARE(r.viewer.tab(t).grid.text(16, 0), QStringLiteral("10000"));
    r.editAt(kFuelTab, 0, 16);
    QVERIFY(r.viewer.typeFigure(kFuelTab, QStringLiteral("98.5")));
    QCOMPARE(int(r.onDisk()[std::size_t(kTpScaleFuelOffset + 15)]), 99);
    QCOMPARE(r.viewer.tab(2).grid.text(0, 16), QStringLiteral("99"));
    // The timing tabs have a TP scale of their own, untouched.
    QCOMPARE(r.viewer.tab(kTimingTab).grid.text(0, 16),
             QString::number(r.original[std::size_t(kTpScaleTimingOffset + 15)]));
    QCOMPARE(r.onDisk()[std::size_t(kTpScaleTimingOffset + 15)], r.original[std::size_t(kTpScaleTimingOffset + 15)]);
    QCOMPARE(r.onDisk().size(), std::size_t(kRomSize));
}

void MapEditingTest::aFigureOutsideItsRangeIsRefused()
{
    EditRig r;
    r.editAt(kFuelTab, 5, 5);
    const auto before = r.onDisk();
    r.messages.clear();
    const struct {
        int tab, row, column;
        const char* text;
        const char* message;
    } cases[] = {
        {kFuelTab, 5, 5, "19.61", "The figure must be between 6.56 and 19.60."},
        {kFuelTab, 5, 5, "6.55", "The figure must be between 6.56 and 19.60."},
        {kTimingTab, 5, 5, "129", "The figure must be between -95 and 128."},
        {kTimingTab, 0, 3, "100", "The figure must be between 0 and 99."},
        {kTimingTab, 4, 0, "10001", "The figure must be between 0 and 10000."},
        {kTimingTab, 4, 0, "-", "The figure must be between 0 and 10000."},
    };
    for (const auto& c : cases) {
        r.editAt(c.tab, c.row, c.column);
        r.messages.clear();
        QVERIFY(!r.viewer.typeFigure(c.tab, QLatin1String(c.text)));
        QCOMPARE(r.messages, QStringList{QLatin1String(c.message)});
    }
    QCOMPARE(r.onDisk(), before);
    QVERIFY(!r.viewer.canUndo());
}

void MapEditingTest::typedFiguresNeedEditMode()
{
    EditRig r;
    r.viewer.selectCell(kFuelTab, 2, 2);
    QVERIFY(!r.viewer.typeFigure(kFuelTab, QStringLiteral("14.7")));
    QVERIFY(r.viewer.planBlock(kFuelTab, BlockOp::SetTo, 14.7).empty());
    QCOMPARE(r.onDisk(), r.original);
}

void MapEditingTest::blockEditsWriteTheHandComputedBytesInsideTheSelection()
{
    EditRig r;
    // Timing rows 3..5, columns 2..4 hold (row-1)*16 + column-1 mod 40 degrees.
    r.editAt(kTimingTab, 3, 2);
    r.viewer.extendSelection(kTimingTab, 5, 4);
    QCOMPARE(*r.viewer.tab(kTimingTab).selection, (MapSelection{3, 2, 5, 4}));
    auto plan = r.viewer.planBlock(kTimingTab, BlockOp::Add, 2);
    QCOMPARE(int(plan.size()), 9);
    QVERIFY(r.viewer.applyBlock(kTimingTab, plan));
    auto disk = r.onDisk();
    const auto inside = [](long o) {
        const long low = o - kTimingBank;
        return low >= 0 && low < 256 && low / 16 + 1 >= 3 && low / 16 + 1 <= 5 && low % 16 + 1 >= 2 &&
               low % 16 + 1 <= 4;
    };
    QVERIFY(onlyChanged(r.original, disk, inside));
    for (int row = 3; row <= 5; ++row)
        for (int column = 2; column <= 4; ++column) {
            const int was = ((row - 1) * 16 + column - 1) % 40;
            QCOMPARE(int(disk[std::size_t(cellOffset(kTimingBank, row, column))]), was + 2);
            QCOMPARE(r.viewer.tab(kTimingTab).grid.text(row, column), QString::number(was + 2));
        }

    // Fuel, rows 1..2 columns 15..16: 12.71 scaled by 5 % is 13.3455, byte 13 (13.34).
    r.editAt(kFuelTab, 2, 16);
    r.viewer.extendSelection(kFuelTab, 1, 15);
    QVERIFY(r.viewer.applyBlock(kFuelTab, r.viewer.planBlock(kFuelTab, BlockOp::ScaleBy, 5)));
    const auto before = disk;
    disk = r.onDisk();
    const auto fuelInside = [](long o) {
        const long low = o - kFuelBank;
        return low >= 0 && low < 256 && low / 16 + 1 <= 2 && low % 16 + 1 >= 15;
    };
    QVERIFY(onlyChanged(before, disk, fuelInside));
    for (int row = 1; row <= 2; ++row)
        for (int column = 15; column <= 16; ++column)
            QCOMPARE(int(disk[std::size_t(cellOffset(kFuelBank, row, column))]), 13);
    QCOMPARE(r.viewer.tab(kFuelTab).grid.text(1, 15), QStringLiteral("13.34"));

    // Set to, Interpolate and Smooth on one timing row: 10, 11, 12, 13 becomes 0, 0, 0, 0,
    // then the ends 0 and 30 interpolate, then smoothing.
    r.editAt(kTimingTab, 1, 11);
    r.viewer.extendSelection(kTimingTab, 1, 14);
    QVERIFY(r.viewer.applyBlock(kTimingTab, r.viewer.planBlock(kTimingTab, BlockOp::SetTo, 0)));
    r.editAt(kTimingTab, 1, 14);
    QVERIFY(r.viewer.typeFigure(kTimingTab, QStringLiteral("30")));
    r.viewer.extendSelection(kTimingTab, 1, 11);
    QVERIFY(r.viewer.applyBlock(kTimingTab, r.viewer.planBlock(kTimingTab, BlockOp::Interpolate)));
    disk = r.onDisk();
    const int line[] = {0, 10, 20, 30};
    for (int i = 0; i < 4; ++i)
        QCOMPARE(int(disk[std::size_t(cellOffset(kTimingBank, 1, 11 + i))]), line[i]);
    QVERIFY(r.viewer.applyBlock(kTimingTab, r.viewer.planBlock(kTimingTab, BlockOp::Smooth)));
    disk = r.onDisk();
    const int smooth[] = {5, 10, 20, 25};  // (0+10)/2, (0+10+20)/3, (10+20+30)/3, (20+30)/2
    for (int i = 0; i < 4; ++i)
        QCOMPARE(int(disk[std::size_t(cellOffset(kTimingBank, 1, 11 + i))]), smooth[i]);
    QCOMPARE(disk.size(), std::size_t(kRomSize));
}

void MapEditingTest::blockEditsAreOneUndoStep()
{
    EditRig r;
    r.editAt(kFuelTab, 4, 4);
    r.viewer.extendSelection(kFuelTab, 8, 10);
    QVERIFY(r.viewer.applyBlock(kFuelTab, r.viewer.planBlock(kFuelTab, BlockOp::SetTo, 13.0)));
    QCOMPARE(r.viewer.status(), QStringLiteral("35 cells changed. Ctrl+Z takes them back."));
    const auto edited = r.onDisk();
    QVERIFY(edited != r.original);
    QVERIFY(r.viewer.canUndo());
    r.viewer.undo();
    QCOMPARE(r.viewer.status(), QStringLiteral("Undo: 35 bytes written back. Ctrl+Y does it again."));
    QCOMPARE(r.onDisk(), r.original);
    QCOMPARE(r.viewer.tab(kFuelTab).grid.text(8, 10), QStringLiteral("12.71"));
    QVERIFY(!r.viewer.canUndo());
    r.viewer.redo();
    QCOMPARE(r.viewer.status(), QStringLiteral("Redo: 35 bytes written again."));
    QCOMPARE(r.onDisk(), edited);
    QCOMPARE(r.viewer.tab(kFuelTab).grid.text(8, 10), QString::fromStdString(FormatAfr(edited[std::size_t(
                                                           cellOffset(kFuelBank, 8, 10))])));
}

void MapEditingTest::revertRestoresTheBackupAndIsOneUndoStep()
{
    EditRig r;
    r.editAt(kFuelTab, 1, 1);
    r.viewer.extendSelection(kFuelTab, 16, 16);
    QVERIFY(r.viewer.applyBlock(kFuelTab, r.viewer.planBlock(kFuelTab, BlockOp::Add, 1)));
    r.editAt(kTimingTab, 16, 0);
    QVERIFY(r.viewer.typeFigure(kTimingTab, QStringLiteral("500")));
    const auto edited = r.onDisk();
    const FileEdits::Revert plan = r.viewer.revertPlan();
    QCOMPARE(plan.question, QStringLiteral("Write back 257 bytes from %1?").arg(r.backup()));
    r.viewer.revert(plan);
    QCOMPARE(r.onDisk(), r.original);
    QCOMPARE(r.viewer.tab(kFuelTab).grid.text(1, 1), QStringLiteral("12.71"));
    r.viewer.undo();
    QCOMPARE(r.onDisk(), edited);
    r.viewer.redo();
    QCOMPARE(r.onDisk(), r.original);
    r.messages.clear();
    QVERIFY(r.viewer.revertPlan().question.isEmpty());
    QCOMPARE(r.messages, QStringList{QStringLiteral("The file is the same as its backup.")});
}

void MapEditingTest::revertRefusesWithoutABackupOrWithAnotherLength()
{
    EditRig r;
    r.messages.clear();
    QVERIFY(r.viewer.revertPlan().question.isEmpty());
    QCOMPARE(r.messages, QStringList{QStringLiteral("No backup of this file exists.")});
    r.writeBin(r.backup(), kRomSize + 1);
    r.messages.clear();
    QVERIFY(r.viewer.revertPlan().writes.empty());
    QCOMPARE(r.messages, QStringList{QStringLiteral("The backup is not the same length as the file.")});
    QCOMPARE(r.onDisk(), r.original);
}

void MapEditingTest::undoAndRedoReachEveryViewerOfTheFile()
{
    EditRig r;
    MapViewer second(r.session);
    second.LoadBinFile(r.path);
    r.editAt(kFuelTab, 6, 6);
    QVERIFY(r.viewer.typeFigure(kFuelTab, QStringLiteral("11.0")));
    const QString typed = r.viewer.tab(kFuelTab).grid.text(6, 6);
    QCOMPARE(second.tab(kFuelTab).grid.text(6, 6), typed);  // shown at once
    QVERIFY(second.canUndo());
    second.undo();
    QCOMPARE(r.onDisk(), r.original);
    QCOMPARE(r.viewer.tab(kFuelTab).grid.text(6, 6), QStringLiteral("12.71"));
    QCOMPARE(r.viewer.tab(kFuelTab).textValue, QStringLiteral("12.71"));
    QCOMPARE(r.viewer.tab(kFuelTab).byteValueDisplayed, QStringLiteral("20"));
    QCOMPARE(second.tab(kFuelTab).grid.text(6, 6), QStringLiteral("12.71"));
    QVERIFY(r.viewer.canRedo());
    r.viewer.redo();
    QCOMPARE(second.tab(kFuelTab).grid.text(6, 6), typed);
    // A viewer of another file has a journal of its own.
    const QString otherPath = r.dir.filePath(QStringLiteral("other.bin"));
    r.writeBin(otherPath);
    MapViewer other(r.session);
    other.LoadBinFile(otherPath);
    QVERIFY(!other.canUndo());
}

void MapEditingTest::theBinViewersTypedByteIsUndoneFromTheMapViewer()
{
    EditRig r;
    BinViewer bin;
    bin.OpenBINFile(r.path);
    bin.selectBank(vexorin::rom::listIndexOfBank(253));
    bin.setEditMode(true);
    bin.clickCell(1, 1);
    bin.doubleClickCell(1, 1);
    bin.editBoxKey('A');
    bin.editBoxKey('B');
    bin.editBoxFocusLost();
    QCOMPARE(int(r.onDisk()[std::size_t(kFuelBank)]), 0xAB);
    QVERIFY(r.viewer.canUndo());
    r.viewer.undo();
    QCOMPARE(r.onDisk(), r.original);
    QCOMPARE(bin.grid().text(1, 1), QString::fromStdString(hexByte(20)));
    bin.redo();
    QCOMPARE(int(r.onDisk()[std::size_t(kFuelBank)]), 0xAB);
    QCOMPARE(r.viewer.tab(kFuelTab).grid.text(1, 1), QString::fromStdString(FormatAfr(0xAB)));
    // The BIN viewer's write of an unchanged byte is no step.
    bin.clickCell(1, 2);
    bin.doubleClickCell(1, 2);
    bin.editBoxKey('1');
    bin.editBoxKey('4');
    bin.editBoxFocusLost();
    bin.undo();
    QCOMPARE(int(r.onDisk()[std::size_t(kFuelBank)]), 20);
}

void MapEditingTest::spinStepsEnterTheJournal()
{
    EditRig r;
    r.editAt(kFuelTab, 7, 7);
    r.viewer.spinDown(kFuelTab);
    r.viewer.spinDown(kFuelTab);
    QCOMPARE(int(r.onDisk()[std::size_t(cellOffset(kFuelBank, 7, 7))]), 22);
    r.viewer.undo();
    QCOMPARE(int(r.onDisk()[std::size_t(cellOffset(kFuelBank, 7, 7))]), 21);
    r.viewer.undo();
    QCOMPARE(r.onDisk(), r.original);
    QCOMPARE(r.viewer.tab(kFuelTab).grid.text(7, 7), QStringLiteral("12.71"));
}

void MapEditingTest::selectionFollowsTheAnchorAndNeverHoldsHeadings()
{
    EditRig r;
    r.editAt(kFuelTab, 5, 5);
    r.viewer.extendSelection(kFuelTab, 2, 9);
    QCOMPARE(*r.viewer.tab(kFuelTab).selection, (MapSelection{2, 5, 5, 9}));
    r.viewer.extendSelection(kFuelTab, 0, 3);  // a heading: ignored
    QCOMPARE(*r.viewer.tab(kFuelTab).selection, (MapSelection{2, 5, 5, 9}));
    r.viewer.selectCell(kFuelTab, 0, 3);  // a heading cell selected: no block
    QVERIFY(!r.viewer.tab(kFuelTab).selection);
    QVERIFY(!r.viewer.blockEditAllowed(kFuelTab));
    r.viewer.selectCell(kFuelTab, 9, 9);
    QCOMPARE(*r.viewer.tab(kFuelTab).selection, (MapSelection{9, 9, 9, 9}));
    r.viewer.setEditMode(kFuelTab, false);
    QVERIFY(!r.viewer.tab(kFuelTab).selection);
}

QTEST_MAIN(MapEditingTest)
#include "map_editing_test.moc"
