// The whole loop of the fuel correction against the simulators, in simulated
// time: the simulated engine runs 8 % lean on a ROM served from a BIN file; a
// recorded run, analysed and applied, corrects the file's map; served again,
// a second run finds every cell with enough samples within 2 % of its target
// and suggests no change beyond one byte step.
#include "temp_settings.h"

#include "rom/file_edits.h"
#include "rom/rules/map_decoding.h"
#include "sim/simulated_car.h"
#include "tools/fuel_correction.h"
#include "tools/simulated_run.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace vexorin::tools;

namespace {
QString writeText(const QString& path, const std::string& text)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(text.data(), qint64(text.size())) != qint64(text.size()))
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

// The place of a byte on the fuel stepping line 160..192, 1..159.
int linePlace(int byte)
{
    return byte >= 160 ? byte - 160 : byte + 32;
}
}  // namespace

class FuelCorrectionLoopTest : public QObject {
    Q_OBJECT
private slots:
    void eightPercentLeanIsCorrectedInOneRun();
};

void FuelCorrectionLoopTest::eightPercentLeanIsCorrectedInOneRun()
{
    FileEdits::shared().forgetAll();
    QTemporaryDir dir;
    TempSettings settings;
    vexorin::sim::SimulatedCar car;
    car.setFuelError(8);
    const auto& rom = car.ecu().rom();
    const QString bin = dir.filePath(QStringLiteral("sim.bin"));
    writeText(bin, std::string(rom.begin(), rom.end()));
    std::string error;
    QVERIFY2(car.serveRomFile(bin.toStdString(), &error), error.c_str());

    FuelCorrection correction(*settings.store);
    QStringList messages;
    connect(&correction, &FuelCorrection::message, this, [&](const QString& m) { messages << m; });
    QVERIFY(correction.openBin(bin));
    const std::string run1 = recordSimulatedRun(car, 180);
    correction.openRuns({writeText(dir.filePath(QStringLiteral("run1.csv")), run1)});
    const FuelAdvice first = correction.advice();
    qInfo("first run: %s", qPrintable(correction.status()));
    QVERIFY(first.cellsToChange >= 3);
    int lean = 0;
    for (const CellAdvice& c : first.cells)
        if (c.enough && c.measured > c.target * 1.06)
            ++lean;
    QCOMPARE(lean, int(std::count_if(first.cells.begin(), first.cells.end(), [](const CellAdvice& c) { return c.enough; })));
    QVERIFY(correction.apply());
    QCOMPARE(correction.advice().samples, 0);

    // The car serves the corrected file from its next look at it.
    correction.openRuns({writeText(dir.filePath(QStringLiteral("run2.csv")), recordSimulatedRun(car, 180, 2000))});
    const FuelAdvice second = correction.advice();
    qInfo("second run: %s", qPrintable(correction.status()));
    int checked = 0;
    for (int i = 0; i < kMapCells; ++i) {
        const CellAdvice& c = second.cells[std::size_t(i)];
        if (!c.enough)
            continue;
        ++checked;
        QVERIFY2(std::abs(c.measured - c.target) <= 0.02 * c.target,
                 qPrintable(QStringLiteral("cell %1: measured %2, target %3").arg(i).arg(c.measured).arg(c.target)));
        QVERIFY2(std::abs(linePlace(c.byteNew) - linePlace(c.byteOld)) <= 1,
                 qPrintable(QStringLiteral("cell %1: byte %2 to %3").arg(i).arg(c.byteOld).arg(c.byteNew)));
    }
    QVERIFY(checked >= 3);
    QVERIFY2(messages.size() == 1, qPrintable(messages.join('\n')));  // the one of Apply
}

QTEST_GUILESS_MAIN(FuelCorrectionLoopTest)
#include "fuel_correction_loop_test.moc"
