#pragma once

#include "patch/Program.h"
#include "patch/StateWalk.h"

#include <cstdint>
#include <optional>

namespace plinket3 {

/// What is heard when a state is entered: by its action, which may play a sound that the engine has fixed, that an
/// argument names or that the thing in the state has, or launch something that does. A hit is taken to be one; what
/// only comes about when an enemy is seen or met is left out. Absent for silence. `thing` may be none; one that there
/// is not is silent.
std::optional<std::int32_t> SoundOfState(const Session& session, std::int32_t state, std::optional<std::int32_t> thing,
                                         const Dice& dice);

/// What a thing plays when a game makes it go to a state by that field, such as its alert sound when it has seen an
/// enemy.
std::optional<std::int32_t> SoundOfStart(const Session& session, std::int32_t ThingRecord::*field, std::int32_t thing,
                                         const Dice& dice);

} // namespace plinket3
