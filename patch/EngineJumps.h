#pragma once

#include "patch/Program.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace plinket3 {

/// That a game's own code leads from a state to another one than the next, when it sees fit.
struct EngineJump {
    std::int32_t target = 0;
    std::string when; // in words: "fire is held"
    bool operator==(const EngineJump&) const = default;
};

/// Where the action of a state leads by the fields of the thing or weapon in that state, and by numbers that the engine
/// has fixed; each state once. None for no owner, for one that there is not, and to states that there are not.
std::vector<EngineJump> EngineJumpsOf(const Session& session, const StateRecord& state,
                                      const std::optional<Target>& owner);

/// Of a fixed use of a state: that what calls the action enters it, not something else.
bool EntersIt(const FixedUse& use);

} // namespace plinket3
