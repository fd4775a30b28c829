// "Vexorin Fuel Correction" as a person meets it: its captions and controls,
// the BIN file and runs chosen through the dialogs, the grids' figures,
// colours and tips, a target typed by keyboard (and one refused), a setting
// typed into its box, "Record Run" refused and switched back off, and
// "Apply..." pressed through its accessible action and answered.
#include "external_rig.h"
#include "monitor_rig.h"
#include "temp_settings.h"
#include "widget_helpers.h"

#include "external/channel_scale.h"
#include "external/channel_scale_settings.h"
#include "rom/file_edits.h"
#include "rom/map_figures.h"
#include "rom/map_grid_widget.h"
#include "sim/ecu_simulator.h"
#include "tools/fuel_correction.h"
#include "tools/fuel_correction_window.h"
#include "tools/fuel_run_file.h"
#include "ui/common_dialog.h"
#include "ui/message_box.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

using namespace vexorin::tools;

namespace {
constexpr int kFuelMap = 0x7D00;

QString writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

// 2400 rpm, 2.00 V, warm and steady, the wideband reading `afr`.
QByteArray steadyRun(double afr)
{
    std::string text = std::string(kRunHeader) + "\n";
    for (int t = 0; t <= 3000; t += 100) {
        text += ecuRowLine(t, "2400", "2.00", "0.80", "185", "100");
        if (t >= 400)
            text += afrRowLine(t + 10, twoDecimals(afr));
    }
    return QByteArray::fromStdString(text);
}

// F2 on the cell opens its editor; the figure is typed and Return ends it.
void typeTarget(MapGridWidget* grid, int row, int column, const QString& figure)
{
    grid->setCurrentCell(row, column);
    QTest::keyClick(grid, Qt::Key_F2);
    auto* editor = grid->findChild<QLineEdit*>();
    QVERIFY(editor);
    editor->selectAll();
    QTest::keyClicks(editor, figure);
    QPointer<QLineEdit> open = editor;
    QTest::keyClick(editor, Qt::Key_Return);
    // The editor hands its text over from the event loop, and goes.
    QTRY_VERIFY(!open);
}

void pressAccessibly(QWidget* w)
{
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(w);
    QVERIFY(a && a->actionInterface());
    a->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
}
}  // namespace

class FuelCorrectionWindowTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void captionsAndControls();
    void binRunsGridAndApply();
    void targetsTypedByKeyboard();
    void settingTypedIntoItsBox();
    void recordRunRefusedGoesBackOff();

private:
    std::unique_ptr<FuelCorrectionWindow> makeWindow();

    MonitorRig monitor_;
    std::unique_ptr<ExternalRig> gauges_;
    TempSettings settings_;
    QTemporaryDir dir_;
    QStringList boxes_;
    QStringList questions_;
    QStringList answers_;  // what the next file dialogs answer
    QString bin_;
    std::vector<std::uint8_t> image_;
};

void FuelCorrectionWindowTest::init()
{
    FileEdits::shared().forgetAll();
    gauges_ = std::make_unique<ExternalRig>();
    gauges_->load();
    MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes_ << t; });
    MessageBoxes::setQuestionAnswerer([this](const QString& t) {
        questions_ << t;
        return true;
    });
    mCommonDialog::setAnswerer([this](const mCommonDialog::DialogRequest&, bool) { return answers_.takeFirst(); });
    const auto rom = vexorin::sim::makeSyntheticRom();
    image_.assign(rom.begin(), rom.end());
    bin_ = writeFile(dir_.filePath(QStringLiteral("car.bin")),
                     QByteArray(reinterpret_cast<const char*>(image_.data()), qsizetype(image_.size())));
}

void FuelCorrectionWindowTest::cleanup()
{
    MessageBoxes::setPresenter({});
    MessageBoxes::setQuestionAnswerer({});
    mCommonDialog::setAnswerer({});
    boxes_.clear();
    questions_.clear();
    answers_.clear();
}

std::unique_ptr<FuelCorrectionWindow> FuelCorrectionWindowTest::makeWindow()
{
    auto w = std::make_unique<FuelCorrectionWindow>(*settings_.store, monitor_.session, monitor_.stream,
                                                    monitor_.displays, [this] { return gauges_->sensors; });
    w->show();
    return w;
}

