// "Start Microsoft Speech Recognition": recognition is prepared once and bound
// to nothing. This platform has no shared recognition service, so preparing
// it has no visible effect.
#pragma once

class SpeechRecognition {
public:
    void StartVoiceRecognition()
    {
        if (!contextCreated_) {
            contextCreated_ = true;
            ++contexts_;
        }
        dictationActive_ = true;
    }
    int contextsCreated() const { return contexts_; }
    bool dictationActive() const { return dictationActive_; }

private:
    bool contextCreated_ = false;
    bool dictationActive_ = false;
    int contexts_ = 0;
};
