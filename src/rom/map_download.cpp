// Reading one map from the ECU: the scales first, then the map's bank, eight
// addresses a request, one request a tick.
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/memory_burst.h"
#include "consult/request_cycle.h"
#include "consult/session_log.h"
#include "rom/map_viewer.h"

#include <QThread>

using namespace vexorin::rom;

namespace {
const QString kViewingEcu = QStringLiteral("Viewing : ECU Data");
constexpr int kScaleBank = 251;     // RPM scale and TP scale timing
constexpr int kFuelTpBank = 250;    // TP scale fuel
}  // namespace

bool MapViewer::portAndMonitorAllowDownload(bool testMonitor)
{
    if (session_.ConnectedLabel() == QLatin1String("Disconnected")) {
        emit message(QStringLiteral("Consult port not connected."), false);
        return false;
    }
    if (testMonitor && session_.MonitorSensorsOnLabel() == QLatin1String("ON")) {
        emit message(QStringLiteral("Sensor monitoring must be off."), false);
        return false;
    }
    return true;
}

void MapViewer::stopAllMapTimers()
{
    for (QTimer& timer : mapTimers)
        timer.stop();
}

void MapViewer::DownloadButton(int t)
{
    if (portAndMonitorAllowDownload(true))
        startDownload(t, true);
}

void MapViewer::DownloadMapData()
{
    if (portAndMonitorAllowDownload(false))
        startDownload(currentTab_, false);
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
    readState_ = {kScaleBank, -1, 1};
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
    if (session_.ConnectedLabel() == QLatin1String("Disconnected")) {
        emit message(QStringLiteral("Consult port not connected."), false);
        return;
    }
    for (std::uint8_t b : vexorin::consult::kActivationByteTest)
        session_.link().Output({int(b)});
}

void MapViewer::StopDataFlow()
{
    if (!portAndMonitorAllowDownload(true))
        return;
    stopAllMapTimers();
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
    for (int other = 0; other < kTabs; ++other)
        if (other != t)
            mapTimers[std::size_t(other)].stop();
    readStep(t);
}

void MapViewer::LoadAllECUDataMaps()
{
    for (int t = 0; t < kTabs; ++t) {
        editModeOff(t);
        setViewing(t, kViewingEcu);
        rebuildGrid(t, true, 1, 1);
    }
    MapStatusTimer.stop();
    for (int t = 0; t < kTabs; ++t)
        readStep(t);
}

std::optional<std::array<int, 8>> MapViewer::requestEight()
{
    ConsultLink& link = session_.link();
    const int first = readState_.low + 1;
    readState_.low += vexorin::consult::kBurstAddresses;
    vexorin::consult::requestBurst(link, readState_.high, first);
    const auto reply = vexorin::consult::finishBurst(link, false);
    if (!reply) {
        downloadTimedOut();
        return std::nullopt;
    }
    std::array<int, 8> data{};
    for (int i = 0; i < 8; ++i)
        data[std::size_t(i)] = (*reply)[std::size_t(vexorin::consult::kBurstFirstData + i)];
    return data;
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
    readState_.high = kMaps[std::size_t(t)].bank;
    readState_.low = -1;
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

void MapViewer::mapByte(int t, int value)
{
    const MapSpec& map = kMaps[std::size_t(t)];
    MapGrid& grid = mutableTab(t).grid;
    setCell(t, grid.row, grid.column, QString::fromStdString(formatMapByte(map.fuel, value)));
    setCellColor(t, grid.row, grid.column, mapByteColor(map.fuel, value));
    setProgress(readState_.low);
    if (++grid.column > 16) {
        grid.column = 1;
        ++grid.row;
    }
}

void MapViewer::readStep(int t)
{
    if (pauseMs_ > 0)
        QThread::msleep(pauseMs_);
    ConsultLink& link = session_.link();
    link.setInBufferCount(0);
    const MapSpec& map = kMaps[std::size_t(t)];
    MapReadState& s = readState_;
    MapGrid& grid = mutableTab(t).grid;

    const bool scaleStage = map.fuel ? (s.high == kScaleBank || s.high == kFuelTpBank) : s.high == kScaleBank;
    if (scaleStage) {
        if (s.low == (map.fuel ? 255 : 31)) {
            scalesDone(t);
            return;
        }
        if (s.low == 15) {
            if (map.fuel) {
                s.high = kFuelTpBank;
                s.low = 239;
            } else {
                s.scalePhase = 2;
            }
            grid.row = 0;
            grid.column = 0;
        }
        const auto data = requestEight();
        if (!data)
            return;
        const bool rpm = map.fuel ? s.high == kScaleBank : s.scalePhase == 1;
        for (int value : *data)
            scaleByte(t, rpm, value);
        setStatus(QStringLiteral("Getting RPM and TP Tables"));
        setProgress(s.low * 8);
        return;
    }

    if (s.low == 255) {
        mapTimers[std::size_t(t)].stop();
        setStatus(QStringLiteral("Done!"));
        setProgress(0);
        MapStatusTimer.start();
        for (int other = 0; other < kTabs; ++other) {
            mutableTab(other).clearMatrixEnabled = true;
            emit tabChanged(other);
        }
        return;
    }
    const auto data = requestEight();
    if (!data)
        return;
    setStatus(QString::fromLatin1(map.gettingText));
    for (int value : *data)
        mapByte(t, value);
}
