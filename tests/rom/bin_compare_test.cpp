// The BIN Compare on real files: the controller's summary and rows, a file
// that cannot be read, both files left as they were, the Map Viewer asked for
// on a map's row only; the window's controls, its list, double-click and
// Enter on a row, Esc, and a layout without cut texts or overlaps (the suite
// runs this at QT_SCALE_FACTOR 1 and 1.5).
#include "rom/bin_compare_view.h"
#include "rom/bin_compare_window.h"
#include "rom/rom_image.h"
#include "sim/ecu_simulator.h"
#include "ui/binary_files.h"
#include "ui/common_dialog.h"
#include "ui/layout_audit.h"
#include "ui/message_box.h"
#include "widget_helpers.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {
using Image = std::vector<std::uint8_t>;
const QString kArrow = QStringLiteral(" \u2192 ");

Image simulatorRom()
{
    const auto rom = vexorin::sim::makeSyntheticRom();
    return Image(rom.begin(), rom.end());
}

QByteArray contents(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}
}  // namespace

class BinCompareTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void summaryAndRowsOfTwoFiles();
    void identicalFiles();
    void lengthsThatDiffer();
    void missingFileKeepsTheOtherSide();
    void filesAreNeverWritten();
    void mapRowsAskForTheMapViewer();
    void windowControlsAndNames();
    void windowListShowsTheRows();
    void doubleClickAndEnterOnAMapRow();
    void escapeCloses();
    void layoutHasNoProblems();

private:
    QString write(const QString& name, const Image& bytes);
    // The simulator's ROM as A and a copy with a few changes as B.
    void writePair();
    QTemporaryDir dir_;
    QString a_, b_;
    QStringList boxes_;
    QStringList answers_;
};

void BinCompareTest::init()
{
    QVERIFY(dir_.isValid());
    MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes_ << t; });
    mCommonDialog::setAnswerer([this](const mCommonDialog::DialogRequest&, bool) {
        return answers_.isEmpty() ? QString() : answers_.takeFirst();
    });
}

void BinCompareTest::cleanup()
{
    MessageBoxes::setPresenter({});
    mCommonDialog::setAnswerer({});
    boxes_.clear();
    answers_.clear();
}

QString BinCompareTest::write(const QString& name, const Image& bytes)
{
    const QString path = dir_.filePath(name);
    vexorin::files::WriteBytes(path.toStdString(), bytes, nullptr);
    return path;
}

void BinCompareTest::writePair()
{
    Image rom = simulatorRom();
    a_ = write(QStringLiteral("a.bin"), rom);
    rom[0x7FB4] = rom[0x7FB4] == 0x94 ? 0x8C : 0x94;   // Rev Limiter
    for (int cell : {0x7D21, 0x7D22, 0x7D33})          // three cells of the Primary Fuel Map
        rom[std::size_t(cell)] ^= 0x10;
    rom[std::size_t(vexorin::rom::fileOffsetOfBank(200, 5))] ^= 0xFF;  // outside every region
    b_ = write(QStringLiteral("b.bin"), rom);
}

void BinCompareTest::summaryAndRowsOfTwoFiles()
{
    writePair();
    const Image rom = simulatorRom();
    BinCompareView v;
    QSignalSpy changed(&v, &BinCompareView::changed);
    QCOMPARE(v.summary(), QStringLiteral("Open two BIN files to compare."));
    v.openA(a_);
    QCOMPARE(v.summary(), QStringLiteral("Open the other file to compare."));
    QVERIFY(v.rows().isEmpty());
    v.openB(b_);
    QCOMPARE(changed.count(), 2);
    QCOMPARE(v.pathA(), a_);
    QCOMPARE(v.pathB(), b_);
    QCOMPARE(v.summary(), QStringLiteral("5 bytes differ"));
    const QString revA = QString::number(rom[0x7FB4] * 50) + QStringLiteral(" RPM");
    const QString revB = QString::number((rom[0x7FB4] == 0x94 ? 0x8C : 0x94) * 50) + QStringLiteral(" RPM");
    QCOMPARE(v.rows(), (QStringList{QStringLiteral("Rev Limiter: ") + revA + kArrow + revB,
                                    QStringLiteral("Primary Fuel Map: 3 bytes"), QStringLiteral("Bank 200: 1 byte")}));
    QVERIFY(boxes_.isEmpty());
}

