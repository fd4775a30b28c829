// Speech through the platform's text-to-speech engine (flite on Debian when
// present). Speak queues; Select chooses a voice type by its engine index.
// With no engine, or no audio device, everything is silently accepted.
#pragma once

#include "voice/speech_out.h"

#include <QObject>
#include <QStringList>
#include <functional>

class QTextToSpeech;

class QtSpeechOut : public QObject, public SpeechOut {
    Q_OBJECT
public:
    explicit QtSpeechOut(QObject* parent = nullptr);

    void Select(int voiceIndex) override;
    void Speak(const QString& text) override;

    // Which index column is in force ("Windows 7" checked or not).
    void setWindowsSevenQuery(std::function<bool()> q) { windowsSeven_ = std::move(q); }

    // What the engine offers, for the speech engines window.
    QString engineName() const;
    QStringList voiceNames() const;
    bool ready() const;
    // The engine voice, pitch and rate now in force.
    QString currentVoice() const;
    double pitch() const;
    double rate() const;

private:
    void speakNext();

    QTextToSpeech* tts_ = nullptr;
    QStringList queue_;
    std::function<bool()> windowsSeven_;
};
