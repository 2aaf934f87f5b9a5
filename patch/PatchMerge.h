#pragma once

#include "patch/PatchDocument.h"

#include <cstddef>
#include <vector>

namespace plinket3 {

// Takes what other patches of the same engine change into one of them. All are documents, read by engine rules.

/// Sets in `ours` all that the lines of `theirs` set, whether or not it is the engine's own value; a name in brackets
/// only when it is not, and no notes.
void MergePatch(const PatchDocument& theirs, const PatchSet& defaults, PatchSet& ours);

/// Sets in `ours` only what `theirs` says otherwise than `original`, also in notes, from which both come. Where `ours`
/// says otherwise than both of them, it stays: a conflict. Returns `ours` with the values that were not taken.
PatchSet MergeChanges(const PatchDocument& theirs, const PatchDocument& original, PatchSet& ours);

/// The lines of `theirs` of which neither `merged` nor `original` has the like: what sets nothing that can be edited,
/// such as strings that the engine does not know, and with an `original` also comments. Null for none, and then the
/// lines in which a patch says what it was made for do not count.
std::vector<std::size_t> LinesNotMerged(const PatchDocument& theirs, const PatchDocument* original,
                                        const PatchDocument& merged);

} // namespace plinket3
