#include "voice/qt_speech_out.h"

#include "voice/voice_types.h"

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
            else if (s == QTextToSpeech::Error)
                queue_.clear();  // no audio: go on without sound
        });
    }
}

void QtSpeechOut::Select(int voiceIndex)
{
    if (!tts_)
        return;
    const bool seven = windowsSeven_ ? windowsSeven_() : false;
    const VoiceType* type = voiceTypeOfIndex(voiceIndex, seven);
    if (!type)
        return;  // an index no type uses: the engine keeps its voice
    const auto voices = tts_->availableVoices();
    const QVoice* chosen = nullptr;
    for (const QVoice& v : voices)
        if (v.name() == QLatin1String(type->engineVoice))
            chosen = &v;
    if (!chosen) {
        const QVoice::Gender want = type->female ? QVoice::Female : QVoice::Male;
        for (const QVoice& v : voices)
            if (!chosen && v.gender() == want)
                chosen = &v;
    }
    if (chosen)
        tts_->setVoice(*chosen);
    tts_->setPitch(type->pitch);
    tts_->setRate(type->rate);
}

void QtSpeechOut::Speak(const QString& text)
{
    if (!tts_ || tts_->state() == QTextToSpeech::Error)
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

QString QtSpeechOut::engineName() const
{
    return tts_ ? tts_->engine() : QString();
}

QStringList QtSpeechOut::voiceNames() const
{
    QStringList out;
    if (tts_)
        for (const QVoice& v : tts_->availableVoices())
            out << v.name();
    return out;
}

bool QtSpeechOut::ready() const
{
    return tts_ && tts_->state() == QTextToSpeech::Ready;
}

QString QtSpeechOut::currentVoice() const
{
    return tts_ ? tts_->voice().name() : QString();
}

double QtSpeechOut::pitch() const
{
    return tts_ ? tts_->pitch() : 0.0;
}

double QtSpeechOut::rate() const
{
    return tts_ ? tts_->rate() : 0.0;
}
