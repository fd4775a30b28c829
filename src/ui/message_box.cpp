#include "ui/message_box.h"

#include "ui/owned_dialogs.h"

#include <QMessageBox>
#include <QPointer>

namespace MessageBoxes {
namespace {
Presenter& presenter()
{
    static Presenter p;
    return p;
}

void show(QWidget* parent, const QString& text, const QString& title, QMessageBox::Icon icon)
{
    if (presenter()) {
        presenter()(text, title, icon == QMessageBox::Critical);
        return;
    }
    // On the heap: the parent may be unloaded while the box waits, and takes it along.
    QPointer<QMessageBox> box = new QMessageBox(icon, title, text, QMessageBox::Ok, parent);
    box->setTextFormat(Qt::PlainText);  // texts carry file names, replies and settings
    {
        const vexorin::ui::DialogWait wait(parent);
        box->exec();
    }
    delete box.data();
}
}  // namespace

void information(QWidget* parent, const QString& text)
{
    show(parent, text, QStringLiteral("Vexorin"), QMessageBox::NoIcon);
}

void information(QWidget* parent, const QString& text, const QString& title)
{
    show(parent, text, title, QMessageBox::NoIcon);
}

void exclamation(QWidget* parent, const QString& text)
{
    show(parent, text, QStringLiteral("Vexorin"), QMessageBox::Warning);
}

void notify(QWidget* parent, const QString& text)
{
    if (presenter()) {
        presenter()(text, QStringLiteral("Vexorin"), false);
        return;
    }
    auto* box = new QMessageBox(QMessageBox::NoIcon, QStringLiteral("Vexorin"), text, QMessageBox::Ok, parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setModal(false);
    box->show();
}

void critical(QWidget* parent, const QString& text, const QString& title)
{
    show(parent, text, title, QMessageBox::Critical);
}

Answerer& answerer()
{
    static Answerer a;
    return a;
}

bool question(QWidget* parent, const QString& text)
{
    if (answerer())
        return answerer()(text);
    QPointer<QMessageBox> box = new QMessageBox(QMessageBox::Question, QStringLiteral("Vexorin"), text,
                                                QMessageBox::Yes | QMessageBox::No, parent);
    box->setTextFormat(Qt::PlainText);
    box->setDefaultButton(QMessageBox::No);
    int answer = QMessageBox::No;
    {
        const vexorin::ui::DialogWait wait(parent);
        answer = box->exec();
    }
    delete box.data();
    return answer == QMessageBox::Yes;
}

void setQuestionAnswerer(Answerer a)
{
    answerer() = std::move(a);
}

void setPresenter(Presenter p)
{
    presenter() = std::move(p);
}

}  // namespace MessageBoxes
