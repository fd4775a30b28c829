// Every spoken event passes here: it is said only while the menu item
// "Voice On" is checked.
#pragma once

#include <QObject>
#include <QString>

class SpeechOut;

class VoiceGate : public QObject {
    Q_OBJECT
public:
    explicit VoiceGate(SpeechOut& out, QObject* parent = nullptr);

    bool voiceOnChecked() const { return voiceOn_; }
    void setVoiceOnChecked(bool on);

    int currentVoice() const { return voiceIndex_; }
    void setCurrentVoice(int index) { voiceIndex_ = index; }

    // Speaks when "Voice On" is checked.
    void say(const QString& text);
    // Selects the current voice first, then speaks, when "Voice On" is checked.
    void selectAndSay(const QString& text);

    SpeechOut& out() { return out_; }

signals:
    void voiceOnChanged(bool on);

private:
    SpeechOut& out_;
    bool voiceOn_ = true;
    int voiceIndex_ = 0;
};
