#pragma once

#include "core/modConfig.h"
#include "patch/PatchSet.h"

#include <string>
#include <vector>

namespace plinket3 {

/// What becomes of a patch under another engine.
struct EngineChange {
    PatchData patch;
    /// What the engine cannot hold, and the patch now lacks: a line for each field, from the former engine's own value
    /// to the patch's, as two sets are compared.
    std::vector<std::string> lost;
};

/// Takes a patch of the engine `from` over to `to`, whose own data `defaults` are; both by the same rules, unless `to`
/// knows no others than those of engines. Strings and actions are found by name. By engine rules a patch keeps its
/// lines, without those that set what is lost, where both engines have the same sections for texts and actions;
/// otherwise it is written anew, with its notes: Pointer becomes [CODEPTR] and Text becomes [STRINGS], or the other way
/// round.
EngineChange ChangeEngine(const PatchData& patch, const EngineConfiguration& from, const EngineConfiguration& to,
                          const PatchSet& defaults);

} // namespace plinket3
