#pragma once

#include "core/modConfig.h"
#include "patch/PatchSet.h"

#include <cstdint>

namespace plinket3 {

/// How a weapon is held while it shows a state, on the game's screen of 320 by 200.
struct WeaponView {
    std::int32_t x = 1, y = 32; // of the spot about which its picture lies, as a player who stands still holds it
    std::int32_t flash = 0;     // the state that is drawn over it, 0 for none
    int light = 0;              // by so many of 16 levels the view is brighter than its sector
    bool operator==(const WeaponView&) const = default;
};

/// As a game comes to the state when the weapon shoots: places that states before it ask for by their two misc numbers
/// stay until another one does, or until the weapon is ready again; the flash begins with the action that asks for it,
/// and runs on beside, and both may lighten the view. Of a state that shooting does not come to, only its own numbers
/// count.
WeaponView ViewOfWeapon(const PatchSet& set, const EngineConfiguration& engine, std::int32_t weapon,
                        std::int32_t state);

} // namespace plinket3
