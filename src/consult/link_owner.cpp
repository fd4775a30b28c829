#include "consult/link_owner.h"

#include "consult/consult_link.h"

using namespace vexorin::consult;

namespace {
constexpr int kStreamPollMs = 10;

const char* const kToolRefusals[] = {
    "Please close the Map Viewer first.",
    "Please close the Bin File Downloader first.",
    "Please close the E.C.U. Register Viewer first.",
    "Please close the Active Test first.",
};
}  // namespace

LinkOwner::LinkOwner(ConsultLink& link, QObject* parent)
    : QObject(parent), link_(link)
{
    for (QTimer* t : {&pause_, &deadline_, &quiet_, &normalTime_}) {
        t->setSingleShot(true);
        t->setTimerType(Qt::PreciseTimer);
    }
    connect(&pause_, &QTimer::timeout, this, &LinkOwner::begin);
    // A timer may fire before the bytes that came meanwhile are announced
    // (after the program itself was held up): the deadline and the quiet time
    // read the port once more before they end a read. Polling may announce
    // bytes and run onBytes() within it: what that did stands.
    connect(&deadline_, &QTimer::timeout, this, [this] {
        if (state_ == State::Settling) {
            finish(received_);  // the longest a settling read may take
            return;
        }
        if (state_ != State::Waiting)
            return;
        const quint64 serial = serial_;
        const bool enough = link_.poll(int(cycle_.expect));
        if (serial != serial_ || state_ != State::Waiting)
            return;  // taken while polling
        if (enough)
            takeReply();
        else
            onDeadline();
    });
    connect(&quiet_, &QTimer::timeout, this, [this] {
        if (state_ != State::Settling)
            return;
        const quint64 serial = serial_;
        settling_ = true;
        const bool more = link_.poll(1);
        settling_ = false;
        if (serial != serial_ || state_ != State::Settling)
            return;
        if (more)
            settleMore();
        else
            finish(received_);
    });
    connect(&normalTime_, &QTimer::timeout, this, &LinkOwner::onNormalTimeOver);
    connect(&link_, &ConsultLink::bytesArrived, this, &LinkOwner::onBytes);
    // A pulled cable ends the cycle or the stream before the session hears of it.
    connect(&link_, &ConsultLink::portLost, this, [this] {
        if (streaming())
            endStream();
        else if (busy())
            finish(std::nullopt);
    });
    // A device that announces nothing by itself (the built-in simulator) is
    // read at the line's pace: what 960 bytes a second would have brought.
    streamPoll_.setInterval(kStreamPollMs);
    connect(&streamPoll_, &QTimer::timeout, this, [this] {
        if (!streaming())
            return;
        const qint64 due = streamPolled_.restart() * kLineBytesPerSecond / 1000 + 1;
        const quint64 serial = serial_;
        link_.poll(int(qMin<qint64>(due, kLineBytesPerSecond)));
        if (serial == serial_ && streaming())
            takeStream();
    });
}

bool LinkOwner::run(const Cycle& cycle, QObject* context, Done done)
{
    if (busy())
        return false;
    ++serial_;
    cycle_ = cycle;
    done_ = std::move(done);
    doneContext_ = context;
    received_.clear();
    started_.start();
    if (cycle_.pauseMs > 0) {
        state_ = State::Pausing;
        pause_.start(cycle_.pauseMs);
    } else {
        begin();
    }
    return true;
}

void LinkOwner::begin()
{
    state_ = State::Waiting;
    if (cycle_.clearFirst)
        link_.setInBufferCount(0);
    for (std::uint8_t b : cycle_.send)
        link_.Output(QByteArray(1, char(b)));
    if (!link_.PortOpen()) {
        sendAfter();
        finish(std::nullopt);
        return;
    }
    deadline_.start(cycle_.timeoutMs);
    onBytes();
}

bool LinkOwner::startStream(const StreamPlan& plan, QObject* context, std::function<void(const Bytes&)> bytes,
                            std::function<void()> ended)
{
    if (busy())
        return false;
    ++serial_;
    state_ = State::Streaming;
    doneContext_ = context;
    streamStop_ = plan.stop;
    streamBytes_ = std::move(bytes);
    streamEnded_ = std::move(ended);
    link_.setInBufferCount(0);
    for (std::uint8_t b : plan.request)
        link_.Output(QByteArray(1, char(b)));
    if (!link_.PortOpen()) {
        endStream();
        return true;
    }
    streamPolled_.start();
    streamPoll_.start();
    return true;
}

void LinkOwner::takeStream()
{
    const QByteArray in = link_.Input();
    if (in.isEmpty())
        return;
    const auto consumer = streamBytes_;
    if (consumer && doneContext_)
        consumer(Bytes(in.begin(), in.end()));
}

void LinkOwner::endStream()
{
    if (!streaming())
        return;
    streamPoll_.stop();
    for (std::uint8_t b : streamStop_)
        link_.Output(QByteArray(1, char(b)));
    state_ = State::Idle;
    ++serial_;
    streamBytes_ = nullptr;
    const std::function<void()> ended = std::move(streamEnded_);
    streamEnded_ = nullptr;
    if (ended && doneContext_)
        ended();
    emit cycleEnded();
    runPending();
}

