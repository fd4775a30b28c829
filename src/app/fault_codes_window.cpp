#include "app/fault_codes_window.h"

#include "consult/fault_codes.h"
#include "ui/plain_text.h"
#include "ui/window_keys.h"

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

FaultCodesWindow::FaultCodesWindow(QWidget* parent)
    : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("FaultCodes"));
    setWindowTitle(QStringLiteral("Fault Codes"));
    auto* v = new QVBoxLayout(this);
    auto* caption = new QLabel(QStringLiteral("Fault codes of this ECU, as \"Get Fault Codes\" reports them:"), this);
    caption->setWordWrap(true);
    v->addWidget(caption);
    list_ = new QListWidget(this);
    list_->setObjectName(QStringLiteral("FaultCodeTable"));
    caption->setBuddy(list_);
    for (const FaultCode& c : kFaultCodes)
        list_->addItem(QString::fromLatin1(c.help));
    v->addWidget(list_, 1);
    resize(520, 440);
    vexorin::ui::addEscapeToClose(this);
    vexorin::ui::keepTextPlain(this);
}

QStringList FaultCodesWindow::lines() const
{
    QStringList out;
    for (int i = 0; i < list_->count(); ++i)
        out << list_->item(i)->text();
    return out;
}
