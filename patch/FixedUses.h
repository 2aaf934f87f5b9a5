#pragma once

#include "patch/Links.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

/// That an engine's own code uses a record by its number, whatever a patch says.
struct FixedUse {
    Target target;
    std::optional<std::int32_t> action; // whose routine it is; absent for the code outside of actions
    std::string what;                   // in words: "launches", "drops a bullet clip when killed"
};

/// Reads a table of them: a line for each, with the kind of target as `targetWords` has it, number, the action's
/// mnemonic or nothing, and words, parted by tabs. Lines of which `engine` has no target or action are passed over.
std::vector<FixedUse> ParseFixedUses(std::string_view bytes, const EngineConfiguration& engine);

/// The engine's table in the folder "uses" beside its configuration's, under the configuration's name with the ending
/// "tsv"; none for an engine without one.
std::vector<FixedUse> LoadFixedUses(const std::filesystem::path& programFolder, const EngineConfiguration& engine);

} // namespace plinket3
