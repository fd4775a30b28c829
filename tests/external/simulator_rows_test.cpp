// The built-in simulator rows of the Consult and external port lists: one
// simulated car behind both, its fuel error and ROM file from the settings,
// one clock however many ports read it, and a fresh car once both are closed.
#include "app/app_core.h"
#include "app/settings/settings_access.h"
#include "consult/port_catalog.h"
#include "consult/session_log.h"
#include "consult/simulator_transport.h"
#include "external/dlp_simulator_transport.h"
#include "external/external_ports.h"
#include "sim/simulated_car.h"
#include "temp_settings.h"
#include "voice/recording_speech_out.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

namespace {
using vexorin::sim::EnginePhase;
using vexorin::sim::RomImage;

// An application core on a temporary store; the simulator rows' transports come from its port lists.
struct RowsRig {
    RowsRig() : core(*settings.store, speech) {}

    std::unique_ptr<SimulatorTransport> ecuRow()
    {
        QString error;
        const int n = core.ports().numberFor(PortCatalog::kSimulatorPath);
        return std::unique_ptr<SimulatorTransport>(
            qobject_cast<SimulatorTransport*>(core.ports().makeTransport(n, &error)));
    }
    std::unique_ptr<DlpSimulatorTransport> dlpRow()
    {
        QString error;
        const int n = core.ports().numberFor(ExternalPorts::kDlpSimulatorPath);
        return std::unique_ptr<DlpSimulatorTransport>(
            qobject_cast<DlpSimulatorTransport*>(ExternalPorts::makeTransport(core.ports(), n, &error)));
    }

    TempSettings settings;
    RecordingSpeechOut speech;
    AppCore core;
};

RomImage romWithFuelMap(std::uint8_t cell)
{
    RomImage image = vexorin::sim::makeSyntheticRom();
    std::fill(image.begin() + 0x7D00, image.begin() + 0x7E00, cell);
    return image;
}

bool writeRom(const QString& path, const RomImage& image, qsizetype size = qsizetype(vexorin::sim::EcuSimulator::kRomSize))
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) &&
           f.write(reinterpret_cast<const char*>(image.data()), size) == size;
}

// Channel 1 through the transport, as the External Gauge Monitor asks for it.
QByteArray askChannel1(DlpSimulatorTransport& dlp)
{
    dlp.write(QByteArrayLiteral("Z"));
    QByteArray reply;
    QElapsedTimer wait;
    wait.start();
    while (!reply.endsWith('V') && wait.elapsed() < 1000) {
        reply += dlp.readAll();
        if (!reply.endsWith('V'))
            QTest::qWait(1);
    }
    return reply;
}
}  // namespace

class SimulatorRowsTest : public QObject {
    Q_OBJECT
private slots:
    void bothRowsDriveOneEngine();
    void settingsReachTheCar();
    void romFileThatCannotBeServedIsNoted();
    void oneClockForBothRows();
    void freshCarOnceBothRowsAreClosed();
    void ecuRowOnTheExternalPortIsACarOfItsOwn();
};

void SimulatorRowsTest::bothRowsDriveOneEngine()
{
    RowsRig r;
    auto ecu = r.ecuRow();
    auto dlp = r.dlpRow();
    QVERIFY(ecu && dlp);
    vexorin::sim::SimulatedCar& car = ecu->car();
    QCOMPARE(&dlp->car(), &car);
    QCOMPARE(&ecu->ecu(), &car.ecu());
    QCOMPARE(&dlp->dlp(), &car.dlp());

    QVERIFY(ecu->open(nullptr));
    QVERIFY(dlp->open(nullptr));
    // What the ECU row does to the engine, the DLP row's channel 1 reads.
    ecu->ecu().forcePhase(EnginePhase::Rev);
    bool matched = false;
    for (int attempt = 0; attempt < 10 && !matched; ++attempt) {
        const QByteArray reading = askChannel1(*dlp);
        QVERIFY2(QRegularExpression(QStringLiteral("^[0-5]\\.\\d\\dV$")).match(QString::fromLatin1(reading)).hasMatch(),
                 reading.constData());
        matched = reading == QByteArray::fromStdString(vexorin::sim::DlpSimulator::formatReading(car.widebandVolts()));
    }
    QVERIFY(matched);

    // Still the same car once a row has been closed and opened again.
    ecu.reset();
    auto again = r.ecuRow();
    QCOMPARE(&again->car(), &dlp->car());
    QVERIFY(again->ecu().phaseForced());
}

