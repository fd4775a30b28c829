// The journal's items of an editor's Edit menu: "Undo" (Ctrl+Z), "Redo"
// (Ctrl+Y, Ctrl+Shift+Z) and "Revert to Backup" (a question, then the writes),
// for any editor that offers undo, redo, revertPlan and revert.
#pragma once

#include "ui/message_box.h"

#include <QAction>
#include <QMenu>
#include <QPointer>
#include <QWidget>

template <class Editor>
void addJournalItems(QMenu* edit, QWidget* window, Editor& editor)
{
    auto add = [&](const char* name, const char* caption) {
        QAction* a = edit->addAction(QLatin1String(caption));
        a->setObjectName(QLatin1String(name));
        return a;
    };
    QAction* undo = add("Undo", "Undo");
    undo->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z));
    QObject::connect(undo, &QAction::triggered, window, [&editor] { editor.undo(); });
    QAction* redo = add("Redo", "Redo");
    redo->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)});
    QObject::connect(redo, &QAction::triggered, window, [&editor] { editor.redo(); });
    QObject::connect(add("RevertToBackup", "Revert to Backup"), &QAction::triggered, window, [window, &editor] {
        const auto plan = editor.revertPlan();
        if (plan.question.isEmpty())
            return;
        QPointer<QWidget> alive(window);
        const bool yes = MessageBoxes::question(window, plan.question);
        if (alive && yes)
            editor.revert(plan);
    });
}

// Undo and redo are offered only when there is something to take back or do again.
template <class Editor>
void updateJournalItems(QWidget* window, const Editor& editor, bool fileLoaded)
{
    const auto set = [window](const char* name, bool on) {
        if (QAction* a = window->findChild<QAction*>(QLatin1String(name)))
            a->setEnabled(on);
    };
    set("Undo", editor.canUndo());
    set("Redo", editor.canRedo());
    set("RevertToBackup", fileLoaded);
}