void BinCompareTest::identicalFiles()
{
    writePair();
    BinCompareView v;
    v.openA(a_);
    v.openB(a_);
    QCOMPARE(v.summary(), QStringLiteral("Files are identical"));
    QVERIFY(v.rows().isEmpty());
}

void BinCompareTest::lengthsThatDiffer()
{
    Image rom = simulatorRom();
    const QString empty = write(QStringLiteral("empty.bin"), {});
    const QString whole = write(QStringLiteral("whole.bin"), rom);
    rom.resize(256);
    rom[3] ^= 1;
    const QString shortFile = write(QStringLiteral("short.bin"), rom);
    BinCompareView v;
    v.openA(empty);
    v.openB(whole);
    QCOMPARE(v.summary(), QStringLiteral("0 bytes differ\nLengths differ: A 0 bytes, B 32768 bytes"));
    QVERIFY(v.rows().isEmpty());
    v.openA(shortFile);
    QCOMPARE(v.summary(), QStringLiteral("1 byte differs\nLengths differ: A 256 bytes, B 32768 bytes"));
    QCOMPARE(v.rows(), QStringList{QStringLiteral("Bank 128: 1 byte")});
}

void BinCompareTest::missingFileKeepsTheOtherSide()
{
    writePair();
    BinCompareView v;
    QSignalSpy messages(&v, &BinCompareView::message);
    v.openA(a_);
    v.openB(b_);
    const QStringList rows = v.rows();
    const QString missing = dir_.filePath(QStringLiteral("nowhere.bin"));
    v.openB(missing);
    QCOMPARE(messages.count(), 1);
    const QString text = messages.at(0).at(0).toString();
    QVERIFY2(text.contains(QStringLiteral("nowhere.bin")) && text.contains(QStringLiteral("File not found.")), qPrintable(text));
    QCOMPARE(v.pathB(), b_);  // B stays as it was
    QCOMPARE(v.pathA(), a_);
    QCOMPARE(v.rows(), rows);
    // A folder is no file either.
    v.openA(dir_.path());
    QCOMPARE(messages.count(), 2);
    QCOMPARE(v.pathA(), a_);
    // A cancelled dialog says nothing.
    v.openA(QString());
    QCOMPARE(messages.count(), 2);
}

void BinCompareTest::filesAreNeverWritten()
{
    writePair();
    const QDateTime old = QDateTime::currentDateTimeUtc().addDays(-3);
    for (const QString& path : {a_, b_}) {
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadWrite));
        QVERIFY(f.setFileTime(old, QFileDevice::FileModificationTime));
    }
    const QByteArray bytesA = contents(a_), bytesB = contents(b_);
    const QDateTime timeA = QFileInfo(a_).lastModified(), timeB = QFileInfo(b_).lastModified();
    {
        BinCompareWindow w;
        w.show();
        answers_ << a_ << b_;
        findButton(&w, QStringLiteral("Open &A..."))->click();
        findButton(&w, QStringLiteral("Open &B..."))->click();
        QCOMPARE(w.list()->count(), 3);
        for (int row = 0; row < w.list()->count(); ++row)
            w.view().activateRow(row);
    }
    QCOMPARE(contents(a_), bytesA);
    QCOMPARE(contents(b_), bytesB);
    QCOMPARE(QFileInfo(a_).lastModified(), timeA);
    QCOMPARE(QFileInfo(b_).lastModified(), timeB);
    QCOMPARE(QFileInfo(a_).size(), qint64(vexorin::rom::kRomSize));
}

