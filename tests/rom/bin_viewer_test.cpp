// The BIN File Viewer/Editor's logic on real files: banks, named regions with
// their converted values, and every path by which a byte reaches the file.
#include "fifo.h"
#include "rom/bin_viewer.h"
#include "rom/bin_viewer_layout.h"
#include "rom/rom_image.h"
#include "ui/binary_files.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace vexorin::rom;

namespace {
struct BinRig {
    BinRig()
    {
        QObject::connect(&viewer, &BinViewer::message, [this](const QString& t, bool) { messages << t; });
        QObject::connect(&viewer, &BinViewer::beep, [this] { ++beeps; });
        path = dir.filePath(QStringLiteral("rom.bin"));
        image.resize(kRomSize);
        for (std::size_t i = 0; i < image.size(); ++i)
            image[i] = std::uint8_t((i * 13 + 5) & 0xFF);
        image[0x7FA5] = 0x7D;  // top speed limiter
        image[0x7F2B] = 0x12;  // K value
        image[0x7F2C] = 0x34;
        image[0x7F91] = 0x78;  // feedback control
        image[0x7FB4] = 0xA0;  // rev limiter
        image[0x79F6] = 0x8C;  // VTC release
    }
    void write(std::size_t size = kRomSize)
    {
        std::vector<std::uint8_t> bytes = image;
        bytes.resize(size, 0xEE);
        QVERIFY(vexorin::files::WriteBytes(path.toStdString(), bytes, nullptr));
    }
    void open(std::size_t size = kRomSize)
    {
        write(size);
        viewer.OpenBINFile(path);
    }
    std::vector<std::uint8_t> onDisk() const
    {
        std::vector<std::uint8_t> b;
        readImage(path.toStdString(), b);
        return b;
    }
    void selectBank(int bank) { viewer.selectBank(listIndexOfBank(bank)); }
    int coloured() const
    {
        int n = 0;
        for (int r = 1; r <= 16; ++r)
            for (int c = 1; c <= 16; ++c)
                n += viewer.grid().color(r, c).has_value();
        return n;
    }

    QTemporaryDir dir;
    QString path;
    std::vector<std::uint8_t> image;
    BinViewer viewer;
    QStringList messages;
    int beeps = 0;
};
}  // namespace

class BinViewerTest : public QObject {
    Q_OBJECT
private slots:
    void startsWithHeadingsAndTheLastBankRange();
    void opensAFileAtBank255();
    void openingResetsTheSelectorTo255();
    void shortFileFailsLongFileLoads();
    void bankWithoutAFileIsIgnoredSilently();
    void lowBanksHaveShortRowLabels();
    void clickColoursAndRewritesTheHeadings();
    void regionOfAnotherBankIsRefused();
    void knockLimitColoursNineCells();
    void conversions();
    void mapRegionsOnlySayWhatIsOnView();
    void reloadUndoesColouringAndClearKeepsTheFile();
    void toolTipsFollowTheMenuAndTheMode();
    void editModeWarnsWithoutAsking();
    void doubleClickAndClickAwayWritesZero();
    void typedDigitsReachTheCellAndTheFile();
    void keyFilterLetsLowerCaseGhiThrough();
    void thirdCharacterResetsToZeroZero();
    void bank239RefusesADoubleClickButNotAKey();
    void shortLabelAddressGovernsTheWrite();
    void keyWithEditModeOffWritesNothing();
    void vanishedFileIsNotRecreated();
    void vanishedFileOnLoadSaysCorrupted();
    void pipeSaysCorruptedWithoutWaiting();
    void newViewerCaptionStartsAtTwo();
};

