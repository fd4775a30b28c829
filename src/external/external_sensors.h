// "Vexorin External Gauge Monitor" without its widgets: the eight gauges'
// names, the port items of the "Ports" menu, the check marks of the Options
// menu, the status text, and what the buttons and menu items do. The window
// shows this and passes its clicks here; the DLP-IO8-G itself is polled by
// the `ExternalLink` it owns. Status panels 4 to 6 of the main window tell
// the external port's state.
#pragma once

#include "consult/dev_lister.h"
#include "consult/port_rows.h"
#include "external/external_link.h"

#include <QObject>
#include <QStringList>

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

    // Check marks, names and port items from the store, then the port items.
    void Load();

    // "Disconnected" or "Connected".
    QString StatusText() const { return status_; }
    // The name label of a gauge, 1 to 8.
    QString name(int channel) const;
    bool notifySelectedChecked() const { return notifySelected_; }
    bool displayPercentageChecked() const { return displayPercentage_; }

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

    // The Sensor Name window: its heading for a gauge ("External Sensor 1" to
    // "External Sensor 8") and the text its box starts with, the saved name.
    static QString renameHeading(int channel);
    QString savedName(int channel) const;
    // OK: files the text under the gauge that the heading names and puts it on
    // the name label; false when the heading names none.
    bool RenameOk(const QString& heading, const QString& text);

signals:
    // Status text, names, check marks or port items changed.
    void changed();
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

    SettingsStore& store_;
    StatusPanels& panels_;
    VoiceGate& voice_;
    DeviceSource source_;
    ExternalLink link_;
    PortRows portItems_;
    QStringList names_;
    QString status_ = QStringLiteral("Disconnected");
    bool notifySelected_ = false;
    bool displayPercentage_ = true;
};