void BinCompareTest::mapRowsAskForTheMapViewer()
{
    Image rom = simulatorRom();
    a_ = write(QStringLiteral("a.bin"), rom);
    rom[0x7C10] ^= 1;  // Secondary Timing Map (Knock): tab 5, "Timing (Low Octane)"
    rom[0x7B00] ^= 1;  // RPM Scale: no map
    rom[0x7100] ^= 1;  // High Octane High Gear Fuel Map: tab 1
    b_ = write(QStringLiteral("b.bin"), rom);
    BinCompareView v;
    v.openA(a_);
    v.openB(b_);
    QCOMPARE(v.rows(), (QStringList{QStringLiteral("Secondary Timing Map (Knock): 1 byte"),
                                    QStringLiteral("RPM Scale: 1 byte"),
                                    QStringLiteral("High Octane High Gear Fuel Map: 1 byte")}));
    QSignalSpy asked(&v, &BinCompareView::mapRequested);
    v.activateRow(1);
    QCOMPARE(asked.count(), 0);
    v.activateRow(0);
    QCOMPARE(asked.count(), 1);
    QCOMPARE(asked.at(0), (QVariantList{5, a_, b_}));
    v.activateRow(2);
    QCOMPARE(asked.at(1), (QVariantList{1, a_, b_}));
    v.activateRow(3);
    v.activateRow(-1);
    QCOMPARE(asked.count(), 2);
}

void BinCompareTest::windowControlsAndNames()
{
    BinCompareWindow w;
    w.show();
    QCOMPARE(w.windowTitle(), QStringLiteral("Vexorin BIN Compare"));
    for (const char* name : {"OpenA", "OpenB", "PathA", "PathB", "CompareSummary", "CompareList"})
        QVERIFY2(w.findChild<QWidget*>(QLatin1String(name)), name);
    auto* openA = w.findChild<QPushButton*>(QStringLiteral("OpenA"));
    auto* openB = w.findChild<QPushButton*>(QStringLiteral("OpenB"));
    QCOMPARE(openA->accessibleName(), QStringLiteral("Open A..."));
    QCOMPARE(openB->accessibleName(), QStringLiteral("Open B..."));
    QCOMPARE(QString(openA->text()).remove(QLatin1Char('&')), QStringLiteral("Open A..."));
    QCOMPARE(openA->shortcut(), QKeySequence(QStringLiteral("Alt+A")));
    QCOMPARE(openB->shortcut(), QKeySequence(QStringLiteral("Alt+B")));
    auto* pathA = w.findChild<QLineEdit*>(QStringLiteral("PathA"));
    auto* pathB = w.findChild<QLineEdit*>(QStringLiteral("PathB"));
    QVERIFY(pathA->isReadOnly() && pathB->isReadOnly());
    QCOMPARE(pathA->accessibleName(), QStringLiteral("Path of A"));
    QCOMPARE(pathB->accessibleName(), QStringLiteral("Path of B"));
    QCOMPARE(w.list()->accessibleName(), QStringLiteral("Differences"));
    QVERIFY(!w.summary()->accessibleName().isEmpty());
    QVERIFY(w.list()->focusPolicy() & Qt::TabFocus);
    // The path beside each button, after the dialog's answer.
    writePair();
    answers_ << a_;
    openA->click();
    QCOMPARE(QDir::fromNativeSeparators(pathA->text()), a_);
    QVERIFY(pathB->text().isEmpty());
    // A cancelled dialog leaves B as it was; a missing file gives a box.
    openB->click();
    QVERIFY(pathB->text().isEmpty());
    QVERIFY(boxes_.isEmpty());
    answers_ << dir_.filePath(QStringLiteral("gone.bin"));
    openB->click();
    QCOMPARE(boxes_.size(), 1);
    QVERIFY(boxes_[0].contains(QStringLiteral("gone.bin")));
    QCOMPARE(QDir::fromNativeSeparators(pathA->text()), a_);
}

