// Edit mode of the Map Viewer: a selected cell or axis value is stepped up
// or down and each step goes into the BIN file at once, one byte.
#include "rom/map_viewer.h"

#include "rom/rom_image.h"

using namespace vexorin::rom;

namespace {
const QString kEditWarning = QStringLiteral(
    "Edit mode will overwrite the file. Please make a backup of the file before using the edit function. "
    "The editable cell is outlined in red. Click any cell to set it as the editable cell. Use the up/down "
    "arrow button to change the value.");
const QString kMinimum = QStringLiteral("The minimum range has been reached.");
const QString kMaximum = QStringLiteral("The maximum range has been reached.");
constexpr int kTpLimit = 99;
constexpr int kRpmLimit = 10000;

bool inRange(int position, int first)
{
    return position >= first && position < first + kScaleLength;
}

// The leading number of a text, 0 when there is none.
int leadingNumber(const QString& text)
{
    const QString t = text.trimmed();
    int end = 0;
    if (end < t.size() && (t[end] == QLatin1Char('-') || t[end] == QLatin1Char('+')))
        ++end;
    while (end < t.size() && t[end].isDigit())
        ++end;
    return t.left(end).toInt();
}
}  // namespace

void MapViewer::editModeOff(int t)
{
    Tab& tab = mutableTab(t);
    tab.editMode = false;
    tab.overlayVisible = false;
    tab.framesRed = false;
    tab.grid.enabled = false;
    tab.textValue.clear();
    tab.origVal.clear();
    tab.textValueColor.reset();
    tab.selection.reset();
    emit tabChanged(t);
}

void MapViewer::placeOverlay(int t, int row, int column)
{
    Tab& tab = mutableTab(t);
    tab.overlayRow = row;
    tab.overlayColumn = column;
    tab.overlayVisible = true;
}

void MapViewer::setEditMode(int t, bool on)
{
    Tab& tab = mutableTab(t);
    if (!on) {
        editModeOff(t);
        return;
    }
    if (tab.pathBox == QLatin1String(kNoFile)) {
        tab.editMode = false;
        emit tabChanged(t);
        emit message(QString::fromLatin1(vexorin::rom::kLoadBinFileFirst), false);
        return;
    }
    tab.editMode = true;
    emit message(kEditWarning, true);
    backupOnEditMode(t);
    tab.grid.row = 1;
    tab.grid.column = 16;
    placeOverlay(t, 1, 16);
    tab.framesRed = true;
    std::vector<std::uint8_t> bytes;
    const int first = kMaps[std::size_t(t)].firstCellPosition();
    if (readFile(t, first - 1, bytes))
        currentByte_ = bytes[std::size_t(first - 1)];
    tab.grid.enabled = true;
    emit tabChanged(t);
}

void MapViewer::selectCell(int t, int row, int column)
{
    Tab& tab = mutableTab(t);
    if (tab.pathBox == QLatin1String(kNoFile) || !MapGrid::inside(row, column) || (row == 0 && column == 0))
        return;
    const MapSpec& map = kMaps[std::size_t(t)];
    selectedRow_ = row;
    selectedColumn_ = column;
    tab.grid.row = row;
    tab.grid.column = column;
    tab.textValue = tab.grid.text(row, column);
    if (column == 0) {
        tab.editName = QStringLiteral("RPM");
        tab.textValueColor.reset();
        bytePosition_ = kRpmScaleFirstPosition - 1 + row;
    } else if (row == 0) {
        tab.editName = QStringLiteral("TP");
        tab.textValueColor.reset();
        bytePosition_ = tpScaleFirstPosition(map.fuel) - 1 + column;
    } else {
        tab.editName = QLatin1String(map.cellMeaning());
        tab.textValueColor = tab.grid.color(row, column);
        bytePosition_ = map.cellPosition(row, column);
    }
    tab.origVal = displayCache(bytePosition_);
    std::vector<std::uint8_t> bytes;
    if (readFile(t, bytePosition_ - 1, bytes)) {
        currentByte_ = bytes[std::size_t(bytePosition_ - 1)];
        tab.byteValueDisplayed = QString::number(currentByte_);
    }
    if (tab.editMode)
        placeOverlay(t, row, column);
    else
        tab.overlayVisible = false;
    // A body cell starts a new block selection; a heading is never part of one.
    tab.selection.reset();
    if (tab.editMode && row > 0 && column > 0) {
        tab.anchorRow = tab.endRow = row;
        tab.anchorColumn = tab.endColumn = column;
        tab.selection = MapSelection::between(row, column, row, column);
    }
    emit tabChanged(t);
}

