// The E.C.U. Register Viewer against the simulated ECU: reading a bank,
// Stop, the two address forms, the region list, cell clicks and clearing.
#include "link_wait.h"
#include "rom/rom_image.h"
#include "tools/ecu_tool_tables.h"
#include "tools/register_viewer.h"
#include "tools_rig.h"

using namespace vexorin::rom;

namespace {
struct ViewerRig : ToolsRig {
    ViewerRig() : viewer(session)
    {
        QObject::connect(&viewer, &RegisterViewer::message, [this](const QString& m) { messages.append(m); });
    }
    void readBank(int bank)
    {
        viewer.selectBank(bank);
        for (int i = 0; i < 40 && viewer.FindRegisterHexTimer.isActive(); ++i)
            viewer.FindRegisterHexTimerTick();
    }
    QString romHex(int bank, int low) const
    {
        return QString::fromStdString(hexByte(rom[std::size_t(fileOffsetOfBank(bank, low))]));
    }
    RegisterViewer viewer;
};
}  // namespace

class RegisterViewerTest : public QObject {
    Q_OBJECT
private slots:
    void opensIdle();
    void downloadNeedsTheLink();
    void readsABankEightAddressesATick();
    void stoppedBankKeepsItsCellsAndTheSelectorStillWorks();
    void epromFormChangesLabelsOnly();
    void regionOfAnotherBankIsNotLoaded();
    void regionsPaintAndConvert();
    void blankKValueCells();
    void cellClickShowsTheRowsAddresses();
    void manualClearEmptiesEverything();
    void silentEcuStopsTheRead();
};

void RegisterViewerTest::opensIdle()
{
    ViewerRig r;
    QCOMPARE(r.viewer.FindRegisterHexTimer.interval(), 250);
    QCOMPARE(r.viewer.FindRegisterDecTimer.interval(), 250);
    QVERIFY(!r.viewer.FindRegisterHexTimer.isActive());
    QCOMPARE(r.viewer.selectorBank(), 255);
    QCOMPARE(r.viewer.ConvertedLabel(), QStringLiteral("Converted: "));
    QVERIFY(r.viewer.mode() == RegisterViewer::Mode::Ecu);
    const QStringList list = r.viewer.regionList();
    QCOMPARE(list.size(), 24);
    QCOMPARE(list[9], QStringLiteral("(253) FD00 - FDFF Primary Fuel Map"));
}

void RegisterViewerTest::downloadNeedsTheLink()
{
    ViewerRig r;
    r.viewer.DownloadRegisterBank();
    r.viewer.StopDataFlow();
    QCOMPARE(r.messages, (QStringList{QStringLiteral("Consult port not connected."),
                                      QStringLiteral("Consult port not connected.")}));
    QVERIFY(!r.viewer.FindRegisterHexTimer.isActive());
}

void RegisterViewerTest::readsABankEightAddressesATick()
{
    ViewerRig r;
    r.connect();
    r.viewer.selectBank(253);
    QVERIFY(r.viewer.FindRegisterHexTimer.isActive());
    QVERIFY(!r.viewer.optionsEnabled());
    QVERIFY(!r.viewer.listEnabled());
    const MapGrid& m = r.viewer.matrix();
    QCOMPARE(m.text(0, 0), QStringLiteral(" FD00-FDFF"));
    QCOMPARE(m.text(2, 0), QStringLiteral(" FD10-FD1F"));
    QCOMPARE(m.text(16, 0), QStringLiteral(" FDF0-FDFF"));
    QCOMPARE(m.text(0, 1), QStringLiteral("00"));
    QCOMPARE(m.text(0, 16), QStringLiteral("0F"));
    QVERIFY(m.color(0, 5) == r.viewer.highlight());
    QVERIFY(m.color(7, 0) == r.viewer.highlight());
    QVERIFY(!m.color(1, 1));
    for (int tick = 0; tick < 32; ++tick) {
        r.sim->written.clear();
        r.viewer.FindRegisterHexTimerTick();
        QCOMPARE(r.sim->written, burstRequest(253, tick * 8) + QByteArray(1, char(0x30)));
    }
    for (int low = 0; low < 256; ++low) {
        const Cell c = cellOfLow(low);
        QCOMPARE(m.text(c.row, c.column), r.romHex(253, low));
    }
    QVERIFY(r.viewer.FindRegisterHexTimer.isActive());
    r.sim->written.clear();
    r.viewer.FindRegisterHexTimerTick();
    QVERIFY(r.sim->written.isEmpty());
    QVERIFY(!r.viewer.FindRegisterHexTimer.isActive());
    QVERIFY(r.viewer.optionsEnabled());
    QVERIFY(r.viewer.listEnabled());
}

