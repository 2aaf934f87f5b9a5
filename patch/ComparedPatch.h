#pragma once

#include "core/Environment.h"
#include "patch/PatchPlace.h"
#include "patch/Program.h"

#include <string>
#include <vector>

namespace plinket3 {

/// Another patch, as the open one's engine has it.
struct ComparedPatch {
    PatchSet set;
    std::string engine;            // the name of the one that it is for; empty when the open one's does
    std::vector<std::string> lost; // what the open one's cannot hold of it, as `EngineChange` tells
};

/// Reads a patch to be compared with the open one, by the same rules. One that names another engine, or of which the
/// open one's has no use for a line, is read for its own and taken over. Fails, with `patch` left as it was, where it
/// cannot be read; the reason does not name the place. Shows and logs nothing.
Status ReadForComparing(const Environment& environment, const Session& open, const PatchPlace& place,
                        ComparedPatch& patch);

} // namespace plinket3
