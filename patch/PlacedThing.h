#pragma once

#include "patch/PatchSet.h"

#include <cstdint>
#include <optional>

namespace plinket3 {

/// From here on games have no things of their own, by their "ID #".
inline constexpr std::int32_t firstFreeId = 20000;

/// The "ID #" by which a level can place this thing and no other: its own, or a free one where it has none, shares it
/// with another thing, or has one that levels keep for something else. There must be a thing of that number.
std::int16_t IdToPlace(const PatchSet& set, std::int32_t thing);

/// The thing that gives the player a weapon when he picks it up: one of the engine's own. Absent for the fist and the
/// pistol, which he has from the start, and for weapons that no thing gives.
std::optional<std::int32_t> PickupOf(const PatchSet& defaults, std::int32_t weapon);

} // namespace plinket3
