#include "app/port_selection.h"
#include "app/settings/settings_access.h"
#include "consult/port_catalog.h"
#include "named_devices.h"
#include "session_harness.h"
#include "temp_settings.h"

#include <QTest>

namespace {
struct Selection {
    explicit Selection(const QStringList& names)
        : ports(h.session, *settings.store, namedDevices(names))
    {
        QObject::connect(&ports, &PortSelection::message, [this](const QString& m) { messages.append(m); });
        QObject::connect(&ports, &PortSelection::errorBox,
                         [this](const QString& m, const QString& title) { errors.append(title + ": " + m); });
    }
    SessionHarness h;
    TempSettings settings;
    PortSelection ports;
    QStringList messages;
    QStringList errors;
};
}  // namespace

class PortSelectionTest : public QObject {
    Q_OBJECT
private slots:
    void savedNumberIsALooseSubstringTest();
    void firstRunChecksEveryRowAndTakesTheLast();
    void rowIndexIsNotTheComNumber();
    void pickingSavesAndNotifies();
    void captionWithoutComTextKeepsPort();
    void rowsAboveSixteenCannotBePicked();
    void refreshWhileConnectedIsRefused();
    void updatePortInformationSpeaksAndRefreshes();
    void conZultTimerOnlyAfterToggleInThisRun();
    void longDeviceNameGivesErrorBox();
    void catalogKeepsComNumbersAcrossRuns();
    void catalogListsExtraPortsThenSimulator();
    void catalogTakesOverNumbersOfAbsentDevices();
    void simulatorRowConnectsAndIdentifies();
};

void PortSelectionTest::savedNumberIsALooseSubstringTest()
{
    Selection s({QStringLiteral("Communications Port (COM1)"), QStringLiteral("USB Serial Port (COM11)")});
    s.settings.store->WriteSetting(QStringLiteral("PortNumber"), QStringLiteral("Setting"), QStringLiteral("1"));
    s.ports.RefreshPortList();
    QCOMPARE(s.ports.rowCount(), 2);
    QVERIFY(s.ports.rowChecked(1));
    QVERIFY(s.ports.rowChecked(2));
    QCOMPARE(s.h.link.CommPort(), 11);
    QCOMPARE(s.h.panels.text(2), QStringLiteral("Consult Port 11"));
}

void PortSelectionTest::firstRunChecksEveryRowAndTakesTheLast()
{
    Selection s({QStringLiteral("A (COM4)"), QStringLiteral("B (COM2)"), QStringLiteral("C (COM9)")});
    s.ports.RefreshPortList();
    QVERIFY(s.ports.rowChecked(1) && s.ports.rowChecked(2) && s.ports.rowChecked(3));
    QCOMPARE(s.h.link.CommPort(), 9);
}

void PortSelectionTest::rowIndexIsNotTheComNumber()
{
    Selection s({QStringLiteral("A (COM3)"), QStringLiteral("B (COM7)")});
    s.settings.store->WriteSetting(QStringLiteral("PortNumber"), QStringLiteral("Setting"), QStringLiteral("3"));
    s.ports.RefreshPortList();
    s.ports.PickPort(2);
    QCOMPARE(s.h.link.CommPort(), 7);
    QVERIFY(!s.ports.rowChecked(1));
    QVERIFY(s.ports.rowChecked(2));
}

void PortSelectionTest::pickingSavesAndNotifies()
{
    Selection s({QStringLiteral("A (COM3)"), QStringLiteral("B (COM10)")});
    s.ports.RefreshPortList();
    s.ports.PickPort(2);
    QCOMPARE(s.settings.store->ReadSetting(QStringLiteral("PortNumber"), QStringLiteral("Setting")), QStringLiteral("10"));
    QCOMPARE(s.h.panels.text(2), QStringLiteral("Consult Port 10"));
    QVERIFY(s.messages.isEmpty());
    s.ports.ToggleNotifyPorts();
    QCOMPARE(readSetting(*s.settings.store, Settings::NotifyPorts), QStringLiteral("True"));
    s.ports.PickPort(1);
    QCOMPARE(s.messages, QStringList{QStringLiteral("Consult port set to A (COM3)")});
    QCOMPARE(s.h.link.CommPort(), 3);
    s.ports.ToggleNotifyPorts();
    QCOMPARE(readSetting(*s.settings.store, Settings::NotifyPorts), QStringLiteral("False"));
}

