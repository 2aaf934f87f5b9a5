#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace plinket3 {

/// What stands in a test map.
struct TestMap {
    std::string_view level; // its lump: MAP01 or E1M1
    std::int16_t thing = 0; // the "ID #" of what stands before the player; 0 for nothing
    std::int32_t away = 0;  // so many units, at most `farthest`

    static constexpr std::int32_t farthest = 2048;
};

/// The bytes of a PWAD with one level: a bright room, the player in its west, who looks east, and the thing before him,
/// who looks at him. The textures are some that all Doom games have. Nodes, blockmap and reject table are there.
std::string TestMapWad(const TestMap& map);

} // namespace plinket3
