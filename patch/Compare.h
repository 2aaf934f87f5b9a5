#pragma once

#include "patch/Cells.h"

#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace plinket3 {

/// Episode and map.
using Level = std::pair<std::int32_t, std::int32_t>;

/// Which of two patches has changed what both come from.
enum class ChangedIn { Here, There, Both };

/// A value that two patches have otherwise.
struct Difference {
    Cell cell;
    CellValue here, there, ancestor; // of a level its seconds; `Unset` for no par time
    ChangedIn side = ChangedIn::Both;
    std::optional<Level> level; // of a par time; the cell is the list of all
    bool operator==(const Difference&) const = default;
};

/// What differs between two sets, and which of them has changed it: kind by kind, in the order of the lists, of a
/// record first whether there is one. `ancestor` is the set from which both come; the engine's own data for patches
/// that have no other in common. A record that one has changed and the other removed is changed in both, with all that
/// it holds. All sets are of the same engine.
std::vector<Difference> Compare(const PatchSet& here, const PatchSet& there, const PatchSet& ancestor);

/// What gives `here` the values that `there` has, in the order in which they are to be stored. A record that is missing
/// is made for a value in it, with its name when it is a sprite or sound; one that goes takes all its values with it.
std::vector<Assignment> TakeOver(std::span<const Difference> differences, const PatchSet& here, const PatchSet& there);

} // namespace plinket3
