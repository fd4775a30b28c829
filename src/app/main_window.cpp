#include "app/main_window.h"

#include "app/app_core.h"
#include "app/color_frame.h"
#include "app/color_frame_panel.h"
#include "app/credits_window.h"
#include "app/ecu_tools_window.h"
#include "app/fault_codes_window.h"
#include "app/interface_check_window.h"
#include "app/options_menu.h"
#include "app/platform_tools.h"
#include "app/port_selection.h"
#include "app/splash.h"
#include "app/splash_window.h"
#include "app/update_check.h"
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/fault_codes.h"
#include "consult/session_log.h"
#include "external/external_sensors.h"
#include "external/external_sensors_window.h"
#include "graph/graph_control.h"
#include "graph/graph_feed.h"
#include "graph/graph_test_window.h"
#include "graph/graph_widget.h"
#include "logging/log_capture.h"
#include "logging/log_player_window.h"
#include "rom/bin_viewer_window.h"
#include "rom/hex_chart_window.h"
#include "rom/map_viewer_window.h"
#include "sensors/byte_viewer_window.h"
#include "sensors/dash_window.h"
#include "sensors/large_view_panel.h"
#include "sensors/monitor_views.h"
#include "sensors/sensor_displays.h"
#include "sensors/sensor_panel.h"
#include "sensors/sensor_selection.h"
#include "sensors/sensor_stream.h"
#include "tools/active_test_window.h"
#include "tools/bin_file_downloader_window.h"
#include "tools/register_viewer_window.h"
#include "ui/color_picker_widget.h"
#include "ui/common_dialog.h"
#include "ui/layout_audit.h"
#include "ui/message_box.h"
#include "ui/plain_text.h"
#include "ui/port_menu_items.h"
#include "ui/status_panels.h"
#include "ui/user_input.h"
#include "voice/alert_frame_panel.h"
#include "voice/alerts.h"
#include "voice/speech_engines_window.h"
#include "voice/speech_recognition.h"
#include "voice/startup_announce_window.h"
#include "voice/voice_gate.h"
#include "voice/voice_monitor.h"
#include "voice/voice_types.h"

#include <QActionGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QDateTime>
#include <QGridLayout>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>
#include <functional>

namespace {
constexpr int px(int twips)
{
    return MainWindow::px(twips);
}

// The client area at its fixed design height, with the service panel lying below it.
class ClientArea : public QWidget {
public:
    ClientArea(QWidget* client, QWidget* service, QWidget* parent)
        : QWidget(parent), client_(client), service_(service)
    {
        client_->setParent(this);
        service_->setParent(this);
        setMinimumSize(px(MainWindow::kClientWidthTwips) / 2, px(MainWindow::kClientHeightTwips) / 2);
    }
    QSize sizeHint() const override
    {
        return {px(MainWindow::kClientWidthTwips), px(MainWindow::kClientHeightTwips)};
    }

protected:
    void resizeEvent(QResizeEvent*) override
    {
        const int h = px(MainWindow::kClientHeightTwips);
        client_->setGeometry(0, 0, width(), h);
        // Below the client area and below whatever the window shows of this one.
        service_->setGeometry(0, qMax(h, height()), width(), service_->sizeHint().height());
    }

private:
    QWidget* client_;
    QWidget* service_;
};

QLabel* valueLabel(const QString& name, const QString& text, QWidget* parent)
{
    auto* l = new QLabel(text, parent);
    l->setObjectName(name);
    l->setFrameShape(QFrame::StyledPanel);
    l->setMinimumWidth(110);
    QFont f = l->font();
    f.setBold(true);
    l->setFont(f);
    l->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return l;
}
}  // namespace

