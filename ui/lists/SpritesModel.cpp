#include "ui/lists/SpritesModel.h"

namespace plinket3 {

SpritesModel::SpritesModel(const EditorContext& context) : LumpNamesModel(context, RecordKind::Sprite, tr("Lumps")) {}

void SpritesModel::Reset() {
    lumps_ = context_.program.wads.SpriteLumps();
    RecordTableModel::Reset();
}

QString SpritesModel::HeaderTip(int column) const {
    switch (column) {
    case numberColumn:
        return tr("Number, as states use it");
    case nameColumn:
        return tr("What the names of its lumps begin with");
    case defaultColumn:
        return tr("The engine's own name");
    default:
        return tr("How many pictures the IWAD and the data WAD have for it");
    }
}

QString SpritesModel::Lumps(const std::string& name) const {
    const auto found = lumps_.find(name);
    return QString::number(found == lumps_.end() ? 0 : found->second);
}

bool SpritesModel::IsNumber(int column) const { return column == numberColumn || column == lumpsColumn; }

} // namespace plinket3
