#include "consult/consult_session.h"

#include "consult/consult_link.h"
#include "consult/request_cycle.h"
#include "consult/session_log.h"
#include "consult/wire.h"
#include "sensors/byte_viewer_cells.h"
#include "ui/status_panels.h"
#include "voice/voice_gate.h"

using namespace vexorin::consult;

namespace {
const QString kConnectFailed = QStringLiteral("Consult interface not connected or port not selected/available.");
}

ConsultSession::ConsultSession(ConsultLink& link, SessionLog& log, StatusPanels& panels, ByteViewerCells& cells,
                               VoiceGate& voice, QObject* parent)
    : QObject(parent), link_(link), log_(log), panels_(panels), cells_(cells), voice_(voice)
{
    InitializationTimer.setInterval(10);
    GetSerialNumberKValue.setInterval(500);
    GetAllSensorDataTimer.setInterval(100);
    VoiceMonitorTimer.setInterval(5000);
    SensorOffTimer.setInterval(1000);
    connect(&InitializationTimer, &QTimer::timeout, this, &ConsultSession::InitializationTimerTick);
    connect(&GetSerialNumberKValue, &QTimer::timeout, this, &ConsultSession::GetSerialNumberKValueTick);
    connect(&link_, &ConsultLink::OnComm, this, &ConsultSession::ReceiveEvent);
    connect(&link_, &ConsultLink::portLost, this, &ConsultSession::onPortLost);
}

void ConsultSession::setConnectedLabel(const QString& t) { connected_ = t; emit labelsChanged(); }
void ConsultSession::setMonitorSensorsOnLabel(const QString& t) { monitorOn_ = t; emit labelsChanged(); }
void ConsultSession::setVoiceMonitorOnLabel(const QString& t) { voiceMonitorOn_ = t; emit labelsChanged(); }
void ConsultSession::setEcuPartNumberLabel(const QString& t) { partNumber_ = t; emit labelsChanged(); }
void ConsultSession::setKValueLabel(const QString& t) { kValue_ = t; emit labelsChanged(); }
void ConsultSession::setFaultCodeList(const QString& t) { faultCodes_ = t; emit labelsChanged(); }
void ConsultSession::setVoiceMonitorChecked(bool on) { voiceMonitorChecked_ = on; emit labelsChanged(); }

void ConsultSession::ConnectDisconnect()
{
    if (link_.PortOpen()) {
        disconnectSteps();
    } else {
        QString why;
        if (!link_.setPortOpen(true, &why)) {
            log_.AddLogMessage(QStringLiteral(": Could not open Consult port %1: %2").arg(link_.CommPort()).arg(why));
            emit message(kConnectFailed);
            return;
        }
        PortAvailableSwitch = QStringLiteral("1");
    }
    if (PortAvailableSwitch == QLatin1String("1")) {
        sendBytes(link_, CmdInit);
        KeepInitializationTimerOffSwitch = QStringLiteral("On");
    }
    UpdateConnectionStatus();
}

void ConsultSession::disconnectSteps()
{
    GetAllSensorDataTimer.stop();
    PollingSwitch = QStringLiteral("1");
    VoiceMonitorTimer.stop();
    setVoiceMonitorOnLabel(QStringLiteral("OFF"));
    setVoiceMonitorChecked(false);
    setMonitorSensorsOnLabel(QStringLiteral("OFF"));

    panels_.setText(3, QStringLiteral("Standby"));

    StopData(link_);

    link_.setPortOpen(false);
    PortAvailableSwitch = QStringLiteral("0");
    setConnectedLabel(QStringLiteral("Disconnected"));

    link_.setRThreshold(1);
    link_.setInputMode(0);
    link_.setInBufferCount(0);

    log_.AddLogMessage(QStringLiteral(": Consult Port Disconnected."));

    InitializedSwitch = QStringLiteral("No");
    setMonitorSensorsOnLabel(QStringLiteral("OFF"));
    setVoiceMonitorOnLabel(QStringLiteral("OFF"));
    VoiceMonitorTimer.stop();

    SensorOffTimer.start();

    voice_.say(QStringLiteral("Consult Port Disconnected."));
}