MainWindow::MainWindow(AppCore& core, QWidget* parent)
    : QMainWindow(parent), core_(core)
{
    setObjectName(QStringLiteral("MainWindow"));
    setWindowTitle(QStringLiteral("Vexorin V2.5.1 (Tuning Edition)"));
    registerWindowMakers();
    buildMenus();
    setCentralWidget(new ClientArea(buildClientArea(), buildServicePanel(), this));
    buildStatusBar();
    // The design size: a client area of 12840 by 7200 twips below the menu and above the status bar.
    resize(px(kClientWidthTwips),
           px(kClientHeightTwips) + menuBar()->sizeHint().height() + statusBar()->sizeHint().height());
    move(px(1140), px(375));

    ConsultSession& s = core_.session();
    connect(&s, &ConsultSession::labelsChanged, this, &MainWindow::refreshLabels);
    connect(&s, &ConsultSession::message, this, [this](const QString& t) { MessageBoxes::information(this, t); });
    PortSelection& ps = core_.portSelection();
    connect(&ps, &PortSelection::rowsChanged, this, &MainWindow::refreshPortRows);
    connect(&ps, &PortSelection::checksChanged, this, &MainWindow::refreshChecks);
    connect(&ps, &PortSelection::message, this, [this](const QString& t) { MessageBoxes::information(this, t); });
    connect(&ps, &PortSelection::errorBox, this,
            [this](const QString& t, const QString& title) { MessageBoxes::critical(this, t, title); });
    connect(&core_.log(), &SessionLog::messageAdded, this, [this] {
        sessionLog_->setPlainText(QString(core_.log().text()).remove(QLatin1Char('\r')));
        sessionLog_->verticalScrollBar()->setValue(sessionLog_->verticalScrollBar()->maximum());
    });
    connect(&core_.log(), &SessionLog::cleared, sessionLog_, &QPlainTextEdit::clear);
    connect(&core_.panels(), &StatusPanels::changed, this, [this](int panel, const QString& text) {
        panels_[panel - 1]->setText(text);
    });
    connect(&core_.views(), &MonitorViews::viewChanged, this, &MainWindow::refreshViews);
    connect(&core_, &AppCore::started, this, &MainWindow::applyStartupSettings);
    connect(&core_.splash(), &Splash::showRequested, this, &MainWindow::showSplash);
    connect(&core_.splash(), &Splash::unloadRequested, this, [this] {
        if (QWidget* splash = registry_.existing(WindowRegistry::Kind::Splash))
            splash->close();
    });
    connect(&core_.updateCheck(), &UpdateCheck::message, this,
            [this](const QString& text, const QString& title) { MessageBoxes::information(this, text, title); });
    refreshLabels();
    refreshPortRows();
    refreshChecks();
    refreshViews();
    refreshGraphControls();
    vexorin::ui::keepTextPlain(this);
}

MainWindow::~MainWindow() = default;

QAction* MainWindow::action(const QString& objectName) const
{
    return findChild<QAction*>(objectName);
}

