// Read at a glance in a car: units beside the values, large bold digits that
// grow with the Dash, full screen, the night palette and the keyboard.
#include "app/options_menu.h"
#include "app/splash.h"
#include "app_rig.h"
#include "consult/consult_session.h"
#include "rom/bin_viewer_window.h"
#include "rom/map_grid_widget.h"
#include "rom/map_viewer.h"
#include "rom/map_viewer_window.h"
#include "sensors/dash_window.h"
#include "app/ecu_tools_window.h"
#include "tools/bin_file_downloader_window.h"
#include "sensors/large_view_panel.h"
#include "sensors/sensor_catalog.h"
#include "sim/ecu_simulator.h"
#include "ui/binary_files.h"
#include "ui/common_dialog.h"
#include "ui/fitted_font.h"
#include "ui/gradient_bar_widget.h"
#include "ui/message_box.h"
#include "widget_helpers.h"

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <cmath>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStyle>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

using vexorin::sensors::SensorId;

class ReadableTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void everySensorRowCarriesItsUnit();
    void valuesAreBoldAndLarge();
    void dashDigitsGrowWithItsWindow();
    void f11TogglesFullScreen();
    void nightModeDarkensTheWindowsAndIsRemembered();
    void shortcutsAreShownWhereTheActionIs();
    void escapeClosesTheSmallWindows();
    void mapGridsAnswerTheKeyboard();
    void editPanelAndMatrixOptionsAreReadable();
    void logPlayerLeavesNoEmptyFoot();

private:
    static void openWithoutSplash(AppRig& app);
    static void activate(QWidget* window);
    void loadSimulatorRom(MapViewerWindow& viewer);
    QTemporaryDir dir_;
    QStringList boxes_;
};

void ReadableTest::init()
{
    MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes_ << t; });
}

void ReadableTest::cleanup()
{
    MessageBoxes::setPresenter({});
    mCommonDialog::setAnswerer({});
    QApplication::setPalette(QApplication::style()->standardPalette());
}

// The start-up's splash takes the keyboard until it goes; these tests type into the windows.
void ReadableTest::openWithoutSplash(AppRig& app)
{
    app.open();
    app.core.splash().SplashTimerTick();  // as if its time were up: no splash at the first activation
    app.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(app.window.get()));
    QVERIFY(!app.window->splashWindow());
}

// The window that keys go to.
void ReadableTest::activate(QWidget* window)
{
    window->raise();
    window->activateWindow();
    QApplication::setActiveWindow(window);
    QTRY_COMPARE(QApplication::activeWindow(), window);
}

void ReadableTest::everySensorRowCarriesItsUnit()
{
    AppRig app;
    app.open();
    const std::pair<const char*, const char*> units[] = {
        {"SPEEDUnit", "mph"}, {"RPMUnit", "rpm"},   {"TPSUnit", "V"},          {"MAFUnit", "V"},
        {"LO2Unit", "V"},     {"RO2Unit", "V"},     {"INJECTORUnit", "ms"},    {"TIMINGUnit", "\u00b0"},
        {"IACVUnit", "%"},    {"WATERUnit", "\u00b0F"}, {"FUELUnit", "\u00b0F"}, {"BATTERYUnit", "V"},
        {"AFUnit", ""}};
    for (const auto& [name, unit] : units) {
        auto* l = app.window->findChild<QLabel*>(QLatin1String(name));
        QVERIFY2(l, name);
        QCOMPARE(l->text(), QString::fromUtf8(unit));
    }
    // "mph" whatever the MPH/KPH item says; the value labels' texts are untouched.
    app.core.options().ChooseKph();
    QCOMPARE(app.window->findChild<QLabel*>(QStringLiteral("SPEEDUnit"))->text(), QStringLiteral("mph"));
    QCOMPARE(app.window->findChild<QLabel*>(QStringLiteral("SPEEDLabel"))->text(), QStringLiteral("0"));
    // The unit stands right of its value, on the same row.
    auto* value = app.window->findChild<QLabel*>(QStringLiteral("RPMLabel"));
    auto* unit = app.window->findChild<QLabel*>(QStringLiteral("RPMUnit"));
    QCOMPARE(unit->y(), value->y());
    QVERIFY(unit->x() >= value->x() + value->width());
}

