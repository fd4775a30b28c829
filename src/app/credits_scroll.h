// The Credits window's scroll: the text rises through its viewport one
// pixel every 40 ms and comes round again when it has gone.
#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

class CreditsScroll : public QObject {
    Q_OBJECT
public:
    static constexpr int kTickMs = 40;
    static constexpr int kLines = 38;  // the inner picture holds this many lines

    explicit CreditsScroll(QObject* parent = nullptr);

    QTimer ScrollTimer;

    // The title line, then the thanks.
    static QStringList text();

    // The viewport's height and one line's height; the scroll starts at the viewport's foot.
    void prepare(int viewportHeight, int lineHeight);
    int top() const { return top_; }
    int innerHeight() const { return innerHeight_; }
    void ScrollTimerTick();
    // A mouse or key event: the scroll stops and the window goes.
    void stop();

signals:
    void moved(int top);
    void closeRequested();

private:
    int viewportHeight_ = 0;
    int lineHeight_ = 0;
    int innerHeight_ = 0;
    int top_ = 0;
};
