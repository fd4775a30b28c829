// The main window of Vexorin: menus, the all-sensors panel, the status block,
// the five main buttons, the session log, the status bar and, below the
// client area, the service panel.
#pragma once

#include "app/options_menu.h"
#include "app/window_registry.h"
#include "ui/twips.h"

#include <QMainWindow>
#include <QPalette>
#include <QPointer>

class AppCore;
class QAction;
class QLabel;
class QMenu;
class QPlainTextEdit;
class QPushButton;
class SensorPanel;
class InterfaceCheckWindow;
class LargeViewPanel;
class DashWindow;
class ByteViewerWindow;
class StartupAnnounceWindow;
class FaultCodesWindow;
class SpeechEnginesWindow;
class OptionsMenu;
class GraphWidget;
class GraphTestWindow;
class ColorPicker;
class QCheckBox;
class LogChartWindow;
class FuelCorrectionWindow;
class LogPlayerWindow;
class MapViewerWindow;
class BinViewerWindow;
class BinCompareWindow;
class ExternalSensorsWindow;
class ColorFramePanel;
class CreditsWindow;
class SplashWindow;
class EcuToolWindows;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    static constexpr int px(int twips) { return vexorin::ui::px(twips); }
    static constexpr int twips(int pixels) { return vexorin::ui::twips(pixels); }
    static constexpr int kClientWidthTwips = 12840;
    static constexpr int kClientHeightTwips = 7200;

    explicit MainWindow(AppCore& core, QWidget* parent = nullptr);
    ~MainWindow() override;

    QAction* action(const QString& objectName) const;
    QMenu* portMenu() const { return consultMenu_; }
    InterfaceCheckWindow* interfaceCheckWindow() const;
    DashWindow* dashWindow() const;
    ByteViewerWindow* byteViewerWindow() const;
    StartupAnnounceWindow* startupAnnounceWindow() const;
    FaultCodesWindow* faultCodesWindow() const;
    SpeechEnginesWindow* speechEnginesWindow() const;
    LargeViewPanel* largeViewer() const { return largeViewer_; }
    GraphTestWindow* graphTestWindow() const;
    GraphWidget* graphWidget() const { return graphWidget_; }
    LogPlayerWindow* logPlayerWindow() const;
    // Tools, Log Chart and the Log Player's "Chart": the log's chart, one
    // window per log, its cursor following the Log Player.
    LogChartWindow* openLogChart(const QString& logPath);
    LogChartWindow* logChartWindow() const;
    // A frame chosen on a chart: the Log Player shows it (loading the log first).
    void playLogFrom(const QString& logPath, qint64 firstLine);
    MapViewerWindow* mapViewerWindow() const;
    void showMapViewer();
    EcuToolWindows* ecuTools() const { return ecuTools_; }
    BinViewerWindow* binViewerWindow() const;
    void showBinViewer();
    // Tools, Compare BIN Files.
    BinCompareWindow* binCompareWindow() const;
    void showBinCompare();
    // The Map Viewer with file A loaded and the map of `tab` (index of kMaps)
    // on view, for a map row of the BIN Compare; `b` is the file it is compared with.
    void openMapCompare(int tab, const QString& a, const QString& b);

    // Tools, Fuel Correction: the fuel map corrected from a wideband run.
    FuelCorrectionWindow* fuelCorrectionWindow() const;
    void showFuelCorrection();

    // External sensors: the External Gauge Monitor, while it is open.
    ExternalSensorsWindow* externalSensorsWindow() const;

    // Help and Extra Utilities.
    void showSplash();
    void showCredits();
    SplashWindow* splashWindow() const;
    CreditsWindow* creditsWindow() const;
    ColorFramePanel* colorFramePanel() const { return colorFramePanel_; }
    // File, Exit: the other windows go in their fixed order, then this one,
    // whose own closing ends capture and closes the port.
    void exitFromMenu();
    // Every other window, in the fixed order of the shutdown.
    void unloadWindows();
    // The other windows: made on first use, known while they live.
    WindowRegistry& windows() { return registry_; }
    // The stored geometry and "Stay on top", applied when the start-up has run.
    void applyStartupSettings();

signals:
    // A window is about to go in the shutdown's unload (its object name).
    void windowUnloading(const QString& objectName);

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildMenus();
    QWidget* buildClientArea();
    QWidget* buildStatusBlock();
    QWidget* buildGraphFrame();
    void refreshGraphControls();
    void showGraphTest();
    void showLogPlayer();
    QWidget* buildServicePanel();
    void buildStatusBar();
    void refreshLabels();
    void refreshPortRows();
    void refreshChecks();
    void showInterfaceCheck();
    void showDash();
    void showByteViewer();
    void refreshViews();
    void showStartupAnnounce();
    void showFaultCodes();
    void showSpeechEngines();
    void placeSharedSpotFrames();
    static QRect largeViewRect();  // where the large view lies over the all-sensors panel
    void showExternalSensors();
    void registerWindowMakers();

    AppCore& core_;
    WindowRegistry registry_;
    QMenu* consultMenu_ = nullptr;
    QAction* portRowsStart_ = nullptr;
    QAction* portRowsEnd_ = nullptr;
    QList<QAction*> portRows_;
    QAction* connectAction_ = nullptr;
    QAction* useConZultAction_ = nullptr;
    QAction* notifyPortsAction_ = nullptr;
    QAction* voiceMonitorAction_ = nullptr;
    QLabel* connectedLabel_ = nullptr;
    QLabel* monitorLabel_ = nullptr;
    QLabel* voiceMonitorLabel_ = nullptr;
    QLabel* partNumberLabel_ = nullptr;
    QLabel* kValueLabel_ = nullptr;
    QLabel* faultCodeList_ = nullptr;
    QLabel* panels_[8] = {};
    QPlainTextEdit* sessionLog_ = nullptr;
    SensorPanel* sensorPanel_ = nullptr;
    LargeViewPanel* largeViewer_ = nullptr;
    QAction* viewAllAction_ = nullptr;
    QAction* largeViewAction_ = nullptr;
    QList<QWidget*> sharedSpotFrames_;
    GraphWidget* graphWidget_ = nullptr;
    QLabel* graphSensorLabel_ = nullptr;
    QLabel* graphOnLabel_ = nullptr;
    QCheckBox* showPointsBox_ = nullptr;
    ColorPicker* dataColor_ = nullptr;
    ColorPicker* pointColor_ = nullptr;
    QAction* showLinesAction_ = nullptr;
    QAction* threeDAction_ = nullptr;
    EcuToolWindows* ecuTools_ = nullptr;
    QAction* captureAction_ = nullptr;
    QList<QAction*> intervalActions_;
    QList<QAction*> voiceTypeActions_;
    QList<std::pair<QAction*, bool (OptionsMenu::*)() const>> optionChecks_;
    QAction* stayOnTopAction_ = nullptr;
    bool nightShown_ = false;
    QPalette dayPalette_;
    ColorFramePanel* colorFramePanel_ = nullptr;
    WindowGeometry storedGeometry_;
    bool placedOnShow_ = false;
    void placeAtStoredGeometry();
};
