// What a person does to a control reaches its handler the same way whether it
// came from the mouse, the keyboard or an assistive technology's actions
// (press, toggle, set text); what the program sets itself does not.
#pragma once

#include <QAbstractButton>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalBlocker>
#include <functional>

namespace vexorin::ui {

// A check box or option button changed by the person (a click, Space, an
// accessible toggle): `handler(bool checked)`.
template <class Handler>
void onUserToggle(QAbstractButton* button, QObject* context, Handler handler)
{
    QObject::connect(button, &QAbstractButton::toggled, context, handler);
}

// An option button chosen by the person (not the one it replaced).
template <class Handler>
void onUserChoose(QAbstractButton* button, QObject* context, Handler handler)
{
    QObject::connect(button, &QAbstractButton::toggled, context, [handler](bool on) {
        if (on)
            handler();
    });
}

// A text box whose text the person changed (typing, pasting, an accessible set text).
template <class Handler>
void onUserText(QLineEdit* box, QObject* context, Handler handler)
{
    QObject::connect(box, &QLineEdit::textChanged, context, handler);
}

// Enter on a list's current row, passed to a handler of the row.
class RowEnterFilter : public QObject {
public:
    RowEnterFilter(QListWidget* list, std::function<void(int)> handler)
        : QObject(list), list_(list), handler_(std::move(handler))
    {
        list->installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == list_ && event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if ((key == Qt::Key_Return || key == Qt::Key_Enter) && list_->currentRow() >= 0) {
                handler_(list_->currentRow());
                return true;
            }
        }
        return false;
    }

private:
    QListWidget* list_;
    std::function<void(int)> handler_;
};

// A list row opened by a double-click or by Enter on the current row: `handler(int row)`.
template <class Handler>
void onRowOpened(QListWidget* list, QObject* context, Handler handler)
{
    QObject::connect(list, &QListWidget::itemDoubleClicked, context,
                     [list, handler](QListWidgetItem* item) { handler(list->row(item)); });
    new RowEnterFilter(list, handler);
}

// The program's own setting of a box: no user handler runs.
inline void setCheckedQuietly(QAbstractButton* button, bool on)
{
    const QSignalBlocker block(button);
    button->setChecked(on);
}

}  // namespace vexorin::ui
