#include "ui/lists/NamesModel.h"

#include "ui/LatinText.h"
#include "ui/fields/Marking.h"

#include <algorithm>

namespace plinket3 {

NamesModel::NamesModel(const EditorContext& context, RecordKind kind) : context_(context), kind_(kind) {}

void NamesModel::Reset() {
    beginResetModel();
    endResetModel();
}

void NamesModel::ShowCells(const std::vector<Cell>& cells) {
    for (const Cell& cell : cells)
        if (cell.kind == kind_ && cell.index < rowCount())
            emit dataChanged(index(cell.index), index(cell.index));
}

int NamesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(RecordCount(context_.program.patch.current, kind_));
}

QVariant NamesModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    if (role == Qt::DisplayRole)
        return ShownStart(context_.edits.RecordName(kind_, index.row()));
    if (role != Qt::FontRole && role != Qt::ToolTipRole)
        return {};
    if (!Differs(index.row()))
        return {};
    if (role == Qt::ToolTipRole)
        return tr("Not as in the engine");
    return MarkedFont();
}

bool NamesModel::Differs(std::int32_t record) const {
    const std::vector<Cell> cells = context_.edits.CellsOf(kind_, record);
    return std::any_of(cells.begin(), cells.end(),
                       [this](const Cell& cell) { return !context_.edits.IsDefault(cell); });
}

} // namespace plinket3
