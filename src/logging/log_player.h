// The Log Player's logic: one frame of a log on fourteen labels and thirteen
// bars, stepping forward and back, playing at 225 ms or 10 ms a frame.
#pragma once

#include "logging/log_line_reader.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <array>

class LogPlayer : public QObject {
    Q_OBJECT
public:
    static const QString kNoFile;           // the path box's design text: no file
    static constexpr int kFirstLabel = 14;  // labels 14 to 27
    static constexpr int kLabelCount = 14;
    static constexpr int kBarCount = 13;    // labels 14 to 26 drive the bars

    explicit LogPlayer(QObject* parent = nullptr);

    QTimer PlayLogTimer;
    QTimer FastReverseTimer;

    QString pathBox() const { return path_; }
    QString positionBox() const { return positionBox_; }
    QString counterBox() const { return counterBox_; }
    qint64 linePosition() const { return position_; }
    // Label 14 .. 27.
    QString label(int index) const;
    // Bars of labels 14 .. 26 (index 0 .. 12).
    int bar(int index) const { return bars_[std::size_t(index)]; }
    static int barMaximum(int index);

    // A name chosen in the open dialog ("Load File"): timers off, file closed, then opened.
    void loadChosen(const QString& path);
    // The menu item: timers off and file closed before its dialog.
    void stopAndClose();
    void OpenLogFileNow(const QString& path);
    void Reload();
    void ReadNext() { readForward(false); }
    void ReadPrevious() { stepBack(false); }
    void PlayLogTimerTick() { readForward(true); }
    void FastReverseTimerTick() { stepBack(true); }
    void Play();
    void Pause();
    void FastForward();
    void FastReverse();
    // The first line (from 0) of the frame on the labels; -1 for none.
    qint64 shownLine() const { return shownLine_; }
    // Shows the frame that starts on `line`, as if read forward to it: the
    // position becomes the lines up to the frame's end. Timers stop.
    void goToLine(qint64 line);
    // The warning button: reads log1.txt beside the program, and shows nothing.
    void ReadWholeFile(const QString& programDirectory);
    // Closing the window: timers off, file closed, and every box back at its design value.
    void closing();

signals:
    void changed();
    void message(const QString& text);

private:
    bool noFile() const { return path_ == kNoFile; }
    void setLabel(int index, const QString& text);
    void refreshBars();
    void readFrameIntoLabels();
    void readForward(bool tick);
    void stepBack(bool tick);

    LogLineReader reader_;
    QString path_ = kNoFile;
    QString positionBox_ = QStringLiteral("Text14");
    QString counterBox_;
    QString currentLine_;
    qint64 position_ = 0;
    qint64 counter_ = 0;
    qint64 shownLine_ = -1;
    std::array<QString, kLabelCount> labels_;
    std::array<int, kBarCount> bars_{};
};
