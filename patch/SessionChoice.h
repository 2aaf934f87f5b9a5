#pragma once

#include "core/modConfig.h"
#include "patch/modPatchFiles.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace plinket3 {

/// The engine configuration that a patch names: the first whose file name (without folder) is `named` exactly, else the
/// first whose engine name is; absent when none fits.
std::optional<std::size_t> ChooseEngine(const std::vector<modConfig::EngineEntry>& engines, std::string_view named);

/// The first configuration for patches of that version; absent when there is none.
std::optional<std::size_t> FirstEngineOfVersion(const std::vector<modConfig::EngineEntry>& engines,
                                                std::int32_t version);

/// The configuration that a patch is likely made for: the one that its header names (`ChooseEngine`). Otherwise, of
/// those for its version, the one that reads it furthest - a text that the engine does not have ends the reading -, of
/// these the one that has a use for the most of its lines, of these one of the mode that the file's ending speaks of
/// (".bex": extended), of these `preferred`, a place in `environment.engines`, or else the one with the fewest states.
/// Absent when there is none for its version; by engine rules, for which a version decides nothing, all are then looked
/// at. Reads configurations and tables, but shows and logs nothing.
std::optional<std::size_t> RecommendEngine(const Environment& environment, const modPatchFiles::Header& header,
                                           std::string_view bytes, const std::filesystem::path& file,
                                           std::optional<std::size_t> preferred = std::nullopt,
                                           Rules rules = Rules::Kept);

/// The known IWAD that a patch names, upper and lower case alike: the first whose name is `named`, else whose path is,
/// else whose path ends in the same file name; absent when none fits.
std::optional<std::size_t> ChooseIwad(const std::vector<Settings::Iwad>& iwads, std::string_view named);

} // namespace plinket3
