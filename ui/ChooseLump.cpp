#include "ui/ChooseLump.h"

#include "ui/LatinText.h"

#include <QCoreApplication>

namespace plinket3 {

std::optional<PatchPlace> ChooseLump(FileDialogs& dialogs, const QString& title, const std::filesystem::path& wad,
                                     const std::vector<PatchLump>& lumps) {
    if (lumps.size() == 1)
        return PatchPlace(wad, lumps.front().lump);
    QStringList rows;
    for (const PatchLump& lump : lumps)
        rows.append(QCoreApplication::translate("ChooseLump", "%1: lump %2 of the WAD, %3 bytes")
                        .arg(ShownText(lump.lump))
                        .arg(lump.index)
                        .arg(lump.size));
    const int row = dialogs.Choose(
        title,
        QCoreApplication::translate("ChooseLump", "%1 holds several patches. Games read them all, in this order.")
            .arg(ShownPath(wad.filename())),
        rows);
    if (row < 0)
        return std::nullopt;
    return PatchPlace(wad, lumps[static_cast<std::size_t>(row)].lump);
}

} // namespace plinket3
