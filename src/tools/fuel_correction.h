// "Vexorin Fuel Correction" without its widgets: the BIN file whose fuel map
// is corrected, the map, the target ratios kept beside the file, the runs
// held (opened from files or recorded now), the analysis of their samples,
// and what Apply and Export CSV write. Apply goes through the editors' one
// write path: the backup before a file's first edit, one step of its edit
// journal (so Undo takes it back), and every open view of the file shows it.
#pragma once

#include "tools/fuel_analysis.h"
#include "tools/fuel_targets.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>
#include <vector>

class SettingsStore;

class FuelCorrection : public QObject {
    Q_OBJECT
public:
    // The four fuel maps, in the Map Viewer's tab order.
    static constexpr int kFuelMaps = 4;

    explicit FuelCorrection(SettingsStore& store, QObject* parent = nullptr);

    // The BIN file: refused with a message when it is no regular file of 32768 bytes.
    bool openBin(const QString& path);
    QString binPath() const { return binPath_; }
    // "Fuel (High Octane)" … "Fuel (Low Oct/High Gear)".
    static QStringList mapCaptions();
    int mapIndex() const { return mapIndex_; }
    void setMapIndex(int index);

    // Headings as the Map Viewer shows them (row and column 1..16); empty without a file.
    QString rpmHeading(int row) const;
    QString tpHeading(int column) const;
    int mapByte(int row, int column) const;

    // The target of a cell (1..16, 1..16), and a typed one: refused with the
    // range message when it is no fuel figure in range.
    double target(int row, int column) const;
    bool setTarget(int row, int column, const QString& text);
    QString targetPath() const;
    // Whether the targets are on disk (read from the file, or written there).
    bool targetsKept() const { return targetsKept_; }

    vexorin::tools::FuelSettings settings() const { return settings_; }
    // Stores the settings and analyses the samples held again.
    void setSettings(const vexorin::tools::FuelSettings& settings);

    // Runs from files, added to those held; "<N> rows could not be read." after
    // the files when N > 0; a file that is no run file is refused by name.
    void openRuns(const QStringList& paths);
    // Forgets every run held (the one being recorded goes on afresh).
    void clear();
    int runCount() const { return int(runs_.size()); }

    // A recording: its rows as they come, stamped by the recorder's clock.
    void beginLiveRun();
    void addEcuRow(const vexorin::tools::EcuRow& row);
    void addAfrRow(const vexorin::tools::AfrRow& row, qint64 nowMs);
    void endLiveRun();
    bool live() const { return live_ >= 0; }
    // Takes the readings whose frames are all in and shows the analysis when
    // it changed (the recorder calls it twice a second).
    void refreshLive(qint64 nowMs);

    const vexorin::tools::FuelAdvice& advice() const { return advice_; }
    const vexorin::tools::CellAdvice& cell(int row, int column) const;
    // "<S> samples in <C> cells; <D> cells to change".
    QString status() const;

    // Apply: the cells to change, as the question lists them.
    struct Change {
        int row, column;
        QString oldFigure, newFigure;
    };
    QVector<Change> changes() const;
    // "Nothing to change." (and false) when there is nothing; otherwise the
    // new bytes are written as one edit step and the samples held, measured
    // on the old map, are cleared.
    bool apply();
    // row,col,rpm,tp,samples,measured,target,map,suggested,byte_old,byte_new.
    bool exportCsv(const QString& path, QString* error = nullptr) const;
    static const char* const kCsvHeader;

    // Analysis of every run held, now (tests; the controller runs it on every change).
    void analyse();

signals:
    void binChanged();
    void targetsChanged();
    void adviceChanged();
    // A message box titled "Vexorin".
    void message(const QString& text);

private:
    void loadMap(const std::vector<std::uint8_t>& image);
    void startTargets();
    bool keepTargets();
    void showAdvice();
    void readBinAgain(const QString& key);

    SettingsStore& store_;
    QString binPath_;
    int mapIndex_ = 0;
    std::vector<std::uint8_t> image_;
    vexorin::tools::FuelMap map_;
    vexorin::tools::Targets targets_{};
    bool targetsKept_ = false;
    vexorin::tools::FuelSettings settings_;
    std::vector<vexorin::tools::FuelRun> runs_;
    int live_ = -1;
    std::vector<vexorin::tools::AfrRow> pending_;
    vexorin::tools::CellTally tally_;
    vexorin::tools::FuelAdvice advice_;
    bool dirty_ = false;
};
