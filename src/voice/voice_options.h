// The options the voice monitor reads: the speed unit it speaks and the
// voice family it chooses. The application's Options menu provides them.
#pragma once

class VoiceOptions {
public:
    virtual ~VoiceOptions() = default;
    virtual bool mph() const = 0;
    virtual bool kph() const = 0;
    virtual bool windowsSeven() const = 0;
    virtual bool windowsXP() const = 0;
};
