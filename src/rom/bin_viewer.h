// The BIN File Viewer/Editor's logic: one register bank of a BIN file as a
// 16 by 16 hexadecimal grid, coloured cells and named regions with their
// converted values, and single bytes overwritten in edit mode.
#pragma once

#include "rom/file_edits.h"
#include "rom/rules/map_decoding.h"
#include "rom/map_grid.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>

class BinViewer : public QObject {
    Q_OBJECT
public:
    static const QString kCaption;
    static constexpr int kFirstPositionAtStart = 32513;
    static constexpr int kLastPositionAtStart = 32768;
    static constexpr int kLowestEditableBank = 240;

    explicit BinViewer(int formCount = 1, QObject* parent = nullptr);

    const MapGrid& grid() const { return grid_; }
    QString pathBox() const { return path_; }
    // The bank selector: list index i is bank 255 - i.
    int bankIndex() const { return bankIndex_; }
    int selectedBank() const { return 255 - bankIndex_; }
    QString bankText() const { return QString::number(selectedBank()); }
    static QStringList bankItems();
    static QStringList registerList();
    int firstPosition() const { return first_; }
    int lastPosition() const { return last_; }
    QString convertedLabel() const { return converted_; }
    bool editMode() const { return editMode_; }
    bool toolTipEnabled() const { return toolTips_; }
    QString gridToolTip() const;
    QString listToolTip() const;
    vexorin::rom::Rgb cellColor() const { return cellColor_; }
    int TxtFormCount() const { return formCount_; }
    bool loading() const { return loading_; }

    // The state of the last click.
    int clickedRow() const { return clickedRow_; }
    int clickedColumn() const { return clickedColumn_; }
    QString addressText() const { return addressText_; }
    int fileOffset() const { return fileOffset_; }
    QString cellText() const { return cellText_; }

    // The in-place edit box.
    bool editBoxVisible() const { return boxVisible_; }
    int editBoxRow() const { return boxRow_; }
    int editBoxColumn() const { return boxColumn_; }
    QString editBoxText() const { return boxText_; }

    // "Open BIN File" with the chosen path (empty: cancelled).
    void OpenBINFile(const QString& path);
    void selectBank(int listIndex);
    void ReloadLast();
    void ClearMatrix();
    void clickCell(int row, int column);
    void doubleClickRegion(int regionIndex);
    void setCellColor(vexorin::rom::Rgb color) { cellColor_ = color; }
    void setToolTipEnabled(bool on);

    // The edit path.
    void setEditMode(bool on);
    void doubleClickCell(int row, int column);
    // A key typed while the grid has the focus, with the cell under the mouse.
    void keyOnGrid(int keyCode, int mouseRow, int mouseColumn);
    void GridEdit(int keyCode, int row, int column);
    // A key typed in the edit box (Enter closes it).
    void editBoxKey(int keyCode);
    // The box loses the focus: hidden, and in edit mode its byte goes to the file.
    void editBoxFocusLost();

    // Fills the grid from the file; the first also disables the grid, beeps at
    // the end and reports a file too short for the bank.
    bool DumpFile_V03();
    bool DumpAlreadySelectedFile();

    // The edit journal of the file, shared with every editor of it.
    bool canUndo() const;
    bool canRedo() const;
    void undo() { journalStep(true); }
    void redo() { journalStep(false); }
    FileEdits::Revert revertPlan();
    void revert(const FileEdits::Revert& plan);

    QString nextViewerCaption();
    int nextFormCount() const { return formCount_ + 1; }
    void setYield(std::function<void()> yield) { yield_ = std::move(yield); }
    void abortLoad() { abort_ = true; }

signals:
    void gridReset();
    void cellChanged(int row, int column);
    void changed();
    void message(const QString& text, bool exclamation);
    void beep();
    // Undo and redo may have changed what they can do.
    void journalChanged();

private:
    void setCell(int row, int column, const QString& text);
    void colorCell(int row, int column, vexorin::rom::Rgb color);
    void rebuild();
    void writeHeadings(int row);
    void showBankRange();
    void takeSelectedRange();
    bool walk(bool fromOpen);
    bool noFile() const;
    void openEditBox(int row, int column);
    void writeBoxToCell();
    void backupOnEditMode();
    void showFileBytes(const QString& key, const QVector<long>& offsets);
    bool fileChosen();
    void journalStep(bool back);

    MapGrid grid_;
    QString path_;
    int bankIndex_ = 0;
    int first_ = kFirstPositionAtStart;
    int last_ = kLastPositionAtStart;
    QString converted_ = QStringLiteral("Converted : ");
    bool editMode_ = false;
    bool toolTips_ = true;
    vexorin::rom::Rgb cellColor_{0xFF, 0xFF, 0x00};
    int formCount_ = 1;
    int viewerCounter_ = 1;
    bool loading_ = false;
    bool abort_ = false;
    std::function<void()> yield_;

    int clickedRow_ = 0;
    int clickedColumn_ = 0;
    QString addressText_;
    int fileOffset_ = 0;
    QString cellText_;

    bool boxVisible_ = false;
    int boxRow_ = 1;
    int boxColumn_ = 1;
    QString boxText_;
};
