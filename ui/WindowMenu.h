#pragma once

#include "ui/EditorSet.h"

#include <QMenu>

class QMdiArea;

namespace plinket3 {

/// The menu "Window": arranges the editors that are open, goes from one to the next, closes them, and lists them.
class WindowMenu : public QMenu {
    Q_OBJECT
public:
    /// Editors and area must outlive the menu.
    WindowMenu(EditorSet& editors, QMdiArea& area, QWidget* parent);

private:
    void Add(const char* name, const QString& text, void (QMdiArea::*run)(), const QList<QKeySequence>& keys = {});
    void Update();
    void List();

    EditorSet& editors_;
    QMdiArea& area_;
    QList<QAction*> commands_, listed_;
};

} // namespace plinket3
