#include "ui/window_capture.h"

#include "ui/common_dialog.h"
#include "ui/message_box.h"
#include "ui/regular_file.h"

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
    const QString problem = vexorin::files::openProblem(path, vexorin::files::Access::Write);
    if (!problem.isEmpty()) {
        MessageBoxes::information(window, QStringLiteral("The picture could not be saved: ") + problem);
        return QString();
    }
    return image.save(path, "BMP") ? path : QString();
}
