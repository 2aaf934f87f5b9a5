#pragma once

#include "patch/PatchSet.h"

#include <cstdint>
#include <string>
#include <vector>

namespace plinket3 {

/// The states that a thing or weapon can come to: those its record names and all that follow them, in the order of the
/// states. Numbers that name no state are passed over; one that no record has gives none.
std::vector<std::int32_t> StatesOfThing(const PatchSet& set, std::int32_t thing);
std::vector<std::int32_t> StatesOfWeapon(const PatchSet& set, std::int32_t weapon);

/// The states that no thing, no weapon and no state points to, in their order. A state that only other unused states
/// lead to counts as used.
std::vector<std::int32_t> UnusedStates(const PatchSet& set);

/// The things, then the weapons, whose record names the state, each with the fields that do: "Imp (injury, death)".
/// None for state 0, which stands for "no state".
std::vector<std::string> UsersOfState(const PatchSet& set, std::int32_t state);

} // namespace plinket3
