// "Vexorin Map Viewer/Editor": six map tabs, a status bar with a progress
// bar over its second panel, loading from a BIN file or the ECU, and editing.
#pragma once

#include "rom/map_block.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <memory>
#include <array>

class BlockPreviewWindow;
class ConsultSession;
class MapGridWidget;
class MapSurfaceWindow;
class MapViewer;
class QAction;
class QCheckBox;
class QFrame;
class QKeyEvent;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMenu;
class QMenuBar;
class QProgressBar;
class QPushButton;
class QTabWidget;
class QToolButton;

class MapViewerWindow : public QWidget {
    Q_OBJECT
public:
    static constexpr int kWidthTwips = 14670, kHeightTwips = 7680;

    explicit MapViewerWindow(ConsultSession& session, int formCount = 0, QWidget* parent = nullptr);
    ~MapViewerWindow() override;

    MapViewer& viewer() { return *viewer_; }
    // This window and the viewers opened from it or beside it, while they live.
    QList<MapViewerWindow*> family() const;

    QTabWidget* tabs() const { return tabs_; }
    MapGridWidget* grid(int tab) const { return pages_[std::size_t(tab)].grid; }
    QLineEdit* pathBox(int tab) const { return pages_[std::size_t(tab)].path; }
    QFrame* overlay(int tab) const { return pages_[std::size_t(tab)].overlay; }
    QLineEdit* overlayBox(int tab) const { return pages_[std::size_t(tab)].overlayBox; }
    QLabel* statusPanel() const { return status_; }
    QProgressBar* progressBar() const { return progress_; }
    QAction* action(const QString& objectName) const;

    // "Load BIN File" (buttons and menu item): a dialog, then the load.
    void loadBinFile(bool fromMenu);
    // "Compare With BIN File...": a dialog, then the marks.
    void compareWithBinFile();
    // "3D View" of a tab: its window, brought up again if it is open.
    MapSurfaceWindow* show3dView(int tab);
    // A block edit of the Edit menu on the tab on view: a prompt, the
    // preview, then the writes.
    void blockEdit(vexorin::rom::BlockOp op);
    // The preview of a planned block edit on a tab, not yet shown.
    BlockPreviewWindow* blockPreview(int tab, vexorin::rom::BlockOp op,
                                     const std::vector<vexorin::rom::BlockCell>& plan);
    // A typed figure over the tab's selected cell: the box opens with `text`;
    // Enter writes, Esc cancels.
    void startFigure(int tab, const QString& text);
    bool typingFigure(int tab) const;
    // "Save Snapshot".
    void saveSnapshot();
    // "Open New Viewer": the new window, shown without blocking.
    MapViewerWindow* openNewViewer();
    // "Exit": a secondary viewer unloads every viewer, the first only itself.
    void exitViewer();

signals:
    // The window asks to be destroyed (its owner may hold a pointer to it).
    void unloaded();
    // "Open New Viewer" made another viewer.
    void viewerOpened(MapViewerWindow* viewer);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;

private:
    bool gridKey(int tab, const QKeyEvent& key);
    bool figureBoxKey(int tab, const QKeyEvent& key);
    void endFigure(int tab, bool write);
    void buildEditMenu(QMenuBar* menuBar);
    void updateEditActions();
    void showSelection(int tab);
    void gridPressed(int tab, int row, int column);
    struct Page {
        QWidget* widget = nullptr;
        MapGridWidget* grid = nullptr;
        QLabel* viewing = nullptr;
        QCheckBox* clearBeforeDownload = nullptr;
        QPushButton* clearMatrix = nullptr;
        QPushButton* download = nullptr;
        QLineEdit* path = nullptr;
        QCheckBox* editMode = nullptr;
        QLabel* editName = nullptr;
        QLineEdit* origVal = nullptr;
        QLineEdit* textValue = nullptr;
        QFrame* newValueFrame = nullptr;
        QFrame* spinFrame = nullptr;
        QFrame* overlay = nullptr;
        QLineEdit* overlayBox = nullptr;
        QLabel* byteDisplayed = nullptr;
        QLabel* byteChanged = nullptr;
        QPushButton* liveTrace = nullptr;
    };

    void buildMenus(QWidget* menuBarHolder);
    QWidget* buildPage(int tab);
    void refreshTab(int tab);
    void refreshStatus();
    void placeOverlay(int tab);
    void unload();
    void traceSwitched(bool on);
    void close3dViews();
    void showTraceMarks();

    MapViewer* viewer_;
    ConsultSession& session_;
    QTabWidget* tabs_;
    QLabel* status_;
    QProgressBar* progress_;
    std::array<Page, 6> pages_{};
    std::shared_ptr<QList<QPointer<MapViewerWindow>>> family_;
    QTimer traceFade_;  // the trail fades while no frame comes
    std::array<QPointer<MapSurfaceWindow>, 6> surfaces_{};
};
