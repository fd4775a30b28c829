#include "app/interface_check_window.h"

#include "ui/plain_text.h"

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

InterfaceCheckWindow::InterfaceCheckWindow(DeviceSource source, QWidget* parent)
    : QWidget(parent, Qt::Window), source_(std::move(source))
{
    setObjectName(QStringLiteral("InterfaceCheck"));
    setWindowTitle(QStringLiteral("Vexorin Interface Check"));
    auto* v = new QVBoxLayout(this);
    auto* caption = new QLabel(QStringLiteral("Connected Interfaces"), this);
    QFont f = caption->font();
    f.setBold(true);
    caption->setFont(f);
    v->addWidget(caption);
    list_ = new QListWidget(this);
    list_->setObjectName(QStringLiteral("ConnectedInterfaces"));
    caption->setBuddy(list_);
    v->addWidget(list_, 1);
    for (const QString& note : noteTexts()) {
        auto* row = new QHBoxLayout;
        auto* n = new QLabel(QStringLiteral("Note: "), this);
        n->setAlignment(Qt::AlignTop);
        auto* t = new QLabel(note, this);
        t->setWordWrap(true);
        row->addWidget(n);
        row->addWidget(t, 1);
        v->addLayout(row);
    }
    resize(560, 420);
    vexorin::ui::keepTextPlain(this);
}

QStringList InterfaceCheckWindow::noteTexts()
{
    return {
        QStringLiteral("BLAZT interfaces are listed as \"USB Serial Port (COMx)\". Other USB interfaces may be listed in the same manner."),
        QStringLiteral("If devices are assigned the same port number, use the option \"Change USB Port and Latency Settings or Remove Device\" under \"Ports\" to change port number settings. After changing ports numbers it may be necessary to unplug a device, reinsert it and then click \"Update Devices\" for it to be seen as a selectable interface and port."),
        QStringLiteral("The DLP-IO8-G Interface will be displayed as \"USB  Serial Port (COMx)\"."),
    };
}

void InterfaceCheckWindow::reload()
{
    list_->clear();
    lines_.clear();
    const PortListing listing = listPresentPorts(source_);
    if (!listing.ok()) {
        emit errorBox(listing.status, listing.errorTitle);
        return;
    }
    const DevLister& lister = listing.lister;
    for (int i = 1; i <= lister.ListCount(); ++i) {
        lines_.append(lister.Item(i).GetName() + QStringLiteral("\r\n"));
        list_->addItem(lister.Item(i).GetName());
    }
}
