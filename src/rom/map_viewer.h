// The Map Viewer's logic: six map grids filled from a BIN file or, one map at
// a time, from the ECU over the Consult link, and stepped byte by byte in
// edit mode with each step written to the file at once.
#pragma once

#include "rom/file_edits.h"
#include "rom/map_block.h"
#include "rom/rules/map_decoding.h"
#include "rom/map_grid.h"
#include "rom/map_read_walk.h"
#include "rom/map_trace.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <array>
#include <functional>
#include <optional>
#include <vector>

class ConsultSession;

class MapViewer : public QObject {
    Q_OBJECT
public:
    static constexpr int kTabs = vexorin::rom::kMapCount;
    static constexpr int kTimerMs = 150;
    static constexpr int kStatusMs = 3000;
    static constexpr int kPauseMs = 50;
    static constexpr int kProgressMaximum = 255;
    static const QString kCaption;
    static const QString kRestStatus;
    static const QString kViewingFile;  // a tab that shows the BIN file

    // What each tab shows beside its grid.
    struct Tab {
        MapGrid grid;
        QString pathBox;
        QString viewing;
        bool editMode = false;
        bool clearMatrixBeforeDownload = false;
        bool clearMatrixEnabled = true;
        QString editName;
        QString origVal;
        QString textValue;
        // Empty: the normal control colour (and black text).
        std::optional<vexorin::rom::Rgb> textValueColor;
        bool framesRed = false;
        bool overlayVisible = false;
        int overlayRow = 1;
        int overlayColumn = 16;
        QString byteValueDisplayed;
        QString byteValueWhenChanged;
        // Compare: per cell, empty or "B: <what the other file's byte shows>".
        std::array<QString, MapGrid::kSize * MapGrid::kSize> compareTips;
        QString compareTip(int row, int column) const { return compareTips[std::size_t(row * MapGrid::kSize + column)]; }
        // The rectangle of body cells the block edits work on (edit mode only):
        // from the anchor, where it began, to the moving end.
        std::optional<vexorin::rom::MapSelection> selection;
        int anchorRow = 1, anchorColumn = 1;
        int endRow = 1, endColumn = 1;
    };

    using MapReadState = vexorin::rom::MapReadState;

    explicit MapViewer(ConsultSession& session, int formCount = 0, QObject* parent = nullptr);

    std::array<QTimer, kTabs> mapTimers;  // GetFuelHighOctTimer … GetTimingLowOctTimer
    QTimer MapStatusTimer;

    const Tab& tab(int index) const { return tabs_[std::size_t(index)]; }
    QString status() const { return status_; }
    int progress() const { return progress_; }
    int currentTab() const { return currentTab_; }
    const MapReadState& readState() const { return walk_.state(); }
    int TxtFormCount() const { return formCount_; }
    QString caption() const { return caption_; }
    // The text shown for a byte at its one-based position at the last file load.
    QString displayCache(int position) const;
    bool loading() const { return loading_; }
    int currentByte() const { return currentByte_; }
    int bytePosition() const { return bytePosition_; }

    // Tabs and the View menu.
    void setCurrentTab(int index);
    void setClearMatrixBeforeDownload(int tab, bool on);
    void setCaption(const QString& caption) { caption_ = caption; }

    // Loading from a BIN file: the path chosen in the dialog, from a tab's button or
    // from the menu item (which also says "Loading Bin File"). False when it stopped.
    bool LoadBinFile(const QString& path, bool fromMenu = false);
    // The three operations of one map's chain.
    bool DumpRPM(int tab);
    bool DumpTP(int tab);
    bool DumpMAP(int tab);

    // Downloading from the ECU.
    void DownloadButton(int tab);
    void DownloadMapData();  // the menu item: the tab on view, fewer tests
    void StopDataFlow();
    void MapTimerTick(int tab);
    void MapStatusTimerTick();
    void LoadAllECUDataMaps();
    // A read step of one map, as a tick runs it: nothing while a read is in flight.
    void readStep(int tab);

    void ClearMatrix(int tab);
    // Live Trace: one switch for the window.
    MapTrace& trace() { return trace_; }
    const MapTrace& trace() const { return trace_; }
    void setLiveTrace(bool on) { trace_.setOn(on); }
    // Sends the bare activation sequence and reads nothing (needs a connected port).
    void ActivationByteTest();

    // Compare: marks every body cell and scale heading whose byte differs in
    // the other file. Neither file is written. False (and a message) when
    // either cannot be read.
    bool compareWith(const QString& otherPath);
    void clearCompare();
    QString comparePath() const { return comparePath_; }

    // Editing.
    void setEditMode(int tab, bool on);
    void selectCell(int tab, int row, int column);
    void spinUp(int tab) { step(tab, true); }
    void spinDown(int tab) { step(tab, false); }

