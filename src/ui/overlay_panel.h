// The look of a frame that lies over the sensor bars (an alert frame, the
// colour frame): an opaque box with its caption inside its own edge, so that
// nothing beneath shows through, not even around the caption.
#pragma once

class QGroupBox;

namespace vexorin::ui {

// Styles the frame and marks it as laid over other controls by design.
void styleOverlayPanel(QGroupBox* frame);

}  // namespace vexorin::ui