void FuelCorrectionWindowTest::captionsAndControls()
{
    // The wideband on channel 4, scaled in AFR: the channel chosen at first.
    gauges_->sensors->setScale(4, vexorin::external::kScalePresets[0].scale());
    auto w = makeWindow();
    QCOMPARE(w->windowTitle(), QStringLiteral("Vexorin Fuel Correction"));
    QCOMPARE(w->objectName(), QStringLiteral("FuelCorrection"));
    for (const char* caption : {"Open BIN...", "Record Run", "Open Runs...", "Clear", "Apply...", "Export CSV..."})
        QVERIFY2(findButton(w.get(), QString::fromLatin1(caption)), caption);
    QVERIFY(w->recordButton()->isCheckable());
    auto* tabs = w->findChild<QTabWidget*>(QStringLiteral("FuelTabs"));
    QCOMPARE(tabs->tabText(0), QStringLiteral("Correction"));
    QCOMPARE(tabs->tabText(1), QStringLiteral("Target A/F"));
    auto* map = w->findChild<QComboBox*>(QStringLiteral("Map"));
    QCOMPARE(map->count(), 4);
    QCOMPARE(map->currentText(), QStringLiteral("Fuel (High Octane)"));
    QCOMPARE(w->channelBox()->count(), 8);
    QCOMPARE(w->channelBox()->itemText(0), QStringLiteral("Channel 1 (Fuel)"));
    QCOMPARE(w->channelBox()->itemText(7), QStringLiteral("Channel 8 (Spare)"));
    QCOMPARE(w->channel(), 4);
    QCOMPARE(w->channelBox()->accessibleName(), QStringLiteral("Wideband channel"));
    const std::pair<const char*, double> boxes[] = {{"Lag (ms)", 300}, {"Min samples", 5}, {"Max change %", 10},
                                                    {"Min water (\u00B0F)", 160}, {"Steady RPM", 150},
                                                    {"Steady TPS (V)", 0.10}};
    const QList<QDoubleSpinBox*> spins = w->findChildren<QDoubleSpinBox*>();
    for (const auto& box : boxes) {
        const QString caption = QString::fromUtf8(box.first);
        const auto it = std::find_if(spins.begin(), spins.end(),
                                     [&caption](QDoubleSpinBox* s) { return s->accessibleName() == caption; });
        QVERIFY2(it != spins.end(), box.first);
        QCOMPARE((*it)->value(), box.second);
    }
    auto* alpha = w->findChild<QCheckBox*>(QStringLiteral("UseAlpha"));
    QCOMPARE(alpha->text(), QStringLiteral("Use A/F alpha"));
    QVERIFY(alpha->isChecked());
    QCOMPARE(w->statusLabel()->text(), QStringLiteral("0 samples in 0 cells; 0 cells to change"));
}

void FuelCorrectionWindowTest::binRunsGridAndApply()
{
    auto w = makeWindow();
    answers_ << bin_;
    QTest::mouseClick(findButton(w.get(), QStringLiteral("Open BIN...")), Qt::LeftButton);
    QCOMPARE(w->correction().binPath(), bin_);
    QCOMPARE(w->findChild<QLabel*>(QStringLiteral("BinPath"))->text(), QDir::toNativeSeparators(bin_));
    MapGridWidget* grid = w->correctionGrid();
    QCOMPARE(grid->item(0, 0)->text(), QStringLiteral("RPM / TP"));
    QCOMPARE(grid->item(1, 0)->text(), QString::number(image_[0x7B00] * 50));
    QCOMPARE(grid->item(0, 1)->text(), QString::number(image_[0x7AF0]));

    // Two runs at once: 54 samples, the mixture 4 % lean of the map.
    const FuelMap map = fuelMapOf(image_, kFuelMap, 1024);
    const auto p = vexorin::rom::tracePoint(map.tables, 2400, 200, 1024);
    const int byte = image_[std::size_t(kFuelMap + (p.row - 1) * 16 + p.fuelColumn - 1)];
    const double x = vexorin::rom::figureOfByte(vexorin::rom::FigureKind::Fuel, byte);
    answers_ << writeFile(dir_.filePath(QStringLiteral("a.csv")), steadyRun(x * 1.04)) + QLatin1Char('\n') +
                    writeFile(dir_.filePath(QStringLiteral("b.csv")), steadyRun(x * 1.04));
    QTest::mouseClick(findButton(w.get(), QStringLiteral("Open Runs...")), Qt::LeftButton);
    QCOMPARE(w->statusLabel()->text(), QStringLiteral("54 samples in 1 cells; 1 cells to change"));
    QTableWidgetItem* cell = grid->item(p.row, p.fuelColumn);
    const CellAdvice& a = w->correction().cell(p.row, p.fuelColumn);
    QCOMPARE(cell->text(), QString::fromStdString(twoDecimals(a.suggested)));
    QCOMPARE(cell->background().color(), FuelCorrectionWindow::kRicherColor);
    QCOMPARE(cell->toolTip(), QString::fromStdString(cellTip(a)));
    QVERIFY(cell->toolTip().startsWith(QStringLiteral("Samples 54, measured ")));

    // Apply, pressed by an assistive technology and answered yes.
    pressAccessibly(findButton(w.get(), QStringLiteral("Apply...")));
    QTRY_COMPARE(questions_.size(), 1);
    QVERIFY(questions_[0].startsWith(QStringLiteral("Write 1 cells of Fuel (High Octane) to car.bin?")));
    QVERIFY(questions_[0].contains(QStringLiteral("Row %1, column %2: ").arg(p.row).arg(p.fuelColumn)));
    QFile f(bin_);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QCOMPARE(std::uint8_t(f.readAll()[kFuelMap + (p.row - 1) * 16 + p.fuelColumn - 1]), std::uint8_t(a.byteNew));
    QCOMPARE(w->statusLabel()->text(), QStringLiteral("0 samples in 0 cells; 0 cells to change"));
    // Nothing more to write.
    QTest::mouseClick(findButton(w.get(), QStringLiteral("Apply...")), Qt::LeftButton);
    QCOMPARE(boxes_.last(), QStringLiteral("Nothing to change."));
    QCOMPARE(questions_.size(), 1);
}

