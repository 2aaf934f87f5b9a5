#pragma once

#include "wad/modWADList.h"

#include <optional>
#include <string>
#include <string_view>

namespace plinket3 {

/// A lump that shows a sprite's frame from one side.
struct SpriteSide {
    LumpResult lump;
    bool mirrored = false; // it was drawn for another side: "2" of TROOA2A8 as it is, "8" mirrored
    bool allSides = false; // it looks alike from everywhere
};

/// The sides from which a thing is seen, from 1, the front, to this one.
inline constexpr int spriteSides = 8;

/// The lump that shows a sprite's frame from a side, 1 to `spriteSides`. `frame` counts from 0 ("A"), without the
/// full-bright bit.
/// Kept: of a frame that has both a lump for rotation 0 and one for the side, the first is taken when they are in
/// different WADs, and none when they are in the same one. docs/kept-behaviour.md
std::optional<SpriteSide> ChooseSpriteSide(const WadList& wads, std::string_view sprite, int frame, int side);

/// The name of the lump that a frame's side, or for 0 all of them, is looked for by; empty when `frame` has no letter.
std::string SpriteLumpName(std::string_view sprite, int frame, int side);

} // namespace plinket3