void SimulatorRowsTest::settingsReachTheCar()
{
    RowsRig r;
    QTemporaryDir dir;
    const QString bin = dir.filePath(QStringLiteral("tuned.bin"));
    const RomImage rom = romWithFuelMap(43);
    QVERIFY(writeRom(bin, rom));
    writeSetting(*r.settings.store, Settings::SimulatorFuelError, QStringLiteral("8.5"));
    writeSetting(*r.settings.store, Settings::SimulatorRomFile, bin);
    auto dlp = r.dlpRow();
    QVERIFY(dlp);
    QCOMPARE(dlp->car().fuelError(), 8.5);
    QVERIFY(dlp->car().ecu().rom() == rom);
    QCOMPARE(QString::fromStdString(dlp->car().romFile()), bin);

    // Read again when a row opens: the ECU row after a change of the settings.
    writeSetting(*r.settings.store, Settings::SimulatorFuelError, QStringLiteral("-3"));
    writeSetting(*r.settings.store, Settings::SimulatorRomFile, QString());
    auto ecu = r.ecuRow();
    QCOMPARE(&ecu->car(), &dlp->car());
    QCOMPARE(ecu->car().fuelError(), -3.0);
    QVERIFY(ecu->ecu().rom() == vexorin::sim::makeSyntheticRom());
    QVERIFY(ecu->car().romFile().empty());

    // A fuel error that is no number ('.' is the decimal mark) runs the engine right.
    writeSetting(*r.settings.store, Settings::SimulatorFuelError, QStringLiteral("8,5"));
    auto other = r.ecuRow();
    QCOMPARE(other->car().fuelError(), 0.0);
    QVERIFY(r.core.log().messages().isEmpty());
}

void SimulatorRowsTest::romFileThatCannotBeServedIsNoted()
{
    RowsRig r;
    QTemporaryDir dir;
    const QString bin = dir.filePath(QStringLiteral("short.bin"));
    QVERIFY(writeRom(bin, romWithFuelMap(43), 30000));
    writeSetting(*r.settings.store, Settings::SimulatorRomFile, bin);
    auto ecu = r.ecuRow();
    QVERIFY(ecu);
    QVERIFY(ecu->ecu().rom() == vexorin::sim::makeSyntheticRom());
    QCOMPARE(r.core.log().messages().size(), 1);
    const QString line = r.core.log().messages().constFirst();
    QVERIFY2(line.contains(bin) && line.contains(QStringLiteral("30000 bytes")) &&
                 line.contains(QStringLiteral("its own ROM")),
             qPrintable(line));
}

void SimulatorRowsTest::oneClockForBothRows()
{
    SimulatorTransport ecu;
    DlpSimulatorTransport dlp;
    QVERIFY(ecu.open(nullptr));
    QVERIFY(dlp.open(nullptr));
    QElapsedTimer real;
    real.start();
    const std::int64_t start = ecu.car().nowMs();
    while (real.elapsed() < 300) {
        ecu.bytesAvailable();
        dlp.bytesAvailable();
        QTest::qWait(5);
    }
    ecu.bytesAvailable();
    const std::int64_t moved = ecu.car().nowMs() - start;
    const qint64 passed = real.elapsed();
    QVERIFY2(moved >= 280 && moved <= passed + 5, qPrintable(QStringLiteral("%1 ms in %2 ms").arg(moved).arg(passed)));
}

void SimulatorRowsTest::freshCarOnceBothRowsAreClosed()
{
    auto ecu = std::make_unique<SimulatorTransport>();
    auto dlp = std::make_unique<DlpSimulatorTransport>();
    ecu->car().setFuelError(5);
    ecu->ecu().forcePhase(EnginePhase::Drive);
    dlp->dlp().holdVolts(2, 1.0);

    ecu.reset();
    auto second = std::make_unique<SimulatorTransport>();
    QCOMPARE(&second->car(), &dlp->car());
    QCOMPARE(second->car().fuelError(), 5.0);

    second.reset();
    dlp.reset();
    auto freshDlp = std::make_unique<DlpSimulatorTransport>();
    auto freshEcu = std::make_unique<SimulatorTransport>();
    QCOMPARE(&freshEcu->car(), &freshDlp->car());
    QCOMPARE(freshEcu->car().fuelError(), 0.0);
    QVERIFY(!freshEcu->ecu().phaseForced());
    QVERIFY(freshDlp->dlp().volts(2) != 1.0);
    QVERIFY(freshEcu->car().nowMs() < 1000);
}

void SimulatorRowsTest::ecuRowOnTheExternalPortIsACarOfItsOwn()
{
    RowsRig r;
    auto consult = r.ecuRow();
    QString error;
    const int n = r.core.ports().numberFor(PortCatalog::kSimulatorPath);
    std::unique_ptr<SerialTransport> external(ExternalPorts::makeTransport(r.core.ports(), n, &error));
    auto* ecu = qobject_cast<SimulatorTransport*>(external.get());
    QVERIFY(ecu);
    QVERIFY(&ecu->car() != &consult->car());
}

QTEST_MAIN(SimulatorRowsTest)
#include "simulator_rows_test.moc"
