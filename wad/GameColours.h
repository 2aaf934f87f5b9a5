#pragma once

#include "wad/GamePicture.h"
#include "wad/clsBitmap.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace plinket3 {

/// For each palette index the one that is drawn in its place.
using ColourMap = std::array<std::uint8_t, 256>;
using Palette = std::array<Colour, 256>;

/// How a game draws a picture.
struct GameLook {
    int translation = 0; // 1 to 3: the player's green becomes grey, brown or red
    bool translucent = false;
    bool fuzzy = false;      // as a shadow, which goes before all others
    bool fullBright = false; // whatever the light is
    bool operator==(const GameLook&) const = default;
};

/// What is seen at which size a thing is drawn: a thing whose picture has its own size, and a weapon in the hand.
enum class Nearness { Thing = 16, Weapon = 47 };

/// How green, palette indices 112 to 127, is drawn in a player's colour, 1 to 3; another number changes nothing.
ColourMap PlayerColours(int translation);
/// What light, 0 to 255 of a sector, makes of colours: a row of the lump COLORMAP, of which there are 32. A row that
/// the lump is too short for changes nothing.
ColourMap LightColours(std::string_view colormap, int light, Nearness nearness);
/// Draws each pixel in the colour that the map has for it.
void MapColours(GamePicture& picture, const ColourMap& colours);

/// The palette index that comes next to a colour; of several the highest, as Boom chooses.
std::uint8_t NearestColour(const Palette& palette, const Colour& colour);

/// What a lump TRANMAP holds: the colour of a pixel `front` drawn over `behind` at 256 x `behind` + `front`. Made, to
/// the byte, as Boom makes it, of which 66 % is the front.
std::string MakeTranslucency(const Palette& palette);
inline constexpr std::size_t translucencySize = 65536;
inline constexpr int frontPercent = 66;

/// Puts `picture` onto `canvas` with its upper left corner at (`x`, `y`), as far as that and the rows above `bottom`
/// go.
void DrawOver(GamePicture& canvas, const GamePicture& picture, int x, int y, int bottom);

} // namespace plinket3
