// Compare in the Map Viewer: marks and tips on every map cell and scale
// heading whose byte differs in the other file, on the right tabs only;
// marks follow edits and loads; "Clear Compare"; neither file is written.
#include "map_rig.h"
#include "rom/rules/map_decoding.h"
#include "rom/map_grid_widget.h"
#include "rom/map_viewer_window.h"
#include "ui/common_dialog.h"

#include <QAction>
#include <QFileInfo>
#include <QSignalSpy>

using namespace vexorin::rom;

namespace {
int marks(const MapViewer::Tab& tab)
{
    int n = 0;
    for (const QString& tip : tab.compareTips)
        n += tip.isEmpty() ? 0 : 1;
    return n;
}

struct CompareRig : MapRig {
    CompareRig()
    {
        writeBin(path);
        other = dir.filePath(QStringLiteral("other.bin"));
        b.assign(rom.begin(), rom.end());
    }
    void writeOther() { QVERIFY(vexorin::files::WriteBytes(other.toStdString(), b, nullptr)); }
    void change(int offset, int value) { b[std::size_t(offset)] = std::uint8_t(value); }
    QString other;
    std::vector<std::uint8_t> b;
};
}  // namespace

class MapCompareTest : public QObject {
    Q_OBJECT
private slots:
    void marksCellsAndHeadingsWhoseBytesDiffer();
    void neitherFileIsWritten();
    void clearCompareRemovesTheMarks();
    void marksFollowAnEditOfTheFileOnView();
    void needsALoadedFileAndAReadableOther();
    void windowDrawsTheMarksAndShowsTheTips();
};

void MapCompareTest::marksCellsAndHeadingsWhoseBytesDiffer()
{
    CompareRig rig;
    QVERIFY(rig.viewer.LoadBinFile(rig.path));
    rig.change(0x7B03, 100);        // RPM scale, row 4 on every tab
    rig.change(0x7AF5, 77);         // fuel TP scale, column 6 of the four fuel tabs
    rig.change(0x7B1F, 3);          // timing TP scale, column 16 of the two timing tabs
    rig.change(0x7D23, 160);        // Fuel (High Octane) row 3, column 4
    rig.change(0x7800, 161);        // Timing (High Octane) row 1, column 1
    rig.change(0x7F10, rig.rom[0x7F10] ^ 0xFF);  // outside every map and scale
    rig.writeOther();
    QVERIFY(rig.viewer.compareWith(rig.other));
    QCOMPARE(rig.viewer.comparePath(), rig.other);

    for (int t = 0; t < 6; ++t)
        QCOMPARE(rig.viewer.tab(t).compareTip(4, 0), QStringLiteral("B: 5000"));
    for (int t = 0; t < 4; ++t) {
        QCOMPARE(rig.viewer.tab(t).compareTip(0, 6), QStringLiteral("B: 77"));
        QVERIFY(rig.viewer.tab(t).compareTip(0, 16).isEmpty());
    }
    for (int t = 4; t < 6; ++t) {
        QCOMPARE(rig.viewer.tab(t).compareTip(0, 16), QStringLiteral("B: 3"));
        QVERIFY(rig.viewer.tab(t).compareTip(0, 6).isEmpty());
    }
    QCOMPARE(rig.viewer.tab(0).compareTip(3, 4), QStringLiteral("B: 19.60"));
    QCOMPARE(rig.viewer.tab(4).compareTip(1, 1), QStringLiteral("B: -95"));
    // Exactly these, and nothing for the byte outside the maps.
    QCOMPARE(marks(rig.viewer.tab(0)), 3);
    QCOMPARE(marks(rig.viewer.tab(1)), 2);
    QCOMPARE(marks(rig.viewer.tab(4)), 3);
    QCOMPARE(marks(rig.viewer.tab(5)), 2);
}

void MapCompareTest::neitherFileIsWritten()
{
    CompareRig rig;
    QVERIFY(rig.viewer.LoadBinFile(rig.path));
    rig.change(0x7D00, 1);
    rig.writeOther();
    const QDateTime aTime = QFileInfo(rig.path).lastModified();
    const QDateTime bTime = QFileInfo(rig.other).lastModified();
    QTest::qWait(20);
    QVERIFY(rig.viewer.compareWith(rig.other));
    rig.viewer.clearCompare();
    QVERIFY(rig.viewer.compareWith(rig.other));
    QCOMPARE(rig.onDisk(), std::vector<std::uint8_t>(rig.rom.begin(), rig.rom.end()));
    std::vector<std::uint8_t> bNow;
    readImage(rig.other.toStdString(), bNow);
    QCOMPARE(bNow, rig.b);
    QCOMPARE(QFileInfo(rig.path).lastModified(), aTime);
    QCOMPARE(QFileInfo(rig.other).lastModified(), bTime);
}

