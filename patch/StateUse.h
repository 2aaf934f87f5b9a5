#pragma once

#include "core/modConfig.h"
#include "patch/Links.h"
#include "patch/PatchSet.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace plinket3 {

/// The states that a thing or weapon can come to: those its record names and all that follow them or are named by
/// arguments of their actions; also those of things that arguments name or that are left behind, as far as the engine's
/// patches can say so. In the order of the states. Numbers that name no state or thing are passed over; a record that
/// there is not gives none.
std::vector<std::int32_t> StatesOfThing(const PatchSet& set, const EngineConfiguration& engine, std::int32_t thing);
std::vector<std::int32_t> StatesOfWeapon(const PatchSet& set, const EngineConfiguration& engine, std::int32_t weapon);

/// The states that no thing, no weapon, no state and no argument points to, in their order. A state that only other
/// unused states lead to counts as used.
std::vector<std::int32_t> UnusedStates(const PatchSet& set, const EngineConfiguration& engine);

/// The things, then the weapons, from whose states the runs of states come to this one, each with the fields that name
/// the first: "Imp (injury, death)", or "Imp (far attack, third)" with its place in the run, which ends where another
/// field's begins; then the states whose arguments do, with their action: "frame 12 (RandomJump, second)". None for
/// state 0, which stands for "no state".
std::vector<std::string> UsersOfState(const PatchSet& set, const EngineConfiguration& engine, std::int32_t state);

/// The first thing, else the first weapon, that `UsersOfState` tells of; absent when there is none.
std::optional<Target> OwnerOfState(const PatchSet& set, const EngineConfiguration& engine, std::int32_t state);

} // namespace plinket3
