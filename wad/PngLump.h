#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace plinket3 {

/// What the head of a PNG file says, which ports take as a picture lump.
struct PngHead {
    int width = 0, height = 0;
    std::int32_t left = 0, top = 0; // from the chunk grAb, as in a picture lump; 0 without one
    bool operator==(const PngHead&) const = default;
};

/// The longest side of a PNG in pixels. No sprite comes near; a damaged or evil head does, of few bytes.
inline constexpr int largestPngSide = 1024;

bool IsPng(std::string_view lump);
/// Nullopt when the lump is no PNG, or one with a side below 1 or above `largestPngSide`. Decodes nothing.
std::optional<PngHead> ReadPngHead(std::string_view lump);

} // namespace plinket3
