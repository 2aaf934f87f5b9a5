#include "ui/editors/Marking.h"

namespace plinket3 {

QString DefaultTip(const QString& defaultText) { return QObject::tr("Default: %1").arg(defaultText); }

QFont MarkedFont(bool differs, QFont font) {
    font.setBold(differs);
    return font;
}

void MarkDifference(QWidget& widget, bool differs, const QString& defaultText, const QString& plainTip) {
    if (widget.font().bold() != differs)
        widget.setFont(MarkedFont(differs, widget.font()));
    widget.setToolTip(differs ? DefaultTip(defaultText) : plainTip);
}

} // namespace plinket3
