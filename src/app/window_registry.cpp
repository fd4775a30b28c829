#include "app/window_registry.h"

#include "ui/owned_dialogs.h"

QWidget* WindowRegistry::existing(Kind kind) const
{
    for (const QPointer<QWidget>& w : windows_[index(kind)])
        if (w)
            return w;
    return nullptr;
}

QWidget* WindowRegistry::make(Kind kind)
{
    if (QWidget* w = existing(kind))
        return w;
    const auto& maker = makers_[index(kind)];
    if (!maker)
        return nullptr;
    QWidget* w = maker();
    add(kind, w);
    return w;
}

QWidget* WindowRegistry::show(Kind kind)
{
    QWidget* w = make(kind);
    if (w) {
        w->show();
        w->raise();
    }
    return w;
}

void WindowRegistry::add(Kind kind, QWidget* window)
{
    if (!window)
        return;
    QList<QPointer<QWidget>>& list = windows_[index(kind)];
    list.removeAll(nullptr);
    if (!list.contains(window))
        list.append(window);
}

QList<QWidget*> WindowRegistry::all(Kind kind) const
{
    QList<QWidget*> out;
    for (const QPointer<QWidget>& w : windows_[index(kind)])
        if (w)
            out.append(w);
    return out;
}

bool WindowRegistry::showing(Kind kind) const
{
    for (const QPointer<QWidget>& w : windows_[index(kind)])
        if (w && w->isVisible())
            return true;
    return false;
}

void WindowRegistry::unloadAll(const std::function<void(QWidget*)>& unloading)
{
    for (int k = 0; k < kKinds; ++k) {
        for (QWidget* w : all(Kind(k))) {
            if (unloading)
                unloading(w);
            // Each window closes as its own close would (the Active Test sends its
            // last byte, viewers stop loading), then goes.
            vexorin::ui::unloadWindow(w);
        }
    }
}
