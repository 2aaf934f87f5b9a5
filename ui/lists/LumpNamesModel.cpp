#include "ui/lists/LumpNamesModel.h"

#include "ui/LatinText.h"

namespace plinket3 {

int LumpNamesModel::Columns() const { return ColumnPlace::columnCount; }

QString LumpNamesModel::Header(int column) const {
    switch (column) {
    case numberColumn:
        return QStringLiteral("#");
    case nameColumn:
        return tr("Name");
    case defaultColumn:
        return tr("Default");
    default:
        return lumpsHeader_;
    }
}

std::string LumpNamesModel::Name(const PatchSet& set, std::int32_t record) const {
    return std::get<std::string>(ReadCell(set, {kind_, record, lumpNameField}));
}

QString LumpNamesModel::Text(const PatchSet& set, std::int32_t record, int column) const {
    switch (column) {
    case numberColumn:
        return QString::number(record);
    case nameColumn:
        return ShownText(Name(set, record));
    case defaultColumn:
        return ShownText(Name(Defaults(), record));
    default:
        return Lumps(Name(set, record));
    }
}

bool LumpNamesModel::HasOtherValue(std::int32_t record, int column) const {
    return column == nameColumn && RecordTableModel::HasOtherValue(record, column);
}

QString LumpNamesModel::SearchText(std::int32_t record) const {
    return Text(Current(), record, numberColumn) + ' ' + Text(Current(), record, nameColumn) + ' ' +
           Text(Current(), record, defaultColumn);
}

} // namespace plinket3
