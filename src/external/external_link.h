// The DLP-IO8-G on the external sensor port: the port ("115200,N,8,1",
// receive threshold 1, text mode), the channel in turn (`tracker`), the two
// timers that hand over to each other, and the eight channels' check boxes,
// reading boxes and bars. It shares nothing with the Consult link; both can
// poll at the same time.
//
// `ChannelRequestTimer` sends the request letter of the channel in turn;
// 50 ms later `ChannelReplyTimer` takes whatever has arrived as the reply,
// moves on to the next channel and shows the reply if that channel's box is
// checked. Exactly one of the two timers runs while polling. Every error of a
// tick is ignored: a closed or pulled-out port gives empty replies.
//
// By default the round asks all eight channels, checked or not, so a channel
// is read every 800 ms. With `checkedOnly` on, each request tick asks the
// first checked channel from `tracker` on instead, so the checked channels
// share the slots between them (one checked channel: every 100 ms). The boxes
// are looked at afresh at every request tick, so a box ticked or cleared
// while polling counts from the next slot. With no box checked the timers keep
// their pace, nothing is sent, and whatever arrives is read and dropped.
#pragma once

#include "consult/serial_transport.h"
#include "external/external_channels.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <array>
#include <functional>

class ExternalLink : public QObject {
    Q_OBJECT
public:
    static constexpr int kTickMs = 50;
    static constexpr char kDefaultSettings[] = "115200,N,8,1";

    using TransportFactory = ::TransportFactory;

    explicit ExternalLink(TransportFactory factory, QObject* parent = nullptr);
    ~ExternalLink() override;

    // The port.
    int CommPort() const { return commPort_; }
    // Ignored while the port is open, as the serial control refuses it.
    void setCommPort(int port);
    QString Settings() const { return settings_; }
    void setSettings(const QString& s) { settings_ = s; }
    int RThreshold() const { return rThreshold_; }
    void setRThreshold(int t) { rThreshold_ = t; }
    bool PortOpen() const;
    // The open device's note for the session log (see SerialTransport::openNote).
    QString openNote() const;
    // Opening fails (false, with the reason) when the device is missing or busy.
    bool setPortOpen(bool open, QString* error = nullptr);

    // The channel in turn, 1 to 8.
    int tracker() const { return tracker_; }

    // The channels, counted from 1.
    bool checked(int channel) const;
    void setChecked(int channel, bool on);
    QString reading(int channel) const;
    // Sets a reading box's text; a change of text moves the bar by the bar rule.
    void setReading(int channel, const QString& text);
    int bar(int channel) const;

    // Asks only the checked channels (see above). Off at first.
    bool checkedOnly() const { return checkedOnly_; }
    void setCheckedOnly(bool on) { checkedOnly_ = on; }

    // Start: `ChannelRequestTimer` runs. Stop: both timers off, bars to 0,
    // reading boxes to "0.00V"; `tracker` keeps its value.
    void Start();
    void Stop();
    // Whether the round runs, that is either timer is active. A closed or
    // pulled-out port does not stop it; Stop and the link's end do.
    bool polling() const;

    void ChannelRequestTimerTick();
    void ChannelReplyTimerTick();

    QTimer ChannelRequestTimer;
    QTimer ChannelReplyTimer;

signals:
    // A reading box or bar changed.
    void channelChanged(int channel);
    // The port opened or closed, by a user or because the device went away.
    void portChanged();
    // A checked channel's reply was taken into its reading box, at every reply
    // tick that does so, whether or not the box's text changed.
    void readingTaken(int channel, const QString& reply);
    // `polling()` changed: by Start, by Stop, or false when the link goes
    // away with its window while polling.
    void pollingChanged(bool polling);

private:
    struct Channel {
        bool checked = false;
        QString reading = QString::fromLatin1(vexorin::external::kIdleReading);
        int bar = 0;
    };
    Channel* channel(int n);
    const Channel* channel(int n) const;
    void setBar(int n, int value);
    // The first checked channel from `from` on, round past 8 to 1; 0 when none is checked.
    int firstCheckedFrom(int from) const;

    TransportFactory factory_;
    QPointer<SerialTransport> transport_;
    int commPort_ = 1;
    QString settings_ = QString::fromLatin1(kDefaultSettings);
    int rThreshold_ = 0;
    int tracker_ = 1;
    bool checkedOnly_ = false;
    // The channel asked by the last request tick, until its reply tick; 0 for none.
    int asked_ = 0;
    std::array<Channel, vexorin::external::kChannelCount> channels_;
};
