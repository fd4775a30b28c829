#include "app/port_selection.h"

#include "app/settings/settings_access.h"
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "consult/session_outputs.h"

PortSelection::PortSelection(ConsultSession& session, SettingsStore& store, DeviceSource source, QObject* parent)
    : QObject(parent), session_(session), store_(store), source_(std::move(source))
{
    UseConZultTimer.setInterval(1000);
    connect(&UseConZultTimer, &QTimer::timeout, this, &PortSelection::UseConZultTimerTick);
}

void PortSelection::restoreChecks()
{
    const QString conzult = readSetting(store_, Settings::UseConZultInterface);
    if (conzult == QLatin1String("True"))
        useConZult_ = true;
    else if (conzult == QLatin1String("False"))
        useConZult_ = false;
    notifyPorts_ = readSetting(store_, Settings::NotifyPorts) == QLatin1String("True");
    emit checksChanged();
}

void PortSelection::RefreshPortList()
{
    const QString saved = readSetting(store_, Settings::PortNumber);
    const PortListing listing = rows_.refresh(source_, saved, [this](int n) {
        session_.link().setCommPort(n);
        session_.outputs().status(2, QStringLiteral("Consult Port %1").arg(n));
    });
    emit rowsChanged();
    if (!listing.ok())
        emit errorBox(listing.status, listing.errorTitle);
}

void PortSelection::PickPort(int row)
{
    const int n = rows_.pick(row);
    if (n < 0) {
        emit rowsChanged();
        return;
    }
    if (n > 0) {
        session_.link().setCommPort(n);
        session_.outputs().status(2, QStringLiteral("Consult Port %1").arg(n));
        writeSetting(store_, Settings::PortNumber, QString::number(n));
    }
    emit rowsChanged();
    if (notifyPorts_)
        emit message(QStringLiteral("Consult port set to ") + rows_.caption(row));
}

void PortSelection::UpdatePortInformation()
{
    if (session_.ConnectedLabel() == QLatin1String("Connected")) {
        emit message(QStringLiteral("Consult port must be disconnected prior to updating port information."));
        return;
    }
    session_.outputs().say(QStringLiteral("Port information has been updated!."));
    emit message(QStringLiteral("Port information has been updated."));
    RefreshPortList();
}

void PortSelection::ToggleUseConZultInterface()
{
    useConZult_ = !useConZult_;
    if (useConZult_)
        UseConZultTimer.start();
    else
        UseConZultTimer.stop();
    writeSetting(store_, Settings::UseConZultInterface, useConZult_ ? QStringLiteral("True") : QStringLiteral("False"));
    emit checksChanged();
}

void PortSelection::ToggleNotifyPorts()
{
    notifyPorts_ = !notifyPorts_;
    writeSetting(store_, Settings::NotifyPorts, notifyPorts_ ? QStringLiteral("True") : QStringLiteral("False"));
    emit checksChanged();
}

void PortSelection::UseConZultTimerTick()
{
    ConsultLink& link = session_.link();
    link.setDTREnable(!link.DTREnable());
}
