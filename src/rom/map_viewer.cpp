#include "rom/map_viewer.h"

#include "rom/rom_image.h"

using namespace vexorin::rom;

const QString MapViewer::kCaption = QStringLiteral("Vexorin Map Viewer/Editor");
const QString MapViewer::kRestStatus = QStringLiteral("Map Status");

const QString MapViewer::kViewingFile = QStringLiteral("Viewing : BIN File Data");

MapViewer::MapViewer(ConsultSession& session, int formCount, QObject* parent)
    : QObject(parent),
      session_(session),
      status_(kRestStatus),
      caption_(kCaption),
      displayCache_(std::size_t(kRomSize) + 1),
      formCount_(formCount),
      trace_(session, [this] { return tabs_[0].pathBox; })
{
    for (int t = 0; t < kTabs; ++t) {
        Tab& tab = mutableTab(t);
        tab.pathBox = QString::fromLatin1(kNoFile);
        tab.viewing = QStringLiteral("Viewing : ");
        tab.grid.rebuild(true);
        tab.grid.setText(0, 0, QString::fromLatin1(MapGrid::kCorner));
        QTimer& timer = mapTimers[std::size_t(t)];
        timer.setInterval(kTimerMs);
        connect(&timer, &QTimer::timeout, this, [this, t] { MapTimerTick(t); });
    }
    MapStatusTimer.setInterval(kStatusMs);
    connect(&MapStatusTimer, &QTimer::timeout, this, &MapViewer::MapStatusTimerTick);

    connect(&trace_, &MapTrace::moved, this, &MapViewer::showTrace);
    connect(this, &MapViewer::currentTabChanged, this, [this] {
        if (trace_.isOn() && trace_.point())
            showTrace();
    });
    connect(&trace_, &MapTrace::switched, this, [this](bool on) {
        if (!on && status_.startsWith(QLatin1String("Trace: ")))
            setStatus(kRestStatus);
    });
    connect(&trace_, &MapTrace::message, this, [this](const QString& text) { emit message(text, false); });
    FileEdits& edits = FileEdits::shared();
    connect(&edits, &FileEdits::bytesChanged, this, &MapViewer::showFileBytes);
    connect(&edits, &FileEdits::journalChanged, this, [this](const QString& key) {
        if (filePath() != QLatin1String(kNoFile) && FileEdits::key(filePath()) == key)
            emit journalChanged();
    });
}

void MapViewer::showTrace()
{
    if (const auto& point = trace_.point())
        setStatus(QString::fromStdString(traceStatus(*point, kMaps[std::size_t(currentTab_)].fuel)));
}

QString MapViewer::displayCache(int position) const
{
    if (position < 1 || position > kRomSize)
        return QString();
    return displayCache_[std::size_t(position)];
}

void MapViewer::setCurrentTab(int index)
{
    if (index < 0 || index >= kTabs || index == currentTab_)
        return;
    currentTab_ = index;
    emit currentTabChanged(index);
}

void MapViewer::setClearMatrixBeforeDownload(int t, bool on)
{
    mutableTab(t).clearMatrixBeforeDownload = on;
}

QString MapViewer::nextViewerCaption()
{
    ++viewerCounter_;
    return caption_ + QLatin1Char(' ') + QString::number(viewerCounter_);
}

void MapViewer::setStatus(const QString& text)
{
    status_ = text;
    emit statusChanged();
}

void MapViewer::setProgress(int value)
{
    progress_ = qBound(0, value, kProgressMaximum);
    emit statusChanged();
}

void MapViewer::setCell(int t, int row, int column, const QString& text)
{
    mutableTab(t).grid.setText(row, column, text);
    emit cellChanged(t, row, column);
}

void MapViewer::setCellColor(int t, int row, int column, Rgb color)
{
    mutableTab(t).grid.setColor(row, column, color);
    emit cellChanged(t, row, column);
}

void MapViewer::rebuildGrid(int t, bool fixedColumn, int row, int column)
{
    MapGrid& grid = mutableTab(t).grid;
    grid.rebuild(fixedColumn);
    grid.setText(0, 0, QString::fromLatin1(MapGrid::kCorner));
    grid.row = row;
    grid.column = column;
    emit gridReset(t);
}

void MapViewer::setViewing(int t, const QString& text)
{
    mutableTab(t).viewing = text;
    emit tabChanged(t);
}

