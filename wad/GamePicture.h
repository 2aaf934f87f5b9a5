#pragma once

#include "wad/clsBitmap.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace plinket3 {

/// A picture as a game draws it: the pixels that it covers, and where it lies about the spot at which a thing stands.
struct GamePicture {
    int width = 0, height = 0;
    int left = 0, top = 0;            // how far the spot lies right of the left edge and below the top one
    std::vector<std::uint8_t> pixels; // palette indices row by row from the top, 0 where nothing is covered
    std::vector<bool> covered;        // of each pixel
    bool operator==(const GamePicture&) const = default;
};

/// Reads a picture lump. Nullopt when it is none; damaged columns end where they leave the lump.
std::optional<GamePicture> ReadGamePicture(std::string_view lump);

/// The picture as a mirror shows it: what was left of the thing's spot is right of it.
GamePicture Mirrored(const GamePicture& picture);

} // namespace plinket3
