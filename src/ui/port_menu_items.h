// The device items of a port menu ("Consult" rows, the external "Ports"
// items): checkable actions placed before a separator, one per row, named
// with a prefix and the row number, kept in line with the rows.
#pragma once

#include "consult/port_rows.h"

#include <QAction>
#include <QMenu>
#include <functional>

inline void syncPortMenuItems(QMenu* menu, QAction* before, QList<QAction*>& items, const PortRows& rows,
                              const QString& namePrefix, const std::function<void(int row)>& choose)
{
    while (items.size() > rows.count()) {
        QAction* a = items.takeLast();
        menu->removeAction(a);
        a->setObjectName(QString());
        a->deleteLater();
    }
    while (items.size() < rows.count()) {
        const int row = int(items.size()) + 1;
        auto* a = new QAction(menu);
        a->setObjectName(namePrefix + QString::number(row));
        a->setCheckable(true);
        QObject::connect(a, &QAction::triggered, menu, [choose, row] { choose(row); });
        menu->insertAction(before, a);
        items.append(a);
    }
    for (int row = 1; row <= rows.count(); ++row) {
        items[row - 1]->setText(rows.caption(row));
        items[row - 1]->setChecked(rows.checked(row));
    }
}