void ReadableTest::valuesAreBoldAndLarge()
{
    AppRig app;
    app.open();
    QVERIFY(QTest::qWaitForWindowExposed(app.window.get()));
    for (const char* name : {"SPEEDLabel", "RPMLabel", "BATTERYLabel", "AFLabel"}) {
        auto* l = app.window->findChild<QLabel*>(QLatin1String(name));
        QVERIFY(l->font().bold());
        QVERIFY2(vexorin::ui::digitHeight(l->font()) >= 14, name);
        QCOMPARE(l->palette().color(QPalette::Window), QColor(Qt::black));
    }
    app.window->action(QStringLiteral("LargeSensorViewer"))->trigger();
    LargeViewPanel* large = app.window->largeViewer();
    QTRY_VERIFY(large->isVisible());
    QVERIFY(vexorin::ui::digitHeight(large->value()->font()) * 2 >= large->height());
}

void ReadableTest::dashDigitsGrowWithItsWindow()
{
    AppRig app;
    app.open();
    app.window->action(QStringLiteral("Dash"))->trigger();
    DashWindow* dash = app.window->dashWindow();
    QVERIFY(dash);
    dash->resize(600, 260);
    QTest::qWait(20);
    const int small = vexorin::ui::digitHeight(dash->valueLabel(QStringLiteral("DashRPM"))->font());
    dash->resize(1200, 600);
    QTRY_VERIFY(vexorin::ui::digitHeight(dash->valueLabel(QStringLiteral("DashRPM"))->font()) >= 40);
    QVERIFY(vexorin::ui::digitHeight(dash->valueLabel(QStringLiteral("DashBattery"))->font()) > small);
}

void ReadableTest::f11TogglesFullScreen()
{
    AppRig app;
    openWithoutSplash(app);
    app.window->action(QStringLiteral("Dash"))->trigger();
    for (QWidget* w : {static_cast<QWidget*>(app.window.get()), static_cast<QWidget*>(app.window->dashWindow())}) {
        QAction* full = w->findChild<QAction*>(QStringLiteral("FullScreen"));
        QVERIFY(full);
        QCOMPARE(full->shortcut(), QKeySequence(Qt::Key_F11));
        activate(w);
        QTest::keyClick(w->windowHandle(), Qt::Key_F11);
        QTRY_VERIFY(w->isFullScreen());
        QTest::keyClick(w->windowHandle(), Qt::Key_F11);
        QTRY_VERIFY(!w->isFullScreen());
    }
}

void ReadableTest::nightModeDarkensTheWindowsAndIsRemembered()
{
    const QColor dayWindow = QApplication::palette().color(QPalette::Window);
    {
        AppRig app;
        app.open();
        QAction* night = app.window->action(QStringLiteral("NightMode"));
        QVERIFY(night);
        QCOMPARE(night->text(), QStringLiteral("Night Mode"));
        QVERIFY(night->isCheckable() && !night->isChecked());
        auto* bar = app.window->findChild<GradientBar*>(QStringLiteral("RPMbar"));
        const QColor barBack = bar->backColor();
        night->trigger();
        QVERIFY(night->isChecked());
        const QColor face = QApplication::palette().color(QPalette::Window);
        QVERIFY(face.red() < 0x40 && face.green() < 0x40 && face.blue() < 0x40);
        QVERIFY(QApplication::palette().color(QPalette::Base).lightness() < 0x60);  // the light areas dimmed
        QTRY_COMPARE(app.window->palette().color(QPalette::Window), face);
        QCOMPARE(bar->backColor(), barBack);  // the bars keep the user's colours
        QCOMPARE(app.settings.store->ReadSetting(QStringLiteral("NightMode"), QStringLiteral("Setting")),
                 QStringLiteral("True"));
        // A later start comes up in night mode.
        AppRig again;
        again.settings.store->WriteSetting(QStringLiteral("NightMode"), QStringLiteral("Setting"), QStringLiteral("True"));
        again.open();
        QVERIFY(again.window->action(QStringLiteral("NightMode"))->isChecked());
        QVERIFY(again.core.options().nightMode());
        again.window->action(QStringLiteral("NightMode"))->trigger();
        night->trigger();  // day again: today's look
        QVERIFY(!night->isChecked());
    }
    QCOMPARE(QApplication::palette().color(QPalette::Window), dayWindow);
}

