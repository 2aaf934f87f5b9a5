#pragma once

#include "core/modConfig.h"
#include "patch/RulesChoice.h"
#include "patch/modPatchFiles.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

/// The engine configuration that a patch names: the first whose file name (without folder) is `named` exactly, else the
/// first whose engine name is; absent when none fits.
std::optional<std::size_t> ChooseEngine(const std::vector<modConfig::EngineEntry>& engines, std::string_view named);

/// The first configuration for patches of that version; absent when there is none.
std::optional<std::size_t> FirstEngineOfVersion(const std::vector<modConfig::EngineEntry>& engines,
                                                std::int32_t version);

/// An engine configuration for a patch, a place in `environment.engines`; absent when there is none.
struct EngineAdvice {
    std::optional<std::size_t> index;
    std::string reason; // in a few words
};

/// The configuration that a patch is likely made for: the one that its header names (`ChooseEngine`). Otherwise, unless
/// only the kept rules are asked for, one that has the later fields, bits and actions that the patch sets and the
/// records that it makes: the one with a use for the most of its lines. Otherwise, of those for its version that have
/// kept rules, the one that reads it furthest - a text that the engine does not have ends the reading -, of these the
/// one that has a use for the most of its lines, of these one of the mode that the file's ending speaks of (".bex":
/// extended), of these `preferred`, or else the one with the fewest states. None when there is none for its version; by
/// engine rules, for which a version decides nothing, all are then looked at. Reads configurations and tables, but
/// shows and logs nothing.
EngineAdvice AdviseEngine(const Environment& environment, const modPatchFiles::Header& header, std::string_view bytes,
                          const std::filesystem::path& file, std::optional<std::size_t> preferred, RulesSetting rules);

/// The configuration to open a patch with: as `AdviseEngine` tells, and where it knows none and more than the kept
/// rules are asked for, as it tells by engine rules.
EngineAdvice RecommendEngine(const Environment& environment, const modPatchFiles::Header& header,
                             std::string_view bytes, const std::filesystem::path& file,
                             std::optional<std::size_t> preferred, RulesSetting rules);

/// The known IWAD that a patch names, upper and lower case alike: the first whose name is `named`, else whose path is,
/// else whose path ends in the same file name; absent when none fits.
std::optional<std::size_t> ChooseIwad(const std::vector<Settings::Iwad>& iwads, std::string_view named);

} // namespace plinket3
