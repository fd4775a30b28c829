// End to end: the standalone simulator on a pseudo-terminal, listed through
// the ExtraPorts settings, reached through the real serial port.
#include "app/app_core.h"
#include "app/main_window.h"
#include "app/port_selection.h"
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/fault_codes.h"
#include "consult/read_plans.h"
#include "consult/session_log.h"
#include "consult/wire.h"
#include "pty_rig.h"
#include "sim/ecu_simulator.h"
#include "sim_process.h"
#include "temp_settings.h"
#include "ui/message_box.h"
#include "ui/status_panels.h"
#include "voice/recording_speech_out.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QSerialPort>
#include <QSignalSpy>
#include <QTest>

namespace {
int expectedKValue()
{
    const auto rom = vexorin::sim::makeSyntheticRom();
    return vexorin::consult::kValueFromBytes(rom[0xFF2B - 0x8000], rom[0xFF2C - 0x8000]);
}
}  // namespace

class PtySessionTest : public QObject {
    Q_OBJECT
private slots:
    void init() { MessageBoxes::setPresenter([this](const QString& t, const QString&, bool) { boxes << t; }); }
    void cleanup() { MessageBoxes::setPresenter({}); boxes.clear(); }
    void connectsAndIdentifiesThroughSerialPort();
    void silentEcuTimesOutAndWindowStaysUsable();
    void closedPtyGivesMessage();
    void portInUseGivesMessage();
    void pulledOutWhileConnectedDisconnects();
    void faultCodesReadAndCleared();

private:
    QStringList boxes;
};

void PtySessionTest::connectsAndIdentifiesThroughSerialPort()
{
    PtyRig r({QStringLiteral("--part-number"), QStringLiteral("30P00")});
    QVERIFY2(r.start(), "the simulator did not start or is not listed");
    AppCore& core = *r.core;

    core.session().ConnectDisconnect();
    QVERIFY(core.link().PortOpen());
    QTRY_COMPARE_WITH_TIMEOUT(core.session().ConnectedLabel(), QStringLiteral("Connected"), 5000);
    QTRY_COMPARE_WITH_TIMEOUT(core.session().EcuPartNumberLabel(), QStringLiteral("23710 - 30P00"), 5000);
    QTRY_COMPARE_WITH_TIMEOUT(core.session().KValueLabel(), QString::number(expectedKValue()), 5000);
    QVERIFY(!core.session().GetSerialNumberKValue.isActive());
    QCOMPARE(core.panels().text(1), QStringLiteral("Consult Port Connected"));
    QVERIFY(r.speech.spoken().contains(QStringLiteral("Consult port connected.")));

    core.session().ConnectDisconnect();
    QCOMPARE(core.session().ConnectedLabel(), QStringLiteral("Disconnected"));
    QCOMPARE(core.log().messages().last(), QStringLiteral(": Consult Port Disconnected."));

    // The chosen port is found again at the next start.
    AppCore next(*r.settings.store, r.speech);
    next.start();
    QCOMPARE(next.link().CommPort(), core.link().CommPort());
}

void PtySessionTest::silentEcuTimesOutAndWindowStaysUsable()
{
    PtyRig r;
    AppCore& core = *r.core;
    MainWindow window(core);
    QVERIFY(r.start());
    window.show();

    auto* connectButton = window.findChild<QPushButton*>(QStringLiteral("Connect_DisconnectButton"));
    QVERIFY(connectButton);
    connectButton->click();
    QTRY_COMPARE_WITH_TIMEOUT(core.session().ConnectedLabel(), QStringLiteral("Connected"), 5000);
    core.session().GetSerialNumberKValue.stop();
    r.sim.command("silent on");
    QTest::qWait(100);

    QElapsedTimer clock;
    clock.start();
    core.session().GetSerialNumberKValueTick();  // the part number read waits in vain ...
    QVERIFY2(clock.elapsed() < 50, qPrintable(QString::number(clock.elapsed())));  // ... without holding the window
    QTRY_COMPARE_WITH_TIMEOUT(core.log().messages().last(),
                              QStringLiteral(": No reply from the ECU within 2 seconds; request abandoned."), 4000);
    const qint64 waited = clock.elapsed();
    QVERIFY2(waited >= vexorin::consult::kReplyTimeoutMs - 100 && waited < vexorin::consult::kReplyTimeoutMs + 1500,
             qPrintable(QString::number(waited)));
    QCOMPARE(core.session().EcuPartNumberLabel(), QStringLiteral("23710-xxxxx"));
    auto* log = window.findChild<QPlainTextEdit*>(QStringLiteral("SessionLog"));
    QVERIFY(log->toPlainText().contains(QStringLiteral("request abandoned")));

    // The window still answers: disconnect with the button.
    connectButton->click();
    QCOMPARE(core.session().ConnectedLabel(), QStringLiteral("Disconnected"));
    QVERIFY(!core.link().PortOpen());
    QVERIFY(boxes.isEmpty());
}

