#include "ui/lists/NamesModel.h"

#include "ui/LatinText.h"
#include "ui/fields/Marking.h"

#include <algorithm>

namespace plinket3 {

NamesModel::NamesModel(const EditorContext& context, RecordKind kind)
    : context_(context), kind_(kind), kept_(context.program.patch.current, kind) {}

void NamesModel::Reset() {
    beginResetModel();
    rows_ = RecordRows(RecordNumbers(context_.program.patch.current, kind_));
    kept_.Read();
    endResetModel();
}

void NamesModel::ShowCells(const std::vector<Cell>& cells) {
    for (const Cell& cell : cells)
        if (const int row = cell.kind == kind_ ? rows_.RowOf(cell.index) : -1; row >= 0)
            emit dataChanged(index(row), index(row));
    if (kept_.Follow(cells) && rows_.Count() > 0)
        emit dataChanged(index(0), index(rows_.Count() - 1));
}

int NamesModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_.Count(); }

QVariant NamesModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const std::int32_t record = rows_.At(index.row());
    return kept_.Over(Value(record, role), record, role);
}

QVariant NamesModel::Value(std::int32_t record, int role) const {
    if (role == Qt::DisplayRole)
        return ShownStart(context_.edits.RecordName(kind_, record));
    if (role == recordRole)
        return record;
    if (role != Qt::FontRole && role != Qt::ToolTipRole)
        return {};
    if (!Differs(record))
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