QWidget* MainWindow::buildClientArea()
{
    auto* client = new QWidget;
    client->setObjectName(QStringLiteral("ClientArea"));
    auto* h = new QHBoxLayout(client);
    h->setContentsMargins(6, 6, 6, 6);
    auto* left = new QVBoxLayout;
    left->setSpacing(4);
    sensorPanel_ = new SensorPanel(core_.displays(), client);
    // The large view covers the first five rows whole.
    sensorPanel_->alignRowsTo(largeViewRect(), 5);
    connect(sensorPanel_, &SensorPanel::sensorButtonClicked, &core_.selection(), &SensorSelection::SelectSensor);
    left->addWidget(sensorPanel_, 1);
    left->addWidget(buildGraphFrame());
    h->addLayout(left, 1);

    // Beside the panel: the status block, the five main buttons and the session log.
    auto* side = new QVBoxLayout;
    side->addWidget(buildStatusBlock());
    ConsultSession& s = core_.session();
    SensorStream& stream = core_.stream();
    const struct {
        const char* caption;
        std::function<void()> action;
        Qt::Key key;  // a shortcut, shown in the tool tip
    } mainButtons[] = {
        {"Connect/Disconnect", [&s] { s.ConnectDisconnect(); }, Qt::Key_unknown},
        {"Monitor On/Off", [&stream] { stream.MonitorOnOff(); }, Qt::Key_F3},
        {"Voice On/Off", [this] { core_.voiceMonitor().VoiceMonitorSwitch(); }, Qt::Key_F4},
        {"Get Fault Codes", [this] { core_.faultCodes().GetFaultCodes(); }, Qt::Key_unknown},
        {"Clear Fault Codes", [this] { core_.faultCodes().ClearFaultCodes(); }, Qt::Key_unknown},
    };
    for (const auto& b : mainButtons) {
        auto* button = new QPushButton(QString::fromLatin1(b.caption), client);
        button->setObjectName(QString::fromLatin1(b.caption).remove(QLatin1Char(' ')).replace(QLatin1Char('/'), QLatin1Char('_')) + QStringLiteral("Button"));
        if (b.key != Qt::Key_unknown) {
            button->setShortcut(QKeySequence(b.key));
            button->setToolTip(QStringLiteral("%1 (%2)").arg(QLatin1String(b.caption),
                                                             button->shortcut().toString(QKeySequence::NativeText)));
        }
        connect(button, &QPushButton::clicked, this, b.action);
        side->addWidget(button);
    }
    sessionLog_ = new QPlainTextEdit(client);
    sessionLog_->setObjectName(QStringLiteral("SessionLog"));
    sessionLog_->setAccessibleName(tr("Session Log"));
    sessionLog_->setReadOnly(true);
    sessionLog_->setMinimumHeight(60);
    sessionLog_->setToolTip(tr("Session Log"));
    side->addWidget(sessionLog_, 1);
    auto* sideBox = new QWidget(client);
    sideBox->setLayout(side);
    side->setContentsMargins(0, 0, 0, 0);
    sideBox->setFixedWidth(px(2700));
    h->addWidget(sideBox);

    // The alert frames (and the colour frame) share one spot: over the foot of the session log.
    for (int i = 0; i < 2; ++i) {
        auto* frame = new AlertFramePanel(core_.alert(i), client);
        connect(&core_.alert(i), &Alert::message, this, [this](const QString& t) { MessageBoxes::notify(this, t); });
        sharedSpotFrames_.append(frame);
    }
    colorFramePanel_ = new ColorFramePanel(core_.colorFrame(), [this] { return core_.options().stayOnTop(); }, client);
    sharedSpotFrames_.append(colorFramePanel_);
    connect(&core_.frameSpot(), &FrameSpot::changed, this, [this] {
        colorFramePanel_->setVisible(core_.frameSpot().shown() == FrameSpot::Color);
    });
    connect(&core_.frameSpot(), &FrameSpot::changed, this, &MainWindow::placeSharedSpotFrames);
    sensorPanel_->installEventFilter(this);

    // The large view lies over the all-sensors panel when chosen.
    largeViewer_ = new LargeViewPanel(core_.displays(), client);
    vexorin::ui::markAsOverlay(largeViewer_);
    largeViewer_->setGeometry(largeViewRect());
    largeViewer_->hide();
    return client;
}

QRect MainWindow::largeViewRect()
{
    return {px(LargeViewPanel::kLeft), px(LargeViewPanel::kTop), px(LargeViewPanel::kWidth), px(LargeViewPanel::kHeight)};
}

