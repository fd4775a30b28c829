// What the Consult session shows and says, declared here and carried out by
// the application: the spoken sentences, the status bar panels and the Byte
// Viewer's cells.
#pragma once

#include <QString>

class SessionOutputs {
public:
    virtual ~SessionOutputs() = default;
    // A sentence for the voice (it decides whether it is spoken).
    virtual void say(const QString& sentence) = 0;
    // The text of a status bar panel, 1 to 6.
    virtual void status(int panel, const QString& text) = 0;
    // The text of a Byte Viewer cell, 1 to 33.
    virtual void cell(int position, const QString& text) = 0;
};
