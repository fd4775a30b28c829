// Keys that every window of a kind answers to: F11 for full screen, Esc to close.
#pragma once

class QAction;
class QWidget;

namespace vexorin::ui {

// F11 shows the window full screen and back; returns the action (checkable, "Full Screen").
QAction* addFullScreenKey(QWidget* window);

// Esc closes the window.
QAction* addEscapeToClose(QWidget* window);

}  // namespace vexorin::ui