void BinViewerTest::startsWithHeadingsAndTheLastBankRange()
{
    BinViewer v;
    QCOMPARE(v.grid().text(0, 0), QStringLiteral("7F00 - 7FFF"));
    QCOMPARE(v.grid().text(0, 1), QStringLiteral("00"));
    QCOMPARE(v.grid().text(0, 16), QStringLiteral("0F"));
    QCOMPARE(v.bankText(), QStringLiteral("255"));
    QCOMPARE(v.pathBox(), QStringLiteral("C:\\"));
    QCOMPARE(v.convertedLabel(), QStringLiteral("Converted : "));
    QCOMPARE(v.TxtFormCount(), 1);
    QCOMPARE(v.firstPosition(), 32513);
    QCOMPARE(v.lastPosition(), 32768);
    QCOMPARE(BinViewer::bankItems().size(), 128);
    QCOMPARE(BinViewer::bankItems().first(), QStringLiteral("255"));
    QCOMPARE(BinViewer::bankItems().last(), QStringLiteral("128"));
    QCOMPARE(BinViewer::registerList().size(), 24);
    QCOMPARE(BinViewer::registerList().at(3), QStringLiteral("(255) 7FA5 ---------- Top Speed Limiter"));
}

void BinViewerTest::opensAFileAtBank255()
{
    BinRig r;
    int yields = 0;
    r.viewer.setYield([&] { ++yields; });
    r.open();
    QCOMPARE(yields, 256);
    QCOMPARE(r.beeps, 1);
    QVERIFY(r.viewer.grid().enabled);
    QCOMPARE(r.viewer.convertedLabel(), QStringLiteral("Converted: "));
    QCOMPARE(r.viewer.grid().text(1, 0), QStringLiteral("7F00 - 7F0F"));
    QCOMPARE(r.viewer.grid().text(16, 0), QStringLiteral("7FF0 - 7FFF"));
    for (int low = 0; low < 256; ++low) {
        const Cell cell = cellOfLow(low);
        QCOMPARE(r.viewer.grid().text(cell.row, cell.column),
                 QString::fromStdString(hexByte(r.image[std::size_t(0x7F00 + low)])));
    }
    // The K value at 0xFF2B: row 3, columns 12 and 13.
    QCOMPARE(r.viewer.grid().text(3, 12), QStringLiteral("12"));
    QCOMPARE(r.viewer.grid().text(3, 13), QStringLiteral("34"));
}

void BinViewerTest::openingResetsTheSelectorTo255()
{
    BinRig r;
    r.open();
    r.selectBank(240);
    QCOMPARE(r.viewer.grid().text(0, 0), QStringLiteral("7000 - 70FF"));
    QCOMPARE(r.viewer.grid().text(1, 1), QString::fromStdString(hexByte(r.image[0x7000])));
    QCOMPARE(r.viewer.firstPosition(), 0x7000 + 1);
    r.viewer.OpenBINFile(r.path);
    QCOMPARE(r.viewer.bankText(), QStringLiteral("255"));
    QCOMPARE(r.viewer.grid().text(0, 0), QStringLiteral("7F00 - 7FFF"));
    r.viewer.OpenBINFile(QString());  // a cancelled dialog
    QCOMPARE(r.viewer.pathBox(), r.path);
}

void BinViewerTest::shortFileFailsLongFileLoads()
{
    BinRig r;
    r.open(32767);
    QCOMPARE(r.messages, QStringList{QStringLiteral("BIN File corrupted or not the correct size.")});
    QCOMPARE(r.viewer.pathBox(), r.path);
    for (int c = 0; c <= 16; ++c)
        QVERIFY(r.viewer.grid().text(0, c).isEmpty());
    QVERIFY(r.viewer.grid().text(1, 1).isEmpty());
    QCOMPARE(QFileInfo(r.path).size(), 32767);
    // Bank 128 of the same file could be shown.
    r.selectBank(128);
    QCOMPARE(r.viewer.grid().text(1, 1), QString::fromStdString(hexByte(r.image[0])));

    BinRig longer;
    longer.open(40000);
    QVERIFY(longer.messages.isEmpty());
    QCOMPARE(longer.viewer.grid().text(16, 16), QString::fromStdString(hexByte(longer.image[0x7FFF])));
}

