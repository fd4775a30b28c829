#include "ui/window_capture.h"

#include "ui/common_dialog.h"

#include <QWidget>

QImage CaptureForm(QWidget* window)
{
    return window ? window->window()->grab().toImage() : QImage();
}

QString saveWindowSnapshot(QWidget* window, QImage* captured)
{
    const QImage image = CaptureForm(window);
    if (captured)
        *captured = image;
    const QString path =
        mCommonDialog::saveFileName(window, QStringLiteral(".bmp"), QStringLiteral("BMP Files (*.bmp)|*.bmp"));
    if (path.isEmpty())
        return QString();
    return image.save(path, "BMP") ? path : QString();
}