void MapViewer::ClearMatrix(int t)
{
    MapGrid& grid = mutableTab(t).grid;
    rebuildGrid(t, false, grid.row, grid.column);
}

void MapViewer::cache(int position, const QString& text)
{
    if (position >= 1 && position <= kRomSize)
        displayCache_[std::size_t(position)] = text;
}

bool MapViewer::cellDone()
{
    if (yield_)
        yield_();
    return !abort_;
}

bool MapViewer::readFile(int t, int lastOffset, std::vector<std::uint8_t>& bytes)
{
    std::string error;
    if (!readImage(tab(t).pathBox.toStdString(), bytes, &error)) {
        emit message(QString::fromStdString(vexorin::rom::unreadableText(error)), true);
        return false;
    }
    if (bytes.size() <= std::size_t(lastOffset)) {
        emit message(QString::fromLatin1(kCorruptOrWrongSize), true);
        return false;
    }
    return true;
}

bool MapViewer::LoadBinFile(const QString& path, bool fromMenu)
{
    if (path.isEmpty() || loading_)
        return false;
    for (int t = 0; t < kTabs; ++t)
        mutableTab(t).pathBox = path;
    for (int t = 0; t < kTabs; ++t) {
        editModeOff(t);
        mutableTab(t).grid.enabled = false;
        setViewing(t, kViewingFile);
    }
    if (fromMenu)
        setStatus(QStringLiteral("Loading Bin File"));
    for (int t = 0; t < kTabs; ++t)
        rebuildGrid(t, true, 1, 0);

    loading_ = true;
    abort_ = false;
    bool ok = true;
    for (int t = 0; t < kTabs && ok; ++t)
        ok = DumpRPM(t) && DumpTP(t) && DumpMAP(t);
    loading_ = false;
    trace_.refreshTables();
    if (ok)
        markDifferences();
    // The status panel returns to rest a moment after a load from the menu.
    if (fromMenu && ok)
        MapStatusTimer.start();
    return ok;
}

bool MapViewer::DumpRPM(int t)
{
    std::vector<std::uint8_t> bytes;
    if (!readFile(t, kRpmScaleOffset + kScaleLength - 1, bytes))
        return false;
    for (int i = 0; i < kScaleLength; ++i) {
        const int offset = kRpmScaleOffset + i;
        const QString text = QString::number(bytes[std::size_t(offset)] * kRpmPerStep);
        MapGrid& grid = mutableTab(t).grid;
        grid.column = 0;
        setCell(t, grid.row, 0, text);
        cache(offset + 1, text);
        ++grid.row;
        if (!cellDone())
            return false;
    }
    return true;
}

bool MapViewer::DumpTP(int t)
{
    const MapSpec& map = kMaps[std::size_t(t)];
    std::vector<std::uint8_t> bytes;
    if (!readFile(t, map.tpScaleOffset() + kScaleLength - 1, bytes))
        return false;
    MapGrid& grid = mutableTab(t).grid;
    grid.row = 0;
    grid.column = 1;
    for (int i = 0; i < kScaleLength; ++i) {
        const int offset = map.tpScaleOffset() + i;
        const QString text = QString::number(bytes[std::size_t(offset)]);
        setCell(t, 0, grid.column, text);
        cache(offset + 1, text);
        if (i + 1 < kScaleLength)
            ++grid.column;
        if (!cellDone())
            return false;
    }
    grid.row = 1;
    grid.column = 1;
    return true;
}

bool MapViewer::DumpMAP(int t)
{
    const MapSpec& map = kMaps[std::size_t(t)];
    std::vector<std::uint8_t> bytes;
    if (!readFile(t, map.fileOffset() + kBankSize - 1, bytes))
        return false;
    MapGrid& grid = mutableTab(t).grid;
    for (int i = 0; i < kBankSize; ++i) {
        const int offset = map.fileOffset() + i;
        const int value = bytes[std::size_t(offset)];
        const QString text = QString::fromStdString(formatMapByte(map.fuel, value));
        setCell(t, grid.row, grid.column, text);
        cache(offset + 1, text);
        setCellColor(t, grid.row, grid.column, mapByteColor(map.fuel, value));
        if (t == 0)
            setProgress(i);
        if (i + 1 < kBankSize) {
            if (++grid.column > 16) {
                grid.column = 1;
                ++grid.row;
            }
        }
        if (!cellDone())
            return false;
    }
    if (t == kTabs - 1)
        emit beep();
    return true;
}
