#include "app/app_core.h"
#include "app/interface_check_window.h"
#include "app/main_window.h"
#include "app/port_selection.h"
#include "consult/consult_session.h"
#include "consult/port_catalog.h"
#include "rom/bin_compare_view.h"
#include "rom/bin_compare_window.h"
#include "rom/map_viewer.h"
#include "rom/rules/map_decoding.h"
#include "rom/map_grid_widget.h"
#include "rom/map_viewer_window.h"
#include "sim/ecu_simulator.h"
#include "ui/binary_files.h"
#include "temp_settings.h"
#include "ui/gradient_bar_widget.h"
#include "ui/message_box.h"
#include "ui/status_panels.h"
#include "voice/recording_speech_out.h"
#include "widget_helpers.h"

#include <QAction>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

namespace {
struct Window {
    Window()
        : core(*settings.store, speech)
    {
        core.ports().setSystemPorts([] { return QList<SystemPort>{{"/dev/ttyUSB0", "FT232R USB UART"}}; });
        window = std::make_unique<MainWindow>(core);
        core.start();
    }
    TempSettings settings;
    RecordingSpeechOut speech;
    AppCore core;
    std::unique_ptr<MainWindow> window;

    QString labelText(const char* name) const
    {
        auto* l = window->findChild<QLabel*>(QLatin1String(name));
        return l ? l->text() : QStringLiteral("<missing>");
    }
    QPushButton* button(const QString& caption) const { return findButton(window.get(), caption); }
};

}  // namespace

class MainWindowTest : public QObject {
    Q_OBJECT
private slots:
    void init() { MessageBoxes::setPresenter([this](const QString& t, const QString& title, bool) { boxes << title + ": " + t; }); }
    void cleanup() { MessageBoxes::setPresenter({}); boxes.clear(); }
    void titleStatusBlockAndButtons();
    void statusBarPanels();
    void menusHoldTheirItems();
    void portRowsFollowTheListAndPick();
    void servicePanelLiesBelowTheClientArea();
    void connectsToTheSimulatorFromTheMenu();
    void interfaceCheckWindowListsDevices();
    void usbLatencyItemShowsEachAdaptersTimer();
    void compareBinFilesOpensTheCompareWindow();

private:
    QStringList boxes;
};

void MainWindowTest::titleStatusBlockAndButtons()
{
    Window w;
    QCOMPARE(w.window->windowTitle(), QStringLiteral("Vexorin V2.5.1 (Tuning Edition)"));
    QCOMPARE(w.labelText("ConnectedLabel"), QStringLiteral("Disconnected"));
    QCOMPARE(w.labelText("MonitorSensorsOnLabel"), QStringLiteral("OFF"));
    QCOMPARE(w.labelText("VoiceMonitorOnLabel"), QStringLiteral("OFF"));
    QCOMPARE(w.labelText("EcuPartNumberLabel"), QStringLiteral("23710-xxxxx"));
    QCOMPARE(w.labelText("KValueLabel"), QStringLiteral("000"));
    QCOMPARE(w.labelText("FaultCodeList"), QString());
    QStringList captions;
    for (auto* l : w.window->findChildren<QLabel*>())
        captions << l->text();
    for (const char* c : {"Status", "Sensors", "Voice Monitor", "ECU Part Number", "K Value", "Fault Codes"})
        QVERIFY2(captions.contains(QLatin1String(c)), c);
    for (const char* b : {"Connect/Disconnect", "Monitor On/Off", "Voice On/Off", "Get Fault Codes", "Clear Fault Codes"}) {
        QPushButton* button = w.button(QLatin1String(b));
        QVERIFY2(button, b);
        QCOMPARE(button->accessibleName().isEmpty() ? button->text() : button->accessibleName(), QLatin1String(b));
    }
    QVERIFY(w.window->findChild<GradientBar*>(QStringLiteral("RPMbar")));
    QCOMPARE(w.window->findChild<GradientBar*>(QStringLiteral("RPMbar"))->maximum(), 7000);
    QCOMPARE(w.labelText("RPMLabel"), QStringLiteral("0"));
}