void LinkOwner::onBytes()
{
    if (state_ == State::Streaming) {
        takeStream();
        return;
    }
    // Polling the port may deliver its bytes, and this call, once more.
    if (state_ == State::Waiting) {
        const quint64 serial = serial_;
        const bool enough = link_.poll(int(cycle_.expect));
        if (enough && serial == serial_ && state_ == State::Waiting)
            takeReply();
    } else if (state_ == State::Settling && !settling_) {
        settleMore();
    }
}

void LinkOwner::takeReply()
{
    deadline_.stop();
    state_ = State::Taking;
    // The stop bytes go out before the reply is read, as they always have.
    sendAfter();
    const QByteArray in = link_.Input();
    received_.assign(in.begin(), in.end());
    if (received_.size() < cycle_.expect) {
        ++timeouts_;
        finish(std::nullopt);
        return;
    }
    if (!cycle_.settle) {
        finish(received_);
        return;
    }
    state_ = State::Settling;
    settleStarted_.start();
    deadline_.start(kSettleLimitMs);
    settleMore();
}

void LinkOwner::settleMore()
{
    settling_ = true;
    while (!burstStreamEnded(received_) && settleStarted_.elapsed() < kSettleLimitMs) {
        if (!link_.poll(1)) {
            settling_ = false;
            quiet_.start(kSettleQuietMs);
            return;
        }
        const QByteArray more = link_.Input();
        received_.insert(received_.end(), more.begin(), more.end());
    }
    settling_ = false;
    finish(received_);
}

void LinkOwner::onDeadline()
{
    if (state_ == State::Settling) {
        finish(received_);
        return;
    }
    if (state_ != State::Waiting)
        return;
    ++timeouts_;
    link_.noteTimeout(int(cycle_.expect));
    sendAfter();
    finish(std::nullopt);
}

void LinkOwner::sendAfter()
{
    for (std::uint8_t b : cycle_.after)
        link_.Output(QByteArray(1, char(b)));
}

void LinkOwner::abandon()
{
    switch (state_) {
    case State::Idle:
        break;
    case State::Streaming:
        endStream();
        break;
    case State::Pausing:
    case State::Taking:
        finish(std::nullopt);
        break;
    case State::Waiting:
        onDeadline();
        break;
    case State::Settling:
        finish(received_);
        break;
    }
}

void LinkOwner::finish(const Reply& reply)
{
    pause_.stop();
    deadline_.stop();
    quiet_.stop();
    normalTime_.stop();
    state_ = State::Idle;
    Done done = std::move(done_);
    done_ = nullptr;
    if (done && doneContext_)
        done(reply);
    emit cycleEnded();
    runPending();
}

void LinkOwner::whenFree(QObject* context, std::function<void()> action)
{
    // A stream has no end of its own: the action takes the link at once.
    if (streaming())
        endStream();
    if (!busy() && !runningPending_ && pending_.empty()) {
        action();
        return;
    }
    pending_.push_back({context, std::move(action)});
    if (busy())
        armNormalTime();
}

void LinkOwner::armNormalTime()
{
    if (normalTime_.isActive())
        return;
    if (streaming()) {
        normalTime_.start(0);  // a stream has no normal end
        return;
    }
    const qint64 left = qint64(normalTimeMs(cycle_)) - started_.elapsed();
    normalTime_.start(int(qMax<qint64>(0, left)));
}

void LinkOwner::onNormalTimeOver()
{
    if (busy() && !pending_.empty())
        abandon();
}

void LinkOwner::runPending()
{
    if (runningPending_)
        return;
    runningPending_ = true;
    // An action may start a cycle; the ones behind it then wait for that one.
    while (!pending_.empty() && !busy()) {
        Pending p = std::move(pending_.front());
        pending_.pop_front();
        if (p.context)
            p.action();
    }
    runningPending_ = false;
    if (busy() && !pending_.empty())
        armNormalTime();
}

// ---- Who may use the link ----------------------------------------------------

QString LinkOwner::refusalOf(Tool tool)
{
    return QString::fromLatin1(kToolRefusals[int(tool)]);
}

QString LinkOwner::notConnectedText()
{
    return QStringLiteral("Consult port not connected.");
}

QString LinkOwner::monitoringOnText()
{
    return QStringLiteral("Sensor monitoring must be on.");
}

void LinkOwner::setFlags(std::function<bool()> connected, std::function<bool()> monitoring)
{
    connected_ = std::move(connected);
    monitoring_ = std::move(monitoring);
}

void LinkOwner::setToolShowing(Tool tool, std::function<bool()> showing)
{
    tools_[std::size_t(tool)] = std::move(showing);
}

bool LinkOwner::toolShowing(Tool tool) const
{
    const auto& showing = tools_[std::size_t(tool)];
    return showing && showing();
}

bool LinkOwner::mayUse(unsigned needs, QString* why) const
{
    QString refusal;
    const bool monitoring = monitoring_ && monitoring_();
    if ((needs & Connected) && !(connected_ && connected_()))
        refusal = notConnectedText();
    else if ((needs & MonitoringOff) && monitoring)
        refusal = QStringLiteral("Sensor monitoring must be off.");
    else if ((needs & MonitoringOn) && !monitoring)
        refusal = monitoringOnText();
    else if (needs & ToolsClosed)
        for (int t = 0; t < int(tools_.size()) && refusal.isEmpty(); ++t)
            if (toolShowing(Tool(t)))
                refusal = refusalOf(Tool(t));
    if (why)
        *why = refusal;
    return refusal.isEmpty();
}
