#pragma once

#include "core/modConfig.h"
#include "patch/PatchSet.h"
#include "tools/TsvTable.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace plinket3::tools {

/// A row of engines.tsv: a configuration and the folders that its facts lie in.
struct EngineSource {
    std::string configuration; // file name without extension
    std::string folder, pointerFolder;
    std::vector<std::string> bases; // folders whose tables count where `folder` has none, the nearest first
    std::int16_t version = 0;
    bool extended = false, engineRulesOnly = false, unlimited = false;
    FieldLevel fields = FieldLevel::Doom; // that its patches have
    std::string name;
};

/// One engine as its tables tell it.
struct EngineFacts {
    EngineConfiguration engine; // what its configuration file holds
    PatchSet defaults;          // what its table file holds
};

/// Reads engines.tsv in `folder`.
std::vector<EngineSource> ReadEngineList(const std::filesystem::path& folder, Fault& fault);

/// Reads the tables of `source` below `folder`. Anything that would make a configuration or table file that cannot be
/// read back as it is meant is reported: a number that names no state, sound, sprite, ammo type or routine, a name that
/// cannot be a key or occurs twice, a wrong text length. The facts are of use only when `fault` stays empty.
EngineFacts ReadEngineFacts(const std::filesystem::path& folder, const EngineSource& source, Fault& fault);

} // namespace plinket3::tools
