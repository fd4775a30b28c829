// The BIN File Viewer/Editor window and the Hex Chart: layout, the file
// dialog, region colouring, typing into the edit box, extra viewers.
#include "rom/bin_viewer.h"
#include "rom/bin_viewer_layout.h"
#include "rom/bin_viewer_window.h"
#include "rom/hex_chart_window.h"
#include "rom/map_grid_widget.h"
#include "rom/rom_image.h"
#include "sim/ecu_simulator.h"
#include "ui/binary_files.h"
#include "ui/color_picker_widget.h"
#include "ui/common_dialog.h"
#include "ui/message_box.h"
#include "widget_helpers.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

class BinViewerWindowTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void layoutAndMenus();
    void topSpeedLimiterColouredAndConverted();
    void typingIntoTheEditBoxWritesTheByte();
    void bankSelectorShowsTheBank();
    void hexChartIsAFixedPicture();
    void exitClosesEveryViewerAndTheHexChart();

private:
    QString writeRom();
    QTemporaryDir dir_;
    QStringList boxes_;
    QStringList answers_;
};

void BinViewerWindowTest::init()
{
    MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes_ << t; });
    mCommonDialog::setAnswerer([this](const mCommonDialog::DialogRequest&, bool) {
        return answers_.isEmpty() ? QString() : answers_.takeFirst();
    });
}

void BinViewerWindowTest::cleanup()
{
    MessageBoxes::setPresenter({});
    mCommonDialog::setAnswerer({});
    boxes_.clear();
    answers_.clear();
}

QString BinViewerWindowTest::writeRom()
{
    auto rom = vexorin::sim::makeSyntheticRom(3);
    const QString path = dir_.filePath(QStringLiteral("sim.bin"));
    vexorin::files::WriteBytes(path.toStdString(), std::vector<std::uint8_t>(rom.begin(), rom.end()), nullptr);
    return path;
}

void BinViewerWindowTest::layoutAndMenus()
{
    BinViewerWindow w;
    w.show();
    QCOMPARE(w.windowTitle(), QStringLiteral("Vexorin BIN File Viewer/Editor"));
    QCOMPARE(w.size(), QSize(959, 472));
    for (const char* name : {"OpenBINFile", "Exit", "ToolTipEnabled", "HexChart", "OpenNewViewer"})
        QVERIFY2(w.action(QLatin1String(name)), name);
    QVERIFY(w.action(QStringLiteral("ToolTipEnabled"))->isChecked());
    QCOMPARE(w.bankSelector()->count(), 128);
    QCOMPARE(w.bankSelector()->currentText(), QStringLiteral("255"));
    QCOMPARE(w.registerList()->count(), 24);
    QCOMPARE(w.convertedLabel()->text(), QStringLiteral("Converted : "));
    QCOMPARE(w.grid()->item(0, 0)->text(), QStringLiteral("7F00 - 7FFF"));
    QCOMPARE(w.grid()->item(0, 1)->text(), QStringLiteral("00"));
    for (const char* caption : {"Reload Last", "Clear Matrix", "Open BIN File", "Save Snapshot"})
        QVERIFY2(findButton(&w, QLatin1String(caption)), caption);
    QCOMPARE(w.grid()->toolTip(), QStringLiteral("Click to select a cell and apply the selected color."));
    w.action(QStringLiteral("ToolTipEnabled"))->trigger();
    QVERIFY(w.grid()->toolTip().isEmpty());
    QVERIFY(w.registerList()->toolTip().isEmpty());
    findButton(&w, QStringLiteral("Reload Last"))->click();
    QCOMPARE(boxes_, QStringList{QStringLiteral("File Not Loaded.")});
}

