// The Consult session of the main window: connect and disconnect, the init
// handshake, the identity reads, the flags the rest of the system tests, the
// status panels and the session log. State is held as the texts other parts
// of the program compare.
#pragma once

#include "consult/link_owner.h"

#include <QObject>
#include <QString>
#include <QTimer>

class ConsultLink;
class SessionLog;
class SessionOutputs;

class ConsultSession : public QObject {
    Q_OBJECT
public:
    ConsultSession(ConsultLink& link, SessionLog& log, SessionOutputs& outputs, QObject* parent = nullptr);

    // Flags, as their texts.
    QString PortAvailableSwitch = QStringLiteral("0");
    QString InitializedSwitch = QStringLiteral("No");
    QString KeepInitializationTimerOffSwitch = QStringLiteral("Off");
    QString PollingSwitch = QStringLiteral("1");
    int HandshakeByte = 0;

    QString ConnectedLabel() const { return connected_; }
    QString MonitorSensorsOnLabel() const { return monitorOn_; }
    QString VoiceMonitorOnLabel() const { return voiceMonitorOn_; }
    QString EcuPartNumberLabel() const { return partNumber_; }
    QString KValueLabel() const { return kValue_; }
    QString FaultCodeList() const { return faultCodes_; }
    bool connectDisconnectChecked() const { return connectChecked_; }
    bool voiceMonitorChecked() const { return voiceMonitorChecked_; }

    void setConnectedLabel(const QString& t);
    void setMonitorSensorsOnLabel(const QString& t);
    void setVoiceMonitorOnLabel(const QString& t);
    void setEcuPartNumberLabel(const QString& t);
    void setKValueLabel(const QString& t);
    void setFaultCodeList(const QString& t);
    void setVoiceMonitorChecked(bool on);

    // Timers of the main window that the session starts and stops.
    QTimer InitializationTimer;
    QTimer GetSerialNumberKValue;
    QTimer GetAllSensorDataTimer;
    QTimer VoiceMonitorTimer;
    QTimer SensorOffTimer;

    // The Connect/Disconnect button and menu item.
    void ConnectDisconnect();
    void UpdateConnectionStatus();

    // Timer ticks and the receive event.
    void ReceiveEvent();
    void InitializationTimerTick();
    void GetSerialNumberKValueTick();

    // Identity reads.
    void ReadECUSerialNumber();
    void ReadKValue();

    // The service panel below the client area.
    void Initialize();
    void ClearBuffer();
    void SensorCommands();
    void StopDataFlow();
    void MiscCommand();
    void Command29();

    ConsultLink& link() { return link_; }
    // The runner of every read, and the rule of who may use the link.
    LinkOwner& owner() { return owner_; }
    SessionLog& log() { return log_; }
    SessionOutputs& outputs() { return outputs_; }
    // The refusal of `needs`, said in a message box; true when refused.
    bool refuses(unsigned needs);

signals:
    // A message box titled "Vexorin" with one OK button and no icon.
    void message(const QString& text);
    void labelsChanged();

private:
    void connectDisconnectNow();
    void disconnectSteps();
    void onPortLost(const QString& reason);
    void showIdentity(const LinkOwner::Reply& reply, bool partNumber);

    ConsultLink& link_;
    SessionLog& log_;
    SessionOutputs& outputs_;
    LinkOwner owner_;

    QString connected_ = QStringLiteral("Disconnected");
    QString monitorOn_ = QStringLiteral("OFF");
    QString voiceMonitorOn_ = QStringLiteral("OFF");
    QString partNumber_ = QStringLiteral("23710-xxxxx");
    QString kValue_ = QStringLiteral("000");
    QString faultCodes_;
    bool connectChecked_ = false;
    bool voiceMonitorChecked_ = false;
};
