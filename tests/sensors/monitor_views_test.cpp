#include "monitor_rig.h"

#include <QTest>

using vexorin::sensors::SensorId;
using vexorin::sensors::kPanelOrder;

class MonitorViewsTest : public QObject {
    Q_OBJECT
private slots:
    void valuesStayOneSecondThenReadZero();
    void selectedValueFollowsZerosAfterDisconnectOnly();
    void faultCodesGoOneSecondAfterMonitoringEnds();
    void largeAndAllSensorViewsExcludeEachOther();
    void largeViewTakesTheChosenSensorsMaximum();
    void blankingLeavesIdentityAndByteViewer();
};

void MonitorViewsTest::valuesStayOneSecondThenReadZero()
{
    MonitorRig r;
    r.connect();
    r.setFrame(typicalFrame());
    r.stream.MonitorOnOff();
    r.stream.GetAllSensorDataTimerTick();
    r.stream.MonitorOnOff();
    QVERIFY(r.session.SensorOffTimer.isActive());
    QCOMPARE(r.session.SensorOffTimer.interval(), 1000);
    QCOMPARE(r.displays.label(SensorId::RPM), QStringLiteral("1012"));  // still there before the tick
    r.views.SensorOffTimerTick();
    for (SensorId id : kPanelOrder) {
        QCOMPARE(r.displays.label(id), QStringLiteral("0"));
        QCOMPARE(r.displays.bar(id), 0);
        QCOMPARE(r.displays.dash(id), QStringLiteral("0"));
    }
    QCOMPARE(r.displays.largeValue(), QStringLiteral("0"));
    QVERIFY(!r.session.SensorOffTimer.isActive());
}

void MonitorViewsTest::selectedValueFollowsZerosAfterDisconnectOnly()
{
    {
        MonitorRig r;  // the button: DisplaySensorValues stops, the last value stays
        r.connect();
        r.setFrame(typicalFrame());
        r.selection.SelectSensor(SensorId::RPM);
        r.stream.MonitorOnOff();
        r.stream.ReadAllSensors();
        r.selection.DisplaySensorValuesTick();
        r.stream.MonitorOnOff();
        r.views.SensorOffTimerTick();
        if (r.selection.DisplaySensorValues.isActive())
            r.selection.DisplaySensorValuesTick();
        QVERIFY(!r.selection.DisplaySensorValues.isActive());
        QCOMPARE(r.displays.selectedSensorValue(), QStringLiteral("1012"));
    }
    {
        MonitorRig r;  // a disconnect: DisplaySensorValues runs on and copies the zeros
        r.connect();
        r.setFrame(typicalFrame());
        r.selection.SelectSensor(SensorId::RPM);
        r.stream.MonitorOnOff();
        r.stream.ReadAllSensors();
        r.selection.DisplaySensorValuesTick();
        r.session.ConnectDisconnect();
        QVERIFY(r.selection.DisplaySensorValues.isActive());
        r.views.SensorOffTimerTick();
        r.selection.DisplaySensorValuesTick();
        QCOMPARE(r.displays.selectedSensorValue(), QStringLiteral("0"));
        QCOMPARE(r.displays.largeValue(), QStringLiteral("0"));
    }
}

void MonitorViewsTest::faultCodesGoOneSecondAfterMonitoringEnds()
{
    MonitorRig r;
    r.connect();
    r.session.setFaultCodeList(QStringLiteral(" 11  55 "));
    r.stream.MonitorOnOff();
    r.stream.MonitorOnOff();
    QCOMPARE(r.session.FaultCodeList(), QStringLiteral(" 11  55 "));
    r.views.SensorOffTimerTick();
    QCOMPARE(r.session.FaultCodeList(), QString());
}

void MonitorViewsTest::largeAndAllSensorViewsExcludeEachOther()
{
    MonitorRig r;
    QVERIFY(r.views.viewAllSensorsChecked());
    QVERIFY(!r.views.largeViewerVisible());
    r.views.LargeSensorView();
    QVERIFY(r.views.largeViewerVisible());
    QVERIFY(r.views.largeSensorViewerChecked());
    QVERIFY(!r.views.viewAllSensorsChecked());
    r.views.ViewAllSensors();
    QVERIFY(!r.views.largeViewerVisible());
    QVERIFY(r.views.viewAllSensorsChecked());
    QVERIFY(!r.views.largeSensorViewerChecked());
}

void MonitorViewsTest::largeViewTakesTheChosenSensorsMaximum()
{
    MonitorRig r;
    r.selection.SelectSensor(SensorId::INJ);  // SelectedSensor "Injector"
    r.displays.setLargeBarMax(1);
    r.views.LargeSensorView();
    QCOMPARE(r.displays.largeBarMax(), 5);
    r.selection.SelectSensor(SensorId::O2L);  // "O2 (L)" is among the words tested here
    r.displays.setLargeBarMax(1);
    r.views.LargeSensorView();
    QCOMPARE(r.displays.largeBarMax(), 5);
    r.selection.SelectSensor(SensorId::Water);
    r.displays.setLargeBarMax(1);
    r.views.LargeSensorView();
    QCOMPARE(r.displays.largeBarMax(), 240);
}

void MonitorViewsTest::blankingLeavesIdentityAndByteViewer()
{
    MonitorRig r;
    r.replies[QByteArray::fromHex("d0")] = partNumberReply("30P00");
    r.connectAndHandshake();
    r.session.GetSerialNumberKValueTick();
    r.setFrame(typicalFrame());
    r.selection.SelectSensor(SensorId::Speed);
    r.stream.ReadAllSensors();
    const int largeBar = r.displays.largeBar();
    r.selection.DisplaySensorValuesTick();
    r.views.SensorOffTimerTick();
    QCOMPARE(r.session.EcuPartNumberLabel(), QStringLiteral("23710 - 30P00"));
    QCOMPARE(r.cells.cell(1), QStringLiteral("30"));
    QCOMPARE(r.displays.largeBar(), largeBar);
    QCOMPARE(r.displays.selectedSensorValue(), QStringLiteral("37.2"));
}

QTEST_GUILESS_MAIN(MonitorViewsTest)
#include "monitor_views_test.moc"
