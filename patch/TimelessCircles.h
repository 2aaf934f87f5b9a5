#pragma once

#include "patch/PatchSet.h"

#include <cstdint>
#include <vector>

namespace plinket3 {

/// The circles of states that follow each other with a duration of 0, in which a game hangs; each once, from one of its
/// states on.
std::vector<std::vector<std::int32_t>> TimelessCircles(const PatchSet& set);

} // namespace plinket3
