#include "consult/port_selection.h"

#include "app/settings/settings_access.h"
#include "consult/consult_link.h"
#include "consult/consult_session.h"
#include "ui/status_panels.h"
#include "voice/voice_gate.h"

PortSelection::PortSelection(ConsultSession& session, SettingsStore& store, DeviceSource source, QObject* parent)
    : QObject(parent), session_(session), store_(store), source_(std::move(source))
{
    UseConZultTimer.setInterval(1000);
    connect(&UseConZultTimer, &QTimer::timeout, this, &PortSelection::UseConZultTimerTick);
}

QString PortSelection::rowCaption(int row) const
{
    return row >= 1 && row <= captions_.size() ? captions_[row - 1] : QString();
}

bool PortSelection::rowChecked(int row) const
{
    return row >= 1 && row <= checked_.size() && checked_[row - 1];
}

int PortSelection::comNumberIn(const QString& caption)
{
    for (int n = 1; n <= kPickableRows; ++n)
        if (caption.contains(QStringLiteral("(COM%1)").arg(n)))
            return n;
    return 0;
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
    captions_.clear();
    checked_.clear();
    emit rowsChanged();

    const PortListing listing = listPresentPorts(source_);
    if (!listing.ok()) {
        emit errorBox(listing.status, listing.errorTitle);
        return;
    }
    const DevLister& lister = listing.lister;
    for (int i = 1; i <= lister.ListCount(); ++i) {
        const QString caption = lister.Item(i).GetName();
        captions_.append(caption);
        checked_.append(false);
        if (caption.contains(saved)) {
            checked_.last() = true;
            if (const int n = comNumberIn(caption)) {
                session_.link().setCommPort(n);
                session_.panels().setText(2, QStringLiteral("Consult Port %1").arg(n));
            }
        }
    }
    emit rowsChanged();
}

void PortSelection::PickPort(int row)
{
    for (int i = 0; i < qMin(int(checked_.size()), kPickableRows); ++i)
        checked_[i] = false;
    if (row < 1 || row > kPickableRows || row > captions_.size()) {
        emit rowsChanged();
        return;
    }
    checked_[row - 1] = true;
    const QString caption = captions_[row - 1];
    if (const int n = comNumberIn(caption)) {
        session_.link().setCommPort(n);
        session_.panels().setText(2, QStringLiteral("Consult Port %1").arg(n));
        writeSetting(store_, Settings::PortNumber, QString::number(n));
    }
    emit rowsChanged();
    if (notifyPorts_)
        emit message(QStringLiteral("Consult port set to ") + caption);
}

void PortSelection::UpdatePortInformation()
{
    if (session_.ConnectedLabel() == QLatin1String("Connected")) {
        emit message(QStringLiteral("Consult port must be disconnected prior to updating port information."));
        return;
    }
    session_.voice().say(QStringLiteral("Port information has been updated!."));
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
