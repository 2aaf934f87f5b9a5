#include "ui/lists/RecordTableModel.h"

#include "patch/NewRecords.h"
#include "ui/fields/Marking.h"

namespace plinket3 {

void RecordTableModel::Reset() {
    beginResetModel();
    rows_ = RecordRows(RecordNumbers(Current(), kind_));
    endResetModel();
}

void RecordTableModel::ShowCells(const std::vector<Cell>& cells) {
    for (const Cell& cell : cells)
        if (const int row = cell.kind == kind_ ? rows_.RowOf(cell.index) : -1; row >= 0)
            emit dataChanged(index(row, 0), index(row, Columns() - 1));
}

int RecordTableModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_.Count(); }

int RecordTableModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : Columns(); }

QVariant RecordTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const std::int32_t record = rows_.At(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return Text(Current(), record, index.column());
    case recordRole:
        return record;
    case searchRole:
        return SearchText(record);
    case Qt::TextAlignmentRole:
        return Alignment(index.column());
    case Qt::FontRole:
        return Differs(record, index.column()) ? MarkedFont() : QVariant();
    case Qt::ToolTipRole:
        return Differs(record, index.column()) ? DefaultTip(Text(Defaults(), record, index.column()))
                                               : PlainTip(record, index.column());
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
