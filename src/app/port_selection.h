// The port rows of the "Consult" menu, the choice of port and its memory,
// "Update Port Information" and the ConZult interface's DTR toggling.
#pragma once

#include "consult/port_rows.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

class ConsultLink;
class ConsultSession;
class SettingsStore;

class PortSelection : public QObject {
    Q_OBJECT
public:
    static constexpr int kPickableRows = PortRows::kPickableRows;

    PortSelection(ConsultSession& session, SettingsStore& store, DeviceSource source, QObject* parent = nullptr);

    // Rows of the menu `portss`, counted from 1.
    int rowCount() const { return rows_.count(); }
    QString rowCaption(int row) const { return rows_.caption(row); }
    bool rowChecked(int row) const { return rows_.checked(row); }
    const PortRows& rows() const { return rows_; }

    bool useConZultChecked() const { return useConZult_; }
    bool notifyPortsChecked() const { return notifyPorts_; }

    // Check marks of "Use ConZult Interface" and "Notify When Selecting Ports" from the store;
    // the DTR timer stays off until the item is toggled on in this run.
    void restoreChecks();

    void RefreshPortList();
    void PickPort(int row);
    void UpdatePortInformation();
    void ToggleUseConZultInterface();
    void ToggleNotifyPorts();
    void UseConZultTimerTick();

    QTimer UseConZultTimer;

signals:
    void rowsChanged();
    void checksChanged();
    // A message box titled "Vexorin", one OK button, no icon.
    void message(const QString& text);
    // A message box with its own title and the critical icon.
    void errorBox(const QString& text, const QString& title);

private:
    ConsultSession& session_;
    SettingsStore& store_;
    DeviceSource source_;
    PortRows rows_;
    bool useConZult_ = false;
    bool notifyPorts_ = false;
};
