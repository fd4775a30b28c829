// The Active Test: the bytes of every control, the position tables, "Check
// Actual" with its shifted high bytes, the on/off buttons, self learn, the
// cylinder cut and the spark pictures, close; and what the simulated engine
// does with the tests.
#include "monitor_rig.h"
#include "tools/active_test.h"
#include "tools_rig.h"

using namespace vexorin::tools;

namespace {
struct TestRig : ToolsRig {
    TestRig() : test(session, nullptr) {}
    // The writes made since the last call.
    QList<QByteArray> sent()
    {
        QList<QByteArray> w = sim->writes;
        sim->writes.clear();
        sim->written.clear();
        return w;
    }
    ActiveTest test;
};

QByteArray request(int code, int value)
{
    QByteArray r;
    r.append(char(10));
    r.append(char(code));
    r.append(char(value));
    return r;
}

// A scripted ECU for "Check Actual", with the main window's sensor labels.
struct ScriptedRig : MonitorRig {
    ScriptedRig() : test(session, &stream) {}
    ActiveTest test;
};
}  // namespace

class ActiveTestTest : public QObject {
    Q_OBJECT
private slots:
    void opensWithItsLabelsAndSendsNothing();
    void trimsSendTheirPositionBytes();
    void middleAndEndPositions();
    void waterTemperatureNeedsCheckActualFirst();
    void checkActualSendsTheMeasuredTemperatureOnce();
    void checkActualTakesHighBytesTwoPlacesEarlier();
    void replyWithoutFrameStartChangesNothing();
    void firstSolenoidPressSendsZero();
    void fuelPumpRelayToggles();
    void selfLearnClearAndItsTimer();
    void cylinderOnOffWithNothingSelected();
    void cylinderCutAndRestore();
    void sparkPicturesAlternate();
    void activeTestOptionsSendOnlyCmdGo();
    void closingWithACylinderCutSendsOnlyCmdGo();
    void simulatedEngineFollowsTheTests();
};

void ActiveTestTest::opensWithItsLabelsAndSendsNothing()
{
    TestRig r;
    r.connect();
    ActiveTest t(r.session, nullptr);
    QVERIFY(t.SparkTimer.isActive());
    QCOMPARE(t.SparkTimer.interval(), 100);
    QVERIFY(!t.SelfLearnTimer.isActive());
    QCOMPARE(t.SelfLearnTimer.interval(), 10000);
    QCOMPARE(t.OnOffLabel, QStringLiteral("ON"));
    for (int i = 0; i < 5; ++i)
        QCOMPARE(t.onOffLabels[std::size_t(i)], QStringLiteral("-"));
    QCOMPARE(t.onOffLabels[kFuelPump], QStringLiteral("ON"));
    QCOMPARE(t.SelfLearnLabel, QStringLiteral("Full"));
    QCOMPARE(t.WaterTempLabel, QStringLiteral("0"));
    QCOMPARE(t.trimLabel(Trim::Timing), QStringLiteral("0*"));
    QCOMPARE(t.trimLabel(Trim::InjectorFuel), QStringLiteral("100%"));
    QCOMPARE(t.trimLabel(Trim::Iacv), QStringLiteral("100%"));
    for (const QString& l : {t.RPMLabel, t.MAFLabel, t.TPSLabel, t.IACVLabel})
        QCOMPARE(l, QStringLiteral("0"));
    QVERIFY(!t.waterTempEnabled());
    QCOMPARE(t.waterTempPosition(), 0);
    QCOMPARE(t.trimPosition(Trim::Timing), 6);
    QCOMPARE(t.selectedCylinder(), -1);
    QVERIFY(r.sent().isEmpty());
}

void ActiveTestTest::trimsSendTheirPositionBytes()
{
    TestRig r;
    r.connect();
    const int timing[] = {250, 251, 252, 253, 254, 255, 0, 1, 2, 3, 4, 5, 6};
    for (int p : {0, 1, 2, 3, 4, 5, 7, 8, 9, 10, 11, 12, 6}) {
        r.test.setTrimPosition(Trim::Timing, p);
        r.test.setTrimPosition(Trim::InjectorFuel, p);
        r.test.setTrimPosition(Trim::Iacv, p);
        // Each request is one write of three bytes, with no CmdGo.
        QCOMPARE(r.sent(), (QList<QByteArray>{request(130, timing[p]), request(129, 94 + p),
                                              request(132, p == 6 ? 0 : 94 + p)}));
        QCOMPARE(r.test.trimLabel(Trim::InjectorFuel), QStringLiteral("%1%").arg(94 + p));
        QCOMPARE(r.test.trimLabel(Trim::Iacv), QStringLiteral("%1%").arg(94 + p));
    }
    // The same position again is no change.
    r.test.setTrimPosition(Trim::Timing, 6);
    QVERIFY(r.sent().isEmpty());
}

