#include "ui/owned_dialogs.h"

#include <QDialog>
#include <QPointer>

namespace vexorin::ui {

bool endDialogsOf(QWidget* window)
{
    if (!window)
        return false;
    bool any = false;
    for (QDialog* dialog : window->findChildren<QDialog*>()) {
        if (!dialog->isVisible())
            continue;
        any = true;
        dialog->reject();  // its exec() returns Rejected once control gets back to it
    }
    return any;
}

void unloadWindow(QWidget* window)
{
    QPointer<QWidget> guard(window);
    const bool waiting = endDialogsOf(window);
    if (guard)
        guard->close();
    if (!guard)
        return;
    if (waiting)
        guard->deleteLater();
    else
        delete guard.data();
}

}  // namespace vexorin::ui
