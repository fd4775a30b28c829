// End to end: vexorin-ecu-sim serving a BIN file as its ROM, with a fuel
// error, and the DLP-IO8-G of the same engine on a second pseudo-terminal;
// channel 1 read through a real serial port gives the engine's wideband.
#include "sim/ecu_simulator.h"
#include "sim_process.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSerialPort>
#include <QTemporaryDir>
#include <QTest>
#include <unistd.h>

namespace {
// The simulator's own ROM with 14.70 AFR in every cell of the Fuel (High Octane) map.
QByteArray stoichRom()
{
    const auto rom = vexorin::sim::makeSyntheticRom();
    QByteArray bytes(reinterpret_cast<const char*>(rom.data()), qsizetype(rom.size()));
    for (int i = 0x7D00; i < 0x7E00; ++i)
        bytes[i] = 0;
    return bytes;
}

// One request letter, one "d.ddV" reading.
QByteArray ask(QSerialPort& port, char letter)
{
    port.write(QByteArray(1, letter));
    port.waitForBytesWritten(1000);
    QByteArray reply;
    QDeadlineTimer deadline(2000);
    while (!reply.endsWith('V') && !deadline.hasExpired()) {
        port.waitForReadyRead(50);
        reply += port.readAll();
    }
    return reply;
}
}  // namespace

class PtyWidebandTest : public QObject {
    Q_OBJECT
private slots:
    void dlpLinkReadsTheEnginesWideband();
};

void PtyWidebandTest::dlpLinkReadsTheEnginesWideband()
{
    QTemporaryDir dir;
    const QString bin = dir.filePath(QStringLiteral("stoich.bin"));
    QFile f(bin);
    QVERIFY(f.open(QIODevice::WriteOnly));
    QCOMPARE(f.write(stoichRom()), qint64(vexorin::sim::EcuSimulator::kRomSize));
    f.close();
    const QString link = dir.filePath(QStringLiteral("dlp"));

    SimProcess sim({QStringLiteral("--fuel-error"), QStringLiteral("8"), QStringLiteral("--rom"), bin,
                    QStringLiteral("--dlp-link"), link});
    QVERIFY2(!sim.path().isEmpty(), "the simulator did not start");
    QVERIFY(QFile::symLinkTarget(link).startsWith(QStringLiteral("/dev/pts/")));

    QSerialPort port(link);
    port.setBaudRate(115200);
    QVERIFY2(port.open(QIODevice::ReadWrite), qPrintable(port.errorString()));
    const QRegularExpression reading(QStringLiteral("^\\d\\.\\d\\dV$"));
    const QByteArray wideband = ask(port, 'Z');
    QVERIFY2(reading.match(QString::fromLatin1(wideband)).hasMatch(), wideband.constData());
    // 14.70 AFR run 8 % lean, with the alpha near 100 of a fresh engine: about 15.9 AFR, 2.9 V.
    const double volts = wideband.chopped(1).toDouble();
    QVERIFY2(volts > 2.6 && volts < 3.2, wideband.constData());
    const QByteArray boost = ask(port, 'X');
    QVERIFY2(reading.match(QString::fromLatin1(boost)).hasMatch(), boost.constData());
    port.close();

    sim.stop();
    QVERIFY(!QFileInfo(link).isSymLink());
}

QTEST_MAIN(PtyWidebandTest)
#include "pty_wideband_test.moc"
