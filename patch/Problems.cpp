#include "patch/Problems.h"

#include "core/BytePieces.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace plinket3 {

using modPatchCheck::Finding;
using modPatchCheck::Severity;

std::vector<Finding> ProblemsOf(const PatchData& patch, const EngineConfiguration& engine, const WadList& wads) {
    BytePieces pieces;
    if (const Status saved = modPatchFiles::FormatForSaving(patch, engine, pieces); !saved)
        return {{0, saved.Reason(), Severity::Refused, {}, {}}};
    const std::string bytes = pieces.Joined();
    modPatchFiles::IncludeReader includes;
    if (patch.lump.empty() && !patch.fileName.empty())
        includes = modPatchFiles::IncludesBeside(patch.fileName);
    modPatchCheck::HasPicture hasPicture;
    if (wads.Count() > 0)
        hasPicture = [&wads](std::string_view sprite, int frame) { return HasSpriteFrame(wads, sprite, frame); };
    modPatchCheck::CheckResult result = modPatchCheck::CheckPatch(bytes, engine, patch.defaults, includes, hasPicture);
    if (!result.status)
        return {{result.failedLine, result.status.Reason(), Severity::Refused, {}, {}}};
    std::ranges::stable_sort(result.findings, {}, &Finding::severity);
    return std::move(result.findings);
}

void Mend(Edits& edits, const Finding& problem) {
    if (problem.cell && problem.mend)
        edits.StoreGroup({{*problem.cell, *problem.mend}}, "mend " + edits.NameOf(*problem.cell));
}

} // namespace plinket3