void ActiveTestTest::middleAndEndPositions()
{
    TestRig r;
    r.connect();
    r.test.setTrimPosition(Trim::Iacv, 7);
    r.test.setTrimPosition(Trim::InjectorFuel, 7);
    r.sent();
    r.test.setTrimPosition(Trim::Iacv, 6);
    r.test.setTrimPosition(Trim::InjectorFuel, 6);
    QCOMPARE(r.sent(), (QList<QByteArray>{request(132, 0), request(129, 100)}));
    r.test.setTrimPosition(Trim::Timing, 0);
    QCOMPARE(r.test.trimLabel(Trim::Timing), QStringLiteral("-6*"));
    r.test.setTrimPosition(Trim::Timing, 12);
    QCOMPARE(r.test.trimLabel(Trim::Timing), QStringLiteral("+6*"));
    QCOMPARE(r.sent(), (QList<QByteArray>{request(130, 250), request(130, 6)}));
}

void ActiveTestTest::waterTemperatureNeedsCheckActualFirst()
{
    TestRig r;
    r.connect();
    QVERIFY(!r.test.waterTempEnabled());
    r.test.CheckActual();
    QVERIFY(r.test.waterTempEnabled());
    r.sent();
    r.test.setWaterTempPosition(400);
    QCOMPARE(r.sent(), QList<QByteArray>{request(128, 254)});
    QCOMPARE(r.test.WaterTempLabel, QStringLiteral("400"));
    r.test.setWaterTempPosition(0);
    QCOMPARE(r.sent(), QList<QByteArray>{request(128, 32)});
}

void ActiveTestTest::checkActualSendsTheMeasuredTemperatureOnce()
{
    TestRig r;
    r.connect();
    // Substitute 100 °C (raw 150), which the ECU then reports as its water temperature.
    r.sim->ecu().receive({0x0A, 0x80, 150});
    r.sim->ecu().transmit(16);
    r.test.CheckActual();
    QList<QByteArray> w = r.sent();
    QByteArray expected;
    for (std::uint8_t reg : vexorin::consult::kAllSensorRegisters) {
        expected.append(char(0x5A));
        expected.append(char(reg));
    }
    expected.append(char(0xF0));
    QByteArray all;
    for (int i = 0; i < w.size() - 3; ++i)
        all += w[i];
    QCOMPARE(all, expected);
    QCOMPARE(w.mid(w.size() - 3), (QList<QByteArray>{QByteArray(1, char(0x30)), QByteArray(1, char(0x30)),
                                                      request(128, 150)}));
    QCOMPARE(r.test.WaterTempLabel, QStringLiteral("212"));
    QCOMPARE(r.test.waterTempPosition(), 212);
    // The same temperature again: no change, and no test request.
    r.test.CheckActual();
    w = r.sent();
    QCOMPARE(w.last(), QByteArray(1, char(0x30)));
    for (const QByteArray& b : w)
        QCOMPARE(b.size(), 1);
}

void ActiveTestTest::checkActualTakesHighBytesTwoPlacesEarlier()
{
    ScriptedRig r;
    r.connect();
    //   speed rpmHi rpmLo tps mafHi mafLo o2l o2r injHi injLo timing iacv water fuel batt af
    r.setFrame({{30, 0, 2, 23, 0, 201, 45, 46, 1, 44, 96, 61, 130, 90, 150, 100}});
    r.test.CheckActual();
    // Position 34 holds the frame length 16, so RPM is not refreshed.
    QCOMPARE(r.test.RPMLabel, QStringLiteral("0"));
    QCOMPARE(r.displays.label(vexorin::sensors::SensorId::RPM), QStringLiteral("0"));
    // MAF takes position 37 (2) as its high byte: (2 × 256 + 201) × 5 / 1000.
    const QString maf = QString::fromStdString(vexorin::sensors::convert(vexorin::sensors::SensorId::MAF, 2, 201).text);
    QCOMPARE(r.test.MAFLabel, maf);
    QCOMPARE(r.displays.label(vexorin::sensors::SensorId::MAF), maf);
    QCOMPARE(r.test.TPSLabel, QStringLiteral("0.46"));
    QCOMPARE(r.test.WaterTempLabel, QStringLiteral("176"));
    QCOMPARE(r.test.waterTempPosition(), 176);
    QCOMPARE(r.test.IACVLabel, QStringLiteral("0"));
    QVERIFY(r.transport->written().endsWith(request(128, waterTempByte(176))));
}

