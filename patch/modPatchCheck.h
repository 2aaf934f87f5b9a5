#pragma once

#include "patch/FrameFindings.h"
#include "patch/modPatchFiles.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Finds what in a patch does not do what its author meant: lines that reading ignores, limits or reads otherwise than
/// a game engine would, and data that a save would lose.
namespace plinket3::modPatchCheck {

struct Finding {
    std::size_t line = 0; // from 1
    std::string text;     // one sentence without a final dot
    Severity severity = Severity::Wrong;
    std::optional<Cell> cell;      // what the line says, or whose section it begins; absent where it says nothing
    std::optional<CellValue> mend; // of the cell: the value with which this is no finding, where one suggests itself
};

struct CheckResult {
    Status status; // fails as reading does; the line is then `failedLine`
    std::size_t failedLine = 0;
    std::vector<Finding> findings; // by line
};

/// `includes` as for `ParsePatch`. With `hasPicture` a patch that is read by engine rules is also looked through for
/// frames without a picture.
CheckResult CheckPatch(std::string_view bytes, const EngineConfiguration& engine, const PatchSet& defaults,
                       const modPatchFiles::IncludeReader& includes = {}, const HasPicture& hasPicture = {});

} // namespace plinket3::modPatchCheck