void BinViewerTest::bankWithoutAFileIsIgnoredSilently()
{
    BinRig r;
    r.selectBank(250);
    QVERIFY(r.messages.isEmpty());
    QCOMPARE(r.viewer.grid().text(0, 0), QStringLiteral("7F00 - 7FFF"));
    r.viewer.ReloadLast();
    r.viewer.doubleClickRegion(3);
    QCOMPARE(r.messages, QStringList(2, QStringLiteral("File Not Loaded.")));
}

void BinViewerTest::lowBanksHaveShortRowLabels()
{
    BinRig r;
    r.open();
    r.selectBank(129);
    QCOMPARE(r.viewer.grid().text(0, 0), QStringLiteral("100 - 1FF"));
    QCOMPARE(r.viewer.grid().text(1, 0), QStringLiteral("100 - 10F"));
    r.selectBank(128);
    QCOMPARE(r.viewer.grid().text(1, 0), QStringLiteral("0 - F"));
    QCOMPARE(r.viewer.grid().text(16, 0), QStringLiteral("F0 - FF"));
}

void BinViewerTest::clickColoursAndRewritesTheHeadings()
{
    BinRig r;
    r.open();
    r.viewer.setCellColor({0x10, 0x20, 0x30});
    r.viewer.clickCell(2, 5);
    QCOMPARE(r.viewer.cellText(), r.viewer.grid().text(2, 5));
    QCOMPARE(r.viewer.grid().text(0, 1), QStringLiteral("10"));
    QCOMPARE(r.viewer.grid().text(0, 16), QStringLiteral("1F"));
    QVERIFY(r.viewer.grid().color(2, 5) == (Rgb{0x10, 0x20, 0x30}));
    QVERIFY(r.viewer.grid().color(2, 0) == (Rgb{0x10, 0x20, 0x30}));
    QVERIFY(r.viewer.grid().color(1, 0) == (Rgb{0xFF, 0xFF, 0xFF}));
    QCOMPARE(r.viewer.addressText(), QStringLiteral("7F14"));
    QCOMPARE(r.viewer.fileOffset(), 0x7F14);
    r.viewer.clickCell(0, 3);  // headings do nothing
    r.viewer.clickCell(4, 0);
    QCOMPARE(r.viewer.clickedRow(), 2);
    QCOMPARE(r.viewer.clickedColumn(), 5);
}

void BinViewerTest::regionOfAnotherBankIsRefused()
{
    BinRig r;
    r.open();
    r.selectBank(248);
    r.viewer.doubleClickRegion(18);
    QCOMPARE(r.messages, QStringList{QStringLiteral("Register Bank Not Loaded.")});
    QCOMPARE(r.coloured(), 0);
}

void BinViewerTest::knockLimitColoursNineCells()
{
    BinRig r;
    r.open();
    r.selectBank(249);
    r.viewer.doubleClickRegion(18);
    QVERIFY(r.messages.isEmpty());
    QCOMPARE(r.coloured(), 9);
    QVERIFY(r.viewer.grid().color(15, 4).has_value());
    QVERIFY(r.viewer.grid().color(15, 12).has_value());
    QVERIFY(!r.viewer.grid().color(15, 13).has_value());
    QCOMPARE(r.viewer.convertedLabel(), QStringLiteral("Converted: "));
    r.viewer.doubleClickRegion(17);
    QCOMPARE(r.viewer.convertedLabel(), QStringLiteral("Converted: 7000 RPM"));
}

void BinViewerTest::conversions()
{
    BinRig r;
    r.open();
    const std::pair<int, const char*> cases[] = {
        {3, "Converted: 250 km/h or 155 MPH"},
        {5, "Converted: 4660"},
        {0, "Converted: 1.2 msec"},
        {2, "Converted: 8000 RPM"},
        {1, "Converted: "},
    };
    for (const auto& [index, text] : cases) {
        r.viewer.doubleClickRegion(index);
        QCOMPARE(r.viewer.convertedLabel(), QLatin1String(text));
    }
    QVERIFY(r.viewer.grid().color(11, 6).has_value());
    QVERIFY(r.viewer.grid().color(3, 12).has_value() && r.viewer.grid().color(3, 13).has_value());
    QCOMPARE(QString::fromStdString(plainNumber(5 / 100.0)), QStringLiteral("0.05"));
    QCOMPARE(QString::fromStdString(plainNumber(100 / 100.0)), QStringLiteral("1"));
}

