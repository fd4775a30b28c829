// Editing beyond the spin buttons: the backup before a file's first edit, a
// selection of cells, typed figures, block edits and the shared edit journal
// (undo, redo, revert to the backup). Every write goes through the journal;
// every view of the file shows what the journal's own writes put there.
#include "rom/map_viewer.h"

#include "rom/rom_image.h"

#include <QFileInfo>

using namespace vexorin::rom;

namespace {
int positionOf(int t, int row, int column)
{
    const MapSpec& map = kMaps[std::size_t(t)];
    if (column == 0)
        return kRpmScaleFirstPosition - 1 + row;
    if (row == 0)
        return tpScaleFirstPosition(map.fuel) - 1 + column;
    return map.cellPosition(row, column);
}

// The cell of tab `t` that shows the byte at `offset`, if one does.
std::optional<Cell> cellOfOffset(int t, long offset)
{
    const MapSpec& map = kMaps[std::size_t(t)];
    if (offset >= kRpmScaleOffset && offset < kRpmScaleOffset + kScaleLength)
        return Cell{int(offset - kRpmScaleOffset) + 1, 0};
    if (offset >= map.tpScaleOffset() && offset < map.tpScaleOffset() + kScaleLength)
        return Cell{0, int(offset - map.tpScaleOffset()) + 1};
    if (offset >= map.fileOffset() && offset < map.fileOffset() + kBankSize)
        return cellOfLow(int(offset - map.fileOffset()));
    return std::nullopt;
}
}  // namespace

QString MapViewer::filePath() const
{
    return tab(currentTab_).pathBox;
}

bool MapViewer::hasFile()
{
    if (filePath() != QLatin1String(kNoFile))
        return true;
    emit message(QString::fromLatin1(kLoadBinFileFirst), false);
    return false;
}

void MapViewer::backupOnEditMode(int t)
{
    const QString path = tab(t).pathBox;
    const FileEdits::Backup backup = FileEdits::shared().backupOnFirstEdit(path);
    if (!backup.failure().isEmpty())
        emit message(backup.failure(), true);
    // The status bar names the backup at every switch into edit mode while it exists.
    const QString copy = QString::fromStdString(backupPathFor(path.toStdString()));
    if (!copy.isEmpty() && QFileInfo::exists(copy))
        setStatus(FileEdits::backupNotice(copy));
}

FigureKind MapViewer::figureKind(int t, int row, int column) const
{
    if (column == 0)
        return FigureKind::Rpm;
    if (row == 0)
        return FigureKind::Tp;
    return kMaps[std::size_t(t)].fuel ? FigureKind::Fuel : FigureKind::Timing;
}

void MapViewer::extendSelection(int t, int row, int column)
{
    Tab& tab = mutableTab(t);
    if (!tab.editMode || !tab.selection || row < 1 || column < 1 || !MapGrid::inside(row, column))
        return;
    tab.endRow = row;
    tab.endColumn = column;
    tab.selection = MapSelection::between(tab.anchorRow, tab.anchorColumn, row, column);
    emit tabChanged(t);
}

bool MapViewer::writeFigureByte(int t, int position, int value)
{
    mutableTab(t).byteValueWhenChanged = QString::number(value);
    QString error;
    if (!FileEdits::shared().write(tab(t).pathBox, {{long(position) - 1, value}}, FileEdits::Views::Refresh,
                                   &error)) {
        emit message(QStringLiteral("The byte could not be written to the BIN file: %1").arg(error), true);
        return false;
    }
    emit tabChanged(t);
    return true;
}

bool MapViewer::typeFigure(int t, const QString& text)
{
    const Tab& tab = this->tab(t);
    if (!tab.editMode || tab.pathBox == QLatin1String(kNoFile))
        return false;
    const int row = tab.overlayRow, column = tab.overlayColumn;
    if (!MapGrid::inside(row, column) || (row == 0 && column == 0))
        return false;
    const FigureKind kind = figureKind(t, row, column);
    const auto figure = parseFigure(text.trimmed().toStdString());
    const auto byte = figure ? byteForTypedFigure(kind, *figure) : std::nullopt;
    if (!byte) {
        emit message(QString::fromStdString(figureRangeMessage(kind)), false);
        return false;
    }
    return writeFigureByte(t, positionOf(t, row, column), *byte);
}