QWidget* MainWindow::buildGraphFrame()
{
    auto* frame = new QWidget;
    frame->setObjectName(QStringLiteral("GraphFrame"));
    auto* h = new QHBoxLayout(frame);
    h->setContentsMargins(0, 0, 0, 0);
    graphWidget_ = new GraphWidget(core_.graph(), frame);
    graphWidget_->setFixedHeight(92);
    h->addWidget(graphWidget_, 1);

    GraphFeed& feed = core_.graphFeed();
    auto* controls = new QGridLayout;
    controls->setVerticalSpacing(2);
    graphSensorLabel_ = new QLabel(frame);
    graphSensorLabel_->setObjectName(QStringLiteral("GraphSensorLabel"));
    QFont f = graphSensorLabel_->font();
    f.setBold(true);
    graphSensorLabel_->setFont(f);
    controls->addWidget(graphSensorLabel_, 0, 0, 1, 2);
    auto* onOff = new QPushButton(QStringLiteral("Graph ON/OFF"), frame);
    onOff->setObjectName(QStringLiteral("GraphOnOffButton"));
    connect(onOff, &QPushButton::clicked, &feed, &GraphFeed::GraphOnOff);
    graphOnLabel_ = new QLabel(frame);
    graphOnLabel_->setObjectName(QStringLiteral("GraphOnLabel"));
    controls->addWidget(onOff, 1, 0);
    controls->addWidget(graphOnLabel_, 1, 1);
    showPointsBox_ = new QCheckBox(QStringLiteral("Show Points"), frame);
    showPointsBox_->setObjectName(QStringLiteral("ShowPoints"));
    showPointsBox_->setChecked(core_.graph().settings().ShowPoints);
    vexorin::ui::onUserToggle(showPointsBox_, &feed, [&feed] { feed.ShowPointsClicked(); });
    controls->addWidget(showPointsBox_, 2, 0, 1, 2);
    dataColor_ = new ColorPicker(QStringLiteral("Data Color"), frame);
    pointColor_ = new ColorPicker(QStringLiteral("Point Color"), frame);
    connect(dataColor_, &ColorPicker::colorPicked, &core_.graph(), &GraphControl::setBarColor);
    connect(pointColor_, &ColorPicker::colorPicked, &core_.graph(), &GraphControl::setPointColor);
    for (ColorPicker* picker : {dataColor_, pointColor_}) {
        picker->setRefusalHandler([this](const QString& t) { MessageBoxes::information(this, t); });
        picker->setStayOnTopQuery([this] { return core_.options().stayOnTop(); });
    }
    controls->addWidget(dataColor_, 3, 0);
    controls->addWidget(pointColor_, 3, 1);
    h->addLayout(controls);
    connect(&feed, &GraphFeed::changed, this, &MainWindow::refreshGraphControls);
    connect(&core_.displays(), &SensorDisplays::selectionChanged, this, &MainWindow::refreshGraphControls);
    connect(&core_.graph(), &GraphControl::painted, this, &MainWindow::refreshGraphControls);
    return frame;
}

void MainWindow::refreshGraphControls()
{
    graphSensorLabel_->setText(core_.displays().graphSensorLabel());
    graphOnLabel_->setText(core_.graphFeed().GraphOnLabel());
    dataColor_->setColor(core_.graph().settings().BarColor);
    pointColor_->setColor(core_.graph().settings().PointColor);
    if (showLinesAction_) {
        showLinesAction_->setChecked(core_.graphFeed().showLinesChecked());
        threeDAction_->setChecked(core_.graphFeed().threeDChecked());
    }
}

QWidget* MainWindow::buildStatusBlock()
{
    auto* box = new QGroupBox;
    box->setObjectName(QStringLiteral("StatusBlock"));
    auto* v = new QVBoxLayout(box);
    v->setSpacing(1);
    connectedLabel_ = valueLabel(QStringLiteral("ConnectedLabel"), QString(), box);
    monitorLabel_ = valueLabel(QStringLiteral("MonitorSensorsOnLabel"), QString(), box);
    voiceMonitorLabel_ = valueLabel(QStringLiteral("VoiceMonitorOnLabel"), QString(), box);
    partNumberLabel_ = valueLabel(QStringLiteral("EcuPartNumberLabel"), QString(), box);
    kValueLabel_ = valueLabel(QStringLiteral("KValueLabel"), QString(), box);
    faultCodeList_ = valueLabel(QStringLiteral("FaultCodeList"), QString(), box);
    const std::pair<const char*, QLabel*> rows[] = {
        {"Status", connectedLabel_}, {"Sensors", monitorLabel_}, {"Voice Monitor", voiceMonitorLabel_},
        {"ECU Part Number", partNumberLabel_}, {"K Value", kValueLabel_}, {"Fault Codes", faultCodeList_}};
    for (const auto& [caption, label] : rows) {
        auto* c = new QLabel(QString::fromLatin1(caption), box);
        c->setBuddy(label);
        v->addWidget(c);
        v->addWidget(label);
    }
    return box;
}

