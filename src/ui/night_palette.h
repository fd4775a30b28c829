// The window colours for driving at night: dark faces, dimmed light areas.
#pragma once

#include <QPalette>

namespace vexorin::ui {

QPalette nightPalette();

}  // namespace vexorin::ui