void RegisterViewerTest::stoppedBankKeepsItsCellsAndTheSelectorStillWorks()
{
    ViewerRig r;
    r.connect();
    r.viewer.selectBank(254);
    for (int i = 0; i < 5; ++i)
        r.viewer.FindRegisterHexTimerTick();
    r.sim->written.clear();
    r.viewer.StopDataFlow();
    QCOMPARE(r.sim->written, QByteArray(1, char(0x30)));
    QVERIFY(!r.viewer.FindRegisterHexTimer.isActive());
    const MapGrid& m = r.viewer.matrix();
    QCOMPARE(m.text(3, 8), r.romHex(254, 0x27));
    QCOMPARE(m.text(3, 9), QString());
    QVERIFY(!r.viewer.optionsEnabled());
    QVERIFY(!r.viewer.listEnabled());
    // The selector starts a new read, and a finished read enables the options and the list.
    r.readBank(255);
    QCOMPARE(r.viewer.CurrentBank, 255);
    QCOMPARE(m.text(16, 16), r.romHex(255, 255));
    QVERIFY(r.viewer.optionsEnabled());
    QVERIFY(r.viewer.listEnabled());
}

void RegisterViewerTest::epromFormChangesLabelsOnly()
{
    ViewerRig r;
    r.connect();
    r.viewer.selectBank(255);
    for (int i = 0; i < 3; ++i)
        r.viewer.FindRegisterHexTimerTick();
    const QString cell = r.viewer.matrix().text(1, 5);
    r.viewer.setMode(RegisterViewer::Mode::Eprom);
    QCOMPARE(r.viewer.matrix().text(0, 0), QStringLiteral(" 7F00-7FFF"));
    QCOMPARE(r.viewer.matrix().text(1, 0), QStringLiteral(" 7F00-7F0F"));
    QCOMPARE(r.viewer.matrix().text(1, 5), cell);
    QCOMPARE(r.viewer.regionList()[9], QStringLiteral("(253) 7D00 - 7DFF Primary Fuel Map"));
    // The read goes on at the same addresses.
    r.sim->written.clear();
    r.viewer.FindRegisterHexTimerTick();
    QCOMPARE(r.sim->written, burstRequest(255, 24) + QByteArray(1, char(0x30)));
    r.viewer.setMode(RegisterViewer::Mode::Ecu);
    QCOMPARE(r.viewer.matrix().text(0, 0), QStringLiteral(" FF00-FFFF"));
}

void RegisterViewerTest::regionOfAnotherBankIsNotLoaded()
{
    ViewerRig r;
    r.connect();
    r.readBank(254);
    const MapGrid before = r.viewer.matrix();
    r.viewer.RegionDoubleClicked(2);  // Rev Limiter, bank 255
    QCOMPARE(r.messages, QStringList{QStringLiteral("Register Bank Not Loaded.\r\n")});
    for (int row = 0; row < MapGrid::kSize; ++row)
        for (int col = 0; col < MapGrid::kSize; ++col)
            QVERIFY(r.viewer.matrix().color(row, col) == before.color(row, col));
    QCOMPARE(r.viewer.ConvertedLabel(), QStringLiteral("Converted: "));
}