void ConsultSession::onPortLost(const QString& reason)
{
    log_.AddLogMessage(QStringLiteral(": Consult port lost (%1).").arg(reason));
    disconnectSteps();
    UpdateConnectionStatus();
}

void ConsultSession::UpdateConnectionStatus()
{
    const bool open = link_.PortOpen();
    panels_.setText(1, open ? QStringLiteral("Consult Port Connected") : QStringLiteral("Consult Port Disconnected"));
    panels_.setText(2, QStringLiteral("Consult Port %1").arg(link_.CommPort()));
    connectChecked_ = open;
    emit labelsChanged();
}

void ConsultSession::ReceiveEvent()
{
    if (KeepInitializationTimerOffSwitch == QLatin1String("On") && !InitializationTimer.isActive())
        InitializationTimer.start();
}

void ConsultSession::InitializationTimerTick()
{
    const QByteArray in = link_.Input();
    for (char c : in)
        HandshakeByte = static_cast<unsigned char>(c);

    if (HandshakeByte == HandshakeAccepted) {
        InitializedSwitch = QStringLiteral("Yes");
        link_.setRThreshold(0);
        link_.setInputMode(1);
        link_.setInBufferCount(0);
        log_.AddLogMessage(QStringLiteral(": Consult Port Connected."));
        setConnectedLabel(QStringLiteral("Connected"));
        GetSerialNumberKValue.start();
        voice_.say(QStringLiteral("Consult port connected."));
    }
    KeepInitializationTimerOffSwitch = QStringLiteral("Off");
    InitializationTimer.stop();
}

void ConsultSession::GetSerialNumberKValueTick()
{
    if (PollingSwitch == QLatin1String("1")) {
        PollingSwitch = QStringLiteral("3");
        ReadECUSerialNumber();
    } else if (PollingSwitch == QLatin1String("3")) {
        PollingSwitch = QStringLiteral("1");
        ReadKValue();
    }
}

void ConsultSession::ReadECUSerialNumber()
{
    const auto reply = runRequestCycle(link_, partNumberRequest(), kPartNumberReplyLength);
    if (!reply) {
        log_.AddLogMessage(timeoutMessage());
        return;
    }
    const ReplyBuffer buf(*reply, kPartNumberReplyLength);
    Hex2Ascii hex2ascii;
    for (int pos = 1; pos <= 32; ++pos) {
        const std::string hex = hexText(buf(pos));
        cells_.setCell(pos, QString::fromStdString(hex));
        if (pos >= 21 && pos <= 25)
            hex2ascii(hex);
    }
    const std::string suffix = hex2ascii.text();
    setEcuPartNumberLabel(QString::fromStdString(kPartNumberPrefix) + QStringLiteral(" - ")
                          + QString::fromLatin1(suffix.data(), qsizetype(suffix.size())));
}

void ConsultSession::ReadKValue()
{
    const auto reply = runRequestCycle(link_, kValueRequest(), kKValueReplyLength);
    if (!reply) {
        log_.AddLogMessage(timeoutMessage());
    } else {
        const ReplyBuffer buf(*reply, kKValueReplyLength);
        for (int pos = 1; pos <= 32; ++pos)
            cells_.setCell(pos, QString::number(buf(pos)));
        setKValueLabel(QString::number(kValueFromBytes(buf(9), buf(10))));
    }
    GetSerialNumberKValue.stop();
}

void ConsultSession::Initialize()
{
    sendBytes(link_, CmdInit);
}

void ConsultSession::ClearBuffer()
{
    link_.setInBufferCount(0);
    for (int i = 1; i <= 33; ++i)
        cells_.setCell(i, QString());
}

void ConsultSession::SensorCommands()
{
    Bytes regs = kAllSensorRegisters;
    regs.pop_back();  // every register but 26
    sendBytes(link_, registerStreamRequest(regs));
}

void ConsultSession::StopDataFlow()
{
    if (!link_.PortOpen())
        link_.setPortOpen(true);
    link_.Output({CmdStop});
}

void ConsultSession::MiscCommand()
{
    link_.setPortOpen(!link_.PortOpen());
}

void ConsultSession::Command29()
{
    sendBytes(link_, {CmdRegisterStream, 0, CmdRegisterStream, 1, CmdRegisterStream, 4, CmdRegisterStream, 5, CmdGo});
}