void PtySessionTest::closedPtyGivesMessage()
{
    TempSettings settings;
    settings.store->WriteSetting(QStringLiteral("ExtraPorts"), QStringLiteral("gone"), QStringLiteral("/dev/pts/vexorin-none"));
    RecordingSpeechOut speech;
    AppCore core(*settings.store, speech);
    core.start();
    QVERIFY(pickRowOf(core.portSelection(), QStringLiteral("/dev/pts/vexorin-none")) > 0);
    QSignalSpy boxSpy(&core.session(), &ConsultSession::message);
    core.session().ConnectDisconnect();
    QVERIFY(!core.link().PortOpen());
    QCOMPARE(boxSpy.count(), 1);
    QCOMPARE(boxSpy.at(0).at(0).toString(),
             QStringLiteral("Consult interface not connected or port not selected/available."));
    QCOMPARE(core.session().PortAvailableSwitch, QStringLiteral("0"));
    QCOMPARE(core.panels().text(1), QStringLiteral("Consult Port Disconnected"));
    QVERIFY(core.log().messages().last().startsWith(QStringLiteral(": Could not open Consult port")));
}

void PtySessionTest::portInUseGivesMessage()
{
    PtyRig r;
    QSerialPort other(r.sim.path());
    QVERIFY(other.open(QIODevice::ReadWrite));
    QVERIFY(r.start());
    QSignalSpy boxSpy(&r.core->session(), &ConsultSession::message);
    r.core->session().ConnectDisconnect();
    QCOMPARE(boxSpy.count(), 1);
    QVERIFY(!r.core->link().PortOpen());
    QCOMPARE(r.core->session().PortAvailableSwitch, QStringLiteral("0"));
}

void PtySessionTest::pulledOutWhileConnectedDisconnects()
{
    PtyRig r;
    QVERIFY(r.start());
    AppCore& core = *r.core;
    core.session().ConnectDisconnect();
    QTRY_COMPARE_WITH_TIMEOUT(core.session().ConnectedLabel(), QStringLiteral("Connected"), 5000);
    core.session().GetSerialNumberKValue.stop();

    r.sim.stop();
    // The next read finds the device gone: the cycle ends at once or by its time-out.
    core.session().ReadECUSerialNumber();
    QTRY_VERIFY_WITH_TIMEOUT(!core.link().PortOpen(), 5000);
    QTRY_COMPARE_WITH_TIMEOUT(core.session().ConnectedLabel(), QStringLiteral("Disconnected"), 5000);
    bool lostLine = false;
    for (const QString& m : core.log().messages())
        lostLine = lostLine || m.startsWith(QStringLiteral(": Consult port lost ("));
    QVERIFY2(lostLine, qPrintable(core.log().messages().join(QLatin1Char('|'))));
    QCOMPARE(core.panels().text(1), QStringLiteral("Consult Port Disconnected"));
}

void PtySessionTest::faultCodesReadAndCleared()
{
    PtyRig r({QStringLiteral("--faults"), QStringLiteral("11:3,34:1")});
    QVERIFY(r.start());
    AppCore& core = *r.core;
    core.session().ConnectDisconnect();
    QTRY_COMPARE_WITH_TIMEOUT(core.session().ConnectedLabel(), QStringLiteral("Connected"), 5000);
    QTRY_VERIFY_WITH_TIMEOUT(!core.session().GetSerialNumberKValue.isActive(), 5000);
    r.speech.clear();
    core.faultCodes().GetFaultCodes();
    QTRY_COMPARE_WITH_TIMEOUT(core.session().FaultCodeList(), QStringLiteral(" 11  34 "), 3000);
    QVERIFY(core.log().messages().contains(QStringLiteral(": Code 34, Detonation Sensor Circuit.")));
    QVERIFY(r.speech.spoken().last().contains(QStringLiteral("Code 34, detonation sensor circuit.")));
    core.faultCodes().ClearFaultCodes();
    QTest::qWait(100);
    core.faultCodes().GetFaultCodes();
    QTRY_COMPARE_WITH_TIMEOUT(core.session().FaultCodeList(), QStringLiteral(" 55 "), 3000);
}

QTEST_MAIN(PtySessionTest)
#include "pty_session_test.moc"
