#include "external/external_sensors.h"

#include "app/settings/settings_access.h"
#include "external/channel_scale_settings.h"
#include "external/external_ports.h"
#include "ui/status_panels.h"
#include "voice/voice_gate.h"

using vexorin::external::ChannelScale;
using vexorin::external::kChannelCount;
using vexorin::external::kChannels;

namespace {
const QString kNotConnected = QStringLiteral("Port is not connected");

// The section of a gauge's setting, e.g. ExSensor3 or ExternalSensor3; the key is always "Setting".
QString gaugeSection(QLatin1StringView prefix, int channel)
{
    return QString(prefix) + QString::number(channel);
}
const QString kSettingKey = QStringLiteral("Setting");
}  // namespace

ExternalSensors::ExternalSensors(SettingsStore& store, StatusPanels& panels, VoiceGate& voice, DeviceSource source,
                                 ExternalLink::TransportFactory factory, QObject* parent)
    : QObject(parent),
      store_(store),
      panels_(panels),
      voice_(voice),
      source_(std::move(source)),
      link_(std::move(factory))
{
    for (const auto& c : kChannels)
        names_.append(QString::fromLatin1(c.defaultName));
    connect(&link_, &ExternalLink::channelChanged, this, &ExternalSensors::updateFigure);
}

QString ExternalSensors::name(int channel) const
{
    return channel >= 1 && channel <= kChannelCount ? names_[channel - 1] : QString();
}

void ExternalSensors::Load()
{
    notifySelected_ = readSetting(store_, Settings::NotifySelected) == QLatin1String("True");
    link_.setCheckedOnly(readSettingOrDefault(store_, Settings::ExternalPollingCheckedOnly) == QLatin1String("True"));
    for (int n = 1; n <= kChannelCount; ++n) {
        const QString on = store_.ReadSetting(gaugeSection(Settings::ExSensorSectionPrefix, n), kSettingKey);
        link_.setChecked(n, on == QLatin1String("True"));
        names_[n - 1] = savedName(n);
        scales_[std::size_t(n - 1)] = vexorin::external::loadChannelScale(store_, n);
    }
    const QString caption = readSetting(store_, Settings::CaptionType);
    if (caption == QLatin1String("1"))
        displayPercentage_ = true;
    else if (caption == QLatin1String("0"))
        displayPercentage_ = false;
    for (int n = 1; n <= kChannelCount; ++n)
        if (names_[n - 1].isEmpty())
            names_[n - 1] = QString::fromLatin1(kChannels[std::size_t(n - 1)].defaultName);
    for (int n = 1; n <= kChannelCount; ++n)
        updateFigure(n);
    emit changed();
    RefreshExternalPorts();
}

void ExternalSensors::RefreshExternalPorts()
{
    const QString saved = readSetting(store_, Settings::ExternalPortNumber);
    // The external port's number goes into panel 5 under the Consult wording.
    const PortListing listing = portItems_.refresh(source_, saved, [this](int n) {
        link_.setCommPort(n);
        panels_.setText(5, QStringLiteral("Consult Port %1").arg(n));
    });
    emit changed();
    if (!listing.ok())
        emit errorBox(listing.status, listing.errorTitle);
}

void ExternalSensors::ChooseExternalPort(int item)
{
    const int n = portItems_.pick(item);
    if (n < 0) {
        emit changed();
        return;
    }
    if (n > 0) {
        link_.setCommPort(n);  // refused while the port is open
        writeSetting(store_, Settings::ExternalPortNumber, QString::number(n));
    }
    emit changed();
    if (notifySelected_)
        emit message(QStringLiteral("External Sensor port set to ") + portItems_.caption(item));
}

bool ExternalSensors::openPort()
{
    link_.setSettings(QString::fromLatin1(ExternalLink::kDefaultSettings));
    link_.setRThreshold(1);
    QString why;
    if (!link_.setPortOpen(true, &why)) {
        emit logLine(QStringLiteral(": Could not open External Sensor port COM%1: %2").arg(link_.CommPort()).arg(why));
        emit message(QStringLiteral("External Sensor port COM%1 could not be opened: %2").arg(link_.CommPort()).arg(why));
        return false;
    }
    const QString note = link_.openNote();
    if (!note.isEmpty())
        emit logLine(QStringLiteral(": External Sensor port COM%1: %2").arg(link_.CommPort()).arg(note));
    setStatus(QStringLiteral("Connected"));
    return true;
}

