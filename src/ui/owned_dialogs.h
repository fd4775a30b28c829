// A window may be closed or unloaded while one of its dialogs (a file dialog,
// a message box) waits for an answer: the dialogs end as cancelled first, and
// the window goes only once their waits have returned.
#pragma once

class QWidget;

namespace vexorin::ui {

// Cancels every dialog of the window that is open; true when there was one,
// in which case the window must be deleted later, not at once.
bool endDialogsOf(QWidget* window);

// Deletes the window at once, or later when a dialog of it was still waiting.
void unloadWindow(QWidget* window);

}  // namespace vexorin::ui