void PortSelectionTest::captionWithoutComTextKeepsPort()
{
    Selection s({QStringLiteral("A (COM3)"), QStringLiteral("Bluetooth link")});
    s.settings.store->WriteSetting(QStringLiteral("PortNumber"), QStringLiteral("Setting"), QStringLiteral("3"));
    s.ports.RefreshPortList();
    s.ports.PickPort(2);
    QVERIFY(s.ports.rowChecked(2));
    QCOMPARE(s.h.link.CommPort(), 3);
    QCOMPARE(s.settings.store->ReadSetting(QStringLiteral("PortNumber"), QStringLiteral("Setting")), QStringLiteral("3"));
}

void PortSelectionTest::rowsAboveSixteenCannotBePicked()
{
    QStringList names;
    for (int i = 1; i <= 18; ++i)
        names << QStringLiteral("Port %1 (COM%2)").arg(i).arg(i <= 16 ? i : 1);
    Selection s(names);
    s.settings.store->WriteSetting(QStringLiteral("PortNumber"), QStringLiteral("Setting"), QStringLiteral("Port 2 "));
    s.ports.RefreshPortList();
    s.ports.PickPort(5);
    QCOMPARE(s.h.link.CommPort(), 5);
    s.ports.PickPort(17);
    for (int r = 1; r <= 16; ++r)
        QVERIFY(!s.ports.rowChecked(r));
    QVERIFY(!s.ports.rowChecked(17));
    QCOMPARE(s.h.link.CommPort(), 5);
}

void PortSelectionTest::refreshWhileConnectedIsRefused()
{
    Selection s({QStringLiteral("A (COM3)")});
    s.h.connectAndHandshake();
    s.ports.UpdatePortInformation();
    QCOMPARE(s.messages,
             QStringList{QStringLiteral("Consult port must be disconnected prior to updating port information.")});
    QCOMPARE(s.ports.rowCount(), 0);
    QVERIFY(!s.h.speech.spoken().contains(QStringLiteral("Port information has been updated!.")));
}

void PortSelectionTest::updatePortInformationSpeaksAndRefreshes()
{
    Selection s({QStringLiteral("A (COM3)")});
    s.ports.UpdatePortInformation();
    QCOMPARE(s.h.speech.spoken(), QStringList{QStringLiteral("Port information has been updated!.")});
    QCOMPARE(s.messages, QStringList{QStringLiteral("Port information has been updated.")});
    QCOMPARE(s.ports.rowCount(), 1);
}

void PortSelectionTest::conZultTimerOnlyAfterToggleInThisRun()
{
    Selection s({});
    writeSetting(*s.settings.store, Settings::UseConZultInterface, QStringLiteral("True"));
    s.ports.restoreChecks();
    QVERIFY(s.ports.useConZultChecked());
    QVERIFY(!s.ports.UseConZultTimer.isActive());
    QCOMPARE(s.ports.UseConZultTimer.interval(), 1000);

    s.ports.ToggleUseConZultInterface();  // off
    QVERIFY(!s.ports.useConZultChecked());
    QCOMPARE(readSetting(*s.settings.store, Settings::UseConZultInterface), QStringLiteral("False"));
    s.ports.ToggleUseConZultInterface();  // on again: the timer runs now
    QVERIFY(s.ports.UseConZultTimer.isActive());
    QCOMPARE(readSetting(*s.settings.store, Settings::UseConZultInterface), QStringLiteral("True"));

    // Each tick flips DTR, open port or not.
    const bool before = s.h.link.DTREnable();
    s.ports.UseConZultTimerTick();
    QCOMPARE(s.h.link.DTREnable(), !before);
    s.h.session.ConnectDisconnect();
    s.ports.UseConZultTimerTick();
    s.ports.UseConZultTimerTick();
    QCOMPARE(s.h.transport->dtrHistory().mid(1), (QList<bool>{before, !before}));
}

void PortSelectionTest::longDeviceNameGivesErrorBox()
{
    Selection s({QString(520, QLatin1Char('x'))});
    s.ports.RefreshPortList();
    QCOMPARE(s.errors.size(), 1);
    QVERIFY(s.errors.first().startsWith(QStringLiteral("Error Getting Device List: Buffer too small 521 vs 500")));
    QCOMPARE(s.ports.rowCount(), 0);
}

