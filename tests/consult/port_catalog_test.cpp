// Serial ports on Linux: stable by-id names keep their COM numbers, the
// latency report, and why a real port would not open.
#include "consult/fake_transport.h"
#include "consult/port_catalog.h"
#include "consult/qt_serial_transport.h"
#include "session_rig.h"
#include "sim_process.h"
#include "temp_settings.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {
const QString kStable = QStringLiteral("/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0");

// A device whose driver took the low-latency flag, as a USB adapter's does.
class LowLatencyTransport : public FakeTransport {
public:
    QString openNote() const override { return QStringLiteral("/dev/ttyUSB0 opened with the kernel's low-latency flag."); }
};
}  // namespace

class PortCatalogTest : public QObject {
    Q_OBJECT
private slots:
    void usbAdaptersGoByTheirStableNames();
    void aPortNumberedUnderItsKernelNameKeepsItsNumber();
    void latencyReportShowsEachAdaptersTimer();
    void latencyReportWithNothingPluggedIn();
    void aMissingDeviceIsExplainedInTheSessionLog();
    void aPortOpenTwiceIsNamedAsVexorinsOwn();
    void aPseudoTerminalOpensWithoutALowLatencyNote();
    void lowLatencyGetsOneLineInTheSessionLog();
};

void PortCatalogTest::usbAdaptersGoByTheirStableNames()
{
    TempSettings t;
    PortCatalog c(*t.store);
    c.setSystemPorts([] { return QList<SystemPort>{{kStable, "FT232R USB UART", "/dev/ttyUSB0"}}; });
    QCOMPARE(c.devices(true).first().friendlyName, QStringLiteral("FT232R USB UART - ") + kStable + QStringLiteral(" (COM1)"));
    // Plugged in again as ttyUSB1, it is still COM1.
    c.setSystemPorts([] {
        return QList<SystemPort>{{"/dev/ttyS0", "", ""}, {kStable, "FT232R USB UART", "/dev/ttyUSB1"}};
    });
    const auto d = c.devices(true);
    QCOMPARE(d[0].friendlyName, QStringLiteral("Serial Port - /dev/ttyS0 (COM3)"));  // COM2 is the simulator's
    QCOMPARE(d[1].friendlyName, QStringLiteral("FT232R USB UART - ") + kStable + QStringLiteral(" (COM1)"));
    QCOMPARE(c.pathFor(1), kStable);
}

void PortCatalogTest::aPortNumberedUnderItsKernelNameKeepsItsNumber()
{
    TempSettings t;
    t.store->WriteSetting(QStringLiteral("PortAssignments"), QStringLiteral("COM1"), QStringLiteral("/dev/ttyS0"));
    t.store->WriteSetting(QStringLiteral("PortAssignments"), QStringLiteral("COM4"), QStringLiteral("/dev/ttyUSB0"));
    PortCatalog c(*t.store);
    c.setSystemPorts([] { return QList<SystemPort>{{kStable, "FT232R USB UART", "/dev/ttyUSB0"}}; });
    const auto d = c.devices(true);
    QCOMPARE(d[0].friendlyName, QStringLiteral("FT232R USB UART - ") + kStable + QStringLiteral(" (COM4)"));
    QCOMPARE(c.pathFor(4), kStable);
    QCOMPARE(c.pathFor(1), QStringLiteral("/dev/ttyS0"));
}

