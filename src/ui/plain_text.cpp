#include "ui/plain_text.h"

#include <QLabel>
#include <QVariant>

namespace vexorin::ui {

namespace {
constexpr const char* kMarkup = "vexorinMarkupByDesign";
}

void keepTextPlain(QWidget* window)
{
    if (!window)
        return;
    for (QLabel* label : window->findChildren<QLabel*>())
        if (!isMarkupByDesign(label))
            label->setTextFormat(Qt::PlainText);
}

QLabel* markupByDesign(QLabel* label)
{
    label->setProperty(kMarkup, true);
    label->setTextFormat(Qt::RichText);
    return label;
}

bool isMarkupByDesign(const QLabel* label)
{
    return label->property(kMarkup).toBool();
}

}  // namespace vexorin::ui
