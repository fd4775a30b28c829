// A Consult session over a FakeTransport with a scripted ECU.
#pragma once

#include "consult/fake_transport.h"
#include "fake_ecu.h"
#include "session_rig.h"

#include <QPointer>
#include <QStringList>
#include <memory>

struct SessionHarness : SessionRig {
    SessionHarness()
        : SessionRig([this](int, QString* error) -> SerialTransport* {
              if (!openError.isEmpty()) {
                  *error = openError;
                  return nullptr;
              }
              transport = new FakeTransport;
              ecu = std::make_unique<FakeEcu>(*transport);
              ecu->handshakeReply = handshakeReply;
              ecu->silent = silent;
              ecu->replies = replies;
              return transport;
          })
    {
        QObject::connect(&session, &ConsultSession::message, [this](const QString& m) { messages.append(m); });
    }

    // Connect and complete the handshake by running the timer tick directly.
    void connectAndHandshake()
    {
        session.ConnectDisconnect();
        settle();
        session.InitializationTimerTick();
    }

    QString openError;
    QByteArray handshakeReply = QByteArray(1, char(0x10));
    bool silent = false;
    QMap<QByteArray, QByteArray> replies;

    QPointer<FakeTransport> transport;
    std::unique_ptr<FakeEcu> ecu;
    QStringList messages;
};
