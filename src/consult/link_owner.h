// The one runner of the Consult link. A read is a Cycle (read_plans.h); the
// owner sends it, counts the reply's bytes as they arrive, and ends it on the
// count or on its time-out: nothing ever waits on the user-interface thread.
// One cycle runs at a time. A click that touches the link while a cycle runs
// waits for its end, but never past the cycle's normal time on a working
// line: then the cycle is abandoned as a time-out would end it.
//
// The owner also answers who may use the link: one question, one set of
// refusal texts, and the tool windows that hold the link while they show.
#pragma once

#include "consult/read_plans.h"
#include "consult/register_stream.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <array>
#include <deque>
#include <functional>
#include <optional>

class ConsultLink;

class LinkOwner : public QObject {
    Q_OBJECT
public:
    using Reply = std::optional<vexorin::consult::Bytes>;
    using Done = std::function<void(const Reply&)>;

    explicit LinkOwner(ConsultLink& link, QObject* parent = nullptr);

    ConsultLink& link() { return link_; }

    // Starts a cycle. False, with nothing sent, while another is in flight: a
    // timer tick that finds the link busy does nothing. `done` gets the
    // reply, or nothing when it did not come (the stop bytes went out all the
    // same); it may be called before run() returns. When `context` is gone
    // by then, the cycle ends on the wire as it would and `done` is not called.
    bool run(const vexorin::consult::Cycle& cycle, QObject* context, Done done);
    bool busy() const { return state_ != State::Idle; }

    // A user action that touches the link or its flags: at once when no cycle
    // runs, else right after it ends. `context` going away drops the action.
    void whenFree(QObject* context, std::function<void()> action);

    // Ends the cycle in flight as a time-out would (its stop bytes, a reply
    // of nothing) and runs the waiting actions.
    void abandon();

    // ---- A stream that runs until it is ended ---------------------------------
    // Sends the plan's request once and hands every byte that comes after it
    // to `bytes`, as it arrives, until endStream(). The link is busy all the
    // while: timer ticks find it so and skip; a user action that waits for the
    // link (whenFree) ends the stream at once and then runs. However it ends
    // (endStream, such an action, abandon, a pulled cable) the stop bytes go
    // out and `ended` is told, unless `context` is gone. False, with nothing
    // sent, while a cycle or another stream runs.
    bool startStream(const vexorin::consult::StreamPlan& plan, QObject* context,
                     std::function<void(const vexorin::consult::Bytes&)> bytes, std::function<void()> ended);
    void endStream();
    bool streaming() const { return state_ == State::Streaming; }

    // ---- Who may use the link ----------------------------------------------
    enum class Tool { MapViewer, BinFileDownloader, RegisterViewer, ActiveTest };
    // What a caller needs, as flags; they are tested in this order.
    enum Need : unsigned {
        Connected = 1,       // "Consult port not connected."
        MonitoringOff = 2,   // "Sensor monitoring must be off."
        MonitoringOn = 4,    // "Sensor monitoring must be on."
        ToolsClosed = 8,     // "Please close the … first."
    };
    // True when the link may be used; otherwise the refusal is in `why`.
    bool mayUse(unsigned needs, QString* why) const;
    static QString refusalOf(Tool tool);
    static QString notConnectedText();
    static QString monitoringOnText();
    // Where the session's flags come from.
    void setFlags(std::function<bool()> connected, std::function<bool()> monitoring);
    // A tool window tells whether it is showing; an empty function forgets it.
    void setToolShowing(Tool tool, std::function<bool()> showing);
    bool toolShowing(Tool tool) const;

    // Cycles ended by their time-out or abandoned, since the start.
    int timeouts() const { return timeouts_; }

signals:
    // A cycle has ended, whichever way.
    void cycleEnded();

private:
    enum class State { Idle, Pausing, Waiting, Taking, Settling, Streaming };
    struct Pending {
        QPointer<QObject> context;
        std::function<void()> action;
    };

    void begin();
    void onBytes();
    void takeReply();
    void settleMore();
    void onDeadline();
    void onNormalTimeOver();
    void finish(const Reply& reply);
    void sendAfter();
    void armNormalTime();
    void runPending();
    void takeStream();

    ConsultLink& link_;
    State state_ = State::Idle;
    vexorin::consult::Cycle cycle_;
    Done done_;
    QPointer<QObject> doneContext_;
    vexorin::consult::Bytes received_;
    QElapsedTimer started_;
    QElapsedTimer settleStarted_;
    QTimer pause_;
    QTimer deadline_;
    QTimer quiet_;
    QTimer normalTime_;
    std::deque<Pending> pending_;
    // The stream: its stop bytes, its consumers, and the pace at which the
    // line is read when the device announces nothing by itself.
    vexorin::consult::Bytes streamStop_;
    std::function<void(const vexorin::consult::Bytes&)> streamBytes_;
    std::function<void()> streamEnded_;
    QTimer streamPoll_;
    QElapsedTimer streamPolled_;
    bool runningPending_ = false;
    bool settling_ = false;
    quint64 serial_ = 0;
    int timeouts_ = 0;

    std::function<bool()> connected_;
    std::function<bool()> monitoring_;
    std::array<std::function<bool()>, 4> tools_;
};
