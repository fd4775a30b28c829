#include "ui/owned_dialogs.h"

#include <QDialog>
#include <QVariant>

namespace vexorin::ui {

namespace {
constexpr const char* kWaits = "vexorinDialogWaits";
constexpr const char* kDeletePending = "vexorinDeleteWhenDialogsEnd";

int waits(const QWidget* window)
{
    return window ? window->property(kWaits).toInt() : 0;
}
}  // namespace

DialogWait::DialogWait(QWidget* owner) : window_(owner ? owner->window() : nullptr)
{
    if (window_)
        window_->setProperty(kWaits, waits(window_) + 1);
}

DialogWait::~DialogWait()
{
    if (!window_)
        return;
    const int left = waits(window_) - 1;
    window_->setProperty(kWaits, left);
    if (left <= 0 && window_->property(kDeletePending).toBool())
        window_->deleteLater();  // the code that opened the dialog finishes first
}

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

void deleteWhenDialogsEnd(QWidget* window)
{
    if (!window)
        return;
    if (waits(window) > 0) {
        window->setAttribute(Qt::WA_DeleteOnClose, false);  // a close may not delete it from under the wait
        window->setProperty(kDeletePending, true);
    } else {
        window->deleteLater();
    }
}

void unloadWindow(QWidget* window)
{
    QPointer<QWidget> guard(window);
    endDialogsOf(window);
    const bool waiting = waits(window) > 0;
    if (waiting)
        deleteWhenDialogsEnd(window);
    guard->close();
    if (guard && !waiting)
        delete guard.data();
}

}  // namespace vexorin::ui
