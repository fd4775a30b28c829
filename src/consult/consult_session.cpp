#include "consult/consult_session.h"

#include "consult/consult_link.h"
#include "consult/link_writes.h"
#include "consult/read_plans.h"
#include "consult/session_log.h"
#include "consult/session_outputs.h"
#include "consult/wire.h"

using namespace vexorin::consult;

namespace {
const QString kConnectFailed = QStringLiteral("Consult interface not connected or port not selected/available.");
}

ConsultSession::ConsultSession(ConsultLink& link, SessionLog& log, SessionOutputs& outputs, QObject* parent)
    : QObject(parent), link_(link), log_(log), outputs_(outputs), owner_(link)
{
    owner_.setFlags([this] { return connected_ != QLatin1String("Disconnected"); },
                    [this] { return monitorOn_ == QLatin1String("ON"); });
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

bool ConsultSession::refuses(unsigned needs)
{
    QString why;
    if (owner_.mayUse(needs, &why))
        return false;
    emit message(why);
    return true;
}

void ConsultSession::ConnectDisconnect()
{
    owner_.whenFree(this, [this] { connectDisconnectNow(); });
}

void ConsultSession::connectDisconnectNow()
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
        const QString note = link_.transport()->openNote();
        if (!note.isEmpty())
            log_.AddLogMessage(QStringLiteral(": Consult port %1: %2").arg(link_.CommPort()).arg(note));
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
    // A read still running ends here, as a time-out would end it.
    owner_.abandon();
    GetAllSensorDataTimer.stop();
    PollingSwitch = QStringLiteral("1");
    VoiceMonitorTimer.stop();
    setVoiceMonitorOnLabel(QStringLiteral("OFF"));
    setVoiceMonitorChecked(false);
    setMonitorSensorsOnLabel(QStringLiteral("OFF"));

    outputs_.status(3, QStringLiteral("Standby"));

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

    outputs_.say(QStringLiteral("Consult Port Disconnected."));
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
    outputs_.status(1, open ? QStringLiteral("Consult Port Connected") : QStringLiteral("Consult Port Disconnected"));
    outputs_.status(2, QStringLiteral("Consult Port %1").arg(link_.CommPort()));
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
        outputs_.say(QStringLiteral("Consult port connected."));
    }
    KeepInitializationTimerOffSwitch = QStringLiteral("Off");
    InitializationTimer.stop();
}

void ConsultSession::GetSerialNumberKValueTick()
{
    if (owner_.busy())
        return;
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
    owner_.run(partNumberCycle(), this, [this](const LinkOwner::Reply& reply) { showIdentity(reply, true); });
}

void ConsultSession::ReadKValue()
{
    owner_.run(kValueCycle(), this, [this](const LinkOwner::Reply& reply) {
        showIdentity(reply, false);
        GetSerialNumberKValue.stop();
    });
}

void ConsultSession::showIdentity(const LinkOwner::Reply& reply, bool partNumber)
{
    if (!reply) {
        log_.AddLogMessage(timeoutMessage());
        return;
    }
    const IdentityReply shown = partNumber ? decodePartNumber(*reply) : decodeKValue(*reply);
    for (int pos = 1; pos <= 32; ++pos)
        outputs_.cell(pos, QString::fromStdString(shown.cells[std::size_t(pos - 1)]));
    const QString label = QString::fromLatin1(shown.label.data(), qsizetype(shown.label.size()));
    if (partNumber)
        setEcuPartNumberLabel(QString::fromStdString(kPartNumberPrefix) + QStringLiteral(" - ") + label);
    else
        setKValueLabel(label);
}

// The service panel: each button waits for a read in flight to end.
void ConsultSession::Initialize()
{
    owner_.whenFree(this, [this] { sendBytes(link_, CmdInit); });
}

void ConsultSession::ClearBuffer()
{
    owner_.whenFree(this, [this] {
        link_.setInBufferCount(0);
        for (int i = 1; i <= 33; ++i)
            outputs_.cell(i, QString());
    });
}

void ConsultSession::SensorCommands()
{
    owner_.whenFree(this, [this] {
        Bytes regs = kAllSensorRegisters;
        regs.pop_back();  // every register but 26
        sendBytes(link_, registerStreamRequest(regs));
    });
}

void ConsultSession::StopDataFlow()
{
    owner_.whenFree(this, [this] {
        if (!link_.PortOpen())
            link_.setPortOpen(true);
        link_.Output({CmdStop});
    });
}

void ConsultSession::MiscCommand()
{
    owner_.whenFree(this, [this] { link_.setPortOpen(!link_.PortOpen()); });
}

void ConsultSession::Command29()
{
    owner_.whenFree(this, [this] {
        sendBytes(link_, {CmdRegisterStream, 0, CmdRegisterStream, 1, CmdRegisterStream, 4, CmdRegisterStream, 5, CmdGo});
    });
}
