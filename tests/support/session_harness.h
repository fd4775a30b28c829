// A Consult session over a FakeTransport with a scripted ECU, a speech
// recorder and the models the main window shows.
#pragma once

#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/fake_transport.h"
#include "consult/session_log.h"
#include "fake_ecu.h"
#include "sensors/byte_viewer_cells.h"
#include "ui/status_panels.h"
#include "voice/recording_speech_out.h"
#include "voice/voice_gate.h"

#include <QCoreApplication>
#include <QPointer>
#include <QStringList>
#include <memory>

struct SessionHarness {
    SessionHarness()
        : link([this](int, QString* error) -> SerialTransport* {
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
          }),
          voice(speech),
          session(link, log, panels, cells, voice)
    {
        QObject::connect(&session, &ConsultSession::message, [this](const QString& m) { messages.append(m); });
    }

    // Lets queued receive events run.
    static void settle()
    {
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
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
    ConsultLink link;
    SessionLog log;
    StatusPanels panels;
    ByteViewerCells cells;
    RecordingSpeechOut speech;
    VoiceGate voice;
    ConsultSession session;
    QStringList messages;
};
