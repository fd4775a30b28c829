#include "ui/color_picker_widget.h"

#include "ui/vb_color.h"

#include <QColorDialog>
#include <QGridLayout>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QWidgetAction>

namespace {
constexpr quint32 rgb(quint32 r, quint32 g, quint32 b)
{
    return r | (g << 8) | (b << 16);
}
}  // namespace

// The 48 colours of the palette, six rows of eight.
const std::array<quint32, 48> ColorPicker::kPalette{
    rgb(255, 128, 128), rgb(255, 255, 128), rgb(128, 255, 128), rgb(0, 255, 128),
    rgb(128, 255, 255), rgb(0, 128, 255),   rgb(255, 128, 192), rgb(255, 128, 255),
    rgb(255, 0, 0),     rgb(255, 255, 0),   rgb(128, 255, 0),   rgb(0, 255, 64),
    rgb(0, 255, 255),   rgb(0, 128, 192),   rgb(128, 128, 192), rgb(255, 0, 255),
    rgb(128, 64, 64),   rgb(255, 128, 64),  rgb(0, 255, 0),     rgb(0, 128, 128),
    rgb(0, 64, 128),    rgb(128, 128, 255), rgb(128, 0, 64),    rgb(255, 0, 128),
    rgb(128, 0, 0),     rgb(255, 128, 0),   rgb(0, 128, 0),     rgb(0, 128, 64),
    rgb(0, 0, 255),     rgb(0, 0, 160),     rgb(128, 0, 128),   rgb(128, 0, 255),
    rgb(64, 0, 0),      rgb(128, 64, 0),    rgb(0, 64, 0),      rgb(0, 64, 64),
    rgb(0, 0, 128),     rgb(0, 0, 64),      rgb(64, 0, 64),     rgb(64, 0, 128),
    rgb(0, 0, 0),       rgb(128, 128, 0),   rgb(128, 128, 64),  rgb(128, 128, 128),
    rgb(64, 128, 128),  rgb(192, 192, 192), rgb(64, 0, 64),     rgb(255, 255, 255),
};

ColorPicker::ColorPicker(const QString& caption, QWidget* parent)
    : QToolButton(parent), caption_(caption)
{
    setText(caption);
    setAccessibleName(caption);
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setPopupMode(QToolButton::InstantPopup);
    menu_ = new QMenu(this);
    auto* grid = new QWidget(menu_);
    auto* layout = new QGridLayout(grid);
    layout->setSpacing(2);
    layout->setContentsMargins(4, 4, 4, 4);
    for (int i = 0; i < int(kPalette.size()); ++i) {
        auto* swatch = new QToolButton(grid);
        swatch->setFixedSize(18, 18);
        swatch->setAutoRaise(false);
        const QColor c = fromBgr(kPalette[std::size_t(i)]);
        swatch->setStyleSheet(QStringLiteral("background:%1; border:1px solid #555;").arg(c.name()));
        swatch->setAccessibleName(c.name());
        connect(swatch, &QToolButton::clicked, this, [this, i] {
            menu_->close();
            pick(i);
        });
        layout->addWidget(swatch, i / 8, i % 8);
    }
    auto* custom = new QPushButton(QStringLiteral("Custom dialog..."), grid);
    connect(custom, &QPushButton::clicked, this, [this] {
        menu_->close();
        openCustomDialog();
    });
    layout->addWidget(custom, 6, 0, 1, 8);
    auto* action = new QWidgetAction(menu_);
    action->setDefaultWidget(grid);
    menu_->addAction(action);
    setMenu(menu_);
    showSwatch();
}

void ColorPicker::setColor(quint32 bgr)
{
    color_ = bgr;
    showSwatch();
}

void ColorPicker::pick(int index)
{
    if (index < 0 || index >= int(kPalette.size()))
        return;
    setColor(kPalette[std::size_t(index)]);
    emit colorPicked(color_);
}

void ColorPicker::openCustomDialog()
{
    if (stayOnTop_ && stayOnTop_()) {
        if (refusal_)
            refusal_(QStringLiteral("Stay on Top in options must be off to use this function."));
        return;
    }
    const QColor c = QColorDialog::getColor(fromBgr(color_), this, caption_);
    if (!c.isValid())
        return;
    setColor(toBgr(c));
    emit colorPicked(color_);
}

void ColorPicker::showSwatch()
{
    QPixmap pm(16, 16);
    pm.fill(fromBgr(color_));
    QPainter p(&pm);
    p.setPen(Qt::darkGray);
    p.drawRect(0, 0, 15, 15);
    setIcon(QIcon(pm));
}
