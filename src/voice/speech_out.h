// The one speech output. Speech runs asynchronously and queues.
#pragma once

#include <QString>

class SpeechOut {
public:
    virtual ~SpeechOut() = default;
    virtual void Select(int voiceIndex) = 0;
    virtual void Speak(const QString& text) = 0;
};
