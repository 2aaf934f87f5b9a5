#pragma once

#include "patch/modPatchCheck.h"

#include <filesystem>
#include <string_view>
#include <vector>

namespace plinket3 {

/// A patch that a port was started with.
struct RunPatch {
    std::filesystem::path file; // as the port was told it
    std::string_view bytes;     // as they stand in it
};

/// What a port says about a patch in what it prints or in its log of patches, in that order: lines "FILE:LINE: warning:
/// TEXT", and complaints in a log that repeats the lines of the patch one by one, of which only those about this file
/// count. There the line is found by the words that a complaint quotes, else it is that of the section. What the lines
/// set is told as `CheckPatch` does, and nothing is told twice. Any text is taken, also one that breaks off.
std::vector<modPatchCheck::Finding> FindingsInLog(std::string_view log, const RunPatch& patch,
                                                  const EngineConfiguration& engine, const PatchSet& defaults);

} // namespace plinket3
