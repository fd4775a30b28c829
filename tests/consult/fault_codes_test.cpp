#include "app/fault_codes_window.h"
#include "consult/fault_codes.h"
#include "consult/simulator_transport.h"
#include "voice_rig.h"

#include <QTest>

namespace {
// The reply of a fault read: the echo, the frame start, then the given bytes, padded to 32 with frames.
QByteArray faultReply(const QByteArray& afterStart)
{
    QByteArray r = QByteArray::fromHex("2eff") + afterStart;
    while (r.size() < 32)
        r.append(char(0x00));
    return r;
}
const QByteArray kFaultRequest = QByteArray::fromHex("d1");
}  // namespace

class FaultCodesTest : public QObject {
    Q_OBJECT
private slots:
    void refusals();
    void frameStartAtOnceGivesAnEmptyList();
    void code55Alone();
    void eachPassSpeaksAllSentencesSoFar();
    void countsAndLengthsShowAsCodes();
    void secondReadStartsAfresh();
    void positionsPastTheReplyReadZero();
    void clearReportsBeforeSending();
    void tableHasEighteenCodesInTestOrder();
    void helpWindowLines();
    void readAgainstTheSimulator();
};

void FaultCodesTest::refusals()
{
    VoiceRig r;
    r.faults.GetFaultCodes();
    r.faults.ClearFaultCodes();
    QCOMPARE(r.messages, (QStringList{QStringLiteral("Consult port not connected."), QStringLiteral("Consult port not connected.")}));
    r.monitoring();
    r.messages.clear();
    r.faults.GetFaultCodes();
    r.faults.ClearFaultCodes();
    QCOMPARE(r.messages, (QStringList{QStringLiteral("Sensor monitoring must be off."), QStringLiteral("Sensor monitoring must be off.")}));
}

void FaultCodesTest::frameStartAtOnceGivesAnEmptyList()
{
    VoiceRig r;
    r.replies[kFaultRequest] = faultReply(QByteArray::fromHex("ff0255"));
    r.connect();
    r.speech.clear();
    r.faults.GetFaultCodes();
    QCOMPARE(r.session.FaultCodeList(), QString());
    QVERIFY(r.speech.spoken().isEmpty());
    QCOMPARE(r.log.messages().last(), QStringLiteral(": Requesting fault codes."));
    QCOMPARE(r.panels.text(3), QStringLiteral("Requesting Fault Codes"));
}

void FaultCodesTest::code55Alone()
{
    VoiceRig r;
    r.replies[kFaultRequest] = faultReply(QByteArray::fromHex("025500ff025500"));
    r.connect();
    r.speech.clear();
    r.faults.GetFaultCodes();
    QCOMPARE(r.session.FaultCodeList(), QStringLiteral(" 55 "));
    QCOMPARE(r.log.messages().last(), QStringLiteral(": Code 55, No Problems Found."));
    const QString sentence = QStringLiteral("\r\nCode 55, No problems found.\r\n");
    QCOMPARE(r.faults.FaultCodeResponse(), sentence);
    // Length byte (no match), 55, the count 00: three passes before the next frame start.
    QCOMPARE(r.speech.spoken(), (QStringList{QString(), sentence, sentence}));
    QCOMPARE(r.transport->written().right(2), QByteArray::fromHex("3030"));
}

void FaultCodesTest::eachPassSpeaksAllSentencesSoFar()
{
    VoiceRig r;
    r.replies[kFaultRequest] = faultReply(QByteArray::fromHex("0411023401ff"));
    r.connect();
    r.speech.clear();
    r.faults.GetFaultCodes();
    const QString s11 = QStringLiteral("\r\nCode 11, crank angle sensor circuit.\r\n");
    const QString s34 = QStringLiteral("\r\nCode 34, detonation sensor circuit.\r\n");
    QCOMPARE(r.speech.spoken(), (QStringList{QString(), s11, s11, s11 + s34, s11 + s34}));
    QCOMPARE(r.session.FaultCodeList(), QStringLiteral(" 11  34 "));
    QStringList logged = r.log.messages();
    QCOMPARE(logged.mid(logged.size() - 2),
             (QStringList{QStringLiteral(": Code 11, Crank Angle Sensor Circuit."),
                          QStringLiteral(": Code 34, Detonation Sensor Circuit.")}));
}

void FaultCodesTest::countsAndLengthsShowAsCodes()
{
    VoiceRig r;
    // Code 43 stored 17 (0x11) times; the length 0x12 and the count show as codes too.
    r.replies[kFaultRequest] = faultReply(QByteArray::fromHex("124311ff"));
    r.connect();
    r.voice.setVoiceOnChecked(false);
    r.faults.GetFaultCodes();
    QCOMPARE(r.session.FaultCodeList(), QStringLiteral(" 12  43  11 "));
}

