// A speech output that keeps what it was asked to say (tests, silent runs).
#pragma once

#include "voice/speech_out.h"

#include <QList>
#include <QStringList>

class RecordingSpeechOut : public SpeechOut {
public:
    void Select(int voiceIndex) override { selected_.append(voiceIndex); }
    void Speak(const QString& text) override { spoken_.append(text); }

    const QStringList& spoken() const { return spoken_; }
    const QList<int>& selected() const { return selected_; }
    void clear()
    {
        spoken_.clear();
        selected_.clear();
    }

private:
    QStringList spoken_;
    QList<int> selected_;
};