void ActiveTestTest::replyWithoutFrameStartChangesNothing()
{
    ScriptedRig r;
    r.connect();
    QByteArray reply = allSensorsReply(typicalFrame());
    reply.prepend(char(0x00));   // position 33 now holds the last echo
    r.setReply(reply);
    r.test.CheckActual();
    QVERIFY(r.test.waterTempEnabled());
    QCOMPARE(r.test.WaterTempLabel, QStringLiteral("0"));
    QCOMPARE(r.test.TPSLabel, QStringLiteral("0"));
    QCOMPARE(r.test.waterTempPosition(), 0);
    QCOMPARE(r.displays.label(vexorin::sensors::SensorId::TPS), QStringLiteral("0"));
}

void ActiveTestTest::firstSolenoidPressSendsZero()
{
    TestRig r;
    r.connect();
    const int codes[] = {138, 144, 135, 140, 143};
    for (int i = 0; i < 5; ++i) {
        r.test.pressOnOff(i);
        QCOMPARE(r.test.onOffLabels[std::size_t(i)], QStringLiteral("OFF"));
        QCOMPARE(r.sent(), QList<QByteArray>{request(codes[i], 0)});
        r.test.pressOnOff(i);
        QCOMPARE(r.test.onOffLabels[std::size_t(i)], QStringLiteral("ON"));
        QCOMPARE(r.sent(), QList<QByteArray>{request(codes[i], 1)});
        r.test.pressOnOff(i);
        QCOMPARE(r.sent(), QList<QByteArray>{request(codes[i], 0)});
    }
}

void ActiveTestTest::fuelPumpRelayToggles()
{
    TestRig r;
    r.connect();
    r.test.pressOnOff(kFuelPump);
    QCOMPARE(r.test.onOffLabels[kFuelPump], QStringLiteral("OFF"));
    QCOMPARE(r.sent(), QList<QByteArray>{request(137, 0)});
    r.test.pressOnOff(kFuelPump);
    QCOMPARE(r.test.onOffLabels[kFuelPump], QStringLiteral("ON"));
    QCOMPARE(r.sent(), QList<QByteArray>{request(137, 1)});
}

void ActiveTestTest::selfLearnClearAndItsTimer()
{
    TestRig r;
    r.connect();
    r.test.ClearSelfLearn();
    QCOMPARE(r.sent(), QList<QByteArray>{request(139, 0)});
    QCOMPARE(r.test.SelfLearnLabel, QStringLiteral("Clear"));
    QVERIFY(r.test.SelfLearnTimer.isActive());
    const int timerId = r.test.SelfLearnTimer.timerId();
    // Again within the ten seconds: the request goes out again, the timer runs on.
    r.test.ClearSelfLearn();
    QCOMPARE(r.sent(), QList<QByteArray>{request(139, 0)});
    QCOMPARE(r.test.SelfLearnTimer.timerId(), timerId);
    r.test.SelfLearnTimerTick();
    QCOMPARE(r.test.SelfLearnLabel, QStringLiteral("Full"));
    QVERIFY(!r.test.SelfLearnTimer.isActive());
}

void ActiveTestTest::cylinderOnOffWithNothingSelected()
{
    TestRig r;
    r.connect();
    if (r.test.firstSparkVisible())
        r.test.SparkTimerTick();
    QVERIFY(r.test.secondSparkVisible());
    r.test.CylinderOnOff();
    QVERIFY(!r.test.SparkTimer.isActive());
    QVERIFY(r.test.firstSparkVisible());
    QVERIFY(!r.test.secondSparkVisible());
    QCOMPARE(r.test.OnOffLabel, QStringLiteral("ON"));
    QVERIFY(r.sent().isEmpty());
    // The next press starts the timer and sends the all-on request.
    r.test.CylinderOnOff();
    QVERIFY(r.test.SparkTimer.isActive());
    QCOMPARE(r.sent(), QList<QByteArray>{request(136, 0)});
}

