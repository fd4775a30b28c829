#include "ui/number_prompt.h"

#include "ui/owned_dialogs.h"

#include <QInputDialog>
#include <QPointer>
#include <limits>

namespace vexorin::ui {

namespace {
NumberAnswerer& answerer()
{
    static NumberAnswerer a;
    return a;
}
}  // namespace

std::optional<double> askNumber(QWidget* parent, const QString& title, const QString& label, double start,
                                int decimals)
{
    if (answerer())
        return answerer()(title);
    QPointer<QInputDialog> dialog = new QInputDialog(parent);
    dialog->setWindowTitle(title);
    dialog->setLabelText(label);
    dialog->setInputMode(QInputDialog::DoubleInput);
    dialog->setDoubleDecimals(decimals);
    dialog->setDoubleRange(-100000, 100000);
    dialog->setDoubleValue(start);
    bool ok = false;
    {
        const DialogWait wait(parent);
        ok = dialog->exec() == QDialog::Accepted;
    }
    std::optional<double> value;
    if (dialog && ok)
        value = dialog->doubleValue();
    delete dialog.data();
    return value;
}

void setNumberAnswerer(NumberAnswerer a)
{
    answerer() = std::move(a);
}

}  // namespace vexorin::ui
