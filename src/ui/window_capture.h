// A bitmap of a window, and the Snapshot and Save buttons that write one.
#pragma once

#include <QImage>
#include <QString>

class QWidget;

// The window as it looks now (rendered, so a covering window does not spoil it).
QImage CaptureForm(QWidget* window);

// Captures the window, asks for a ".bmp" name and writes the bitmap there.
// Returns the path written, or empty when cancelled or not written.
QString saveWindowSnapshot(QWidget* window, QImage* captured = nullptr);