void BinViewerTest::mapRegionsOnlySayWhatIsOnView()
{
    BinRig r;
    r.open();
    r.selectBank(253);
    r.viewer.doubleClickRegion(9);
    QCOMPARE(r.messages, QStringList{QStringLiteral("Currently viewing the Primary Fuel Map.")});
    QCOMPARE(r.viewer.convertedLabel(), QStringLiteral("Converted: "));
    QCOMPARE(r.coloured(), 0);
    r.selectBank(252);
    r.viewer.doubleClickRegion(10);
    QCOMPARE(r.messages.last(), QStringLiteral("Currently viewing the Secondary Timing Map (Knock)."));
}

void BinViewerTest::reloadUndoesColouringAndClearKeepsTheFile()
{
    BinRig r;
    r.open();
    r.selectBank(250);
    r.viewer.doubleClickRegion(15);
    QCOMPARE(r.coloured(), 128);
    r.viewer.ReloadLast();
    QCOMPARE(r.coloured(), 0);
    QCOMPARE(r.viewer.bankText(), QStringLiteral("250"));
    r.viewer.ClearMatrix();
    QVERIFY(r.viewer.grid().text(1, 1).isEmpty());
    QCOMPARE(r.viewer.bankText(), QStringLiteral("250"));
    QCOMPARE(r.viewer.pathBox(), r.path);
    QCOMPARE(r.onDisk(), r.image);
}

void BinViewerTest::toolTipsFollowTheMenuAndTheMode()
{
    BinRig r;
    QCOMPARE(r.viewer.gridToolTip(), QStringLiteral("Click to select a cell and apply the selected color."));
    QCOMPARE(r.viewer.listToolTip(),
             QStringLiteral("Double-click to apply the selected color to the referenced register locations."));
    r.viewer.setEditMode(true);
    QCOMPARE(r.viewer.gridToolTip(),
             QStringLiteral("You are in edit mode. Double-click a cell or select a cell and start typing to edit."));
    r.viewer.setToolTipEnabled(false);
    QVERIFY(r.viewer.gridToolTip().isEmpty());
    QVERIFY(r.viewer.listToolTip().isEmpty());
}

void BinViewerTest::editModeWarnsWithoutAsking()
{
    BinRig r;
    r.viewer.setEditMode(true);
    QCOMPARE(r.messages, QStringList{QStringLiteral("Edit mode will overwrite the current file. Please make a backup "
                                                    "of the current file before using the edit function.")});
    QVERIFY(r.viewer.editMode());
    r.viewer.setEditMode(false);
    QCOMPARE(r.messages.size(), 1);
}

void BinViewerTest::doubleClickAndClickAwayWritesZero()
{
    BinRig r;
    r.open();
    r.viewer.setEditMode(true);
    r.viewer.clickCell(4, 7);
    const QString old = r.viewer.grid().text(4, 7);
    r.viewer.doubleClickCell(4, 7);
    QVERIFY(r.viewer.editBoxVisible());
    QCOMPARE(r.viewer.editBoxRow(), 4);
    QCOMPARE(r.viewer.editBoxColumn(), 7);
    r.viewer.clickCell(9, 9);  // away
    QVERIFY(!r.viewer.editBoxVisible());
    auto expected = r.image;
    expected[0x7F36] = 0;
    QCOMPARE(r.onDisk(), expected);
    QCOMPARE(r.viewer.grid().text(4, 7), old);
}