std::vector<BlockCell> MapViewer::planBlock(int t, BlockOp op, double value)
{
    if (!blockEditAllowed(t) || tab(t).pathBox == QLatin1String(kNoFile))
        return {};
    const MapSpec& map = kMaps[std::size_t(t)];
    std::vector<std::uint8_t> bytes;
    if (!readFile(t, map.fileOffset() + kBankSize - 1, bytes))
        return {};
    MapBytes cells{};
    std::copy_n(bytes.begin() + map.fileOffset(), kBankSize, cells.begin());
    return vexorin::rom::planBlock(map.fuel ? FigureKind::Fuel : FigureKind::Timing, cells, *tab(t).selection, op,
                                   value);
}

bool MapViewer::applyBlock(int t, const std::vector<BlockCell>& cells)
{
    if (!blockEditAllowed(t))
        return false;
    const MapSpec& map = kMaps[std::size_t(t)];
    ByteWrites writes;
    for (const BlockCell& c : cells)
        if (c.newByte != c.oldByte && tab(t).selection->contains(c.row, c.column))
            writes.emplace_back(long(map.cellPosition(c.row, c.column)) - 1, c.newByte);
    QString error;
    if (!FileEdits::shared().write(tab(t).pathBox, writes, FileEdits::Views::Refresh, &error)) {
        emit message(QStringLiteral("The byte could not be written to the BIN file: %1").arg(error), true);
        return false;
    }
    setStatus(writes.size() == 1 ? QStringLiteral("1 cell changed. Ctrl+Z takes it back.")
                                 : QStringLiteral("%1 cells changed. Ctrl+Z takes them back.").arg(writes.size()));
    return true;
}

bool MapViewer::canUndo() const
{
    return filePath() != QLatin1String(kNoFile) && FileEdits::shared().canUndo(filePath());
}

bool MapViewer::canRedo() const
{
    return filePath() != QLatin1String(kNoFile) && FileEdits::shared().canRedo(filePath());
}

void MapViewer::journalStep(bool back)
{
    QString error;
    int bytes = 0;
    if (!hasFile())
        return;
    if (!FileEdits::shared().step(filePath(), back, &error, &bytes)) {
        emit message(error, true);
        return;
    }
    const QString count = QString::number(bytes) + (bytes == 1 ? QStringLiteral(" byte") : QStringLiteral(" bytes"));
    if (bytes > 0)
        setStatus(back ? QStringLiteral("Undo: %1 written back. Ctrl+Y does it again.").arg(count)
                       : QStringLiteral("Redo: %1 written again.").arg(count));
}

FileEdits::Revert MapViewer::revertPlan()
{
    if (!hasFile())
        return {};
    FileEdits::Revert plan = FileEdits::shared().planRevert(filePath());
    if (!plan.refusal.isEmpty())
        emit message(plan.refusal, false);
    return plan;
}

void MapViewer::revert(const FileEdits::Revert& plan)
{
    QString error;
    if (!plan.writes.empty() && !FileEdits::shared().revert(filePath(), plan, &error))
        emit message(error, true);
}

void MapViewer::showFileBytes(const QString& key, const QVector<long>& offsets)
{
    std::vector<std::uint8_t> image;
    for (int t = 0; t < kTabs; ++t) {
        const Tab& tab = this->tab(t);
        if (tab.viewing != kViewingFile || FileEdits::key(tab.pathBox) != key)
            continue;
        if (image.empty() && !readImage(tab.pathBox.toStdString(), image))
            return;
        for (long offset : offsets) {
            const auto cell = cellOfOffset(t, offset);
            if (!cell || std::size_t(offset) >= image.size())
                continue;
            const int byte = image[std::size_t(offset)];
            const FigureKind kind = figureKind(t, cell->row, cell->column);
            setCell(t, cell->row, cell->column, QString::fromStdString(figureText(kind, byte)));
            if (cell->row > 0 && cell->column > 0)
                setCellColor(t, cell->row, cell->column, mapByteColor(kMaps[std::size_t(t)].fuel, byte));
            if (offset == bytePosition_ - 1) {
                currentByte_ = byte;
                mutableTab(t).byteValueDisplayed = QString::number(byte);
            }
        }
        showEditedCell(t);
    }
    if (!image.empty())
        fileBytesChanged();
}

void MapViewer::showEditedCell(int t)
{
    Tab& tab = mutableTab(t);
    if (!tab.editMode || tab.origVal.isEmpty())
        return;
    tab.textValue = tab.grid.text(tab.overlayRow, tab.overlayColumn);
    if (tab.overlayRow > 0 && tab.overlayColumn > 0)
        tab.textValueColor = tab.grid.color(tab.overlayRow, tab.overlayColumn);
    emit tabChanged(t);
}

void MapViewer::fileBytesChanged()
{
    trace_.refreshTables();  // a scale, the VQ curve or the K value may have changed
    markDifferences();
}
