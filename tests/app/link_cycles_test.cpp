// Every kind of read against a silent or a pulled ECU: a click while a read
// is in flight, Disconnect and closing the main window during a read, and a
// cable pulled in the middle of each kind of cycle.
#include "app_rig.h"
#include "consult/consult_link.h"
#include "consult/fault_codes.h"
#include "consult/link_owner.h"
#include "consult/link_writes.h"
#include "consult/session_log.h"
#include "consult/simulator_transport.h"
#include "link_wait.h"
#include "monitor_rig.h"
#include "rom/map_viewer.h"
#include "temp_settings.h"
#include "tools/active_test.h"
#include "tools/bin_file_downloader.h"
#include "tools/register_viewer.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <functional>

namespace {
const QByteArray kStopPair = QByteArray::fromHex("3030");

// A monitor rig with every reader of the link on its session.
struct ReadersRig : MonitorRig {
    ReadersRig() : faults(session), map(session), downloader(session, *settings.store), registers(session),
                   active(session, &stream)
    {
        map.setPauseMs(0);
        downloader.setFileChooser([this] { return dir.filePath(QStringLiteral("rom.bin")); });
    }
    // Connected, identity reads done, the ECU silent from now on.
    void connectSilent()
    {
        connect();
        ecu->silent = true;
        transport->clearWritten();
    }
    int logCount(const QString& line) const { return int(log.messages().count(line)); }
    // Monitoring with the ECU silent: one stream read on the line, its request returned.
    QByteArray streamReadInFlight()
    {
        connect();
        setFrame(FrameData{});
        stream.MonitorOnOff();
        session.GetAllSensorDataTimer.setInterval(60000);  // the test ticks by hand
        ecu->silent = true;
        transport->clearWritten();
        stream.GetAllSensorDataTimerTick();
        return transport->written();
    }

    TempSettings settings;
    QTemporaryDir dir;
    FaultCodes faults;
    MapViewer map;
    BinFileDownloader downloader;
    RegisterViewer registers;
    ActiveTest active;
};

enum class Kind { PartNumber, KValue, FaultCodes, Stream, MapBurst, DownloadBurst, RegisterBurst, CheckActual };

// Starts a read of each kind, as its button or its timer tick does.
void startRead(ReadersRig& r, Kind kind)
{
    switch (kind) {
    case Kind::PartNumber: r.session.ReadECUSerialNumber(); break;
    case Kind::KValue: r.session.ReadKValue(); break;
    case Kind::FaultCodes: r.faults.GetFaultCodes(); break;
    case Kind::Stream:
        r.stream.MonitorOnOff();
        r.session.GetAllSensorDataTimer.setInterval(60000);
        r.stream.GetAllSensorDataTimerTick();
        break;
    case Kind::MapBurst:
        r.map.DownloadButton(0);
        r.map.MapTimerTick(0);
        break;
    case Kind::DownloadBurst:
        r.downloader.DownloadBinFile();
        r.downloader.DownLoadBinFileTimerTick();
        break;
    case Kind::RegisterBurst:
        r.registers.selectBank(128);
        r.registers.FindRegisterHexTimerTick();
        break;
    case Kind::CheckActual: r.active.CheckActual(); break;
    }
}
}  // namespace

class LinkCyclesTest : public QObject {
    Q_OBJECT
private slots:
    void cablePulledInTheMiddleOfACycle_data();
    void cablePulledInTheMiddleOfACycle();
    void monitorOffDuringAReplyOfAWorkingEcu();
    void monitorOffDuringASilentReadTakesEffectAtOnce();
    void disconnectDuringAReadStopsOnce();
    void closingTheMainWindowDuringARead();
    void silentStreamRecoversWithinASecond();
};

void LinkCyclesTest::cablePulledInTheMiddleOfACycle_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("part number") << int(Kind::PartNumber);
    QTest::newRow("K value") << int(Kind::KValue);
    QTest::newRow("fault codes") << int(Kind::FaultCodes);
    QTest::newRow("sensor stream") << int(Kind::Stream);
    QTest::newRow("map burst") << int(Kind::MapBurst);
    QTest::newRow("ROM burst") << int(Kind::DownloadBurst);
    QTest::newRow("register burst") << int(Kind::RegisterBurst);
    QTest::newRow("check actual") << int(Kind::CheckActual);
}

void LinkCyclesTest::cablePulledInTheMiddleOfACycle()
{
    QFETCH(int, kind);
    ReadersRig r;
    r.connectSilent();
    startRead(r, Kind(kind));
    QVERIFY(r.session.owner().busy());
    QVERIFY(!r.transport->written().isEmpty());
    r.transport->unplug(QStringLiteral("Device removed"));
    QTRY_VERIFY(!r.session.owner().busy());
    QTRY_COMPARE(r.session.ConnectedLabel(), QStringLiteral("Disconnected"));
    QVERIFY(!r.link.PortOpen());
    QCOMPARE(r.logCount(QStringLiteral(": Consult port lost (Device removed).")), 1);
    // Nothing keeps reading a port that is gone.
    QTest::qWait(300);
    QVERIFY(!r.session.owner().busy());
    QVERIFY(!r.session.GetAllSensorDataTimer.isActive());
}

