#include "ui/lists/RecordTableModel.h"

#include "patch/NewRecords.h"
#include "ui/fields/Marking.h"

namespace plinket3 {

void RecordTableModel::Reset() {
    beginResetModel();
    rows_ = RecordRows(RecordNumbers(Current(), kind_));
    kept_.Read();
    endResetModel();
}

void RecordTableModel::ShowCells(const std::vector<Cell>& cells) {
    for (const Cell& cell : cells)
        if (const int row = cell.kind == kind_ ? rows_.RowOf(cell.index) : -1; row >= 0)
            emit dataChanged(index(row, 0), index(row, Columns() - 1));
    if (kept_.Follow(cells) && rows_.Count() > 0)
        emit dataChanged(index(0, signColumn), index(rows_.Count() - 1, signColumn));
}

int RecordTableModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_.Count(); }

int RecordTableModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : Columns(); }

QVariant RecordTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const std::int32_t record = rows_.At(index.row());
    const QVariant value = Value(record, index.column(), role);
    return index.column() == signColumn ? kept_.Over(value, record, role) : value;
}

QVariant RecordTableModel::Value(std::int32_t record, int column, int role) const {
    switch (role) {
    case Qt::DisplayRole:
        return Text(Current(), record, column);
    case recordRole:
        return record;
    case searchRole:
        return SearchText(record);
    case Qt::TextAlignmentRole:
        return Alignment(column);
    case Qt::FontRole:
        return Differs(record, column) ? MarkedFont() : QVariant();
    case Qt::ToolTipRole:
        return Differs(record, column) ? DefaultTip(Text(Defaults(), record, column)) : PlainTip(record, column);
    default:
        return {};
    }
}

QVariant RecordTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= Columns())
        return {};
    if (role == Qt::DisplayRole)
        return Header(section);
    if (role == Qt::ToolTipRole)
        return HeaderTip(section);
    if (role == Qt::TextAlignmentRole)
        return Alignment(section);
    return {};
}

QVariant RecordTableModel::Alignment(int column) const {
    return QVariant::fromValue(Qt::AlignVCenter | (IsNumber(column) ? Qt::AlignRight : Qt::AlignLeft));
}

bool RecordTableModel::Differs(std::int32_t record, int column) const {
    return (CanBeMade(kind_) || HasRecord(Defaults(), kind_, record)) && HasOtherValue(record, column);
}

} // namespace plinket3