    // The rectangle from the tab's anchor cell to a body cell (a drag, Shift+arrows).
    void extendSelection(int tab, int row, int column);
    // Typed figures: the figure in its own units for the tab's selected cell or
    // heading, written as one byte. False (and a message) when refused.
    bool typeFigure(int tab, const QString& text);
    vexorin::rom::FigureKind figureKind(int tab, int row, int column) const;
    // Block edits on the tab's selection: the plan for the preview, then its writes.
    // An empty plan (and a message) when refused.
    std::vector<vexorin::rom::BlockCell> planBlock(int tab, vexorin::rom::BlockOp op, double value = 0);
    bool applyBlock(int tab, const std::vector<vexorin::rom::BlockCell>& cells);
    bool blockEditAllowed(int tab) const { return this->tab(tab).editMode && this->tab(tab).selection.has_value(); }

    // The edit journal of the loaded file, shared with every editor of it.
    QString filePath() const;
    bool canUndo() const;
    bool canRedo() const;
    void undo() { journalStep(true); }
    void redo() { journalStep(false); }
    FileEdits::Revert revertPlan();
    void revert(const FileEdits::Revert& plan);

    // Called after every cell of a file load so that the window stays alive.
    void setYield(std::function<void()> yield) { yield_ = std::move(yield); }
    // The pause before a read step empties the input (tests use 0).
    void setPauseMs(int ms) { pauseMs_ = ms; }
    // Makes a running file load stop at its next cell (the window is going away).
    void abortLoad() { abort_ = true; }

    // The next viewer's caption and form count (OpenNewViewer).
    QString nextViewerCaption();
    int nextFormCount() const { return formCount_ + 1; }

signals:
    void gridReset(int tab);
    // The compare marks of every tab changed.
    void compareChanged();
    void cellChanged(int tab, int row, int column);
    void tabChanged(int tab);
    void statusChanged();
    void currentTabChanged(int tab);
    // `exclamation`: the box carries the exclamation icon.
    void message(const QString& text, bool exclamation);
    void beep();
    // Undo and redo may have changed what they can do.
    void journalChanged();

private:
    Tab& mutableTab(int index) { return tabs_[std::size_t(index)]; }
    void setStatus(const QString& text);
    void setProgress(int value);
    void setCell(int tab, int row, int column, const QString& text);
    void setCellColor(int tab, int row, int column, vexorin::rom::Rgb color);
    void rebuildGrid(int tab, bool fixedColumn, int row, int column);
    void setViewing(int tab, const QString& text);
    void editModeOff(int tab);
    void stopAllMapTimers();
    bool portAndMonitorAllowDownload(bool testMonitor);
    void startDownload(int tab, bool fromButton);
    bool readFile(int tab, int lastOffset, std::vector<std::uint8_t>& bytes);
    bool cellDone();
    void cache(int position, const QString& text);

    void stopDataFlowNow();
    void continueLoadAll();
    void burstArrived(int tab, const vexorin::rom::MapReadStep& step, const std::array<int, 8>& data);
    void mapDone(int tab);
    void scalesDone(int tab);
    void downloadTimedOut();
    void scaleByte(int tab, bool rpm, int value);
    void mapByte(int tab, int value, int progress);

    void placeOverlay(int tab, int row, int column);
    void step(int tab, bool up);
    void stepTp(int tab, bool up);
    void stepRpm(int tab, bool up);
    void stepCell(int tab, bool up);
    bool writeAtPosition(int tab, int value);
    bool hasFile();
    void journalStep(bool back);
    bool writeFigureByte(int tab, int position, int value);
    void showFileBytes(const QString& key, const QVector<long>& offsets);
    void fileBytesChanged();
    void backupOnEditMode(int tab);
    void showEditedCell(int tab);

    void showTrace();
    bool markDifferences();

    ConsultSession& session_;
    std::array<Tab, kTabs> tabs_;
    QString status_;
    QString caption_;
    int progress_ = 0;
    int currentTab_ = 0;
    vexorin::rom::MapReadWalk walk_;
    int loadAllNext_ = kTabs;  // the next tab of "Load All ECU Data Maps"
    std::vector<QString> displayCache_;
    int formCount_ = 0;
    int viewerCounter_ = 0;
    int pauseMs_ = kPauseMs;
    bool loading_ = false;
    bool abort_ = false;
    std::function<void()> yield_;

    // Edit state, one set for the window.
    int currentByte_ = 0;
    int bytePosition_ = 0;
    int selectedRow_ = 1;
    int selectedColumn_ = 16;
    QString previousValue_;

    MapTrace trace_;
    QString comparePath_;
};
