#include "rom/bin_viewer.h"

#include "rom/bin_viewer_layout.h"
#include "rom/region_views.h"
#include "rom/register_regions.h"
#include "rom/rom_image.h"
#include "ui/binary_files.h"

using namespace vexorin::rom;

const QString BinViewer::kCaption = QStringLiteral("Vexorin BIN File Viewer/Editor");

namespace {
const Rgb kWhite{0xFF, 0xFF, 0xFF};

QString q(const std::string& s)
{
    return QString::fromStdString(s);
}
}  // namespace

BinViewer::BinViewer(int formCount, QObject* parent)
    : QObject(parent), path_(QString::fromLatin1(kNoFile)), formCount_(formCount)
{
    grid_.enabled = true;
    rebuild();
    writeHeadings(1);
    showBankRange();
    FileEdits& edits = FileEdits::shared();
    connect(&edits, &FileEdits::bytesChanged, this, &BinViewer::showFileBytes);
    connect(&edits, &FileEdits::journalChanged, this, [this](const QString& key) {
        if (!noFile() && FileEdits::key(path_) == key)
            emit journalChanged();
    });
}

QStringList BinViewer::bankItems()
{
    QStringList items;
    for (int i = 0; i < kBankCount; ++i)
        items << QString::number(bankOfListIndex(i));
    return items;
}

QStringList BinViewer::registerList()
{
    QStringList rows;
    for (int i = 0; i < kRegionCount; ++i)
        rows << q(fileFormText(i));
    return rows;
}

QString BinViewer::gridToolTip() const
{
    if (!toolTips_)
        return QString();
    return editMode_ ? QStringLiteral("You are in edit mode. Double-click a cell or select a cell and start typing to edit.")
                     : QStringLiteral("Click to select a cell and apply the selected color.");
}

QString BinViewer::listToolTip() const
{
    return toolTips_ ? QStringLiteral("Double-click to apply the selected color to the referenced register locations.")
                     : QString();
}

void BinViewer::setToolTipEnabled(bool on)
{
    toolTips_ = on;
    emit changed();
}

QString BinViewer::nextViewerCaption()
{
    ++viewerCounter_;
    return kCaption + QLatin1Char(' ') + QString::number(viewerCounter_);
}

bool BinViewer::noFile() const
{
    return path_ == QLatin1String(kNoFile);
}

void BinViewer::setCell(int row, int column, const QString& text)
{
    grid_.setText(row, column, text);
    emit cellChanged(row, column);
}

void BinViewer::colorCell(int row, int column, Rgb color)
{
    grid_.setColor(row, column, color);
    emit cellChanged(row, column);
}

void BinViewer::rebuild()
{
    grid_.rebuild(true);
    grid_.row = 1;
    grid_.column = 1;
    emit gridReset();
}

void BinViewer::writeHeadings(int row)
{
    for (int c = 1; c <= 16; ++c)
        setCell(0, c, q(columnHeading(row, c)));
}

void BinViewer::showBankRange()
{
    setCell(0, 0, q(bankRangeLabel(first_ - 1)));
}

void BinViewer::takeSelectedRange()
{
    first_ = firstOffsetOfListIndex(bankIndex_) + 1;
    last_ = first_ + kBankSize - 1;
}

void BinViewer::OpenBINFile(const QString& path)
{
    if (path.isEmpty() || loading_)
        return;
    path_ = path;
    rebuild();
    bankIndex_ = 0;
    first_ = kFirstPositionAtStart;
    last_ = kLastPositionAtStart;
    showBankRange();
    converted_ = QStringLiteral("Converted: ");
    writeHeadings(1);
    emit changed();
    DumpFile_V03();
}

void BinViewer::selectBank(int listIndex)
{
    if (listIndex < 0 || listIndex >= kBankCount || loading_)
        return;
    bankIndex_ = listIndex;
    emit changed();
    if (noFile())
        return;
    takeSelectedRange();
    rebuild();
    colorCell(1, 0, cellColor_);
    writeHeadings(1);
    showBankRange();
    DumpAlreadySelectedFile();
}

void BinViewer::ReloadLast()
{
    if (noFile()) {
        emit message(QString::fromLatin1(kFileNotLoaded), false);
        return;
    }
    selectBank(bankIndex_);
}

void BinViewer::ClearMatrix()
{
    rebuild();
}

bool BinViewer::DumpFile_V03()
{
    return walk(true);
}

bool BinViewer::DumpAlreadySelectedFile()
{
    return walk(false);
}

bool BinViewer::walk(bool fromOpen)
{
    if (fromOpen) {
        grid_.enabled = false;
        emit changed();
    }
    std::vector<std::uint8_t> bytes;
    std::string error;
    const bool read = readImage(path_.toStdString(), bytes, &error);
    if (!read || bytes.size() < std::size_t(last_)) {
        // The bytes to show do not exist: the grid is rebuilt empty.
        rebuild();
        grid_.enabled = true;
        emit changed();
        // Whatever the reason (too short, vanished, unreadable), the same word.
        emit message(QString::fromLatin1(kCorruptOrWrongSize), false);
        return false;
    }
    loading_ = true;
    abort_ = false;
    const int bankFirstOffset = first_ - 1;
    for (int position = first_; position <= last_; ++position) {
        const int index = position - first_;
        const int row = index / 16 + 1;
        const int column = index % 16 + 1;
        setCell(row, column, q(hexByte(bytes[std::size_t(position - 1)])));
        if (column == 16)
            setCell(row, 0, q(rowLabel(bankFirstOffset, row)));
        if (yield_)
            yield_();
        if (abort_)
            break;
    }
    loading_ = false;
    if (fromOpen) {
        grid_.enabled = true;
        emit changed();
        emit beep();
    }
    return !abort_;
}

void BinViewer::clickCell(int row, int column)
{
    if (boxVisible_)
        editBoxFocusLost();  // leaving the cell
    if (row <= 0 || column <= 0 || !MapGrid::inside(row, column))
        return;
    cellText_ = grid_.text(row, column);
    clickedRow_ = row;
    clickedColumn_ = column;
    colorCell(row, column, cellColor_);
    writeHeadings(row);
    colorCell(row, 0, cellColor_);
    addressText_ = q(vexorin::rom::addressText(grid_.text(row, 0).toStdString(), column));
    fileOffset_ = hexValue(addressText_.toStdString());
    for (int r = 1; r <= 16; ++r)
        if (r != row)
            colorCell(r, 0, kWhite);
    grid_.row = row;
    grid_.column = column;
    emit changed();
}

void BinViewer::doubleClickRegion(int index)
{
    if (index < 0 || index >= kRegionCount)
        return;
    if (noFile()) {
        emit message(QString::fromLatin1(kFileNotLoaded), false);
        return;
    }
    const RegionView& view = kRegionViews[std::size_t(index)];
    if (view.bank != selectedBank()) {
        emit message(QString::fromLatin1(kBankNotLoaded), false);
        return;
    }
    if (view.conversion == Conversion::Message) {
        emit message(QString::fromLatin1(view.message), false);
        converted_ = QStringLiteral("Converted: ");
        emit changed();
        return;
    }
    for (int r = view.row; r <= view.lastRow; ++r)
        for (int c = view.firstColumn; c <= view.lastColumn; ++c)
            colorCell(r, c, cellColor_);
    const std::string first = grid_.text(view.row, view.firstColumn).toStdString();
    const std::string second = grid_.text(view.row, view.lastColumn).toStdString();
    converted_ = QStringLiteral("Converted: ") + q(convertRegion(view.conversion, first, second));
    emit changed();
}