void MainWindowTest::statusBarPanels()
{
    Window w;
    for (int i = 1; i <= 6; ++i) {
        auto* p = w.window->findChild<QLabel*>(QStringLiteral("StatusPanel%1").arg(i));
        QVERIFY(p);
        QCOMPARE(p->toolTip(), StatusPanels::toolTip(i));
    }
    QCOMPARE(w.labelText("StatusPanel1"), QStringLiteral("Consult Port Disconnected"));
    QCOMPARE(w.labelText("StatusPanel3"), QStringLiteral("Standby"));
    QCOMPARE(w.labelText("StatusPanel4"), QStringLiteral("External Port Disconnected"));
    QCOMPARE(w.labelText("StatusPanel5"), QStringLiteral("External Port 0"));
    QVERIFY(!w.labelText("StatusPanel7").isEmpty());  // date
    QVERIFY(!w.labelText("StatusPanel8").isEmpty());  // time
}

void MainWindowTest::menusHoldTheirItems()
{
    Window w;
    const std::pair<const char*, const char*> items[] = {
        {"ConnectDisconnect", "Connect/Disconnect"},
        {"UpdatePortInfo", "Update Port Information"},
        {"CheckAvailableInterfaces", "Check for Connected Interfaces and Conflicts"},
        {"ChangeUSBPortSettings", "Change USB Port and Latency Settings or Remove Device"},
        {"LaunchDeviceManager", "Launch Microsoft Windows Device Manager"},
        {"UseConZultInterface", "Use ConZult Interface"},
        {"NotifyPorts", "Notify When Selecting Ports"},
        {"ViewAllSensors", "View All Sensors"},
        {"LargeSensorViewer", "Large Sensor View"},
        {"Dash", "Dash"},
        {"ByteViewer", "Byte Viewer"},
        {"VoiceOn", "Voice On"},
    };
    for (const auto& [name, caption] : items) {
        QAction* a = w.window->action(QLatin1String(name));
        QVERIFY2(a, name);
        QCOMPARE(a->text(), QLatin1String(caption));
    }
    QVERIFY(w.window->action(QStringLiteral("VoiceOn"))->isChecked());
    QCOMPARE(w.window->portMenu()->title().remove(QLatin1Char('&')), QStringLiteral("Consult"));
    w.window->action(QStringLiteral("NotifyPorts"))->trigger();
    QCOMPARE(w.settings.store->ReadSetting(QStringLiteral("NotifyPorts"), QStringLiteral("Setting")), QStringLiteral("True"));
    QVERIFY(w.window->action(QStringLiteral("NotifyPorts"))->isChecked());
}

void MainWindowTest::usbLatencyItemShowsEachAdaptersTimer()
{
    Window w;
    QAction* usb = w.window->action(QStringLiteral("ChangeUSBPortSettings"));
    QVERIFY(usb->isEnabled());
    QVERIFY(!w.window->action(QStringLiteral("LaunchDeviceManager"))->isEnabled());  // a Windows tool
    usb->trigger();
    QCOMPARE(boxes.size(), 1);
    QCOMPARE(boxes.first(), QStringLiteral("USB Port and Latency Settings: ") + w.core.ports().latencyReport());
    QVERIFY(boxes.first().contains(QStringLiteral("FT232R USB UART (COM1): ")));
    if (!qEnvironmentVariableIsEmpty("VEXORIN_SCREENSHOT_DIR")) {
        // The box as the message boxes make it, to look at.
        QMessageBox box(QMessageBox::NoIcon, QStringLiteral("USB Port and Latency Settings"),
                        w.core.ports().latencyReport(), QMessageBox::Ok, w.window.get());
        box.setTextFormat(Qt::PlainText);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        saveShot(&box, QStringLiteral("usb-latency.png"));
    }
}

