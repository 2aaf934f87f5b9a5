#include "ui/PlainToolTips.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>

namespace plinket3 {

PlainToolTips::PlainToolTips() { qApp->installEventFilter(this); }

/// The toolkit makes a label for a tooltip, and styles it before it has a text.
bool PlainToolTips::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Polish && watched->inherits("QTipLabel"))
        static_cast<QLabel*>(watched)->setTextFormat(Qt::PlainText);
    return QObject::eventFilter(watched, event);
}

} // namespace plinket3
