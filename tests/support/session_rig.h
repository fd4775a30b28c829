// A Consult session with the models the main window shows and a speech
// recorder, over whatever device the factory makes.
#pragma once

#include "app/session_views.h"
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/session_log.h"
#include "sensors/byte_viewer_cells.h"
#include "ui/status_panels.h"
#include "voice/recording_speech_out.h"
#include "voice/voice_gate.h"

#include <QCoreApplication>

struct SessionRig {
    explicit SessionRig(ConsultLink::TransportFactory factory)
        : link(std::move(factory)), voice(speech), outputs(panels, cells, voice), session(link, log, outputs)
    {
    }

    // Lets queued receive events run.
    static void settle()
    {
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
    }

    ConsultLink link;
    SessionLog log;
    StatusPanels panels;
    ByteViewerCells cells;
    RecordingSpeechOut speech;
    VoiceGate voice;
    SessionViews outputs;
    ConsultSession session;
};
