// Where the Consult session's outputs go in this application: the voice
// gate, the status bar panels and the Byte Viewer's cells.
#pragma once

#include "consult/session_outputs.h"
#include "sensors/byte_viewer_cells.h"
#include "ui/status_panels.h"
#include "voice/voice_gate.h"

class SessionViews : public SessionOutputs {
public:
    SessionViews(StatusPanels& panels, ByteViewerCells& cells, VoiceGate& voice)
        : panels_(panels), cells_(cells), voice_(voice)
    {
    }
    void say(const QString& sentence) override { voice_.say(sentence); }
    void status(int panel, const QString& text) override { panels_.setText(panel, text); }
    void cell(int position, const QString& text) override { cells_.setCell(position, text); }

private:
    StatusPanels& panels_;
    ByteViewerCells& cells_;
    VoiceGate& voice_;
};
