// Every check box, option button, text box and list of the windows does the
// same whether it is clicked, driven from the keyboard or driven through its
// accessible actions (toggle, set text), as a screen reader or an automation
// tool drives it; values the program sets itself fire no user handler.
#include "app_rig.h"
#include "consult/consult_session.h"
#include "graph/graph_control.h"
#include "rom/bin_viewer.h"
#include "rom/bin_viewer_window.h"
#include "rom/map_viewer.h"
#include "rom/map_viewer_window.h"
#include "sim/ecu_simulator.h"
#include "tools/active_test_window.h"
#include "tools/register_viewer.h"
#include "tools/register_viewer_window.h"
#include "ui/binary_files.h"
#include "ui/common_dialog.h"
#include "ui/message_box.h"
#include "voice/alerts.h"
#include "widget_helpers.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleEditableTextInterface>
#include <QAction>
#include <QCheckBox>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>

namespace {
// The accessible "Toggle" of a check box or option button.
void toggleAccessibly(QWidget* w)
{
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(w);
    QVERIFY(a && a->actionInterface());
    QVERIFY(a->actionInterface()->actionNames().contains(QAccessibleActionInterface::toggleAction()));
    a->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
}

// The accessible text editing of a text box: everything replaced by `text`.
void setTextAccessibly(QWidget* w, const QString& text)
{
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(w);
    QVERIFY(a && a->editableTextInterface() && a->textInterface());
    a->editableTextInterface()->replaceText(0, a->textInterface()->characterCount(), text);
}

template <class T>
T* named(QWidget* root, const char* name)
{
    T* w = root->findChild<T*>(QLatin1String(name));
    if (!w)
        qWarning("no control named %s", name);
    return w;
}

QString writeRom(const QTemporaryDir& dir)
{
    const auto rom = vexorin::sim::makeSyntheticRom();
    const QString path = dir.filePath(QStringLiteral("rom.bin"));
    vexorin::files::WriteBytes(path.toStdString(), {rom.begin(), rom.end()}, nullptr);
    return path;
}

}  // namespace

class AccessibleControlsTest : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes << t; });
    }
    void cleanup()
    {
        MessageBoxes::setPresenter({});
        mCommonDialog::setAnswerer({});
        boxes.clear();
    }
    void alertBoxesAndLimit();
    void storedAlertStartsOnceAndTheBoxAgrees();
    void showPoints();
    void editModeOfBothEditors();
    void registerViewerFormAndRegionList();
    void activeTestOptions();

private:
    QStringList boxes;
};

void AccessibleControlsTest::alertBoxesAndLimit()
{
    AppRig app;
    app.open();
    app.window->action(QStringLiteral("Speed"))->trigger();
    Alert& speed = app.core.alert(0);
    QWidget* frame = app.window.get();

    auto* limit = named<QLineEdit>(frame, "SpeedAlertValue");
    QVERIFY(limit);
    setTextAccessibly(limit, QStringLiteral("80"));
    QCOMPARE(speed.limit(), QStringLiteral("80"));
    QCOMPARE(speed.echo(), QStringLiteral("80"));
    QTest::keyClick(limit, Qt::Key_Backspace);  // typing, as before
    QCOMPARE(speed.limit(), QStringLiteral("8"));

    auto* alertBox = named<QCheckBox>(frame, "SpeedAlertOn");
    QVERIFY(!speed.timer.isActive());
    toggleAccessibly(alertBox);
    QVERIFY(alertBox->isChecked());
    QVERIFY(speed.timer.isActive());  // the alert now fires
    QCOMPARE(speed.alertBoxValue(), 1);
    QTest::keyClick(alertBox, Qt::Key_Space);  // the keyboard
    QVERIFY(!speed.timer.isActive());
    alertBox->click();  // the mouse
    QVERIFY(speed.timer.isActive());
    QCOMPARE(speed.alertBoxValue(), 1);

    auto* messageBox = named<QCheckBox>(frame, "SpeedAlertMessage");
    toggleAccessibly(messageBox);
    QCOMPARE(speed.messageBoxValue(), 1);
    messageBox->click();
    QCOMPARE(speed.messageBoxValue(), 0);
}

void AccessibleControlsTest::storedAlertStartsOnceAndTheBoxAgrees()
{
    AppRig app;
    app.settings.store->WriteSetting(QStringLiteral("SpeedAlert"), QStringLiteral("SpeedAlert"), QStringLiteral("1"));
    app.settings.store->WriteSetting(QStringLiteral("SpeedAlert"), QStringLiteral("SpeedAlertValue"),
                                     QStringLiteral("90"));
    app.open();
    Alert& speed = app.core.alert(0);
    QVERIFY(speed.timer.isActive());  // started once by the start-up, not stopped again by the window
    QCOMPARE(speed.alertBoxValue(), 1);
    QCOMPARE(speed.limit(), QStringLiteral("90"));
    app.window->action(QStringLiteral("Speed"))->trigger();
    QVERIFY(named<QCheckBox>(app.window.get(), "SpeedAlertOn")->isChecked());
    QCOMPARE(named<QLineEdit>(app.window.get(), "SpeedAlertValue")->text(), QStringLiteral("90"));
    QVERIFY(speed.timer.isActive());
}

