#pragma once

#include "ui/fields/SpriteImage.h"

#include <cstdint>

namespace plinket3 {

/// A state of a weapon as the game's screen shows it, with the status bar and the weapon's flash, in a sector's light
/// of 0 to 255. `missing` tells of a picture that the WADs do not have.
SpriteImage WeaponScreen(const Session& session, std::int32_t weapon, std::int32_t state, int light);

} // namespace plinket3
