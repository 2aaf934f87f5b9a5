#include "wad/SoundLump.h"

#include <cstddef>

namespace plinket3 {

SoundLump ReadSoundLump(std::span<const std::uint8_t> lumpAndOneByte) {
    constexpr std::size_t headerSize = 8;
    if (lumpAndOneByte.size() < headerSize + 1)
        return {};
    return {.rate = static_cast<std::int16_t>(lumpAndOneByte[2] | lumpAndOneByte[3] << 8),
            .samples = lumpAndOneByte.first(lumpAndOneByte.size() - 1).subspan(headerSize)};
}

} // namespace plinket3
