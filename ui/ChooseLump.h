#pragma once

#include "patch/PatchPlace.h"
#include "ui/FileDialogs.h"

#include <optional>
#include <vector>

namespace plinket3 {

/// One of the patches of a WAD (at least one), which the user chooses where there are several; absent when that is
/// given up.
std::optional<PatchPlace> ChooseLump(FileDialogs& dialogs, const QString& title, const std::filesystem::path& wad,
                                     const std::vector<PatchLump>& lumps);

} // namespace plinket3
