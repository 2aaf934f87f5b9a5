#include "ui/lists/KeptMarks.h"

#include "ui/Icons.h"

#include <QGuiApplication>

#include <algorithm>

namespace plinket3 {

bool KeptMarks::Follow(const std::vector<Cell>& cells) {
    const bool follows = std::ranges::find(cells, patchNotes) != cells.end();
    if (follows)
        Read();
    return follows;
}

QVariant KeptMarks::Over(const QVariant& value, std::int32_t record, int role) const {
    if (!kept_.Has(kind_, record))
        return value;
    const QString words = QObject::tr("Kept: never handed out as a free one");
    switch (role) {
    case Qt::DecorationRole:
        return ProgramIcon("keep", QGuiApplication::palette());
    case Qt::AccessibleDescriptionRole:
        return words;
    case Qt::ToolTipRole:
        return value.isValid() ? value.toString() + QLatin1Char('\n') + words : words;
    default:
        return value;
    }
}

} // namespace plinket3
