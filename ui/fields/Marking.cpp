#include "ui/fields/Marking.h"

namespace plinket3 {

QString DefaultTip(const QString& defaultText) { return QObject::tr("Default: %1").arg(defaultText); }

QFont MarkedFont(QFont font) {
    font.setBold(true);
    return font;
}

void MarkDifference(QWidget& widget, bool differs, const QString& defaultText, const QString& plainTip) {
    if (widget.font().bold() != differs) {
        QFont font = widget.font();
        font.setBold(differs);
        widget.setFont(font);
    }
    widget.setToolTip(differs ? DefaultTip(defaultText) : plainTip);
}

} // namespace plinket3