void MainWindowTest::portRowsFollowTheListAndPick()
{
    Window w;
    QAction* usb = w.window->action(QStringLiteral("portss1"));
    QAction* sim = w.window->action(QStringLiteral("portss2"));
    QVERIFY(usb && sim);
    QCOMPARE(usb->text(), QStringLiteral("FT232R USB UART - /dev/ttyUSB0 (COM1)"));
    QCOMPARE(sim->text(), QStringLiteral("Vexorin ECU Simulator (COM2)"));
    // First run: every row checked, the last one in use.
    QVERIFY(usb->isChecked() && sim->isChecked());
    QCOMPARE(w.labelText("StatusPanel2"), QStringLiteral("Consult Port 2"));
    w.window->action(QStringLiteral("portss1"))->trigger();
    QCOMPARE(w.labelText("StatusPanel2"), QStringLiteral("Consult Port 1"));
    QVERIFY(w.window->action(QStringLiteral("portss1"))->isChecked());
    QVERIFY(!w.window->action(QStringLiteral("portss2"))->isChecked());
    QCOMPARE(w.settings.store->ReadSetting(QStringLiteral("PortNumber"), QStringLiteral("Setting")), QStringLiteral("1"));
}

void MainWindowTest::servicePanelLiesBelowTheClientArea()
{
    Window w;
    w.window->show();
    QVERIFY(QTest::qWaitForWindowExposed(w.window.get()));
    auto* service = w.window->findChild<QWidget*>(QStringLiteral("ServicePanel"));
    QVERIFY(service);
    QVERIFY(service->y() >= MainWindow::kClientHeightTwips / vexorin::ui::kTwipsPerPixel);
    for (const char* b : {"Initialize", "Clear Buffer", "Sensor Commands", "Stop Data Flow", "Misc Command", "Command29"})
        QVERIFY2(w.button(QLatin1String(b)), b);
    // Wholly out of sight, at the design size and in a taller window too.
    for (int extra : {0, 120}) {
        w.window->resize(w.window->width(), w.window->height() + extra);
        QTRY_VERIFY(!service->geometry().intersects(service->parentWidget()->rect()));
    }
}

void MainWindowTest::connectsToTheSimulatorFromTheMenu()
{
    Window w;
    w.window->show();
    w.window->action(QStringLiteral("portss2"))->trigger();  // the simulator
    w.window->action(QStringLiteral("ConnectDisconnect"))->trigger();
    QTRY_COMPARE(w.labelText("ConnectedLabel"), QStringLiteral("Connected"));
    QVERIFY(w.window->action(QStringLiteral("ConnectDisconnect"))->isChecked());
    w.core.session().GetSerialNumberKValueTick();
    w.core.session().GetSerialNumberKValueTick();
    QVERIFY(w.labelText("EcuPartNumberLabel").startsWith(QStringLiteral("23710 - ")));
    QVERIFY(w.labelText("KValueLabel") != QStringLiteral("000"));
    QCOMPARE(w.labelText("StatusPanel1"), QStringLiteral("Consult Port Connected"));
    auto* log = w.window->findChild<QPlainTextEdit*>(QStringLiteral("SessionLog"));
    QVERIFY(log->toPlainText().contains(QStringLiteral(": Consult Port Connected.")));
    saveShot(w.window.get(), QStringLiteral("main-window.png"));
    w.button(QStringLiteral("Connect/Disconnect"))->click();
    QCOMPARE(w.labelText("ConnectedLabel"), QStringLiteral("Disconnected"));
    QVERIFY(boxes.isEmpty());
}