void BinViewerTest::typedDigitsReachTheCellAndTheFile()
{
    BinRig r;
    r.open();
    r.viewer.setEditMode(true);
    r.viewer.clickCell(1, 1);
    r.viewer.doubleClickCell(1, 1);
    r.viewer.editBoxKey('7');
    QCOMPARE(r.viewer.grid().text(1, 1), QStringLiteral("07"));
    r.viewer.editBoxKey('c');
    QCOMPARE(r.viewer.editBoxText(), QStringLiteral("7C"));
    QCOMPARE(r.viewer.grid().text(1, 1), QStringLiteral("7C"));
    r.viewer.editBoxKey(13);  // Enter closes the box, and the byte is written
    QVERIFY(!r.viewer.editBoxVisible());
    auto expected = r.image;
    expected[0x7F00] = 0x7C;
    QCOMPARE(r.onDisk(), expected);

    // The write happens every time the box loses the focus, changed or not.
    r.viewer.doubleClickCell(1, 1);
    r.viewer.GridEdit(' ', 1, 1);  // the box takes the cell's text
    QCOMPARE(r.viewer.editBoxText(), QStringLiteral("7C"));
    r.viewer.editBoxFocusLost();
    QCOMPARE(r.onDisk(), expected);
    QCOMPARE(QFileInfo(r.path).size(), kRomSize);
}

void BinViewerTest::keyFilterLetsLowerCaseGhiThrough()
{
    QVERIFY(editKeyPasses('0') && editKeyPasses('9') && editKeyPasses('A') && editKeyPasses('F'));
    QVERIFY(!editKeyPasses('G') && !editKeyPasses('I') && !editKeyPasses('Z') && !editKeyPasses('/'));
    QVERIFY(editKeyPasses('g') && editKeyPasses('h') && editKeyPasses('i') && editKeyPasses('`'));
    QVERIFY(!editKeyPasses('j') && !editKeyPasses(':') && !editKeyPasses('@'));

    BinRig r;
    r.open();
    r.viewer.setEditMode(true);
    r.viewer.clickCell(2, 2);
    r.viewer.doubleClickCell(2, 2);
    r.viewer.editBoxKey('5');
    r.viewer.editBoxKey('G');  // refused: clears the box
    QVERIFY(r.viewer.editBoxText().isEmpty());
    r.viewer.editBoxKey('g');  // passes, upper-cased
    QCOMPARE(r.viewer.editBoxText(), QStringLiteral("G"));
    QCOMPARE(r.viewer.grid().text(2, 2), QStringLiteral("0G"));
    r.viewer.editBoxFocusLost();
    QCOMPARE(int(r.onDisk()[0x7F11]), 0);  // "G" reads as no hexadecimal digit: 0
}

void BinViewerTest::thirdCharacterResetsToZeroZero()
{
    BinRig r;
    r.open();
    r.viewer.setEditMode(true);
    r.viewer.clickCell(3, 3);
    r.viewer.doubleClickCell(3, 3);
    for (int key : {'1', '2', '3'})
        r.viewer.editBoxKey(key);
    QCOMPARE(r.viewer.editBoxText(), QStringLiteral("00"));
    QCOMPARE(r.viewer.grid().text(3, 3), QStringLiteral("00"));
    r.viewer.editBoxKey('4');
    QCOMPARE(r.viewer.editBoxText(), QStringLiteral("00"));
    r.viewer.editBoxFocusLost();
    QCOMPARE(int(r.onDisk()[0x7F22]), 0);
}

void BinViewerTest::bank239RefusesADoubleClickButNotAKey()
{
    BinRig r;
    r.open();
    r.viewer.setEditMode(true);
    r.messages.clear();
    r.selectBank(239);
    r.viewer.clickCell(1, 2);
    r.viewer.doubleClickCell(1, 2);
    QCOMPARE(r.messages, QStringList{QStringLiteral(
                             "Regions below register bank 240 are blocked from editing.\nThese areas are not necessary "
                             "for performance tuning. Changing these values may alter the operation of the ECU micro "
                             "and cause harm to your engine.")});
    QVERIFY(!r.viewer.editBoxVisible());
    r.viewer.keyOnGrid('A', 1, 2);
    QVERIFY(r.viewer.editBoxVisible());
    QCOMPARE(r.viewer.editBoxText(), QStringLiteral("A"));
    r.viewer.editBoxKey('5');
    r.viewer.editBoxFocusLost();
    QCOMPARE(int(r.onDisk()[0x6F01]), 0xA5);
    // A key that is no hexadecimal digit leaves the box empty and open.
    r.viewer.keyOnGrid('x', 1, 2);
    QVERIFY(r.viewer.editBoxVisible());
    QVERIFY(r.viewer.editBoxText().isEmpty());
}

