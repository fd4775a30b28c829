// Fonts that fill a box: the value labels of the sensor views grow with the
// room they are given.
#pragma once

#include <QFont>
#include <QSize>
#include <QString>

namespace vexorin::ui {

// The largest pixel size of `base` (from 8 up to 400) at which `sample` fits
// `box` on one line, its line height included.
QFont fittedFont(QFont base, const QSize& box, const QString& sample);

// The height of the font's digits, in pixels.
int digitHeight(const QFont& font);

}  // namespace vexorin::ui
