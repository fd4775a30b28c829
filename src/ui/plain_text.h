// Text that comes from a person, a file, the settings, the ECU or the network
// is shown as it stands: no label of the windows reads it as markup. The few
// labels whose own fixed text is markup (links, the credits) say so.
#pragma once

class QLabel;
class QWidget;

namespace vexorin::ui {

// Makes every label under the window plain text, except those marked as markup.
void keepTextPlain(QWidget* window);

// Marks a label whose fixed text is markup by design, and returns it.
QLabel* markupByDesign(QLabel* label);
bool isMarkupByDesign(const QLabel* label);

}  // namespace vexorin::ui
