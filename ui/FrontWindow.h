#pragma once

#include <QApplication>
#include <QWidget>

namespace plinket3 {

/// The window that a message or a dialog belongs to: the modal dialog in front, else the window with the keyboard, else
/// the main window, since none has the keyboard while one dialog has just gone. Null before the main window is seen.
inline QWidget* FrontWindow() {
    for (QWidget* window : {QApplication::activeModalWidget(), QApplication::activeWindow()})
        if (window != nullptr && window->isVisible())
            return window;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == QStringLiteral("frmMain") && window->isVisible())
            return window;
    return nullptr;
}

} // namespace plinket3