void ReadableTest::shortcutsAreShownWhereTheActionIs()
{
    AppRig app;
    openWithoutSplash(app);
    const std::pair<const char*, QKeySequence> items[] = {
        {"Exit", QKeySequence(Qt::CTRL | Qt::Key_Q)},
        {"ConnectDisconnect", QKeySequence(Qt::Key_F2)},
        {"Capturetologfile", QKeySequence(Qt::CTRL | Qt::Key_L)}};
    for (const auto& [name, keys] : items)
        QCOMPARE(app.window->action(QLatin1String(name))->shortcut(), keys);  // menus show an item's shortcut
    const std::pair<const char*, QKeySequence> buttons[] = {{"Monitor On/Off", QKeySequence(Qt::Key_F3)},
                                                            {"Voice On/Off", QKeySequence(Qt::Key_F4)}};
    for (const auto& [caption, keys] : buttons) {
        QPushButton* b = findButton(app.window.get(), QLatin1String(caption));
        QCOMPARE(b->shortcut(), keys);
        QVERIFY(b->toolTip().contains(keys.toString(QKeySequence::NativeText)));
    }
    // F2 and F3 by the keyboard: connect, then monitor.
    app.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(app.window.get()));
    for (QAction* a : app.window->portMenu()->actions())
        if (a->text().startsWith(QStringLiteral("Vexorin ECU Simulator")))
            a->trigger();
    QTest::keyClick(app.window->windowHandle(), Qt::Key_F2);
    QTRY_COMPARE(app.core.session().ConnectedLabel(), QStringLiteral("Connected"));
    QTRY_VERIFY(!app.core.session().GetSerialNumberKValue.isActive());
    QTest::keyClick(app.window->windowHandle(), Qt::Key_F3);
    QTRY_COMPARE(app.core.session().MonitorSensorsOnLabel(), QStringLiteral("ON"));
    QTest::keyClick(app.window->windowHandle(), Qt::Key_F3);
    QTRY_COMPARE(app.core.session().MonitorSensorsOnLabel(), QStringLiteral("OFF"));
}

void ReadableTest::escapeClosesTheSmallWindows()
{
    AppRig app;
    openWithoutSplash(app);
    for (const char* item : {"Dash", "ByteViewer", "FaultCodes", "Credits"}) {
        app.window->action(QLatin1String(item))->trigger();
        QPointer<QWidget> shown;  // the Credits go when closed
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->isVisible() && w != app.window.get() && w->isWindow())
                shown = w;
        QVERIFY2(shown, item);
        activate(shown);
        QTest::keyClick(shown->windowHandle(), Qt::Key_Escape);
        QTRY_VERIFY2(!shown || !shown->isVisible(), item);
    }
    app.window->showBinViewer();
    QAction* hex = app.window->binViewerWindow()->findChild<QAction*>(QStringLiteral("HexChart"));
    QVERIFY(hex);
    hex->trigger();
    QWidget* chart = nullptr;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == QLatin1String("HexChart") && w->isVisible())
            chart = w;
    QVERIFY(chart);
    activate(chart);
    QTest::keyClick(chart->windowHandle(), Qt::Key_Escape);
    QTRY_VERIFY(!chart->isVisible());
}

// Shows the viewer with the simulator's ROM loaded from a file.
void ReadableTest::loadSimulatorRom(MapViewerWindow& viewer)
{
    const QString path = dir_.filePath(QStringLiteral("sim.bin"));
    const auto rom = vexorin::sim::makeSyntheticRom();
    vexorin::files::WriteBytes(path.toStdString(), std::vector<std::uint8_t>(rom.begin(), rom.end()), nullptr);
    mCommonDialog::setAnswerer([path](const mCommonDialog::DialogRequest&, bool) { return path; });
    viewer.show();
    viewer.loadBinFile(false);
}

