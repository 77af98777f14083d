#pragma once
// Brings a screen forward: its sub-window of the main window becomes the active one.
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QWidget>

inline void traerAlFrente(QWidget* ventana) {
    for (QWidget* w = ventana; w; w = w->parentWidget())
        if (auto* sub = qobject_cast<QMdiSubWindow*>(w)) {
            if (sub->mdiArea()) sub->mdiArea()->setActiveSubWindow(sub);
            sub->showNormal();
            break;
        }
    ventana->raise();
    ventana->activateWindow();
}
