#include "ui/window_keys.h"

#include <QAction>
#include <QWidget>

namespace vexorin::ui {

QAction* addFullScreenKey(QWidget* window)
{
    auto* action = new QAction(QObject::tr("Full Screen"), window);
    action->setObjectName(QStringLiteral("FullScreen"));
    action->setShortcut(QKeySequence(Qt::Key_F11));
    action->setShortcutContext(Qt::WindowShortcut);
    QObject::connect(action, &QAction::triggered, window, [window] {
        window->setWindowState(window->windowState() ^ Qt::WindowFullScreen);
    });
    window->addAction(action);
    return action;
}

QAction* addEscapeToClose(QWidget* window)
{
    auto* action = new QAction(QObject::tr("Close"), window);
    action->setObjectName(QStringLiteral("CloseOnEscape"));
    action->setShortcut(QKeySequence(Qt::Key_Escape));
    action->setShortcutContext(Qt::WindowShortcut);
    QObject::connect(action, &QAction::triggered, window, &QWidget::close);
    window->addAction(action);
    return action;
}

}  // namespace vexorin::ui