void MainWindowTest::interfaceCheckWindowListsDevices()
{
    Window w;
    w.window->action(QStringLiteral("CheckAvailableInterfaces"))->trigger();
    InterfaceCheckWindow* check = w.window->interfaceCheckWindow();
    QVERIFY(check);
    QVERIFY(check->isVisible());
    QCOMPARE(check->windowTitle(), QStringLiteral("Vexorin Interface Check"));
    QCOMPARE(check->lines(), (QStringList{QStringLiteral("FT232R USB UART - /dev/ttyUSB0 (COM1)\r\n"),
                                          QStringLiteral("Vexorin ECU Simulator (COM2)\r\n")}));
    QStringList texts;
    for (auto* l : check->findChildren<QLabel*>())
        texts << l->text();
    QCOMPARE(texts.count(QStringLiteral("Note: ")), 3);
    QVERIFY(texts.contains(QStringLiteral("Connected Interfaces")));
    QVERIFY(texts.contains(QStringLiteral("The DLP-IO8-G Interface will be displayed as \"USB  Serial Port (COMx)\".")));
    saveShot(check, QStringLiteral("interface-check.png"));
}

void MainWindowTest::compareBinFilesOpensTheCompareWindow()
{
    Window w;
    QAction* item = w.window->action(QStringLiteral("CompareBinFiles"));
    QVERIFY(item);
    QCOMPARE(item->text(), QStringLiteral("Compare BIN Files"));
    QMenu* tools = nullptr;
    for (QAction* menu : w.window->menuBar()->actions())
        if (menu->text().remove(QLatin1Char('&')) == QLatin1String("Tools"))
            tools = menu->menu();
    QVERIFY(tools && tools->actions().contains(item));
    item->trigger();
    BinCompareWindow* compare = w.window->binCompareWindow();
    QVERIFY(compare);
    QVERIFY(compare->isVisible());
    QCOMPARE(compare->windowTitle(), QStringLiteral("Vexorin BIN Compare"));

    // A map's row opens the Map Viewer with A loaded, on that map's tab.
    QTemporaryDir dir;
    auto rom = vexorin::sim::makeSyntheticRom();
    const QString a = dir.filePath(QStringLiteral("a.bin")), b = dir.filePath(QStringLiteral("b.bin"));
    vexorin::files::WriteBytes(a.toStdString(), std::vector<std::uint8_t>(rom.begin(), rom.end()), nullptr);
    rom[0x7842] ^= 0x04;  // Primary Timing Map: "Timing (High Octane)", tab 4
    vexorin::files::WriteBytes(b.toStdString(), std::vector<std::uint8_t>(rom.begin(), rom.end()), nullptr);
    compare->view().openA(a);
    compare->view().openB(b);
    QCOMPARE(compare->view().rows(), QStringList{QStringLiteral("Primary Timing Map: 1 byte")});
    QVERIFY(!w.window->mapViewerWindow());
    compare->view().activateRow(0);
    QTRY_VERIFY(w.window->mapViewerWindow());
    MapViewerWindow* maps = w.window->mapViewerWindow();
    QTRY_COMPARE(maps->viewer().tab(4).pathBox, a);
    QVERIFY(maps->isVisible());
    QCOMPARE(maps->viewer().currentTab(), 4);
    QCOMPARE(maps->tabs()->currentIndex(), 4);
    QCOMPARE(maps->tabs()->tabText(4), QStringLiteral("Timing (High Octane)"));
    QCOMPARE(maps->viewer().tab(4).pathBox, a);
    // Marked against B: the one cell that differs, row 5, column 3, with B's figure.
    QCOMPARE(maps->viewer().comparePath(), b);
    QCOMPARE(maps->viewer().tab(4).compareTip(5, 3),
             QStringLiteral("B: ") + QString::fromStdString(vexorin::rom::formatMapByte(false, rom[0x7842])));
    QVERIFY(maps->grid(4)->compareMarked(5, 3));
    QVERIFY(!maps->grid(4)->compareMarked(5, 4));
    QVERIFY(boxes.isEmpty());
}

QTEST_MAIN(MainWindowTest)
#include "main_window_test.moc"
