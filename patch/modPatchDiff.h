#pragma once

#include "core/modConfig.h"
#include "patch/PatchSet.h"

#include <string>
#include <vector>

namespace plinket3::modPatchDiff {

/// What differs between two sets of the same engine, a line for each field in the order of a patch:
/// "Thing 12 (Imp): Hit points 60 -> 200". Numbers are those of a written patch, names those of `before`.
std::vector<std::string> Differences(const PatchSet& before, const PatchSet& after, const EngineConfiguration& engine);

} // namespace plinket3::modPatchDiff
