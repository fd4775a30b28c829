// "Vexorin Interface Check": the serial interfaces the system sees now.
#pragma once

#include "consult/dev_lister.h"

#include <QWidget>

class QListWidget;

class InterfaceCheckWindow : public QWidget {
    Q_OBJECT
public:
    explicit InterfaceCheckWindow(DeviceSource source, QWidget* parent = nullptr);

    // Lists the devices afresh.
    void reload();
    // The lines of the list, each a device name followed by CR LF.
    QStringList lines() const { return lines_; }

    static QStringList noteTexts();

signals:
    void errorBox(const QString& text, const QString& title);

private:
    DeviceSource source_;
    QListWidget* list_ = nullptr;
    QStringList lines_;
};
