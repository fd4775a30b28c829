// Live Trace in the Map Viewer against the built-in simulated ECU: its
// refusals, the stream it asks for, the one stop byte that ends it on each
// occasion, the status text, and the cells the simulated engine visits.
#include "consult/consult_session.h"
#include "consult/link_owner.h"
#include "map_rig.h"
#include "rom/rules/live_trace.h"
#include "rom/map_trace.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <set>

using namespace vexorin::rom;

namespace {
const QByteArray kTraceRequest = QByteArray::fromHex("5a005a015a045a05f0");

struct TraceRig : MapRig {
    // Connected, the simulator's ROM loaded, nothing written yet since.
    void ready()
    {
        connect();
        QTRY_COMPARE(session.ConnectedLabel(), QStringLiteral("Connected"));
        QTRY_VERIFY(!session.GetSerialNumberKValue.isActive());  // the identity reads are over
        writeBin(path);
        QVERIFY(viewer.LoadBinFile(path));
        sim->written.clear();
    }
    void traceOn()
    {
        viewer.setLiveTrace(true);
        QVERIFY(viewer.trace().isOn());
        QCOMPARE(sim->written, kTraceRequest);
        QTRY_VERIFY(viewer.trace().frames() > 3);
    }
    // What went on the wire after the trace's request.
    QByteArray afterRequest() const { return sim->written.mid(kTraceRequest.size()); }
};
}  // namespace

class MapTraceTest : public QObject {
    Q_OBJECT
private slots:
    void refusedWhenDisconnected();
    void refusedWhileMonitoring();
    void refusedWithoutABinFile();
    void streamsEngineSpeedAndAirFlowAndSaysWhereTheEngineIs();
    void switchedOffWithOneStopByte();
    void downloadSwitchesTheTraceOffFirst();
    void disconnectEndsTheTrace();
    void pulledCableEndsTheTrace();
    void scaleComesFromItsSourceEachTimeTheTraceGoesOn();
    void simulatedEngineVisitsSixCellsWithinThirtySeconds();
    void trailFadesAndNeighboursAreShaded();
};

void MapTraceTest::refusedWhenDisconnected()
{
    TraceRig rig;
    rig.writeBin(rig.path);
    QVERIFY(rig.viewer.LoadBinFile(rig.path));
    QSignalSpy switched(&rig.viewer.trace(), &MapTrace::switched);
    rig.viewer.setLiveTrace(true);
    QCOMPARE(rig.messages, QStringList{QStringLiteral("Consult port not connected.")});
    QVERIFY(!rig.viewer.trace().isOn());
    QCOMPARE(switched.count(), 1);
    QCOMPARE(switched.at(0).at(0).toBool(), false);
    QCOMPARE(rig.viewer.status(), QStringLiteral("Map Status"));
}

void MapTraceTest::refusedWhileMonitoring()
{
    TraceRig rig;
    rig.ready();
    rig.session.setMonitorSensorsOnLabel(QStringLiteral("ON"));
    rig.viewer.setLiveTrace(true);
    QCOMPARE(rig.messages, QStringList{QStringLiteral("Sensor monitoring must be off.")});
    QVERIFY(!rig.viewer.trace().isOn());
    QVERIFY(rig.sim->written.isEmpty());
}

void MapTraceTest::refusedWithoutABinFile()
{
    TraceRig rig;
    rig.connect();
    QTRY_COMPARE(rig.session.ConnectedLabel(), QStringLiteral("Connected"));
    QTRY_VERIFY(!rig.session.GetSerialNumberKValue.isActive());
    rig.sim->written.clear();
    rig.viewer.setLiveTrace(true);
    QCOMPARE(rig.messages, QStringList{QStringLiteral("File not loaded. Please load a BIN file first.")});
    QVERIFY(!rig.viewer.trace().isOn());
    QVERIFY(rig.sim->written.isEmpty());
}