void LinkCyclesTest::monitorOffDuringAReplyOfAWorkingEcu()
{
    ReadersRig r;
    // The ECU answers a little later than at once, as on a real line.
    const QByteArray request = r.streamReadInFlight();
    r.stream.MonitorOnOff();  // the click, while the frame is on its way
    QCOMPARE(r.session.MonitorSensorsOnLabel(), QStringLiteral("ON"));
    QTest::qWait(20);
    r.transport->arrive(allSensorsReply(FrameData{}));
    QTRY_COMPARE(r.session.MonitorSensorsOnLabel(), QStringLiteral("OFF"));
    // The request, its stop pair, then the monitor's own stop pair: as before.
    QCOMPARE(r.transport->written(), request + kStopPair + kStopPair);
    QCOMPARE(r.logCount(vexorin::consult::timeoutMessage()), 0);
    QCOMPARE(r.stream.framesDecoded(), qint64(1));
}

void LinkCyclesTest::monitorOffDuringASilentReadTakesEffectAtOnce()
{
    ReadersRig r;
    const QByteArray request = r.streamReadInFlight();
    QElapsedTimer clock;
    clock.start();
    r.stream.MonitorOnOff();
    QTRY_COMPARE_WITH_TIMEOUT(r.session.MonitorSensorsOnLabel(), QStringLiteral("OFF"), 1000);
    QVERIFY2(clock.elapsed() < 300, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(r.transport->written(), request + kStopPair + kStopPair);
    // Abandoned as a time-out: the same one line.
    QCOMPARE(r.logCount(vexorin::consult::timeoutMessage()), 1);
}

void LinkCyclesTest::disconnectDuringAReadStopsOnce()
{
    ReadersRig r;
    r.connectSilent();
    r.session.ReadECUSerialNumber();
    const QByteArray request = r.transport->written();
    QPointer<FakeTransport> port = r.transport;
    r.session.ConnectDisconnect();
    QTRY_COMPARE_WITH_TIMEOUT(r.session.ConnectedLabel(), QStringLiteral("Disconnected"), 1000);
    QVERIFY(!r.session.owner().busy());
    QCOMPARE(r.logCount(QStringLiteral(": Consult Port Disconnected.")), 1);
    // The read's stop pair, then the disconnect's, once; the port is closed after it.
    if (port)
        QCOMPARE(port->written(), request + kStopPair + kStopPair);
    QTest::qWait(2500);
    QCOMPARE(r.logCount(QStringLiteral(": Consult Port Disconnected.")), 1);
    QVERIFY(!r.session.owner().busy());
}

void LinkCyclesTest::closingTheMainWindowDuringARead()
{
    AppRig r;
    r.open();
    QVERIFY(r.connectToSimulator());
    auto* sim = qobject_cast<SimulatorTransport*>(r.core.link().transport());
    QVERIFY(sim);
    sim->ecu().setFaults({true, false, false});  // silent
    r.core.session().ReadECUSerialNumber();
    QVERIFY(r.core.session().owner().busy());
    QElapsedTimer clock;
    clock.start();
    r.window->close();
    QVERIFY2(clock.elapsed() < 500, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(!r.core.session().owner().busy());
    QVERIFY(!r.core.link().PortOpen());
    QCOMPARE(r.core.log().messages().count(QStringLiteral(": Consult Port Disconnected.")), 1);
    QTest::qWait(200);
    QCOMPARE(r.core.log().messages().count(QStringLiteral(": Consult Port Disconnected.")), 1);
}

void LinkCyclesTest::silentStreamRecoversWithinASecond()
{
    ReadersRig r;
    r.connect();
    r.setFrame(FrameData{});
    r.stream.MonitorOnOff();  // the stream's own 100 ms timer runs
    QTRY_VERIFY(r.stream.framesDecoded() > 0);
    r.ecu->silent = true;
    QTRY_COMPARE_WITH_TIMEOUT(r.logCount(vexorin::consult::timeoutMessage()), 1, 3000);
    QTest::qWait(1000);  // probing all the while, one line for the outage
    QCOMPARE(r.logCount(vexorin::consult::timeoutMessage()), 1);
    const qint64 before = r.stream.framesDecoded();
    QElapsedTimer clock;
    clock.start();
    r.ecu->silent = false;
    QTRY_VERIFY_WITH_TIMEOUT(r.stream.framesDecoded() > before, 1500);
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    r.stream.MonitorOnOff();
}

QTEST_MAIN(LinkCyclesTest)
#include "link_cycles_test.moc"
