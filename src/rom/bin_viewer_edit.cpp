// Edit mode of the BIN File Viewer/Editor: an edit box over a cell takes two
// hexadecimal digits and, when it loses the focus, writes one byte into the
// file at the address of the cell clicked last.
#include "rom/bin_viewer.h"

#include "rom/bin_viewer_layout.h"
#include "rom/rom_image.h"

using namespace vexorin::rom;

namespace {
constexpr int kEnter = 13;
constexpr int kSpace = 32;

bool isHexDigit(QChar ch)
{
    return (ch >= QLatin1Char('0') && ch <= QLatin1Char('9')) || (ch >= QLatin1Char('A') && ch <= QLatin1Char('F'));
}
}  // namespace

void BinViewer::setEditMode(bool on)
{
    editMode_ = on;
    if (on)
        emit message(QStringLiteral("Edit mode will overwrite the current file. Please make a backup of the current "
                                    "file before using the edit function."),
                     true);
    if (on)
        backupOnEditMode();
    emit changed();
}

void BinViewer::backupOnEditMode()
{
    if (noFile())
        return;
    const FileEdits::Backup backup = FileEdits::shared().backupOnFirstEdit(path_);
    if (!backup.failure().isEmpty())
        emit message(backup.failure(), true);
    else if (!backup.notice().isEmpty())
        emit message(backup.notice(), false);
}

void BinViewer::openEditBox(int row, int column)
{
    // A grid without a bank on view has no addresses to write to.
    if (grid_.text(row, 0).isEmpty())
        return;
    boxRow_ = row;
    boxColumn_ = column;
    boxVisible_ = true;
}

void BinViewer::doubleClickCell(int row, int column)
{
    if (!editMode_ || row <= 0 || column <= 0 || !MapGrid::inside(row, column))
        return;
    if (selectedBank() < kLowestEditableBank) {
        emit message(QStringLiteral("Regions below register bank 240 are blocked from editing.\nThese areas are not "
                                    "necessary for performance tuning. Changing these values may alter the operation "
                                    "of the ECU micro and cause harm to your engine."),
                     true);
        return;
    }
    boxText_.clear();
    openEditBox(row, column);
    emit changed();
}

void BinViewer::keyOnGrid(int keyCode, int mouseRow, int mouseColumn)
{
    // The bank is not looked at on this path.
    if (mouseRow <= 0 || mouseColumn <= 0 || !MapGrid::inside(mouseRow, mouseColumn))
        return;
    if (!editMode_) {
        GridEdit(keyCode, mouseRow, mouseColumn);
        return;
    }
    boxText_.clear();
    openEditBox(mouseRow, mouseColumn);
    const QChar key = QChar(keyCode).toUpper();
    if (isHexDigit(key))
        GridEdit(key.unicode(), mouseRow, mouseColumn);
    emit changed();
}

void BinViewer::GridEdit(int keyCode, int row, int column)
{
    openEditBox(row, column);
    if (!boxVisible_)
        return;
    boxText_ = keyCode > kSpace ? QString(QChar(keyCode)) : grid_.text(row, column);
    writeBoxToCell();
    emit changed();
}

void BinViewer::writeBoxToCell()
{
    if (!boxVisible_ || !editMode_)
        return;
    setCell(grid_.row, grid_.column, boxText_.size() == 1 ? QLatin1Char('0') + boxText_ : boxText_);
}

void BinViewer::editBoxKey(int keyCode)
{
    if (!boxVisible_)
        return;
    if (keyCode == kEnter) {
        editBoxFocusLost();
        return;
    }
    if (!editKeyPasses(keyCode)) {
        boxText_.clear();
        emit changed();
        return;
    }
    // Codes 96 to 105 pass as "`" and "a" to "i": g, h and i get through in lower case.
    boxText_ += QChar(keyCode).toUpper();
    if (boxText_.size() >= 3) {
        boxText_ = QStringLiteral("00");
        setCell(grid_.row, grid_.column, boxText_);
    }
    writeBoxToCell();
    emit changed();
}

void BinViewer::editBoxFocusLost()
{
    if (!boxVisible_)
        return;
    boxVisible_ = false;
    emit changed();
    if (!editMode_)
        return;
    // Written every time, changed or not, at the address of the last click.
    const int value = hexValue(boxText_.toStdString()) & 0xFF;
    QString error;
    if (!FileEdits::shared().write(path_, {{long(fileOffset_), value}}, FileEdits::Views::Keep, &error))
        emit message(QStringLiteral("The byte could not be written to the BIN file: %1").arg(error), true);
}

bool BinViewer::fileChosen()
{
    if (!noFile())
        return true;
    emit message(QString::fromLatin1(kFileNotLoaded), false);
    return false;
}

bool BinViewer::canUndo() const
{
    return !noFile() && FileEdits::shared().canUndo(path_);
}

bool BinViewer::canRedo() const
{
    return !noFile() && FileEdits::shared().canRedo(path_);
}

void BinViewer::journalStep(bool back)
{
    QString error;
    if (fileChosen() && !FileEdits::shared().step(path_, back, &error))
        emit message(error, true);
}

FileEdits::Revert BinViewer::revertPlan()
{
    if (!fileChosen())
        return {};
    FileEdits::Revert plan = FileEdits::shared().planRevert(path_);
    if (!plan.refusal.isEmpty())
        emit message(plan.refusal, false);
    return plan;
}

void BinViewer::revert(const FileEdits::Revert& plan)
{
    QString error;
    if (!plan.writes.empty() && !FileEdits::shared().revert(path_, plan, &error))
        emit message(error, true);
}

// The bank on view shows what undo, redo and the other editors' block edits wrote.
void BinViewer::showFileBytes(const QString& key, const QVector<long>& offsets)
{
    if (noFile() || FileEdits::key(path_) != key || grid_.text(1, 0).isEmpty())
        return;
    std::vector<std::uint8_t> image;
    if (!readImage(path_.toStdString(), image))
        return;
    for (long offset : offsets) {
        const long low = offset - (first_ - 1);
        if (low >= 0 && low < kBankSize && std::size_t(offset) < image.size()) {
            const Cell cell = cellOfLow(int(low));
            setCell(cell.row, cell.column, QString::fromStdString(hexByte(image[std::size_t(offset)])));
        }
    }
}