void PortSelectionTest::catalogKeepsComNumbersAcrossRuns()
{
    TempSettings t;
    {
        PortCatalog c(*t.store);
        c.setSystemPorts([] { return QList<SystemPort>{{"/dev/ttyUSB0", "FT232R USB UART"}, {"/dev/ttyACM0", ""}}; });
        const auto d = c.devices(true);
        QCOMPARE(d.size(), 3);
        QCOMPARE(d[0].friendlyName, QStringLiteral("FT232R USB UART - /dev/ttyUSB0 (COM1)"));
        QCOMPARE(d[1].friendlyName, QStringLiteral("Serial Port - /dev/ttyACM0 (COM2)"));
        QCOMPARE(d[2].friendlyName, QStringLiteral("Vexorin ECU Simulator (COM3)"));
    }
    PortCatalog again(*t.store);
    // The first device is gone and a new one came: numbers stay with their paths.
    again.setSystemPorts([] { return QList<SystemPort>{{"/dev/ttyUSB1", "CP2102"}, {"/dev/ttyACM0", ""}}; });
    const auto d = again.devices(true);
    QCOMPARE(d[0].friendlyName, QStringLiteral("CP2102 - /dev/ttyUSB1 (COM4)"));
    QCOMPARE(d[1].friendlyName, QStringLiteral("Serial Port - /dev/ttyACM0 (COM2)"));
    QCOMPARE(d[2].friendlyName, QStringLiteral("Vexorin ECU Simulator (COM3)"));
    QCOMPARE(again.pathFor(1), QStringLiteral("/dev/ttyUSB0"));
    QCOMPARE(again.pathFor(3), PortCatalog::kSimulatorPath);
    QCOMPARE(again.pathFor(17), QString());
    // Not-present devices are listed only when asked for.
    QCOMPARE(again.devices(false).size(), 4);
}

void PortSelectionTest::catalogListsExtraPortsThenSimulator()
{
    TempSettings t;
    t.store->WriteSetting(QStringLiteral("ExtraPorts"), QStringLiteral("bench"), QStringLiteral("/dev/pts/7"));
    PortCatalog c(*t.store);
    c.setSystemPorts([] { return QList<SystemPort>{{"/dev/ttyUSB0", "FT232R"}}; });
    const auto d = c.devices(true);
    QCOMPARE(d.size(), 3);
    QCOMPARE(d[1].friendlyName, QStringLiteral("Extra Serial Port - /dev/pts/7 (COM2)"));
    QCOMPARE(d[2].instance, PortCatalog::kSimulatorPath);
    QString error;
    QVERIFY(!c.makeTransport(9, &error));
    QCOMPARE(error, QStringLiteral("no device is assigned to COM9"));
}

void PortSelectionTest::catalogTakesOverNumbersOfAbsentDevices()
{
    TempSettings t;
    for (int n = 1; n <= 16; ++n)
        t.store->WriteSetting(QStringLiteral("PortAssignments"), QStringLiteral("COM%1").arg(n),
                              QStringLiteral("/dev/old%1").arg(n));
    PortCatalog c(*t.store);
    c.setSystemPorts([] { return QList<SystemPort>{{"/dev/old2", "Old"}, {"/dev/ttyUSB0", "New"}}; });
    const auto d = c.devices(true);
    QCOMPARE(d[0].friendlyName, QStringLiteral("Old - /dev/old2 (COM2)"));
    QCOMPARE(d[1].friendlyName, QStringLiteral("New - /dev/ttyUSB0 (COM1)"));
    QCOMPARE(d[2].friendlyName, QStringLiteral("Vexorin ECU Simulator (COM3)"));
}

void PortSelectionTest::simulatorRowConnectsAndIdentifies()
{
    TempSettings t;
    PortCatalog catalog(*t.store);
    catalog.setSystemPorts([] { return QList<SystemPort>{}; });
    SessionRig rig([&catalog](int n, QString* e) { return catalog.makeTransport(n, e); });
    ConsultSession& session = rig.session;
    PortSelection ports(session, *t.store, catalog.source());
    ports.RefreshPortList();
    QCOMPARE(ports.rowCount(), 1);
    QCOMPARE(ports.rowCaption(1), QStringLiteral("Vexorin ECU Simulator (COM1)"));
    ports.PickPort(1);

    session.ConnectDisconnect();
    QTRY_COMPARE(session.KeepInitializationTimerOffSwitch, QStringLiteral("Off"));
    QCOMPARE(session.ConnectedLabel(), QStringLiteral("Connected"));
    session.GetSerialNumberKValueTick();
    session.GetSerialNumberKValueTick();
    QVERIFY(session.EcuPartNumberLabel().startsWith(QStringLiteral("23710 - ")));
    QCOMPARE(session.EcuPartNumberLabel().size(), QStringLiteral("23710 - 30P00").size());
    QVERIFY(session.KValueLabel() != QStringLiteral("000"));
    QVERIFY(!session.GetSerialNumberKValue.isActive());
    session.ConnectDisconnect();
    QCOMPARE(session.ConnectedLabel(), QStringLiteral("Disconnected"));
}

QTEST_GUILESS_MAIN(PortSelectionTest)
#include "port_selection_test.moc"