QWidget* MainWindow::buildServicePanel()
{
    auto* panel = new QWidget;
    panel->setObjectName(QStringLiteral("ServicePanel"));
    auto* h = new QHBoxLayout(panel);
    auto* timers = new QGroupBox(QStringLiteral("Timers and Switches"), panel);
    auto* misc = new QGroupBox(QStringLiteral("Misc Items"), panel);
    auto* tl = new QHBoxLayout(timers);
    auto* ml = new QHBoxLayout(misc);
    ConsultSession& s = core_.session();
    const struct {
        const char* caption;
        void (ConsultSession::*action)();
        QHBoxLayout* layout;
    } buttons[] = {
        {"Initialize", &ConsultSession::Initialize, tl},
        {"Clear Buffer", &ConsultSession::ClearBuffer, tl},
        {"Sensor Commands", &ConsultSession::SensorCommands, tl},
        {"Stop Data Flow", &ConsultSession::StopDataFlow, ml},
        {"Misc Command", &ConsultSession::MiscCommand, ml},
        {"Command29", &ConsultSession::Command29, ml},
    };
    for (const auto& b : buttons) {
        auto* button = new QPushButton(QString::fromLatin1(b.caption), panel);
        button->setObjectName(QString::fromLatin1(b.caption).remove(QLatin1Char(' ')));
        connect(button, &QPushButton::clicked, &s, b.action);
        b.layout->addWidget(button);
    }
    auto* preset = new QPushButton(QStringLiteral("Graph ON/OFF"), panel);
    preset->setObjectName(QStringLiteral("GraphPresetButton"));
    connect(preset, &QPushButton::clicked, this, [this] { core_.graphFeed().GraphPreset(1); });
    ml->addWidget(preset);
    h->addWidget(timers);
    h->addWidget(misc);
    return panel;
}

void MainWindow::buildStatusBar()
{
    QStatusBar* bar = statusBar();
    QFont small = bar->font();
    small.setPointSizeF(small.pointSizeF() * 0.8);
    bar->setFont(small);
    bar->setSizeGripEnabled(false);
    // Wide enough for the longest text each panel shows; the date and time in this desktop's own form.
    const QString widest[8] = {QStringLiteral("Consult Port Disconnected"), QStringLiteral("Consult Port 16"),
                               QStringLiteral("Requesting Fault Codes"), QStringLiteral("External Port Disconnected"),
                               QStringLiteral("External Port 16"), QStringLiteral("Monitoring Sensors"),
                               QLocale().toString(QDate(2000, 12, 28), QLocale::ShortFormat),
                               QLocale().toString(QTime(23, 58), QLocale::ShortFormat)};
    for (int i = 0; i < 8; ++i) {
        auto* l = new QLabel(this);
        l->setFont(small);
        l->setFrameShape(QFrame::Panel);
        l->setIndent(3);
        l->setMinimumWidth(l->fontMetrics().horizontalAdvance(widest[i]) + 2 * l->frameWidth() + l->indent() + 2);
        l->setObjectName(QStringLiteral("StatusPanel%1").arg(i + 1));
        l->setFrameShadow(QFrame::Sunken);
        if (i < StatusPanels::kCount) {
            l->setText(core_.panels().text(i + 1));
            l->setToolTip(StatusPanels::toolTip(i + 1));
        }
        bar->addPermanentWidget(l, i < 6 ? 1 : 0);
        panels_[i] = l;
    }
    auto* clock = new QTimer(this);
    auto tick = [this] {
        const QDateTime now = QDateTime::currentDateTime();
        panels_[6]->setText(QLocale().toString(now.date(), QLocale::ShortFormat));
        panels_[7]->setText(QLocale().toString(now.time(), QLocale::ShortFormat));
    };
    connect(clock, &QTimer::timeout, this, tick);
    clock->start(1000);
    tick();
}