void MapTraceTest::streamsEngineSpeedAndAirFlowAndSaysWhereTheEngineIs()
{
    TraceRig rig;
    rig.ready();
    rig.traceOn();
    QVERIFY(rig.session.owner().streaming());
    // The status is the last frame's point, on the tab on view.
    const auto point = rig.viewer.trace().point();
    QVERIFY(point.has_value());
    static const QRegularExpression form(QStringLiteral("^Trace: RPM \\d+ row \\d+, TP \\d+\\.\\d column \\d+$"));
    QVERIFY2(form.match(rig.viewer.status()).hasMatch(), qPrintable(rig.viewer.status()));
    QCOMPARE(rig.viewer.status(), QString::fromStdString(traceStatus(*point, true)));
    // The simulated engine idles at about 750 rpm: the row of 800 (row 2 of the simulator's scale).
    QVERIFY2(point->rpm > 500 && point->rpm < 1100, qPrintable(QString::number(point->rpm)));
    QCOMPARE(point->row, 2);
    // On a timing tab the column is the timing scale's.
    rig.viewer.setCurrentTab(4);
    QVERIFY(rig.viewer.status().endsWith(
        QStringLiteral("column %1").arg(rig.viewer.trace().point()->timingColumn))
            || rig.viewer.status().contains(QStringLiteral("(fixed VQ curve)")));
    // Nothing but the request went out while the frames came.
    QTRY_VERIFY(rig.viewer.trace().frames() > 20);
    QCOMPARE(rig.sim->written, kTraceRequest);
    rig.viewer.setLiveTrace(false);
}

void MapTraceTest::switchedOffWithOneStopByte()
{
    TraceRig rig;
    rig.ready();
    rig.traceOn();
    QSignalSpy switched(&rig.viewer.trace(), &MapTrace::switched);
    rig.viewer.setLiveTrace(false);
    QCOMPARE(rig.afterRequest(), QByteArray(1, char(48)));
    QVERIFY(!rig.viewer.trace().isOn());
    QVERIFY(!rig.session.owner().busy());
    QCOMPARE(switched.count(), 1);
    QCOMPARE(rig.viewer.status(), QStringLiteral("Map Status"));
    // Switching off again sends nothing more.
    rig.viewer.setLiveTrace(false);
    QCOMPARE(rig.afterRequest(), QByteArray(1, char(48)));
    // The link serves a download afterwards: it reads the simulator's map.
    rig.download(0);
    QCOMPARE(rig.viewer.status(), QStringLiteral("Done!"));
}

void MapTraceTest::downloadSwitchesTheTraceOffFirst()
{
    TraceRig rig;
    rig.ready();
    rig.traceOn();
    rig.viewer.DownloadButton(0);
    QVERIFY(!rig.viewer.trace().isOn());
    // One stop byte, then the download's first burst.
    QCOMPARE(rig.afterRequest().left(1), QByteArray(1, char(48)));
    QVERIFY(rig.viewer.mapTimers[0].isActive());
    rig.viewer.MapTimerTick(0);
    QTRY_VERIFY(rig.afterRequest().size() > 1);
    QCOMPARE(quint8(rig.afterRequest().at(1)), quint8(0xC9));
    QVERIFY(!rig.afterRequest().mid(1).contains(char(0x5A)));
    rig.viewer.StopDataFlow();
}

void MapTraceTest::disconnectEndsTheTrace()
{
    TraceRig rig;
    rig.ready();
    rig.traceOn();
    rig.session.ConnectDisconnect();
    QVERIFY(!rig.viewer.trace().isOn());
    QCOMPARE(rig.session.ConnectedLabel(), QStringLiteral("Disconnected"));
    // The trace's own stop byte comes first; the disconnect's own stop bytes follow it.
    QVERIFY(rig.afterRequest().startsWith(char(48)));
    QVERIFY(rig.afterRequest().count(char(48)) == rig.afterRequest().size());
    QCOMPARE(rig.viewer.status(), QStringLiteral("Map Status"));
}

