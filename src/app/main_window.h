// The main window of Vexorin: menus, the all-sensors panel, the status block,
// the five main buttons, the session log, the status bar and, below the
// client area, the service panel.
#pragma once

#include <QMainWindow>
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
class LogPlayerWindow;
class MapViewerWindow;
class EcuToolWindows;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    static constexpr int kTwipsPerPixel = 15;
    static constexpr int kClientWidthTwips = 12840;
    static constexpr int kClientHeightTwips = 7200;

    explicit MainWindow(AppCore& core, QWidget* parent = nullptr);
    ~MainWindow() override;

    QAction* action(const QString& objectName) const;
    QMenu* portMenu() const { return consultMenu_; }
    InterfaceCheckWindow* interfaceCheckWindow() const { return interfaceCheck_; }
    DashWindow* dashWindow() const { return dash_; }
    ByteViewerWindow* byteViewerWindow() const { return byteViewer_; }
    StartupAnnounceWindow* startupAnnounceWindow() const { return startupAnnounce_; }
    FaultCodesWindow* faultCodesWindow() const { return faultCodesWindow_; }
    SpeechEnginesWindow* speechEnginesWindow() const { return speechEngines_; }
    LargeViewPanel* largeViewer() const { return largeViewer_; }
    GraphTestWindow* graphTestWindow() const { return graphTest_; }
    GraphWidget* graphWidget() const { return graphWidget_; }
    LogPlayerWindow* logPlayerWindow() const { return logPlayer_; }
    MapViewerWindow* mapViewerWindow() const;
    void showMapViewer();
    EcuToolWindows* ecuTools() const { return ecuTools_; }

protected:
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

    AppCore& core_;
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
    InterfaceCheckWindow* interfaceCheck_ = nullptr;
    LargeViewPanel* largeViewer_ = nullptr;
    DashWindow* dash_ = nullptr;
    ByteViewerWindow* byteViewer_ = nullptr;
    QAction* viewAllAction_ = nullptr;
    QAction* largeViewAction_ = nullptr;
    StartupAnnounceWindow* startupAnnounce_ = nullptr;
    FaultCodesWindow* faultCodesWindow_ = nullptr;
    SpeechEnginesWindow* speechEngines_ = nullptr;
    QList<QWidget*> sharedSpotFrames_;
    GraphWidget* graphWidget_ = nullptr;
    QLabel* graphSensorLabel_ = nullptr;
    QLabel* graphOnLabel_ = nullptr;
    QCheckBox* showPointsBox_ = nullptr;
    ColorPicker* dataColor_ = nullptr;
    ColorPicker* pointColor_ = nullptr;
    QAction* showLinesAction_ = nullptr;
    QAction* threeDAction_ = nullptr;
    GraphTestWindow* graphTest_ = nullptr;
    LogPlayerWindow* logPlayer_ = nullptr;
    QPointer<MapViewerWindow> mapViewer_;
    EcuToolWindows* ecuTools_ = nullptr;
    QAction* captureAction_ = nullptr;
    QList<QAction*> intervalActions_;
    QList<QAction*> voiceTypeActions_;
    QList<std::pair<QAction*, bool (OptionsMenu::*)() const>> optionChecks_;
};