void AccessibleControlsTest::showPoints()
{
    AppRig app;
    app.open();
    auto* box = named<QCheckBox>(app.window.get(), "ShowPoints");
    QVERIFY(box);
    const bool before = app.core.graph().settings().ShowPoints;
    toggleAccessibly(box);
    QCOMPARE(app.core.graph().settings().ShowPoints, !before);
    QTest::keyClick(box, Qt::Key_Space);
    QCOMPARE(app.core.graph().settings().ShowPoints, before);
}

void AccessibleControlsTest::editModeOfBothEditors()
{
    QTemporaryDir dir;
    const QString rom = writeRom(dir);
    mCommonDialog::setAnswerer([rom](const mCommonDialog::DialogRequest&, bool) { return rom; });

    AppRig app;
    MapViewerWindow map(app.core.session());
    map.show();
    auto* mapEdit = named<QCheckBox>(&map, "EditMode1");
    toggleAccessibly(mapEdit);  // no file yet: refused, and the box says so
    QVERIFY(!map.viewer().tab(0).editMode);
    QVERIFY(!mapEdit->isChecked());
    findButton(map.tabs()->widget(0), QStringLiteral("Load BIN File"))->click();
    boxes.clear();
    toggleAccessibly(mapEdit);
    QVERIFY(map.viewer().tab(0).editMode);
    QVERIFY(mapEdit->isChecked());
    QVERIFY(map.viewer().tab(0).framesRed);
    QTest::keyClick(mapEdit, Qt::Key_Space);
    QVERIFY(!map.viewer().tab(0).editMode);

    BinViewerWindow bin(1);
    bin.show();
    bin.action(QStringLiteral("OpenBINFile"))->trigger();
    auto* binEdit = named<QCheckBox>(&bin, "EditMode");
    QVERIFY(binEdit);
    toggleAccessibly(binEdit);
    QVERIFY(bin.viewer().editMode());
    toggleAccessibly(binEdit);
    QVERIFY(!bin.viewer().editMode());

    // Enter on a row of the register list does what a double-click does.
    auto* regions = named<QListWidget>(&bin, "RegisterReference");
    QVERIFY(regions);
    boxes.clear();
    regions->setFocus();
    regions->setCurrentRow(3);  // Top Speed Limiter, in bank 255 on view
    QTest::keyClick(regions, Qt::Key_Return);
    QVERIFY2(bin.viewer().convertedLabel().contains(QStringLiteral("km/h")), qPrintable(bin.viewer().convertedLabel()));
}

void AccessibleControlsTest::registerViewerFormAndRegionList()
{
    AppRig app;
    RegisterViewerWindow w(app.core.session());
    w.show();
    auto* eprom = named<QRadioButton>(&w, "Eprom");
    auto* ecu = named<QRadioButton>(&w, "ECU");
    QCOMPARE(w.viewer().mode(), RegisterViewer::Mode::Ecu);
    toggleAccessibly(eprom);
    QCOMPARE(w.viewer().mode(), RegisterViewer::Mode::Eprom);
    toggleAccessibly(ecu);
    QCOMPARE(w.viewer().mode(), RegisterViewer::Mode::Ecu);
    eprom->click();
    QCOMPARE(w.viewer().mode(), RegisterViewer::Mode::Eprom);

    auto* list = named<QListWidget>(&w, "RegionList");
    list->setFocus();
    list->setCurrentRow(6);  // TTP Min, bank 254; 255 is on view
    boxes.clear();
    QTest::keyClick(list, Qt::Key_Return);
    // The same answer a double-click gives on a bank that is not on view.
    QCOMPARE(boxes, QStringList{QStringLiteral("Register Bank Not Loaded.\r\n")});
}

void AccessibleControlsTest::activeTestOptions()
{
    QTemporaryDir dir;
    const QString recording = dir.filePath(QStringLiteral("session.txt"));
    AppRig app;
    app.settings.store->WriteSetting(QStringLiteral("RecordConsult"), QStringLiteral("File"), recording);
    app.open();
    QVERIFY(app.connectToSimulator());
    ActiveTestWindow w(app.core.session(), nullptr);
    w.show();
    const qint64 before = QFileInfo(recording).size();  // the identity reads, all written out
    QRadioButton* power = nullptr;
    for (QRadioButton* r : w.findChildren<QRadioButton*>())
        if (r->text() == QLatin1String("Power Balance"))
            power = r;
    QVERIFY(power);
    toggleAccessibly(power);
    QVERIFY(power->isChecked());
    app.core.session().ConnectDisconnect();  // its stop bytes close the recording
    QFile f(recording);
    QVERIFY(f.open(QIODevice::ReadOnly));
    f.seek(before);
    QString written;
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith("W "))
            written += QString::fromLatin1(line.mid(2));
    // Chosen: one CmdGo, as a click sends, then the disconnect's two stop bytes.
    QCOMPARE(written, QStringLiteral("f03030"));
}

QTEST_MAIN(AccessibleControlsTest)
#include "accessible_controls_test.moc"
