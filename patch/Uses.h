#pragma once

#include "patch/FixedUses.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace plinket3 {

/// One place that uses a record or an action.
struct Use {
    std::optional<Cell> cell; // where a patch says so, the first of several; absent where only the engine does
    std::string text;         // "Imp: Far attack frame", "frame 12 (RandomJump): state"
};

/// All that uses `target`, in the order of things, weapons, states, sounds; then what the engine's own code does with
/// it, once for all states whose action does it. Without what it says of itself. None for state 0 and
/// sound 0, which stand for none.
std::vector<Use> UsesOf(const PatchSet& set, const EngineConfiguration& engine, std::span<const FixedUse> fixedUses,
                        const Target& target);

} // namespace plinket3
