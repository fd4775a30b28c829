#include "ui/overlay_panel.h"

#include "ui/layout_audit.h"

#include <QGroupBox>

namespace vexorin::ui {

void styleOverlayPanel(QGroupBox* frame)
{
    frame->setAutoFillBackground(true);
    frame->setStyleSheet(QStringLiteral(
        "QGroupBox { background: palette(window); border: 1px solid palette(shadow); margin-top: 0px;"
        " padding-top: 1.5em; }"
        " QGroupBox::title { subcontrol-origin: padding; subcontrol-position: top left; left: 8px; top: 4px;"
        " font-weight: bold; }"));
    markAsOverlay(frame);
}

}  // namespace vexorin::ui
