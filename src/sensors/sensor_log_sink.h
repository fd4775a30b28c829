// Where the stream writes each decoded frame while "Capture to log file" is checked.
#pragma once

#include <QString>

class SensorLogSink {
public:
    virtual ~SensorLogSink() = default;
    // The check mark of "Capture to log file".
    virtual bool capturing() const = 0;
    // The date and time line that opens a frame.
    virtual void writeDateTimeLine() = 0;
    // One value, the next line of the frame: a number, or a finished text (the two-decimal sensors).
    virtual void writeValue(const QString& value, bool numeric) = 0;
};
