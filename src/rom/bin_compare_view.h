// The BIN Compare's logic behind its window: the two files A and B (read
// whole, read-only, never written), the comparison of their bytes, and the
// texts the window shows — the summary and one row per place that differs.
// A row of one of the six maps asks for the Map Viewer on that map.
#pragma once

#include "rom/bin_compare.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

class BinCompareView : public QObject {
    Q_OBJECT
public:
    static const QString kCaption;
    // Larger files are refused: no BIN file comes near, and the whole file is held in memory.
    static constexpr qint64 kLargestFile = 16 * 1024 * 1024;

    explicit BinCompareView(QObject* parent = nullptr);

    // Reads the file as side A or B. A file that cannot be read leaves that
    // side as it was and says why through message(). Empty path: nothing happens (a cancelled dialog).
    void openA(const QString& path);
    void openB(const QString& path);

    QString pathA() const { return a_.path; }
    QString pathB() const { return b_.path; }
    bool hasA() const { return a_.loaded; }
    bool hasB() const { return b_.loaded; }
    bool compared() const { return a_.loaded && b_.loaded; }

    // Before both files are open: what to do next. After: the difference line,
    // and on a second line the two lengths when they differ.
    QString summary() const;
    // One text per row of the comparison, empty until both files are open.
    QStringList rows() const;
    const vexorin::rom::CompareResult& result() const { return result_; }

    // A row opened (double-click, Enter): a map row asks for the Map Viewer.
    void activateRow(int row);

signals:
    void changed();
    void message(const QString& text);
    // The Map Viewer with file A on tab `tab` (index of kMaps), compared with file B.
    void mapRequested(int tab, const QString& pathA, const QString& pathB);

private:
    struct Side {
        QString path;
        std::vector<std::uint8_t> bytes;
        bool loaded = false;
    };
    void open(Side& side, const QString& path);
    void recompare();

    Side a_;
    Side b_;
    vexorin::rom::CompareResult result_;
};
