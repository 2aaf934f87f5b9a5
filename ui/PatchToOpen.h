#pragma once

#include "patch/modPatchFiles.h"

#include <filesystem>
#include <string>

namespace plinket3 {

/// A patch as it was found, before it is chosen what it is edited against.
struct PatchToOpen {
    std::filesystem::path file;
    std::string bytes;
    modPatchFiles::Header header; // as far as it can be told
};

} // namespace plinket3