void MainWindow::refreshLabels()
{
    const ConsultSession& s = core_.session();
    connectedLabel_->setText(s.ConnectedLabel());
    monitorLabel_->setText(s.MonitorSensorsOnLabel());
    voiceMonitorLabel_->setText(s.VoiceMonitorOnLabel());
    partNumberLabel_->setText(s.EcuPartNumberLabel());
    kValueLabel_->setText(s.KValueLabel());
    faultCodeList_->setText(s.FaultCodeList());
    connectAction_->setChecked(s.connectDisconnectChecked());
    voiceMonitorAction_->setChecked(s.voiceMonitorChecked());
    const bool connected = s.ConnectedLabel() == QLatin1String("Connected");
    // Green and red that read on the day face and on the night face alike.
    const bool night = core_.options().nightMode();
    connectedLabel_->setStyleSheet(connected ? (night ? QStringLiteral("color: #6ad46a;") : QStringLiteral("color: #1a7f1a;"))
                                             : (night ? QStringLiteral("color: #ff7070;") : QStringLiteral("color: #a01010;")));
}

void MainWindow::refreshPortRows()
{
    PortSelection& ps = core_.portSelection();
    syncPortMenuItems(consultMenu_, portRowsEnd_, portRows_, ps.rows(), QStringLiteral("portss"),
                      [&ps](int row) { ps.PickPort(row); });
}

void MainWindow::refreshChecks()
{
    for (int row = 0; row < intervalActions_.size(); ++row)
        intervalActions_[row]->setChecked(row == core_.voiceMonitor().checkedInterval());
    for (int row = 0; row < voiceTypeActions_.size(); ++row)
        voiceTypeActions_[row]->setChecked(row == core_.voiceMonitor().checkedVoiceType());
    for (const auto& [action, checked] : optionChecks_)
        action->setChecked((core_.options().*checked)());
    useConZultAction_->setChecked(core_.portSelection().useConZultChecked());
    notifyPortsAction_->setChecked(core_.portSelection().notifyPortsChecked());
}

void MainWindow::refreshViews()
{
    const MonitorViews& mv = core_.views();
    largeViewer_->setVisible(mv.largeViewerVisible());
    if (mv.largeViewerVisible())
        largeViewer_->raise();
    viewAllAction_->setChecked(mv.viewAllSensorsChecked());
    largeViewAction_->setChecked(mv.largeSensorViewerChecked());
}

void MainWindow::placeSharedSpotFrames()
{
    // The spot: the last rows of the all-sensors panel, as many whole rows as the frame needs.
    for (QWidget* frame : sharedSpotFrames_) {
        const int height = frame->sizeHint().height();
        int first = vexorin::sensors::kSensorCount - 1;
        while (first > 0 && sensorPanel_->rowsFrom(first).height() < height)
            --first;
        frame->setGeometry(sensorPanel_->rowsFrom(first));
        if (frame->isVisible())
            frame->raise();
    }
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == sensorPanel_ && (event->type() == QEvent::Resize || event->type() == QEvent::Move))
        placeSharedSpotFrames();
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        core_.splash().mainWindowActivated();
}

void MainWindow::applyStartupSettings()
{
    storedGeometry_ = core_.options().storedGeometry();
    placeAtStoredGeometry();
    emit core_.options().changed();  // "Stay on top" as restored
}

void MainWindow::placeAtStoredGeometry()
{
    // Height and width are the outer size, title bar and borders included.
    const WindowGeometry& g = storedGeometry_;
    const QMargins frame = windowHandle() ? windowHandle()->frameMargins() : QMargins();
    move(px(g.left), px(g.top));
    resize(qMax(px(g.width) - frame.left() - frame.right(), 200),
           qMax(px(g.height) - frame.top() - frame.bottom(), 150));
    // A place that no screen shows any more is brought back onto the first one.
    bool onScreen = false;
    for (const QScreen* screen : QGuiApplication::screens())
        onScreen = onScreen || screen->availableGeometry().intersects(frameGeometry());
    if (!onScreen && QGuiApplication::primaryScreen())
        move(QGuiApplication::primaryScreen()->availableGeometry().topLeft());
}

void MainWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    // The borders are known once the window is on screen: the outer size is applied again.
    if (!placedOnShow_) {
        placedOnShow_ = true;
        placeAtStoredGeometry();
    }
}
