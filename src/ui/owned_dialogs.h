// A window may be closed or unloaded while one of its dialogs (a file dialog,
// a message box) waits for an answer: the dialogs end as cancelled first, and
// the window is deleted only once their waits have returned to the code that
// opened them, so that no handler of the window runs on after it is gone.
#pragma once

#include <QPointer>
#include <QWidget>

namespace vexorin::ui {

// Marks a dialog's wait on behalf of its owner's window, for as long as it lives.
class DialogWait {
public:
    explicit DialogWait(QWidget* owner);
    ~DialogWait();
    DialogWait(const DialogWait&) = delete;
    DialogWait& operator=(const DialogWait&) = delete;

private:
    QPointer<QWidget> window_;
};

// Cancels every dialog of the window that is open; true when there was one.
bool endDialogsOf(QWidget* window);

// Deletes the window later (from the event loop), or, while a dialog's wait
// of it is still on the stack, once that wait has returned.
void deleteWhenDialogsEnd(QWidget* window);

// Ends the window's dialogs, closes it and deletes it: at once when no dialog
// of it was waiting, else as deleteWhenDialogsEnd does.
void unloadWindow(QWidget* window);

}  // namespace vexorin::ui
