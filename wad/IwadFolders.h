#pragma once

#include "core/SystemFolders.h"

#include <filesystem>
#include <string_view>
#include <vector>

namespace plinket3 {

/// The folders in which to look for IWADs, each once and in this order: `wadDir` and those of the list `wadPath`, which
/// stand in the variables DOOMWADDIR and DOOMWADPATH for every port; those of `places` that hold IWADs themselves;
/// then, where they exist, those in which the shops' games keep theirs.
std::vector<std::filesystem::path> IwadFolders(const GamePlaces& places, std::string_view wadDir,
                                               std::string_view wadPath);

/// The same for this system and its environment.
std::vector<std::filesystem::path> UsualIwadFolders();

} // namespace plinket3