void ActiveTestTest::cylinderCutAndRestore()
{
    TestRig r;
    r.connect();
    r.test.selectCylinder(2);
    QVERIFY(r.sent().isEmpty());
    r.test.CylinderOnOff();
    // The cut is always preceded by the all-on request, as two writes.
    QCOMPARE(r.sent(), (QList<QByteArray>{request(136, 0), request(136, 3)}));
    QCOMPARE(r.test.OnOffLabel, QStringLiteral("OFF"));
    QVERIFY(!r.test.SparkTimer.isActive());
    // A new choice restores all cylinders; the new cut waits for the button.
    r.test.selectCylinder(5);
    QCOMPARE(r.sent(), QList<QByteArray>{request(136, 0)});
    QCOMPARE(r.test.OnOffLabel, QStringLiteral("ON"));
    QVERIFY(r.test.SparkTimer.isActive());
    r.test.CylinderOnOff();
    QCOMPARE(r.sent(), (QList<QByteArray>{request(136, 0), request(136, 6)}));
    r.test.CylinderOnOff();
    QCOMPARE(r.sent(), QList<QByteArray>{request(136, 0)});
    QCOMPARE(r.test.OnOffLabel, QStringLiteral("ON"));
}

void ActiveTestTest::sparkPicturesAlternate()
{
    TestRig r;
    QVERIFY(r.test.firstSparkVisible());
    QVERIFY(!r.test.secondSparkVisible());
    r.test.SparkTimerTick();
    QVERIFY(!r.test.firstSparkVisible());
    QVERIFY(r.test.secondSparkVisible());
    r.test.SparkTimerTick();
    QVERIFY(r.test.firstSparkVisible());
    QVERIFY(!r.test.secondSparkVisible());
}

void ActiveTestTest::activeTestOptionsSendOnlyCmdGo()
{
    TestRig r;
    r.connect();
    for (int i = 0; i < 3; ++i) {
        r.test.chooseTestOption(i);
        QCOMPARE(r.sent(), QList<QByteArray>{QByteArray(1, char(0xF0))});
    }
    QCOMPARE(r.test.OnOffLabel, QStringLiteral("ON"));
    QCOMPARE(r.test.trimLabel(Trim::Timing), QStringLiteral("0*"));
}

void ActiveTestTest::closingWithACylinderCutSendsOnlyCmdGo()
{
    TestRig r;
    r.connect();
    r.test.selectCylinder(0);
    r.test.CylinderOnOff();
    r.sent();
    r.test.closing();
    QCOMPARE(r.sent(), QList<QByteArray>{QByteArray(1, char(0xF0))});
}

void ActiveTestTest::simulatedEngineFollowsTheTests()
{
    TestRig r;
    r.connect();
    vexorin::sim::EcuSimulator& ecu = r.sim->ecu();
    ecu.forcePhase(vexorin::sim::EnginePhase::Idle);
    ecu.advance(60000);
    const double firing = ecu.engine().rpm;
    r.test.selectCylinder(3);
    r.test.CylinderOnOff();
    QCOMPARE(int(ecu.activeTestValue(136)), 4);
    ecu.advance(10000);
    QVERIFY2(ecu.engine().rpm < firing - 60, qPrintable(QStringLiteral("%1 then %2").arg(firing).arg(ecu.engine().rpm)));
    r.test.CylinderOnOff();
    ecu.advance(10000);
    QVERIFY(ecu.engine().rpm > firing - 60);

    // The coolant substitute is what the ECU reports as its water temperature.
    r.test.CheckActual();
    r.test.setWaterTempPosition(68);   // 20 °C
    ecu.advance(100);
    QCOMPARE(ecu.engine().coolantC, 20.0);
    r.test.CheckActual();
    QCOMPARE(r.test.WaterTempLabel, QStringLiteral("68"));
}

QTEST_GUILESS_MAIN(ActiveTestTest)
#include "active_test_test.moc"
