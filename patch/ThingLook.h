#pragma once

#include "core/modConfig.h"
#include "patch/PatchSet.h"
#include "wad/GameColours.h"

namespace plinket3 {

/// How games draw a state, by its lit bit and the bits of the thing that shows it; null for no thing. A thing is
/// translucent in engines that have that bit, unless it is drawn in a player's colour.
GameLook LookOf(const EngineConfiguration& engine, const ThingRecord* thing, const StateRecord& state);

} // namespace plinket3
