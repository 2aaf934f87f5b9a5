#include "ui/lists/MusicModel.h"

namespace plinket3 {

MusicModel::MusicModel(const EditorContext& context) : LumpNamesModel(context, RecordKind::Music, tr("Lump")) {}

QString MusicModel::HeaderTip(int column) const {
    switch (column) {
    case numberColumn:
        return tr("Number in the engine");
    case nameColumn:
        return tr("Name of the lump without D_");
    case defaultColumn:
        return tr("The engine's own name");
    default:
        return tr("Where the lump is: in the IWAD, in the data WAD, or in neither");
    }
}

QString MusicModel::Lumps(const std::string& name) const {
    const auto found = context_.program.wads.FindLump("D_" + name);
    return !found ? tr("none") : found->wadIndex == 0 ? tr("IWAD") : tr("data WAD");
}

bool MusicModel::IsNumber(int column) const { return column == numberColumn; }

} // namespace plinket3
