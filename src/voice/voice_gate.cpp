#include "voice/voice_gate.h"

#include "voice/speech_out.h"

VoiceGate::VoiceGate(SpeechOut& out, QObject* parent)
    : QObject(parent), out_(out)
{
}

void VoiceGate::setVoiceOnChecked(bool on)
{
    if (voiceOn_ == on)
        return;
    voiceOn_ = on;
    emit voiceOnChanged(on);
}

void VoiceGate::say(const QString& text)
{
    if (voiceOn_)
        out_.Speak(text);
}

void VoiceGate::selectAndSay(const QString& text)
{
    if (!voiceOn_)
        return;
    out_.Select(voiceIndex_);
    out_.Speak(text);
}
