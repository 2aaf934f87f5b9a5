#pragma once

#include "patch/FixedUses.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace plinket3 {

/// The things, states, sounds or sprites that nothing comes to: no thing or weapon, no state that one of them comes to,
/// and none of the engine's own code; nor are they kept for later by the patch's notes. A thing is free when levels
/// cannot place it and nothing makes it.
struct FreeRecords {
    std::vector<std::int32_t> blank;   // as a new one would be
    std::vector<std::int32_t> used;    // that hold something by default
    std::vector<std::int32_t> changed; // by the patch
    bool unlimited = false;            // numbers behind those that there are can be had, too

    /// All of them, ascending.
    std::vector<std::int32_t> Numbers() const;
    bool Has(std::int32_t number) const;
    std::size_t Count() const { return blank.size() + used.size() + changed.size(); }
    /// So many to be given away, the best first: blank ones, then, where numbers are unlimited, new ones, else those
    /// with something in them, the patch's own last. Fewer when there are not so many.
    std::vector<std::int32_t> Take(const PatchSet& set, RecordKind kind, std::size_t count) const;
};
/// The lowest numbers from 0 up for new records, without those that the patch's notes keep; fewer where numbers end.
std::vector<std::int32_t> NewNumbers(const PatchSet& set, RecordKind kind, std::size_t count);
FreeRecords FindFree(const PatchSet& set, const PatchSet& defaults, const EngineConfiguration& engine,
                     std::span<const FixedUse> fixedUses, RecordKind kind);

} // namespace plinket3
