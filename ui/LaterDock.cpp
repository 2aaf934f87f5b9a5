#include "ui/LaterDock.h"

namespace plinket3 {

LaterDock::LaterDock(const char* name, const QString& title) : QDockWidget(title) {
    setObjectName(QString::fromLatin1(name));
}

void LaterDock::setVisible(bool visible) {
    if (visible)
        EnsureMade();
    QDockWidget::setVisible(visible);
}

void LaterDock::EnsureMade() {
    if (IsMade())
        return;
    setWidget(MakeContents());
    widget()->setEnabled(enabled_);
    emit Made();
}

void LaterDock::EnableContents(bool enabled) {
    enabled_ = enabled;
    if (IsMade())
        widget()->setEnabled(enabled);
}

void LaterDock::Bring() {
    show();
    raise();
    widget()->setFocus();
}

void LaterDock::Toggle() {
    if (isVisible() && widget()->hasFocus())
        hide();
    else
        Bring();
}

} // namespace plinket3