void PortCatalogTest::latencyReportShowsEachAdaptersTimer()
{
    QTemporaryDir sys;
    QVERIFY(QDir(sys.path()).mkpath(QStringLiteral("class/tty/ttyUSB0/device")));
    QFile timer(sys.filePath(QStringLiteral("class/tty/ttyUSB0/device/latency_timer")));
    QVERIFY(timer.open(QIODevice::WriteOnly));
    timer.write("16\n");
    timer.close();
    TempSettings t;
    PortCatalog c(*t.store);
    c.setSystemPorts([] { return QList<SystemPort>{{kStable, "FT232R USB UART", "/dev/ttyUSB0"}, {"/dev/ttyS0", "", ""}}; });
    const QStringList lines = c.latencyReport(sys.path()).split(QLatin1Char('\n'));
    QCOMPARE(lines.value(0), QStringLiteral("FT232R USB UART (COM1): latency timer 16 ms (") + kStable + QStringLiteral(")."));
    QCOMPARE(lines.value(1), QStringLiteral("Serial Port (COM2): no latency timer (/dev/ttyS0)."));
    QVERIFY(lines.value(3).contains(QStringLiteral("low-latency flag")));
    QVERIFY(lines.value(4).contains(QStringLiteral("latency_timer")));
    QVERIFY(lines.value(4).contains(QStringLiteral("udev rule")));

    // At 1 ms there is nothing to advise.
    QVERIFY(timer.open(QIODevice::WriteOnly | QIODevice::Truncate));
    timer.write("1\n");
    timer.close();
    const QString fast = c.latencyReport(sys.path());
    QVERIFY(fast.startsWith(QStringLiteral("FT232R USB UART (COM1): latency timer 1 ms")));
    QVERIFY(!fast.contains(QStringLiteral("udev rule")));
}

void PortCatalogTest::latencyReportWithNothingPluggedIn()
{
    TempSettings t;
    PortCatalog c(*t.store);
    c.setSystemPorts([] { return QList<SystemPort>{}; });
    QCOMPARE(c.latencyReport(), QStringLiteral("No serial device is plugged in."));
}

void PortCatalogTest::aMissingDeviceIsExplainedInTheSessionLog()
{
    QTemporaryDir dir;
    const QString missing = dir.filePath(QStringLiteral("ttyUSB9"));
    TempSettings t;
    t.store->WriteSetting(QStringLiteral("ExtraPorts"), QStringLiteral("cable"), missing);
    PortCatalog catalog(*t.store);
    catalog.setSystemPorts([] { return QList<SystemPort>{}; });
    QCOMPARE(catalog.devices(true).first().instance, missing);
    SessionRig rig([&catalog](int n, QString* e) { return catalog.makeTransport(n, e); });
    QStringList boxes;
    QObject::connect(&rig.session, &ConsultSession::message, [&boxes](const QString& m) { boxes << m; });
    rig.link.setCommPort(1);
    rig.session.ConnectDisconnect();
    QCOMPARE(rig.session.ConnectedLabel(), QStringLiteral("Disconnected"));
    QCOMPARE(boxes.size(), 1);  // the box keeps its own text
    QVERIFY(!boxes.first().contains(missing));
    const QString expected = QStringLiteral(": Could not open Consult port 1: ") + missing +
        QStringLiteral(" is not there: the adapter is unplugged or was renamed; plug it in, then pick its port "
                       "again under \"Ports\".");
    QVERIFY2(rig.log.messages().contains(expected), qPrintable(rig.log.messages().join(QLatin1Char('\n'))));
}

void PortCatalogTest::aPortOpenTwiceIsNamedAsVexorinsOwn()
{
    SimProcess sim;
    QVERIFY(!sim.path().isEmpty());
    QtSerialTransport first(sim.path());
    QString error;
    QVERIFY2(first.open(&error), qPrintable(error));
    QtSerialTransport second(sim.path());
    QVERIFY(!second.open(&error));
    QCOMPARE(error, sim.path() + QStringLiteral(" is already open in Vexorin on its other port; pick another port for this one."));
}

void PortCatalogTest::aPseudoTerminalOpensWithoutALowLatencyNote()
{
    SimProcess sim;
    QVERIFY(!sim.path().isEmpty());
    QtSerialTransport port(sim.path());
    QString error;
    QVERIFY2(port.open(&error), qPrintable(error));
    QCOMPARE(port.openNote(), QString());  // the driver of a pseudo-terminal has no such flag
}

void PortCatalogTest::lowLatencyGetsOneLineInTheSessionLog()
{
    SessionRig rig([](int, QString*) { return new LowLatencyTransport; });
    rig.link.setCommPort(3);
    rig.session.ConnectDisconnect();
    QVERIFY(rig.link.PortOpen());
    QCOMPARE(rig.log.messages().filter(QStringLiteral("low-latency")),
             QStringList{QStringLiteral(": Consult port 3: /dev/ttyUSB0 opened with the kernel's low-latency flag.")});
    rig.session.ConnectDisconnect();
}

QTEST_MAIN(PortCatalogTest)
#include "port_catalog_test.moc"
