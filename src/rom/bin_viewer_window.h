// "Vexorin BIN File Viewer/Editor": one register bank of a BIN file as a hex
// table, named regions in colour with converted values, and byte edits.
#pragma once

#include <QWidget>
#include <memory>
#include <functional>
#include <QPointer>

class BinViewer;
class ColorPicker;
class HexChartWindow;
class MapGridWidget;
class QAction;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;

class BinViewerWindow : public QWidget {
    Q_OBJECT
public:
    static constexpr int kWidthTwips = 14385, kHeightTwips = 7080;

    explicit BinViewerWindow(int formCount = 1, QWidget* parent = nullptr);
    ~BinViewerWindow() override;

    BinViewer& viewer() { return *viewer_; }
    // This window and the viewers opened from it or beside it, while they live.
    QList<BinViewerWindow*> family() const;
    // Where "View Hex Chart" finds its window; by default the family makes its own.
    void setHexChartSource(std::function<HexChartWindow*()> source);
    // The Hex Chart window, made on first use.
    HexChartWindow* hexChart();
    HexChartWindow* existingHexChart() const;

    MapGridWidget* grid() const { return grid_; }
    QComboBox* bankSelector() const { return banks_; }
    QListWidget* registerList() const { return regions_; }
    QLabel* convertedLabel() const { return converted_; }
    QLineEdit* pathBox() const { return path_; }
    QLineEdit* editBox() const { return editBox_; }
    QCheckBox* editModeBox() const { return editMode_; }
    ColorPicker* colorPicker() const { return picker_; }
    QAction* action(const QString& objectName) const;

    void openBinFile();    // "Open BIN File": the dialog, then the load
    void saveSnapshot();   // "Save Snapshot"
    BinViewerWindow* openNewViewer();
    // "Exit": every BIN File Viewer/Editor and the Hex Chart go, then this window.
    void exitViewer();

signals:
    // "Open New Viewer" made another viewer.
    void viewerOpened(BinViewerWindow* viewer);

protected:
    void closeEvent(QCloseEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    void buildMenus();
    void refresh();
    void placeEditBox();
    void unload();
    static int keyCodeOf(const QKeyEvent* e);

    BinViewer* viewer_;
    MapGridWidget* grid_;
    QComboBox* banks_;
    QListWidget* regions_;
    ColorPicker* picker_;
    QLabel* converted_;
    QLineEdit* path_;
    QCheckBox* editMode_;
    QPlainTextEdit* notes_;
    QLineEdit* editBox_;
    // What the viewers opened from one another share.
    struct Family {
        QList<QPointer<BinViewerWindow>> viewers;
        QPointer<HexChartWindow> chart;
        std::function<HexChartWindow*()> chartSource;
    };
    std::shared_ptr<Family> family_;
};
