// What a user sees as broken in a shown window: a text that its control shows
// cut short, a control half hidden by its parent, two controls lying over one
// another. Frames laid over other controls on purpose are marked as overlays:
// they must be opaque and cover whole controls, never a part of one.
#pragma once

#include <QStringList>

class QWidget;

namespace vexorin::ui {

// Marks a frame that lies over other controls by design, and returns it.
QWidget* markAsOverlay(QWidget* frame);
bool isOverlay(const QWidget* widget);

// One line per defect found in the shown window and its children, empty when
// every text is whole and nothing overlaps.
QStringList layoutProblems(const QWidget* window);

}  // namespace vexorin::ui
