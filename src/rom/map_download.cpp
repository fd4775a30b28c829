// Reading one map from the ECU: the scales first, then the map's bank, eight
// addresses a request, one request a tick. The walk through the addresses is
// MapReadWalk; a request is a cycle the link owner runs.
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/link_writes.h"
#include "consult/read_plans.h"
#include "consult/session_log.h"
#include "rom/map_viewer.h"

#include <QTimer>

using namespace vexorin::rom;

namespace {
const QString kViewingEcu = QStringLiteral("Viewing : ECU Data");
}  // namespace

bool MapViewer::portAndMonitorAllowDownload(bool testMonitor)
{
    QString why;
    const unsigned needs = LinkOwner::Connected | (testMonitor ? LinkOwner::MonitoringOff : 0u);
    if (session_.owner().mayUse(needs, &why))
        return true;
    emit message(why, false);
    return false;
}

void MapViewer::stopAllMapTimers()
{
    for (QTimer& timer : mapTimers)
        timer.stop();
}

void MapViewer::DownloadButton(int t)
{
    trace_.setOn(false);  // the download takes the link from the trace
    session_.owner().whenFree(this, [this, t] {
        if (portAndMonitorAllowDownload(true))
            startDownload(t, true);
    });
}

void MapViewer::DownloadMapData()
{
    trace_.setOn(false);
    session_.owner().whenFree(this, [this] {
        if (portAndMonitorAllowDownload(false))
            startDownload(currentTab_, false);
    });
}

void MapViewer::startDownload(int t, bool fromButton)
{
    Tab& tab = mutableTab(t);
    tab.clearMatrixEnabled = false;
    // Every tab follows the first tab's check box.
    if (tabs_[0].clearMatrixBeforeDownload)
        rebuildGrid(t, tab.grid.fixedColumn, tab.grid.row, tab.grid.column);
    setCell(t, 0, 0, QString::fromLatin1(MapGrid::kCorner));
    tab.grid.row = 1;
    tab.grid.column = 0;
    walk_.restart();
    loadAllNext_ = kTabs;
    if (fromButton) {
        editModeOff(t);
        tab.grid.enabled = false;
        setViewing(t, kViewingEcu);
    }
    emit tabChanged(t);
    mapTimers[std::size_t(t)].start();
    MapStatusTimer.stop();
}

void MapViewer::ActivationByteTest()
{
    session_.owner().whenFree(this, [this] {
        QString why;
        if (!session_.owner().mayUse(LinkOwner::Connected, &why)) {
            emit message(why, false);
            return;
        }
        for (std::uint8_t b : vexorin::consult::kActivationByteTest)
            session_.link().Output({int(b)});
    });
}

void MapViewer::StopDataFlow()
{
    session_.owner().whenFree(this, [this] { stopDataFlowNow(); });
}

void MapViewer::stopDataFlowNow()
{
    if (!portAndMonitorAllowDownload(true))
        return;
    stopAllMapTimers();
    loadAllNext_ = kTabs;
    session_.link().Output({vexorin::consult::kCmdStop});
    MapStatusTimer.start();
    setProgress(0);
    setStatus(QStringLiteral("Stopped!"));
}

void MapViewer::MapStatusTimerTick()
{
    setStatus(kRestStatus);
    MapStatusTimer.stop();
}

void MapViewer::MapTimerTick(int t)
{
    if (session_.owner().busy())
        return;
    for (int other = 0; other < kTabs; ++other)
        if (other != t)
            mapTimers[std::size_t(other)].stop();
    readStep(t);
}

void MapViewer::LoadAllECUDataMaps()
{
    session_.owner().whenFree(this, [this] {
        for (int t = 0; t < kTabs; ++t) {
            editModeOff(t);
            setViewing(t, kViewingEcu);
            rebuildGrid(t, true, 1, 1);
        }
        MapStatusTimer.stop();
        loadAllNext_ = 0;
        continueLoadAll();
    });
}

// One read step for each tab in turn, each after the one before has ended.
void MapViewer::continueLoadAll()
{
    while (loadAllNext_ < kTabs && !session_.owner().busy())
        readStep(loadAllNext_++);
}

void MapViewer::downloadTimedOut()
{
    stopAllMapTimers();
    MapStatusTimer.start();
    setProgress(0);
    setStatus(QStringLiteral("Stopped! No reply from the ECU."));
    session_.log().AddLogMessage(vexorin::consult::timeoutMessage());
}

void MapViewer::scalesDone(int t)
{
    setProgress(0);
    MapGrid& grid = mutableTab(t).grid;
    grid.row = 1;
    grid.column = 1;
}

void MapViewer::scaleByte(int t, bool rpm, int value)
{
    MapGrid& grid = mutableTab(t).grid;
    if (rpm) {
        setCell(t, grid.row, grid.column, QString::number(value * kRpmPerStep));
        ++grid.row;
    } else {
        ++grid.column;
        setCell(t, grid.row, grid.column, QString::number(value));
    }
}

void MapViewer::mapByte(int t, int value, int progress)
{
    const MapSpec& map = kMaps[std::size_t(t)];
    MapGrid& grid = mutableTab(t).grid;
    setCell(t, grid.row, grid.column, QString::fromStdString(formatMapByte(map.fuel, value)));
    setCellColor(t, grid.row, grid.column, mapByteColor(map.fuel, value));
    setProgress(progress);
    if (++grid.column > 16) {
        grid.column = 1;
        ++grid.row;
    }
}

void MapViewer::mapDone(int t)
{
    mapTimers[std::size_t(t)].stop();
    setStatus(QStringLiteral("Done!"));
    setProgress(0);
    MapStatusTimer.start();
    for (int other = 0; other < kTabs; ++other) {
        mutableTab(other).clearMatrixEnabled = true;
        emit tabChanged(other);
    }
}

void MapViewer::readStep(int t)
{
    if (session_.owner().busy())
        return;
    const MapSpec& map = kMaps[std::size_t(t)];
    const MapReadStep step = walk_.next(map.fuel, map.bank);
    switch (step.kind) {
    case MapReadStep::Kind::ScalesDone:
        scalesDone(t);
        return;
    case MapReadStep::Kind::MapDone:
        mapDone(t);
        return;
    case MapReadStep::Kind::Burst:
        break;
    }
    if (step.cursorToCorner) {
        MapGrid& grid = mutableTab(t).grid;
        grid.row = 0;
        grid.column = 0;
    }
    vexorin::consult::Cycle cycle =
        vexorin::consult::burstCycle(vexorin::consult::burstRequest(step.high, step.firstLow), false);
    cycle.pauseMs = pauseMs_;
    session_.owner().run(cycle, this, [this, t, step](const LinkOwner::Reply& reply) {
        if (!reply)
            downloadTimedOut();
        else
            burstArrived(t, step, vexorin::consult::burstData(*reply));
        if (loadAllNext_ < kTabs)
            QTimer::singleShot(0, this, &MapViewer::continueLoadAll);
    });
}

void MapViewer::burstArrived(int t, const MapReadStep& step, const std::array<int, 8>& data)
{
    if (step.scale) {
        for (int value : data)
            scaleByte(t, step.rpm, value);
        setStatus(QStringLiteral("Getting RPM and TP Tables"));
        setProgress(step.lastLow * 8);
        return;
    }
    setStatus(QString::fromLatin1(kMaps[std::size_t(t)].gettingText));
    for (int value : data)
        mapByte(t, value, step.lastLow);
}
