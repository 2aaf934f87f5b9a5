#pragma once

#include "patch/PatchPlace.h"
#include "patch/modPatchFiles.h"

#include <string>

namespace plinket3 {

/// A patch as it was found, before it is chosen what it is edited against.
struct PatchToOpen {
    PatchPlace place;
    std::string bytes;
    modPatchFiles::Header header; // as far as it can be told
};

} // namespace plinket3
