#include "ui/night_palette.h"

namespace vexorin::ui {

QPalette nightPalette()
{
    const QColor face(0x24, 0x24, 0x28);
    const QColor field(0x30, 0x30, 0x36);     // text boxes and lists, dimmed
    const QColor text(0xC8, 0xC8, 0xC8);
    const QColor dimText(0x80, 0x80, 0x80);
    QPalette p(text, face, face.lighter(150), face.darker(150), face.darker(120), text, text, field, face);
    p.setColor(QPalette::Button, QColor(0x34, 0x34, 0x3A));
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::AlternateBase, QColor(0x2A, 0x2A, 0x30));
    p.setColor(QPalette::ToolTipBase, field);
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::PlaceholderText, dimText);
    p.setColor(QPalette::Highlight, QColor(0x2D, 0x4F, 0x7A));
    p.setColor(QPalette::HighlightedText, QColor(0xE8, 0xE8, 0xE8));
    p.setColor(QPalette::Link, QColor(0x7A, 0xA8, 0xE0));
    p.setColor(QPalette::Shadow, Qt::black);
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        p.setColor(QPalette::Disabled, role, dimText);
    return p;
}

}  // namespace vexorin::ui
