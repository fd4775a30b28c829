// Small helpers of the window tests.
#pragma once

#include <QDir>
#include <QPushButton>
#include <QWidget>

// The button with this caption under `root`, or null.
inline QPushButton* findButton(const QWidget* root, const QString& caption)
{
    for (auto* b : root->findChildren<QPushButton*>())
        if (b->text() == caption)
            return b;
    return nullptr;
}

// Saves a picture of the widget when VEXORIN_SCREENSHOT_DIR names a folder.
inline void saveShot(QWidget* w, const QString& name)
{
    const QByteArray dir = qgetenv("VEXORIN_SCREENSHOT_DIR");
    if (dir.isEmpty())
        return;
    QDir().mkpath(QString::fromLocal8Bit(dir));
    w->grab().save(QString::fromLocal8Bit(dir) + QLatin1Char('/') + name);
}