void BinViewerWindowTest::topSpeedLimiterColouredAndConverted()
{
    BinViewerWindow w;
    w.show();
    answers_ << writeRom();
    findButton(&w, QStringLiteral("Open BIN File"))->click();
    QCOMPARE(w.pathBox()->text(), dir_.filePath(QStringLiteral("sim.bin")));
    QCOMPARE(w.grid()->item(1, 0)->text(), QStringLiteral("7F00 - 7F0F"));
    QCOMPARE(w.grid()->item(1, 1)->textAlignment() & Qt::AlignHorizontal_Mask, int(Qt::AlignRight));
    w.colorPicker()->pick(12);
    QListWidgetItem* row = w.registerList()->item(3);
    QCOMPARE(row->text(), QStringLiteral("(255) 7FA5 ---------- Top Speed Limiter"));
    emit w.registerList()->itemDoubleClicked(row);
    const int v = vexorin::rom::hexValue(w.grid()->item(11, 6)->text().toStdString());
    const long mph = std::lround(v * 2 * 0.621371192);
    QCOMPARE(w.convertedLabel()->text(), QStringLiteral("Converted: %1 km/h or %2 MPH").arg(v * 2).arg(mph));
    QVERIFY(w.grid()->item(11, 6)->background().color() != QColor(Qt::white));
    QVERIFY(boxes_.isEmpty());
    w.registerList()->setCurrentRow(3);
    saveShot(&w, QStringLiteral("bin-viewer-top-speed-limiter.png"));
}

void BinViewerWindowTest::typingIntoTheEditBoxWritesTheByte()
{
    BinViewerWindow w;
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    const QString path = writeRom();
    answers_ << path;
    w.openBinFile();
    w.editModeBox()->click();
    // The warning, then where the backup went.
    QCOMPARE(boxes_.size(), 2);
    QCOMPARE(boxes_[1], QStringLiteral("Backup: %1").arg(dir_.filePath(QStringLiteral("sim.orig.bin"))));
    const QRect cell = w.grid()->visualRect(w.grid()->model()->index(2, 3));
    QTest::mouseClick(w.grid()->viewport(), Qt::LeftButton, {}, cell.center());
    QTest::mouseDClick(w.grid()->viewport(), Qt::LeftButton, {}, cell.center());
    QVERIFY(w.editBox()->isVisible());
    QCOMPARE(w.editBox()->geometry(), cell);
    QTest::keyClicks(w.editBox(), QStringLiteral("a5"));
    QCOMPARE(w.grid()->item(2, 3)->text(), QStringLiteral("A5"));
    QTest::keyClick(w.editBox(), Qt::Key_Return);
    QVERIFY(!w.editBox()->isVisible());
    std::vector<std::uint8_t> bytes;
    vexorin::rom::readImage(path.toStdString(), bytes);
    QCOMPARE(int(bytes[0x7F12]), 0xA5);
    QCOMPARE(bytes.size(), std::size_t(vexorin::rom::kRomSize));
}

void BinViewerWindowTest::bankSelectorShowsTheBank()
{
    BinViewerWindow w;
    w.show();
    answers_ << writeRom();
    w.openBinFile();
    w.bankSelector()->setCurrentIndex(5);
    emit w.bankSelector()->activated(5);
    QCOMPARE(w.grid()->item(0, 0)->text(), QStringLiteral("7A00 - 7AFF"));
    QCOMPARE(w.viewer().selectedBank(), 250);
    answers_ << dir_.filePath(QStringLiteral("sim.bin"));
    w.action(QStringLiteral("OpenBINFile"))->trigger();
    QCOMPARE(w.bankSelector()->currentText(), QStringLiteral("255"));
}

void BinViewerWindowTest::hexChartIsAFixedPicture()
{
    HexChartWindow chart;
    chart.show();
    QCOMPARE(chart.windowTitle(), QStringLiteral("Hex Chart"));
    QCOMPARE(chart.size(), QSize(760, 475));
    QCOMPARE(HexChartWindow::chart().size(), QSize(760, 475));
    saveShot(&chart, QStringLiteral("hex-chart.png"));
}

void BinViewerWindowTest::exitClosesEveryViewerAndTheHexChart()
{
    QWidget owner;
    auto* first = new BinViewerWindow(1, &owner);
    first->show();
    first->action(QStringLiteral("HexChart"))->trigger();
    QPointer<HexChartWindow> chart = first->existingHexChart();
    QVERIFY(chart && chart->isVisible());
    QPointer<BinViewerWindow> second = first->openNewViewer();
    QCOMPARE(second->windowTitle(), QStringLiteral("Vexorin BIN File Viewer/Editor 2"));
    QCOMPARE(second->viewer().TxtFormCount(), 2);
    QVERIFY(!second->action(QStringLiteral("OpenNewViewer"))->isEnabled());
    QPointer<BinViewerWindow> firstGuard(first);
    second->close();
    QTRY_VERIFY(!firstGuard && !second && !chart);
}

QTEST_MAIN(BinViewerWindowTest)
#include "bin_viewer_window_test.moc"
