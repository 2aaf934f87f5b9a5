#include "ui/lists/SpritesModel.h"

#include "ui/LatinText.h"

#include <array>

namespace plinket3 {

namespace {

struct Column {
    const char* header;
    const char* tip;
};
enum ColumnPlace { numberColumn, nameColumn, defaultColumn, lumpsColumn };
constexpr std::array columns{
    Column{"#", QT_TRANSLATE_NOOP("SpritesModel", "Number, as states use it")},
    Column{"Name", QT_TRANSLATE_NOOP("SpritesModel", "What the names of its lumps begin with")},
    Column{"Default", QT_TRANSLATE_NOOP("SpritesModel", "The engine's own name")},
    Column{"Lumps", QT_TRANSLATE_NOOP("SpritesModel", "How many pictures the IWAD and the data WAD have for it")},
};

const Column& ColumnAt(int column) { return columns[static_cast<std::size_t>(column)]; }

} // namespace

void SpritesModel::Reset() {
    lumps_ = context_.program.wads.SpriteLumps();
    RecordTableModel::Reset();
}

int SpritesModel::Columns() const { return static_cast<int>(columns.size()); }

QString SpritesModel::Header(int column) const { return tr(ColumnAt(column).header); }

QString SpritesModel::HeaderTip(int column) const { return tr(ColumnAt(column).tip); }

QString SpritesModel::Text(const PatchSet& set, std::int32_t record, int column) const {
    switch (column) {
    case numberColumn:
        return QString::number(record);
    case nameColumn:
        return ShownText(set.SpriteName(record));
    case defaultColumn:
        return ShownText(Defaults().SpriteName(record));
    default:
        const auto found = lumps_.find(set.SpriteName(record));
        return QString::number(found == lumps_.end() ? 0 : found->second);
    }
}

bool SpritesModel::HasOtherValue(std::int32_t record, int column) const {
    return column == nameColumn && RecordTableModel::HasOtherValue(record, column);
}

QString SpritesModel::SearchText(std::int32_t record) const {
    return Text(Current(), record, numberColumn) + ' ' + Text(Current(), record, nameColumn) + ' ' +
           Text(Current(), record, defaultColumn);
}

bool SpritesModel::IsNumber(int column) const { return column == numberColumn || column == lumpsColumn; }

} // namespace plinket3