void BinViewerTest::shortLabelAddressGovernsTheWrite()
{
    BinRig r;
    r.open();
    r.viewer.setEditMode(true);
    r.selectBank(129);
    r.viewer.clickCell(1, 4);
    QCOMPARE(r.viewer.addressText(), QStringLiteral("1003"));
    QCOMPARE(r.viewer.fileOffset(), 0x1003);
    r.viewer.keyOnGrid('E', 1, 4);
    r.viewer.editBoxKey('E');
    r.viewer.editBoxFocusLost();
    auto expected = r.image;
    expected[0x1003] = 0xEE;  // not 0x103, the cell's own address
    QCOMPARE(r.onDisk(), expected);
}

void BinViewerTest::keyWithEditModeOffWritesNothing()
{
    BinRig r;
    r.open();
    r.viewer.clickCell(5, 5);
    const QString old = r.viewer.grid().text(5, 5);
    r.viewer.keyOnGrid('7', 5, 5);
    QVERIFY(r.viewer.editBoxVisible());
    QCOMPARE(r.viewer.editBoxText(), QStringLiteral("7"));
    r.viewer.editBoxKey('1');
    QCOMPARE(r.viewer.grid().text(5, 5), old);
    r.viewer.editBoxFocusLost();
    QCOMPARE(r.onDisk(), r.image);
}

void BinViewerTest::vanishedFileIsNotRecreated()
{
    BinRig r;
    r.open();
    r.viewer.setEditMode(true);
    r.viewer.clickCell(1, 1);
    r.viewer.doubleClickCell(1, 1);
    QFile::remove(r.path);
    r.messages.clear();
    r.viewer.editBoxFocusLost();
    QCOMPARE(r.messages.size(), 1);
    QVERIFY(r.messages[0].startsWith(QStringLiteral("The byte could not be written to the BIN file")));
    QVERIFY(!QFile::exists(r.path));
}

void BinViewerTest::vanishedFileOnLoadSaysCorrupted()
{
    BinRig r;
    r.open();
    QVERIFY(!r.viewer.grid().text(1, 1).isEmpty());
    QFile::remove(r.path);
    r.messages.clear();
    r.selectBank(254);
    QCOMPARE(r.messages, QStringList{QStringLiteral("BIN File corrupted or not the correct size.")});
    for (int c = 0; c <= 16; ++c)
        QVERIFY(r.viewer.grid().text(0, c).isEmpty());
    QVERIFY(r.viewer.grid().text(1, 1).isEmpty());
    r.messages.clear();
    r.viewer.ReloadLast();
    QCOMPARE(r.messages, QStringList{QStringLiteral("BIN File corrupted or not the correct size.")});
    QVERIFY(!QFile::exists(r.path));
}

void BinViewerTest::pipeSaysCorruptedWithoutWaiting()
{
    BinRig r;
    QFile::remove(r.path);
    QVERIFY(makeFifo(r.path.toStdString()));
    r.viewer.OpenBINFile(r.path);
    QCOMPARE(r.messages, QStringList{QStringLiteral("BIN File corrupted or not the correct size.")});
    QVERIFY(r.viewer.grid().text(1, 1).isEmpty());
}

void BinViewerTest::newViewerCaptionStartsAtTwo()
{
    BinViewer v;
    QCOMPARE(v.nextViewerCaption(), QStringLiteral("Vexorin BIN File Viewer/Editor 2"));
    QCOMPARE(v.nextViewerCaption(), QStringLiteral("Vexorin BIN File Viewer/Editor 3"));
    QCOMPARE(v.nextFormCount(), 2);
}

QTEST_MAIN(BinViewerTest)
#include "bin_viewer_test.moc"
