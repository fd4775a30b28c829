#include "external/external_link.h"

using vexorin::external::kChannelCount;
using vexorin::external::kChannels;

ExternalLink::ExternalLink(TransportFactory factory, QObject* parent)
    : QObject(parent), factory_(std::move(factory))
{
    for (QTimer* t : {&ChannelRequestTimer, &ChannelReplyTimer})
        t->setInterval(kTickMs);
    connect(&ChannelRequestTimer, &QTimer::timeout, this, &ExternalLink::ChannelRequestTimerTick);
    connect(&ChannelReplyTimer, &QTimer::timeout, this, &ExternalLink::ChannelReplyTimerTick);
}

ExternalLink::~ExternalLink()
{
    // The window went away while polling: whoever watches learns that it stopped.
    if (polling()) {
        ChannelRequestTimer.stop();
        ChannelReplyTimer.stop();
        emit pollingChanged(false);
    }
    if (transport_) {
        transport_->close();
        delete transport_;
    }
}

void ExternalLink::setCommPort(int port)
{
    if (!PortOpen())
        commPort_ = port;
}

bool ExternalLink::PortOpen() const
{
    return transport_ && transport_->isOpen();
}

QString ExternalLink::openNote() const
{
    return transport_ ? transport_->openNote() : QString();
}

bool ExternalLink::setPortOpen(bool open, QString* error)
{
    if (open == PortOpen())
        return true;
    if (transport_) {
        transport_->close();
        transport_->deleteLater();
        transport_ = nullptr;
    }
    if (!open) {
        emit portChanged();
        return true;
    }
    SerialTransport* t = openTransport(factory_, commPort_, error);
    if (!t)
        return false;
    transport_ = t;
    t->setParent(this);
    // A device that goes away leaves the port closed; the ticks go on and read nothing.
    connect(
        t, &SerialTransport::lost, this,
        [this, t] {
            if (transport_ != t)
                return;
            t->close();
            t->deleteLater();
            transport_ = nullptr;
            emit portChanged();
        },
        Qt::QueuedConnection);
    emit portChanged();
    return true;
}

ExternalLink::Channel* ExternalLink::channel(int n)
{
    return n >= 1 && n <= kChannelCount ? &channels_[std::size_t(n - 1)] : nullptr;
}

const ExternalLink::Channel* ExternalLink::channel(int n) const
{
    return n >= 1 && n <= kChannelCount ? &channels_[std::size_t(n - 1)] : nullptr;
}

bool ExternalLink::checked(int n) const
{
    const Channel* c = channel(n);
    return c && c->checked;
}

void ExternalLink::setChecked(int n, bool on)
{
    if (Channel* c = channel(n))
        c->checked = on;
}

QString ExternalLink::reading(int n) const
{
    const Channel* c = channel(n);
    return c ? c->reading : QString();
}

int ExternalLink::bar(int n) const
{
    const Channel* c = channel(n);
    return c ? c->bar : 0;
}

void ExternalLink::setBar(int n, int value)
{
    Channel* c = channel(n);
    if (!c || c->bar == value)
        return;
    c->bar = value;
    emit channelChanged(n);
}

void ExternalLink::setReading(int n, const QString& text)
{
    Channel* c = channel(n);
    if (!c || c->reading == text)
        return;
    c->reading = text;
    if (const std::optional<int> v = vexorin::external::barValueFor(n, text))
        c->bar = *v;
    emit channelChanged(n);
}

bool ExternalLink::polling() const
{
    return ChannelRequestTimer.isActive() || ChannelReplyTimer.isActive();
}

void ExternalLink::Start()
{
    const bool was = polling();
    ChannelRequestTimer.start();
    if (!was)
        emit pollingChanged(true);
}

void ExternalLink::Stop()
{
    const bool was = polling();
    ChannelRequestTimer.stop();
    ChannelReplyTimer.stop();
    asked_ = 0;
    for (int n = 1; n <= kChannelCount; ++n)
        setBar(n, 0);
    for (int n = 1; n <= kChannelCount; ++n)
        setReading(n, QString::fromLatin1(vexorin::external::kIdleReading));
    if (was)
        emit pollingChanged(false);
}

int ExternalLink::firstCheckedFrom(int from) const
{
    for (int i = 0; i < kChannelCount; ++i) {
        const int n = (from - 1 + i) % kChannelCount + 1;
        if (checked(n))
            return n;
    }
    return 0;
}

void ExternalLink::ChannelRequestTimerTick()
{
    asked_ = checkedOnly_ ? firstCheckedFrom(tracker_) : tracker_;
    if (asked_ > 0)
        tracker_ = asked_;
    if (asked_ > 0 && PortOpen() && tracker_ >= 1 && tracker_ <= kChannelCount)
        transport_->write(QByteArray(1, kChannels[std::size_t(tracker_ - 1)].letter));
    ChannelRequestTimer.stop();
    ChannelReplyTimer.start();
}

void ExternalLink::ChannelReplyTimerTick()
{
    QString reply;
    if (PortOpen()) {
        transport_->bytesAvailable();  // picks up what the driver holds
        reply = QString::fromLatin1(transport_->readAll());
    }
    // Checked channels only, and none was asked this slot: the bytes are
    // dropped and the channel in turn stays.
    const bool idle = checkedOnly_ && asked_ == 0;
    asked_ = 0;
    const int read = tracker_;
    if (!idle)
        tracker_ = vexorin::external::nextChannel(tracker_);
    ChannelReplyTimer.stop();
    ChannelRequestTimer.start();
    if (!idle && checked(read)) {
        setReading(read, reply);
        emit readingTaken(read, reply);
    }
}
