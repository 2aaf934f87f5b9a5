#pragma once

#include "core/modConfig.h"
#include "patch/PatchSet.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

/// A line of a patch that is kept as it stands and not edited here.
struct OtherLine {
    std::size_t line = 0; // from 1
    std::string section;  // the header that it stands under; empty before the first one
    std::string text;
    std::string reason; // continues a sentence that the line begins
};

/// All of them, in the file's order, as engine rules read the patch. Comments and empty lines are none.
std::vector<OtherLine> OtherLines(std::string_view bytes, const EngineConfiguration& engine, const PatchSet& defaults);

} // namespace plinket3
