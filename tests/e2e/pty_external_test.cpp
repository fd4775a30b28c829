// End to end: the External Gauge Monitor's polling of the standalone
// DLP-IO8-G simulator through the real serial port code, running on its own
// timers while the Consult link monitors the standalone ECU simulator.
#include "consult/consult_session.h"
#include "external/external_sensors.h"
#include "pty_rig.h"
#include "sensors/sensor_stream.h"
#include "ui/status_panels.h"

#include <QRegularExpression>
#include <QSet>
#include <QTest>

namespace {
// Both simulators on their pseudo-terminals, the ECU picked for Consult and the
// DLP-IO8-G for the external port, every gauge checked.
struct BothRig {
    explicit BothRig(const QStringList& dlpArgs = {})
        : dlp(dlpArgs, QStringLiteral(VEXORIN_DLP_SIM))
    {
        ecu.settings.store->WriteSetting(QStringLiteral("ExtraPorts"), QStringLiteral("dlp"), dlp.path());
        for (int n = 1; n <= 8; ++n)
            ecu.settings.store->WriteSetting(QStringLiteral("ExSensor%1").arg(n), QStringLiteral("Setting"),
                                             QStringLiteral("True"));
    }
    bool start()
    {
        if (dlp.path().isEmpty() || !ecu.start())
            return false;
        sensors.reset(ecu.core->makeExternalSensors());
        sensors->Load();
        for (int item = 1; item <= sensors->portItems().count(); ++item)
            if (sensors->portItems().caption(item).contains(dlp.path()))
                sensors->ChooseExternalPort(item);
        sensors->ConnectDisconnectClicked();
        return sensors->link().PortOpen();
    }
    QStringList readings() const
    {
        QStringList r;
        for (int n = 1; n <= 8; ++n)
            r << sensors->link().reading(n);
        return r;
    }
    PtyRig ecu;
    SimProcess dlp;
    std::unique_ptr<ExternalSensors> sensors;
};

const QRegularExpression kReading(QStringLiteral("^[0-5]\\.\\d\\dV$"));

bool allReadings(const QStringList& r)
{
    for (const QString& t : r)
        if (!kReading.match(t).hasMatch())
            return false;
    return true;
}
}  // namespace

class PtyExternalTest : public QObject {
    Q_OBJECT
private slots:
    void pollsBesideConsultMonitoring();
    void lateRepliesLandInTheNextChannel();
    void silentAndPulledOutDevicesGiveEmptyReadings();
};

void PtyExternalTest::pollsBesideConsultMonitoring()
{
    BothRig r;
    QVERIFY(r.start());
    AppCore& core = *r.ecu.core;
    QCOMPARE(core.panels().text(4), QStringLiteral("External Port Connected"));
    core.session().ConnectDisconnect();
    QTRY_COMPARE_WITH_TIMEOUT(core.session().ConnectedLabel(), QStringLiteral("Connected"), 5000);
    QTRY_VERIFY_WITH_TIMEOUT(!core.session().GetSerialNumberKValue.isActive(), 5000);
    core.stream().MonitorOnOff();
    r.sensors->StartClicked();
    QCOMPARE(core.panels().text(6), QStringLiteral("Monitoring Sensors"));

    const qint64 before = core.stream().framesDecoded();
    QSet<QString> boost;
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 2500) {
        QTest::qWait(50);  // both links run on their own timers
        boost.insert(r.sensors->link().reading(2));
    }
    QVERIFY2(allReadings(r.readings()), qPrintable(r.readings().join(QLatin1Char(' '))));
    boost.remove(QStringLiteral("0.00V"));
    QVERIFY2(boost.size() >= 2, qPrintable(QStringList(boost.values()).join(QLatin1Char(' '))));
    const qint64 frames = core.stream().framesDecoded() - before;
    QVERIFY2(frames >= 5, qPrintable(QString::number(frames)));
    QCOMPARE(core.session().MonitorSensorsOnLabel(), QStringLiteral("ON"));

    r.sensors->StopClicked();
    QCOMPARE(r.readings(), QStringList(8, QStringLiteral("0.00V")));
    core.stream().MonitorOnOff();
    core.session().ConnectDisconnect();
    r.sensors->ConnectDisconnectClicked();
    QCOMPARE(core.panels().text(4), QStringLiteral("External Port Disconnected"));
}

void PtyExternalTest::lateRepliesLandInTheNextChannel()
{
    BothRig r;
    QVERIFY(r.start());
    for (int n = 1; n <= 8; ++n)
        r.dlp.command(QStringLiteral("hold %1 %2.%2%2").arg(n).arg(n % 5).toLatin1());
    r.sensors->StartClicked();
    QTRY_COMPARE_WITH_TIMEOUT(r.sensors->link().reading(2), QStringLiteral("2.22V"), 5000);
    // 80 ms is past the 50 ms slot: channel 1's answer is read as channel 2's.
    r.dlp.command("late 80");
    QTRY_COMPARE_WITH_TIMEOUT(r.sensors->link().reading(2), QStringLiteral("1.11V"), 5000);
    r.dlp.command("late off");
    QTRY_COMPARE_WITH_TIMEOUT(r.sensors->link().reading(2), QStringLiteral("2.22V"), 5000);
}

void PtyExternalTest::silentAndPulledOutDevicesGiveEmptyReadings()
{
    BothRig r;
    QVERIFY(r.start());
    AppCore& core = *r.ecu.core;
    core.session().ConnectDisconnect();
    QTRY_COMPARE_WITH_TIMEOUT(core.session().ConnectedLabel(), QStringLiteral("Connected"), 5000);
    QTRY_VERIFY_WITH_TIMEOUT(!core.session().GetSerialNumberKValue.isActive(), 5000);
    core.stream().MonitorOnOff();
    r.sensors->StartClicked();
    QTRY_VERIFY_WITH_TIMEOUT(allReadings(r.readings()) && !r.readings().contains(QStringLiteral("0.00V")), 5000);

    r.dlp.command("silent on");
    QTRY_COMPARE_WITH_TIMEOUT(r.readings(), QStringList(8, QString()), 5000);
    r.dlp.command("silent off");
    QTRY_VERIFY_WITH_TIMEOUT(allReadings(r.readings()), 5000);

    // Pulled out: the polling goes on without a message, the boxes read empty,
    // and the Consult monitoring is not disturbed.
    r.dlp.stop();
    QTRY_COMPARE_WITH_TIMEOUT(r.readings(), QStringList(8, QString()), 5000);
    QVERIFY(r.sensors->link().ChannelRequestTimer.isActive() || r.sensors->link().ChannelReplyTimer.isActive());
    const qint64 frames = core.stream().framesDecoded();
    QTRY_VERIFY_WITH_TIMEOUT(core.stream().framesDecoded() > frames + 3, 5000);
    QCOMPARE(core.session().MonitorSensorsOnLabel(), QStringLiteral("ON"));
}

QTEST_MAIN(PtyExternalTest)
#include "pty_external_test.moc"
