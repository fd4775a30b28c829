// The preview of a block edit: every cell of the selection with its old and
// new figure, the cells whose figure was clamped to the end of the range in
// another colour; OK writes, Cancel leaves the file alone.
#pragma once

#include "rom/map_block.h"

#include <QDialog>
#include <QStringList>
#include <functional>
#include <vector>

class QTableWidget;
class QLabel;

class BlockPreviewWindow : public QDialog {
    Q_OBJECT
public:
    static const QColor kClampedBack;

    // `rpm` and `tp`: the grid's headings, index 1..16 (index 0 unused).
    BlockPreviewWindow(const QString& operation, vexorin::rom::FigureKind kind,
                       const std::vector<vexorin::rom::BlockCell>& cells, const QStringList& rpm,
                       const QStringList& tp, QWidget* parent = nullptr);

    QTableWidget* table() const { return table_; }
    QLabel* summary() const { return summary_; }

    // Shows the preview and waits: true for OK. The preview is deleted after.
    static bool confirm(BlockPreviewWindow* preview);
    // Answers instead of a person, given the preview shown (an empty function restores the dialog).
    using Answerer = std::function<bool(BlockPreviewWindow& preview)>;
    static void setAnswerer(Answerer answerer);

private:
    QTableWidget* table_;
    QLabel* summary_;
};