void ReadableTest::mapGridsAnswerTheKeyboard()
{
    AppRig app;
    MapViewerWindow w(app.core.session());
    loadSimulatorRom(w);
    QCOMPARE(w.grid(0)->focusPolicy(), Qt::StrongFocus);
    w.findChild<QCheckBox*>(QStringLiteral("EditMode1"))->click();
    const MapViewer::Tab& tab = w.viewer().tab(0);
    QVERIFY(tab.editMode);
    QCOMPARE(tab.overlayRow, 1);
    QCOMPARE(tab.overlayColumn, 16);
    QTest::keyClick(w.grid(0), Qt::Key_Left);
    QTest::keyClick(w.grid(0), Qt::Key_Down);
    QCOMPARE(tab.overlayRow, 2);
    QCOMPARE(tab.overlayColumn, 15);
    QCOMPARE(w.overlayBox(0)->text(), w.grid(0)->item(2, 15)->text());
    // Ctrl+Down does what the spin button's down does, Ctrl+Up what its up does.
    const QString before = w.grid(0)->item(2, 15)->text();
    QTest::keyClick(w.grid(0), Qt::Key_Down, Qt::ControlModifier);
    const QString down = w.grid(0)->item(2, 15)->text();
    QVERIFY(down != before);
    QCOMPARE(tab.overlayRow, 2);  // the selection stays
    QTest::keyClick(w.grid(0), Qt::Key_Up, Qt::ControlModifier);
    QCOMPARE(w.grid(0)->item(2, 15)->text(), before);
    // At the edge the selection stays on the grid.
    for (int i = 0; i < 20; ++i)
        QTest::keyClick(w.grid(0), Qt::Key_Right);
    QCOMPARE(tab.overlayColumn, 16);
}

namespace {
double luminance(const QColor& c)
{
    const auto channel = [](double v) { return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
    return 0.2126 * channel(c.redF()) + 0.7152 * channel(c.greenF()) + 0.0722 * channel(c.blueF());
}

double contrast(const QColor& a, const QColor& b)
{
    const double la = luminance(a), lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}
}  // namespace

void ReadableTest::editPanelAndMatrixOptionsAreReadable()
{
    AppRig app;
    MapViewerWindow w(app.core.session());
    loadSimulatorRom(w);
    w.findChild<QCheckBox*>(QStringLiteral("EditMode1"))->click();
    // "New Value :" on the red frame: the red stays, the caption reads on it (large-text contrast).
    auto* frame = w.findChild<QFrame*>(QStringLiteral("NewValueFrame"));
    QVERIFY(frame);
    QCOMPARE(frame->palette().color(QPalette::Window), QColor(0xFF, 0, 0));
    QLabel* caption = nullptr;
    for (auto* l : frame->findChildren<QLabel*>())
        if (l->text() == QLatin1String("New Value :"))
            caption = l;
    QVERIFY(caption);
    QVERIFY(contrast(caption->palette().color(QPalette::WindowText), QColor(0xFF, 0, 0)) >= 3.0);
    // "Viewing : ..." and the "ECU Data" caption stand apart.
    auto* viewing = w.findChild<QLabel*>(QStringLiteral("Viewing1"));
    QGroupBox* ecu = nullptr;
    for (auto* g : w.tabs()->widget(0)->findChildren<QGroupBox*>())
        if (g->title() == QLatin1String("ECU Data"))
            ecu = g;
    QVERIFY(viewing && ecu);
    QVERIFY(viewing->mapTo(&w, QPoint(viewing->width(), 0)).x() + 8 <= ecu->mapTo(&w, QPoint(0, 0)).x());

    // The Matrix look's unticked options show their ring on the dark green.
    app.open();
    app.window->ecuTools()->showBinFileDownloader();
    QWidget* downloader = app.window->ecuTools()->binFileDownloader();
    QVERIFY(downloader);
    QRadioButton* beep = nullptr;
    for (auto* r : downloader->findChildren<QRadioButton*>())
        if (r->text() == QLatin1String("Beep"))
            beep = r;
    QVERIFY(beep && !beep->isChecked());
    QStyleOptionButton opt;
    opt.initFrom(beep);
    const QRect ring = beep->style()->subElementRect(QStyle::SE_RadioButtonIndicator, &opt, beep);
    const QImage image = beep->grab(ring).toImage();
    int light = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            light += QColor(image.pixel(x, y)).lightness() > 140 ? 1 : 0;
    QVERIFY2(light >= 8, qPrintable(QString::number(light)));
}

void ReadableTest::logPlayerLeavesNoEmptyFoot()
{
    AppRig app;
    app.open();
    app.window->action(QStringLiteral("LogPlayer"))->trigger();
    QWidget* player = nullptr;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == QLatin1String("LogPlayer") && w->isVisible())
            player = w;
    QVERIFY(player);
    QTest::qWait(20);
    int lowest = 0;
    for (auto* b : player->findChildren<QPushButton*>())
        if (b->isVisible())
            lowest = std::max(lowest, b->mapTo(player, QPoint(0, b->height())).y());
    QVERIFY2(player->height() - lowest <= 24, qPrintable(QString::number(player->height() - lowest)));
}

QTEST_MAIN(ReadableTest)
#include "readable_test.moc"