void RegisterViewerTest::regionsPaintAndConvert()
{
    ViewerRig r;
    r.connect();
    r.readBank(255);
    const MapGrid& m = r.viewer.matrix();
    r.viewer.RegionDoubleClicked(2);
    QVERIFY(m.color(12, 5) == r.viewer.highlight());
    QCOMPARE(r.viewer.ConvertedLabel(),
             QStringLiteral("Converted: %1 RPM").arg(r.rom[std::size_t(0x7FB4)] * 50));
    r.viewer.RegionDoubleClicked(5);
    QVERIFY(m.color(3, 12) == r.viewer.highlight());
    QVERIFY(m.color(3, 13) == r.viewer.highlight());
    QCOMPARE(r.viewer.ConvertedLabel(),
             QStringLiteral("Converted: %1").arg(r.rom[std::size_t(0x7F2B)] * 256 + r.rom[std::size_t(0x7F2C)]));
    // An earlier selection keeps its colour; a region without conversion shows the bare caption.
    r.viewer.RegionDoubleClicked(1);
    QVERIFY(m.color(12, 5) == r.viewer.highlight());
    QVERIFY(m.color(15, 9) == r.viewer.highlight());
    QVERIFY(!m.color(15, 10));
    QCOMPARE(r.viewer.ConvertedLabel(), QStringLiteral("Converted: "));
    r.viewer.RegionDoubleClicked(0);
    QCOMPARE(r.viewer.ConvertedLabel(),
             QStringLiteral("Converted: ") +
                 QString::fromStdString(vexorin::tools::convertRegion(vexorin::tools::Conversion::Msec,
                                                                      m.text(10, 2).toStdString())));
    QVERIFY(r.viewer.ConvertedLabel().endsWith(QStringLiteral(" msec")));
    r.viewer.RegionDoubleClicked(3);
    QVERIFY(r.viewer.ConvertedLabel().contains(QStringLiteral(" km/h or ")));

    // A map of a whole page gives its message and paints nothing.
    r.readBank(253);
    r.messages.clear();
    r.viewer.RegionDoubleClicked(9);
    QCOMPARE(r.messages, QStringList{QStringLiteral("Currently viewing the Primary Fuel Map.")});
    QVERIFY(!r.viewer.matrix().color(5, 5));
}

void RegisterViewerTest::blankKValueCells()
{
    ViewerRig r;
    r.connect();
    r.readBank(255);
    r.viewer.ManualClearMatrix();
    r.viewer.RegionDoubleClicked(5);
    QCOMPARE(r.viewer.ConvertedLabel(), QStringLiteral("Converted: "));
}

void RegisterViewerTest::cellClickShowsTheRowsAddresses()
{
    ViewerRig r;
    r.connect();
    r.readBank(253);
    const MapGrid& m = r.viewer.matrix();
    r.viewer.CellClicked(0, 3);
    QCOMPARE(r.viewer.clickedRow(), 0);
    r.viewer.CellClicked(2, 3);
    QCOMPARE(r.viewer.clickedRow(), 2);
    QCOMPARE(r.viewer.clickedColumn(), 3);
    QVERIFY(m.color(2, 3) == r.viewer.highlight());
    QCOMPARE(m.text(0, 1), QStringLiteral("10"));
    QCOMPARE(m.text(0, 16), QStringLiteral("1F"));
    QVERIFY(m.color(2, 0) == r.viewer.highlight());
    QVERIFY(m.color(1, 0) == RegisterViewer::kWhite);
    QVERIFY(m.color(16, 0) == RegisterViewer::kWhite);
    r.viewer.CellClicked(16, 1);
    QCOMPARE(m.text(0, 1), QStringLiteral("F0"));
    QCOMPARE(m.text(0, 16), QStringLiteral("FF"));
    QVERIFY(m.color(2, 0) == RegisterViewer::kWhite);
}

void RegisterViewerTest::manualClearEmptiesEverything()
{
    ViewerRig r;
    r.connect();
    r.readBank(250);
    r.viewer.ManualClearMatrix();
    for (int row = 0; row < MapGrid::kSize; ++row)
        for (int col = 0; col < MapGrid::kSize; ++col)
            QCOMPARE(r.viewer.matrix().text(row, col), QString());
}

void RegisterViewerTest::silentEcuStopsTheRead()
{
    ViewerRig r;
    r.connect();
    r.viewer.selectBank(255);
    r.viewer.FindRegisterHexTimerTick();
    r.setFaults(true);
    r.viewer.FindRegisterHexTimerTick();
    QVERIFY(waitForIdleLink(r.session.owner()));
    QVERIFY(!r.viewer.FindRegisterHexTimer.isActive());
    QVERIFY(r.viewer.notice().startsWith(QStringLiteral("No reply from the ECU")));
    QCOMPARE(r.viewer.matrix().text(1, 8), r.romHex(255, 7));
}

QTEST_GUILESS_MAIN(RegisterViewerTest)
#include "register_viewer_test.moc"