void ExternalSensors::closePort()
{
    link_.setPortOpen(false);
    setStatus(QStringLiteral("Disconnected"));
}

void ExternalSensors::ConnectDisconnectClicked()
{
    if (!link_.PortOpen()) {
        if (openPort())
            panels_.setText(4, QStringLiteral("External Port Connected"));
        return;
    }
    panels_.setText(4, QStringLiteral("External Port Disconnected"));
    panels_.setText(6, QStringLiteral("Standby"));
    link_.Stop();
    closePort();
}

void ExternalSensors::ConnectDisconnectMenu()
{
    if (link_.PortOpen())
        closePort();
    else
        openPort();
}

void ExternalSensors::StartClicked()
{
    if (!link_.PortOpen()) {
        emit message(kNotConnected);
        return;
    }
    link_.Start();
    panels_.setText(6, QStringLiteral("Monitoring Sensors"));
}

void ExternalSensors::StopClicked()
{
    if (!link_.PortOpen()) {
        emit message(kNotConnected);
        return;
    }
    panels_.setText(6, QStringLiteral("Standby"));
    link_.Stop();
}

void ExternalSensors::UpdatePortInfo()
{
    voice_.say(QStringLiteral("Port information has been updated!."));
    emit message(QStringLiteral("Port information has been updated.\n"));
    RefreshExternalPorts();
}

void ExternalSensors::ToggleDisplayPercentage()
{
    displayPercentage_ = !displayPercentage_;
    writeSetting(store_, Settings::CaptionType, displayPercentage_ ? QStringLiteral("1") : QStringLiteral("0"));
    emit changed();
}

void ExternalSensors::ToggleNotifySelected()
{
    notifySelected_ = !notifySelected_;
    writeSetting(store_, Settings::NotifySelected, notifySelected_ ? QStringLiteral("True") : QStringLiteral("False"));
    emit changed();
}

void ExternalSensors::TogglePollCheckedOnly()
{
    link_.setCheckedOnly(!link_.checkedOnly());
    writeSetting(store_, Settings::ExternalPollingCheckedOnly,
                 link_.checkedOnly() ? QStringLiteral("True") : QStringLiteral("False"));
    emit changed();
}

QString ExternalSensors::renameHeading(int channel)
{
    return QStringLiteral("External Sensor %1").arg(channel);
}

QString ExternalSensors::savedName(int channel) const
{
    return store_.ReadSetting(gaugeSection(Settings::ExternalSensorSectionPrefix, channel), kSettingKey);
}

bool ExternalSensors::RenameOk(const QString& heading, const QString& text)
{
    for (int n = 1; n <= kChannelCount; ++n) {
        if (heading != renameHeading(n))
            continue;
        store_.WriteSetting(gaugeSection(Settings::ExternalSensorSectionPrefix, n), kSettingKey, text);
        names_[n - 1] = text;
        emit changed();
        return true;
    }
    return false;
}

void ExternalSensors::setStatus(const QString& text)
{
    status_ = text;
    emit changed();
}

std::optional<ChannelScale> ExternalSensors::scale(int channel) const
{
    return channel >= 1 && channel <= kChannelCount ? scales_[std::size_t(channel - 1)] : std::nullopt;
}

void ExternalSensors::setScale(int channel, const std::optional<ChannelScale>& scale)
{
    if (channel < 1 || channel > kChannelCount)
        return;
    vexorin::external::saveChannelScale(store_, channel, scale);
    scales_[std::size_t(channel - 1)] = scale;
    if (!updateFigure(channel))
        emit figureChanged(channel);  // the scale changed, though its text did not
}

QString ExternalSensors::figureText(int channel) const
{
    return channel >= 1 && channel <= kChannelCount ? figures_[std::size_t(channel - 1)] : QString();
}

QString ExternalSensors::scaleCaption(int channel) const
{
    return QStringLiteral("Channel Scale - ") + name(channel);
}

bool ExternalSensors::updateFigure(int channel)
{
    if (channel < 1 || channel > kChannelCount)
        return false;
    const auto& scale = scales_[std::size_t(channel - 1)];
    const QString text = scale ? vexorin::external::scaledReading(*scale, link_.reading(channel)) : QString();
    QString& shown = figures_[std::size_t(channel - 1)];
    if (text == shown)
        return false;
    shown = text;
    emit figureChanged(channel);
    return true;
}
