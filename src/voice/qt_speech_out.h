// Speech through the platform's text-to-speech engine (flite on Linux when present).
#pragma once

#include "voice/speech_out.h"

#include <QObject>
#include <QStringList>

class QTextToSpeech;

class QtSpeechOut : public QObject, public SpeechOut {
    Q_OBJECT
public:
    explicit QtSpeechOut(QObject* parent = nullptr);

    void Select(int voiceIndex) override;
    void Speak(const QString& text) override;

private:
    void speakNext();

    QTextToSpeech* tts_ = nullptr;
    QStringList queue_;
};
