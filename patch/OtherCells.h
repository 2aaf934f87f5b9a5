#pragma once

#include "patch/Cells.h"

#include <functional>

namespace plinket3 {

/// Calls visit(cell) for every cell of a patch that has another value in the second set, first of all of a
/// record for its existence; not for par times. Both sets are of the same engine.
void ForEachOtherCell(const PatchSet& before, const PatchSet& after, const std::function<void(const Cell&)>& visit);

} // namespace plinket3
