#pragma once

#include "core/Environment.h"
#include "patch/FixedUses.h"
#include "patch/PatchSet.h"
#include "wad/modWADList.h"

#include <memory>
#include <string>
#include <vector>

namespace plinket3 {

/// What a patch is edited against, and the patch.
struct Session {
    EngineConfiguration engine;
    std::vector<FixedUse> fixedUses; // of the engine
    PatchData patch;
    WadList wads;
    std::shared_ptr<clsWad> iwad; // null when there is none
    std::vector<std::shared_ptr<clsWad>> dataWads;
    std::string palette;                      // the first one of the lump PLAYPAL
    std::vector<std::string> missingDataWads; // that were wanted and could not be opened
};

/// Everything that the process holds: start-up builds one and hands it, or the part that is needed, to all others.
struct Program : Environment, Session {
    explicit Program(Notifier& notifierToUse) : Environment(notifierToUse) {}
};

} // namespace plinket3
