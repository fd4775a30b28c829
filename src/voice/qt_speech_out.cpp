#include "voice/qt_speech_out.h"

#include <QTextToSpeech>

QtSpeechOut::QtSpeechOut(QObject* parent)
    : QObject(parent)
{
    const QStringList engines = QTextToSpeech::availableEngines();
    if (engines.contains(QStringLiteral("flite")))
        tts_ = new QTextToSpeech(QStringLiteral("flite"), this);
    else if (!engines.isEmpty())
        tts_ = new QTextToSpeech(this);
    if (tts_) {
        connect(tts_, &QTextToSpeech::stateChanged, this, [this](QTextToSpeech::State s) {
            if (s == QTextToSpeech::Ready)
                speakNext();
        });
    }
}

void QtSpeechOut::Select(int voiceIndex)
{
    if (!tts_)
        return;
    const auto voices = tts_->availableVoices();
    if (voiceIndex >= 0 && voiceIndex < voices.size())
        tts_->setVoice(voices.at(voiceIndex));
}

void QtSpeechOut::Speak(const QString& text)
{
    if (!tts_)
        return;
    queue_.append(text);
    if (tts_->state() == QTextToSpeech::Ready)
        speakNext();
}

void QtSpeechOut::speakNext()
{
    if (queue_.isEmpty() || !tts_ || tts_->state() != QTextToSpeech::Ready)
        return;
    tts_->say(queue_.takeFirst());
}
