#pragma once

#include "patch/PatchDocument.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace plinket3 {

/// What a merge has put in the place of which bytes of a document.
struct MergedPart {
    std::size_t begin = 0, end = 0; // in the document; all bytes outside are as they were
    const BytePieces& merged;       // the whole
    std::vector<Cell> changed;      // by the merge
};

/// Whether a merge that changes values alone, not names, notes or par times, reads back as `current`, told from the
/// sections around what it has changed. False when that is not enough to tell.
bool ReadsBackLocally(const PatchDocument& document, const PatchSet& current, const PatchSet& defaults,
                      const EngineConfiguration& engine, const MergedPart& part);

} // namespace plinket3
