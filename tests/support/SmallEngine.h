#pragma once

#include "core/modConfig.h"
#include "patch/PatchSet.h"

namespace plinket3::test {

/// An engine that fits on a page, for patches of version 19: 3 things, 6 states (the last one alone has the code
/// pointer "Last"; no state has "Spare"), 4 sounds, 3 sprites, 2 weapons, 2 kinds of ammunition, 17 cheats. Flags:
/// SPECIAL, SOLID, FLOAT, INFLOAT. Normal: 4 texts, of which the last two are alike. Extended: 3 strings.
EngineConfiguration SmallEngine(bool extended);

/// The extended one with the fields of MBF21, by engine rules. Bits of things: LOGRAV, RIP; of states: SKILL5FAST; of
/// weapons: NOTHRUST, SILENT. "Fire" takes a thing in Unknown 1, "Last" a state, a sound and dice in Args1 to Args3.
EngineConfiguration SmallMbf21Engine();

/// The same with the fields of ID24 and without limits. Beside the records of the others it has one of each kind with a
/// negative number: a thing, a state, a sound, a sprite, a weapon, ammunition. Bits of things: NORESPAWN. "Pistol" has
/// a carousel icon. Items: none, message.
EngineConfiguration SmallId24Engine();
inline constexpr std::int32_t firstNegative = -1879048192; // of these records

/// Its own data. Numbers are 0 unless the `.cpp` says otherwise.
PatchSet SmallDefaults(const EngineConfiguration& engine);

/// A new patch for it.
PatchData SmallPatch(const EngineConfiguration& engine);

} // namespace plinket3::test
