// "Vexorin External Gauge Monitor" without its widgets: the eight gauges'
// names, the port items of the "Ports" menu, the check marks of the Options
// menu, the status text, and what the buttons and menu items do. The window
// shows this and passes its clicks here; the DLP-IO8-G itself is polled by
// the `ExternalLink` it owns. Status panels 4 to 6 of the main window tell
// the external port's state. A gauge may have a scale of its own: its figure
// ("14.68 AFR") follows the reading box and is shown beside it.
#pragma once

#include "consult/dev_lister.h"
#include "consult/port_rows.h"
#include "external/channel_scale.h"
#include "external/external_link.h"

#include <QObject>
#include <QStringList>
#include <array>
#include <optional>

class SettingsStore;
class StatusPanels;
class VoiceGate;

class ExternalSensors : public QObject {
    Q_OBJECT
public:
    ExternalSensors(SettingsStore& store, StatusPanels& panels, VoiceGate& voice, DeviceSource source,
                    ExternalLink::TransportFactory factory, QObject* parent = nullptr);

    // One for the application: its store, status panels and voice, its list

    ExternalLink& link() { return link_; }

    // Check marks, names, scales and port items from the store, then the port items.
    void Load();

    // "Disconnected" or "Connected".
    QString StatusText() const { return status_; }
    // The name label of a gauge, 1 to 8.
    QString name(int channel) const;
    bool notifySelectedChecked() const { return notifySelected_; }
    bool displayPercentageChecked() const { return displayPercentage_; }
    // Options, "Poll Checked Channels Only": the link asks only the checked channels.
    bool pollCheckedOnlyChecked() const { return link_.checkedOnly(); }

    // The `ExternalPort` items, counted from 1.
    const PortRows& portItems() const { return portItems_; }
    void RefreshExternalPorts();
    void ChooseExternalPort(int item);

    // The buttons.
    void ConnectDisconnectClicked();
    void StartClicked();
    void StopClicked();
    // The menu items.
    void ConnectDisconnectMenu();
    void UpdatePortInfo();
    void ToggleDisplayPercentage();
    void ToggleNotifySelected();
    void TogglePollCheckedOnly();

    // The Sensor Name window: its heading for a gauge ("External Sensor 1" to
    // "External Sensor 8") and the text its box starts with, the saved name.
    static QString renameHeading(int channel);
    QString savedName(int channel) const;
    // OK: files the text under the gauge that the heading names and puts it on
    // the name label; false when the heading names none.
    bool RenameOk(const QString& heading, const QString& text);

    // A gauge's scale, 1 to 8, if it has one.
    std::optional<vexorin::external::ChannelScale> scale(int channel) const;
    // Saves the scale (none removes it) and shows the figure from now on.
    void setScale(int channel, const std::optional<vexorin::external::ChannelScale>& scale);
    // What the gauge shows beside its reading, e.g. "14.68 AFR": empty when it
    // has no scale or its reading box holds no number.
    QString figureText(int channel) const;
    // The Channel Scale window's caption for a gauge: "Channel Scale - " and its name.
    QString scaleCaption(int channel) const;

signals:
    // Status text, names, check marks or port items changed.
    void changed();
    // A gauge's scale or its figure text changed.
    void figureChanged(int channel);
    // A message box titled "Vexorin", one OK button, no icon.
    void message(const QString& text);
    // A message box with its own title and the critical icon.
    void errorBox(const QString& text, const QString& title);
    // A line for the session log: why the port would not open, or how it opened.
    void logLine(const QString& line);

private:
    bool openPort();
    void closePort();
    void setStatus(const QString& text);
    // Recomputes the gauge's figure text; true (and figureChanged) when it changed.
    bool updateFigure(int channel);

    SettingsStore& store_;
    StatusPanels& panels_;
    VoiceGate& voice_;
    DeviceSource source_;
    ExternalLink link_;
    PortRows portItems_;
    QStringList names_;
    std::array<std::optional<vexorin::external::ChannelScale>, vexorin::external::kChannelCount> scales_;
    std::array<QString, vexorin::external::kChannelCount> figures_;
    QString status_ = QStringLiteral("Disconnected");
    bool notifySelected_ = false;
    bool displayPercentage_ = true;
};