void MapCompareTest::clearCompareRemovesTheMarks()
{
    CompareRig rig;
    QVERIFY(rig.viewer.LoadBinFile(rig.path));
    for (int i = 0; i < 256; ++i)
        rig.change(0x7200 + i, (rig.rom[std::size_t(0x7200 + i)] + 1) & 0xFF);
    rig.writeOther();
    QSignalSpy changed(&rig.viewer, &MapViewer::compareChanged);
    QVERIFY(rig.viewer.compareWith(rig.other));
    QCOMPARE(marks(rig.viewer.tab(2)), 256);
    rig.viewer.clearCompare();
    QCOMPARE(changed.count(), 2);
    for (int t = 0; t < 6; ++t)
        QCOMPARE(marks(rig.viewer.tab(t)), 0);
    QVERIFY(rig.viewer.comparePath().isEmpty());
    // A new load brings no marks back.
    QVERIFY(rig.viewer.LoadBinFile(rig.path));
    QCOMPARE(marks(rig.viewer.tab(2)), 0);
}

void MapCompareTest::marksFollowAnEditOfTheFileOnView()
{
    CompareRig rig;
    QVERIFY(rig.viewer.LoadBinFile(rig.path));
    // B holds the next fuel byte down the A/F line at row 2, column 2 of Fuel (High Octane).
    const int offset = 0x7D00 + 16 + 1;
    const int a = rig.rom[std::size_t(offset)];
    QVERIFY(a >= 1 && a < 159);
    rig.change(offset, a + 1);
    rig.writeOther();
    QVERIFY(rig.viewer.compareWith(rig.other));
    QVERIFY(!rig.viewer.tab(0).compareTip(2, 2).isEmpty());
    rig.editAt(0, 2, 2);
    rig.viewer.spinDown(0);  // richer: the byte goes up by one and now equals B's
    QCOMPARE(rig.onDisk()[std::size_t(offset)], std::uint8_t(a + 1));
    QVERIFY(rig.viewer.tab(0).compareTip(2, 2).isEmpty());
    rig.viewer.spinDown(0);
    QCOMPARE(rig.viewer.tab(0).compareTip(2, 2),
             QStringLiteral("B: ") + QString::fromStdString(formatMapByte(true, a + 1)));
}

void MapCompareTest::needsALoadedFileAndAReadableOther()
{
    CompareRig rig;
    rig.writeOther();
    QVERIFY(!rig.viewer.compareWith(rig.other));
    QCOMPARE(rig.messages, QStringList{QStringLiteral("File not loaded. Please load a BIN file first.")});
    QVERIFY(rig.viewer.LoadBinFile(rig.path));
    QVERIFY(!rig.viewer.compareWith(rig.dir.filePath(QStringLiteral("missing.bin"))));
    QVERIFY(rig.messages.last().startsWith(QStringLiteral("The BIN file could not be read")));
    QVERIFY(rig.viewer.comparePath().isEmpty());
    // A shorter other file: only the bytes both hold are compared.
    rig.change(0x7000, rig.rom[0x7000] ^ 1);
    rig.b.resize(0x7100);
    rig.writeOther();
    QVERIFY(rig.viewer.compareWith(rig.other));
    QCOMPARE(marks(rig.viewer.tab(3)), 1);
    QCOMPARE(marks(rig.viewer.tab(0)), 0);
}

void MapCompareTest::windowDrawsTheMarksAndShowsTheTips()
{
    CompareRig rig;
    rig.change(0x7D23, 160);
    rig.writeOther();
    QStringList answers{rig.path, rig.other};
    mCommonDialog::setAnswerer([&answers](const mCommonDialog::DialogRequest&, bool) {
        return answers.isEmpty() ? QString() : answers.takeFirst();
    });
    MapViewerWindow w(rig.session);
    w.show();
    QCOMPARE(w.action(QStringLiteral("CompareWithBinFile"))->text(), QStringLiteral("Compare With BIN File..."));
    QCOMPARE(w.action(QStringLiteral("ClearCompare"))->text(), QStringLiteral("Clear Compare"));
    w.loadBinFile(false);
    w.action(QStringLiteral("CompareWithBinFile"))->trigger();
    QVERIFY(w.grid(0)->compareMarked(3, 4));
    QVERIFY(!w.grid(0)->compareMarked(3, 5));
    QCOMPARE(w.grid(0)->item(3, 4)->toolTip(), QStringLiteral("B: 19.60"));
    // The border is drawn in its own colour.
    const QImage picture = w.grid(0)->viewport()->grab().toImage();
    const QRect cell = w.grid(0)->visualRect(w.grid(0)->model()->index(3, 4));
    QCOMPARE(picture.pixelColor(cell.left() + 1, cell.center().y()).rgb(), MapGridWidget::kCompareColor.rgb());
    w.action(QStringLiteral("ClearCompare"))->trigger();
    QVERIFY(!w.grid(0)->compareMarked(3, 4));
    QVERIFY(w.grid(0)->item(3, 4)->toolTip().isEmpty());
    mCommonDialog::setAnswerer({});
}

QTEST_MAIN(MapCompareTest)
#include "map_compare_test.moc"
