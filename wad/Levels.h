#pragma once

#include "wad/clsWad.h"

#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

/// The levels of a WAD that are named as games name theirs, MAP01 or E1M1, in the order of its directory.
std::vector<std::string> LevelNames(const clsWad& wad);

/// A level as ports take it behind "-warp": "7" of MAP07, "1" and "2" of E1M2. Another name stays as it is; none gives
/// nothing.
std::vector<std::string> WarpWords(std::string_view level);

} // namespace plinket3