void FuelCorrectionWindowTest::targetsTypedByKeyboard()
{
    auto w = makeWindow();
    w->correction().openBin(bin_);
    w->findChild<QTabWidget*>(QStringLiteral("FuelTabs"))->setCurrentIndex(1);
    MapGridWidget* grid = w->targetGrid();
    typeTarget(grid, 2, 3, QStringLiteral("13.5"));
    QCOMPARE(w->correction().target(2, 3), 13.5);
    QCOMPARE(grid->item(2, 3)->text(), QStringLiteral("13.50"));
    QVERIFY(QFile::exists(bin_ + QStringLiteral(".target.csv")));

    const QString before = grid->item(2, 4)->text();
    typeTarget(grid, 2, 4, QStringLiteral("25"));
    QCOMPARE(boxes_, QStringList{QStringLiteral("The figure must be between 6.56 and 19.60.")});
    QCOMPARE(grid->item(2, 4)->text(), before);
}

void FuelCorrectionWindowTest::settingTypedIntoItsBox()
{
    auto w = makeWindow();
    w->correction().openBin(bin_);
    w->correction().openRuns({writeFile(dir_.filePath(QStringLiteral("a.csv")), steadyRun(16.0))});
    QCOMPARE(w->statusLabel()->text(), QStringLiteral("27 samples in 1 cells; 1 cells to change"));
    auto* minSamples = w->findChild<QDoubleSpinBox*>(QStringLiteral("MinSamples"));
    minSamples->setFocus();
    minSamples->selectAll();
    QTest::keyClicks(minSamples, QStringLiteral("30"));
    QTest::keyClick(minSamples, Qt::Key_Return);
    QCOMPARE(w->correction().settings().minSamples, 30);
    QCOMPARE(w->statusLabel()->text(), QStringLiteral("27 samples in 1 cells; 0 cells to change"));
    QCOMPARE(settings_.store->ReadSetting(QStringLiteral("FuelCorrection"), QStringLiteral("MinSamples")),
             QStringLiteral("30"));
    auto* alpha = w->findChild<QCheckBox*>(QStringLiteral("UseAlpha"));
    QTest::mouseClick(alpha, Qt::LeftButton, {}, QPoint(4, alpha->height() / 2));
    QVERIFY(!w->correction().settings().useAlpha);
}

void FuelCorrectionWindowTest::recordRunRefusedGoesBackOff()
{
    auto w = makeWindow();
    QTest::mouseClick(w->recordButton(), Qt::LeftButton);
    QVERIFY(!w->recordButton()->isChecked());
    QCOMPARE(boxes_, QStringList{QStringLiteral("Consult port not connected.")});
    QVERIFY(answers_.isEmpty());  // no file was asked for
}

QTEST_MAIN(FuelCorrectionWindowTest)
#include "fuel_correction_window_test.moc"
