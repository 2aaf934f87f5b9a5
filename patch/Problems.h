#pragma once

#include "patch/Edits.h"
#include "patch/modPatchCheck.h"
#include "wad/modWADList.h"

#include <vector>

namespace plinket3 {

/// What `modPatchCheck` finds in the file that a save would write now, the worst first, then by its lines. Pictures are
/// looked for when there are WADs. A patch that cannot be saved has one problem, which has no line. Nothing is changed;
/// copies of what is handed in can be looked through in another thread.
std::vector<modPatchCheck::Finding> ProblemsOf(const PatchData& patch, const EngineConfiguration& engine,
                                               const WadList& wads);

/// Stores the mend of a problem as one step; nothing happens where it has none.
void Mend(Edits& edits, const modPatchCheck::Finding& problem);

} // namespace plinket3