void BinCompareTest::windowListShowsTheRows()
{
    writePair();
    BinCompareWindow w;
    w.show();
    w.view().openA(a_);
    w.view().openB(b_);
    QCOMPARE(w.summary()->text(), QStringLiteral("5 bytes differ"));
    QStringList shown;
    for (int i = 0; i < w.list()->count(); ++i)
        shown << w.list()->item(i)->text();
    QCOMPARE(shown, w.view().rows());
    QCOMPARE(shown.size(), 3);
    QCOMPARE(shown[1], QStringLiteral("Primary Fuel Map: 3 bytes"));
    // Files of other lengths: the second line of the summary.
    w.view().openB(write(QStringLiteral("half.bin"), Image(16384, 0)));
    QVERIFY(w.summary()->text().endsWith(QStringLiteral("\nLengths differ: A 32768 bytes, B 16384 bytes")));
}

void BinCompareTest::doubleClickAndEnterOnAMapRow()
{
    writePair();
    BinCompareWindow w;
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    w.view().openA(a_);
    w.view().openB(b_);
    QSignalSpy asked(&w, &BinCompareWindow::mapRequested);
    QListWidget* list = w.list();
    const auto doubleClick = [list](int row) {
        const QPoint at = list->visualItemRect(list->item(row)).center();
        // A person's double-click: a click, then the second press that makes it double.
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
    };
    doubleClick(0);  // Rev Limiter: no map
    QCOMPARE(asked.count(), 0);
    doubleClick(1);  // Primary Fuel Map
    QCOMPARE(asked.count(), 1);
    QCOMPARE(asked.at(0), (QVariantList{0, a_, b_}));
    // Enter on the current row, and the button beside the list, do the same.
    list->setFocus();
    list->setCurrentRow(2);
    QVERIFY(!w.openMapButton()->isEnabled());
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(asked.count(), 1);
    list->setCurrentRow(1);
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(asked.count(), 2);
    QVERIFY(w.openMapButton()->isEnabled());
    w.openMapButton()->click();
    QCOMPARE(asked.count(), 3);
    QCOMPARE(asked.at(2), (QVariantList{0, a_, b_}));
}

void BinCompareTest::escapeCloses()
{
    BinCompareWindow w;
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    w.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&w));
    w.list()->setFocus();
    QTest::keyClick(w.list(), Qt::Key_Escape);
    QVERIFY(!w.isVisible());
}

void BinCompareTest::layoutHasNoProblems()
{
    // The window at the size it opens with, empty, then with the longest rows a comparison can give.
    writePair();
    BinCompareWindow w;
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    QStringList problems = vexorin::ui::layoutProblems(&w);
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));

    Image zeros(vexorin::rom::kRomSize + 40, 0x00), ones(vexorin::rom::kRomSize + 20, 0xFF);
    w.view().openA(write(QStringLiteral("zeros.bin"), zeros));
    w.view().openB(write(QStringLiteral("ones.bin"), ones));
    QCOMPARE(w.summary()->text(), QStringLiteral("32788 bytes differ\nLengths differ: A 32808 bytes, B 32788 bytes"));
    QCOMPARE(w.list()->count(), 24 + 122 + 1);
    QTest::qWait(50);
    problems = vexorin::ui::layoutProblems(&w);
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));

    w.view().openA(a_);
    w.view().openB(b_);
    QTest::qWait(50);
    problems = vexorin::ui::layoutProblems(&w);
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
    const QByteArray scale = qgetenv("QT_SCALE_FACTOR");
    saveShot(&w, scale == "1.5" ? QStringLiteral("compare-15.png") : QStringLiteral("compare-1.png"));
}

QTEST_MAIN(BinCompareTest)
#include "bin_compare_test.moc"
