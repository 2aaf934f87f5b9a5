#pragma once

#include "core/modConfig.h"

#include <cstddef>
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

/// The configuration for a patch that names none: the first for its version in the mode that the file's ending speaks
/// of (".bex": extended), else the first for its version; absent when there is none.
std::optional<std::size_t> LikelyEngine(const std::vector<modConfig::EngineEntry>& engines, std::int32_t version,
                                        const std::filesystem::path& patch);

/// The known IWAD that a patch names, upper and lower case alike: the first whose name is `named`, else whose path is,
/// else whose path ends in the same file name; absent when none fits.
std::optional<std::size_t> ChooseIwad(const std::vector<Settings::Iwad>& iwads, std::string_view named);

} // namespace plinket3