void MapTraceTest::pulledCableEndsTheTrace()
{
    TraceRig rig;
    rig.ready();
    rig.traceOn();
    emit rig.sim->lost(QStringLiteral("Device removed"));
    QTRY_VERIFY(!rig.viewer.trace().isOn());
    QTRY_COMPARE(rig.session.ConnectedLabel(), QStringLiteral("Disconnected"));
    QVERIFY(!rig.session.owner().busy());
    QCOMPARE(rig.viewer.status(), QStringLiteral("Map Status"));
}

void MapTraceTest::scaleComesFromItsSourceEachTimeTheTraceGoesOn()
{
    TraceRig rig;
    rig.ready();
    double setting = 512;
    rig.viewer.trace().setScaleSource([&setting] { return setting; });
    rig.traceOn();
    QCOMPARE(rig.viewer.trace().scale(), 512.0);
    const TracePoint p = *rig.viewer.trace().point();
    rig.viewer.setLiveTrace(false);
    // The same engine state at twice the scale gives half the load.
    const TraceTables tables = traceTables(rig.onDisk());
    const TracePoint at512 = tracePoint(tables, p.rpm, 150, 512);
    const TracePoint at1024 = tracePoint(tables, p.rpm, 150, 1024);
    QCOMPARE(at1024.tp * 2, at512.tp);
    setting = -3;  // not a usable scale: the default
    rig.sim->written.clear();
    rig.traceOn();
    QCOMPARE(rig.viewer.trace().scale(), kDefaultTraceScale);
    rig.viewer.setLiveTrace(false);
}

void MapTraceTest::simulatedEngineVisitsSixCellsWithinThirtySeconds()
{
    TraceRig rig;
    rig.ready();
    const std::int64_t start = rig.sim->ecu().elapsedMs();
    std::set<std::pair<int, int>> cells;
    QObject::connect(&rig.viewer.trace(), &MapTrace::moved, [&] {
        const TracePoint& p = *rig.viewer.trace().point();
        cells.insert({p.row, p.fuelColumn});
    });
    rig.traceOn();
    // Thirty seconds of the engine's own time, left to itself, passed quickly.
    while (rig.sim->ecu().elapsedMs() - start < 30000) {
        rig.sim->ecu().advance(50);
        QTest::qWait(5);
        QVERIFY(rig.viewer.trace().isOn());
    }
    rig.viewer.setLiveTrace(false);
    QVERIFY2(cells.size() >= 6, qPrintable(QString::number(cells.size())));
}

void MapTraceTest::trailFadesAndNeighboursAreShaded()
{
    TraceRig rig;
    rig.ready();
    qint64 now = 0;
    rig.viewer.trace().setClock([&now] { return now; });
    rig.traceOn();
    TraceMarks m = rig.viewer.trace().marks(true);
    QVERIFY(m.on);
    QCOMPARE(m.row, rig.viewer.trace().point()->row);
    QCOMPARE(m.column, rig.viewer.trace().point()->fuelColumn);
    for (const TraceMarks::Cell& n : m.neighbours)
        QVERIFY(n.weight > 0 && n.weight <= 0.5);
    // Rev the engine: the cells left behind make the trail, newest strongest.
    rig.sim->ecu().forcePhase(vexorin::sim::EnginePhase::Rev);
    for (int i = 0; i < 40 && m.trail.size() < 2; ++i) {
        rig.sim->ecu().advance(200);
        now += 40;
        QTest::qWait(10);
        m = rig.viewer.trace().marks(true);
    }
    QVERIFY(m.trail.size() >= 2);
    QVERIFY(m.trail.front().weight >= m.trail.back().weight);
    for (const TraceMarks::Cell& c : m.trail) {
        QVERIFY(c.weight > 0 && c.weight <= 1);
        QVERIFY(!(c.row == m.row && c.column == m.column));
    }
    // Older than two seconds, the trail is gone; the traced cell stays.
    now += 2001;
    m = rig.viewer.trace().marks(true);
    QVERIFY(m.trail.empty());
    QVERIFY(m.row > 0);
    rig.viewer.setLiveTrace(false);
    QVERIFY(!rig.viewer.trace().marks(true).on);
}

QTEST_MAIN(MapTraceTest)
#include "map_trace_test.moc"