void MapViewer::step(int t, bool up)
{
    const Tab& tab = this->tab(t);
    if (tab.origVal.isEmpty() || !tab.editMode)
        return;
    if (inRange(bytePosition_, tpScaleFirstPosition(true)) || inRange(bytePosition_, tpScaleFirstPosition(false)))
        stepTp(t, up);
    else if (inRange(bytePosition_, kRpmScaleFirstPosition))
        stepRpm(t, up);
    else
        stepCell(t, up);
    emit tabChanged(t);
}

bool MapViewer::writeAtPosition(int t, int value)
{
    mutableTab(t).byteValueWhenChanged = QString::number(value);
    // The spin steps show their own figures (other viewers of the file keep theirs).
    if (!FileEdits::shared().write(tab(t).pathBox, {{long(bytePosition_) - 1, value}}, FileEdits::Views::Keep)) {
        emit message(QString::fromLatin1(kAppearsCorrupt), true);
        return false;
    }
    fileBytesChanged();
    return true;
}

void MapViewer::stepTp(int t, bool up)
{
    Tab& tab = mutableTab(t);
    const bool fuel = kMaps[std::size_t(t)].fuel;
    previousValue_ = tab.textValue;
    int value = leadingNumber(tab.textValue) + (up ? 1 : -1);
    if (value < 0 || value > kTpLimit) {
        value = value < 0 ? 0 : kTpLimit;
        tab.textValue = QString::number(value);
        emit message(value == 0 ? kMinimum : kMaximum, false);
        return;
    }
    for (int other = 0; other < kTabs; ++other) {
        if (kMaps[std::size_t(other)].fuel == fuel) {
            mutableTab(other).grid.row = 0;
            mutableTab(other).grid.column = selectedColumn_;
        }
    }
    // A fuel TP step writes into the current cell of all six grids, the two
    // timing grids included, though only the fuel grids were moved to it.
    const QString text = QString::number(value);
    for (int other = 0; other < kTabs; ++other) {
        if (fuel || !kMaps[std::size_t(other)].fuel) {
            const MapGrid& g = this->tab(other).grid;
            setCell(other, g.row, g.column, text);
        }
    }
    tab.textValue = text;
    writeAtPosition(t, value);
}

void MapViewer::stepRpm(int t, bool up)
{
    Tab& tab = mutableTab(t);
    previousValue_ = tab.textValue;
    int value = leadingNumber(tab.textValue) + (up ? kRpmPerStep : -kRpmPerStep);
    if (value < 0 || value > kRpmLimit) {
        value = value < 0 ? 0 : kRpmLimit;
        tab.textValue = QString::number(value);
        emit message(value == 0 ? kMinimum : kMaximum, false);
        return;
    }
    const QString text = QString::number(value);
    for (int other = 0; other < kTabs; ++other) {
        mutableTab(other).grid.row = selectedRow_;
        mutableTab(other).grid.column = 0;
        setCell(other, selectedRow_, 0, text);
    }
    tab.textValue = text;
    writeAtPosition(t, value / kRpmPerStep);
}

void MapViewer::stepCell(int t, bool up)
{
    const bool fuel = kMaps[std::size_t(t)].fuel;
    int& b = currentByte_;
    if (fuel) {
        // Down the spin is a richer mixture: a larger byte, along one line of
        // ratios 160..192, 1..159 (19.60 down to 6.56).
        if (!up) {
            ++b;
            if (b == 193)
                b = 1;
            if (b == 160) {
                b = 159;
                emit message(kMinimum, false);
            }
        } else {
            --b;
            if (b == 159) {
                b = 160;
                emit message(kMaximum, false);
            }
            if (b == 0)
                b = 192;
        }
    } else {
        b += up ? 1 : -1;
        if (b < 0)
            b = 255;
        if (b > 255)
            b = 0;
    }
    Tab& tab = mutableTab(t);
    const QString text = QString::fromStdString(formatMapByte(fuel, b));
    const Rgb color = mapByteColor(fuel, b);
    setCell(t, tab.grid.row, tab.grid.column, text);
    setCellColor(t, tab.grid.row, tab.grid.column, color);
    tab.textValue = text;
    tab.textValueColor = color;
    if (b < 0 || b > 255) {
        emit message(QString::fromLatin1(kAppearsCorrupt), true);
        return;
    }
    writeAtPosition(t, b);
}