void FaultCodesTest::secondReadStartsAfresh()
{
    VoiceRig r;
    r.replies[kFaultRequest] = faultReply(QByteArray::fromHex("025503ff"));
    r.connect();
    r.faults.GetFaultCodes();
    r.faults.GetFaultCodes();
    QCOMPARE(r.session.FaultCodeList(), QStringLiteral(" 55 "));
    QCOMPARE(r.faults.FaultCodeResponse(), QStringLiteral("\r\nCode 55, No problems found.\r\n"));
    QCOMPARE(r.log.messages().count(QStringLiteral(": Code 55, No Problems Found.")), 2);
    QCOMPARE(r.log.messages().count(QStringLiteral(": Requesting fault codes.")), 2);
}

void FaultCodesTest::positionsPastTheReplyReadZero()
{
    VoiceRig r;
    // Exactly 32 bytes and no frame start among them: positions 31 and 32 lie past the reply.
    QByteArray reply = QByteArray::fromHex("2eff");
    while (reply.size() < 31)
        reply.append(char(0x00));
    reply.append(char(0x55));  // byte 32 is position 30
    r.replies[kFaultRequest] = reply;
    r.connect();
    r.voice.setVoiceOnChecked(false);
    r.faults.GetFaultCodes();
    QCOMPARE(r.session.FaultCodeList(), QStringLiteral(" 55 "));
}

void FaultCodesTest::clearReportsBeforeSending()
{
    VoiceRig r;
    r.connect();
    r.session.setFaultCodeList(QStringLiteral(" 11 "));
    r.transport->clearWritten();
    r.speech.clear();
    r.faults.ClearFaultCodes();
    QCOMPARE(r.session.FaultCodeList(), QString());
    QStringList m = r.log.messages();
    QCOMPARE(m.mid(m.size() - 2), (QStringList{QStringLiteral(": Sending request to clear fault codes."),
                                               QStringLiteral(": Fault codes successfully cleared.")}));
    QCOMPARE(r.speech.spoken(), QStringList{QStringLiteral("Fault codes successfully cleared.")});
    QCOMPARE(r.panels.text(3), QStringLiteral("Fault Codes Cleared"));
    QCOMPARE(r.transport->written(), QByteArray::fromHex("3030c1f0"));
    QCOMPARE(r.transport->writes().size(), 4);
}

void FaultCodesTest::tableHasEighteenCodesInTestOrder()
{
    QCOMPARE(int(kFaultCodes.size()), 18);
    QCOMPARE(kFaultCodes.front().byte, 17);
    QCOMPARE(kFaultCodes.back().byte, 85);
    for (std::size_t i = 1; i < kFaultCodes.size(); ++i)
        QVERIFY(kFaultCodes[i - 1].byte < kFaultCodes[i].byte);
    QCOMPARE(QLatin1String(kFaultCodes[7].spoken), QStringLiteral("Code 32, E G R  function."));
    QCOMPARE(QLatin1String(kFaultCodes[16].log),
             QStringLiteral(": Code 54, Signal Circuit from A/T Control Unit to E.C.U. (A/T only)."));
}

void FaultCodesTest::helpWindowLines()
{
    FaultCodesWindow w;
    const QStringList lines = w.lines();
    QCOMPARE(lines.size(), 18);
    QCOMPARE(lines.first(), QStringLiteral("Code 11 - Crank Angle Sensor Circuit."));
    QCOMPARE(lines.last(), QStringLiteral("Code 55 - No Problems Found."));
    QCOMPARE(w.windowTitle(), QStringLiteral("Fault Codes"));
}

void FaultCodesTest::readAgainstTheSimulator()
{
    SessionRig rig([](int, QString*) {
        auto* sim = new SimulatorTransport;
        sim->ecu().setFaultCodes({{0x11, 3}, {0x34, 1}});
        return sim;
    });
    FaultCodes faults(rig.session);
    rig.session.ConnectDisconnect();
    QTRY_COMPARE(rig.session.ConnectedLabel(), QStringLiteral("Connected"));
    faults.GetFaultCodes();
    QCOMPARE(rig.session.FaultCodeList(), QStringLiteral(" 11  34 "));
    faults.ClearFaultCodes();
    faults.GetFaultCodes();
    QCOMPARE(rig.session.FaultCodeList(), QStringLiteral(" 55 "));
}

QTEST_MAIN(FaultCodesTest)
#include "fault_codes_test.moc"
