#include "wad/GameColours.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace plinket3 {

namespace {

constexpr std::uint8_t firstGreen = 112;
constexpr int greens = 16;
constexpr std::array<std::uint8_t, 3> playerRanges{96, 64, 32}; // grey, brown, red
constexpr int lightLevels = 16;                                 // that a game tells apart, of 256 that a map can have
constexpr int lightRows = 32;                                   // of the lump, from full light to none

ColourMap NoChange() {
    ColourMap colours{};
    std::iota(colours.begin(), colours.end(), std::uint8_t{0});
    return colours;
}

std::size_t PlaceOf(const GamePicture& picture, int x, int y) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) + static_cast<std::size_t>(x);
}

/// As Boom counts with shares of a colour: it rounds off none, and cuts off its percentage.
constexpr int fullPart = 4096;

struct FineColour { // in parts, `fullPart` of which make one
    int red, green, blue;
};

std::uint8_t Nearest(const Palette& palette, const FineColour& colour) {
    int nearest = 0;
    int least = std::numeric_limits<int>::max();
    for (int i = static_cast<int>(palette.size()) - 1; i >= 0; --i) {
        const auto& [red, green, blue] = palette[static_cast<std::size_t>(i)];
        // Half the square of the distance, without that part of it which is the same for all.
        const int distance = fullPart / 2 * (red * red + green * green + blue * blue) -
                             (red * colour.red + green * colour.green + blue * colour.blue);
        if (distance < least) {
            least = distance;
            nearest = i;
        }
    }
    return static_cast<std::uint8_t>(nearest);
}

} // namespace

ColourMap PlayerColours(int translation) {
    ColourMap colours = NoChange();
    if (translation >= 1 && translation <= static_cast<int>(playerRanges.size()))
        std::iota(colours.begin() + firstGreen, colours.begin() + firstGreen + greens,
                  playerRanges[static_cast<std::size_t>(translation - 1)]);
    return colours;
}

ColourMap LightColours(std::string_view colormap, int light, Nearness nearness) {
    const int level = std::clamp(light, 0, 255) * lightLevels / 256;
    const int darkest = (lightLevels - 1 - level) * 2 * lightRows / lightLevels; // where it is far away
    const int row = std::clamp(darkest - static_cast<int>(nearness) / 2, 0, lightRows - 1);
    ColourMap colours = NoChange();
    const std::size_t start = static_cast<std::size_t>(row) * colours.size();
    if (colormap.size() >= start + colours.size())
        std::ranges::transform(colormap.substr(start, colours.size()), colours.begin(),
                               [](char colour) { return static_cast<std::uint8_t>(colour); });
    return colours;
}

void MapColours(GamePicture& picture, const ColourMap& colours) {
    for (std::size_t i = 0; i < picture.pixels.size(); ++i)
        if (picture.covered[i])
            picture.pixels[i] = colours[picture.pixels[i]];
}

std::uint8_t NearestColour(const Palette& palette, const Colour& colour) {
    return Nearest(palette, {fullPart * colour.red, fullPart * colour.green, fullPart * colour.blue});
}

std::string MakeTranslucency(const Palette& palette) {
    constexpr int front = fullPart * frontPercent / 100, behind = fullPart - front;
    const auto mixed = [](int under, int over) { return under * behind + over * front; };
    std::string map;
    map.reserve(translucencySize);
    for (const Colour& under : palette)
        for (const Colour& over : palette)
            map += static_cast<char>(Nearest(
                palette, {mixed(under.red, over.red), mixed(under.green, over.green), mixed(under.blue, over.blue)}));
    return map;
}

void DrawOver(GamePicture& canvas, const GamePicture& picture, int x, int y, int bottom) {
    const int left = std::max(0, -x), right = std::min(picture.width, canvas.width - x);
    const int top = std::max(0, -y), end = std::min(picture.height, std::min(bottom, canvas.height) - y);
    for (int row = top; row < end; ++row)
        for (int column = left; column < right; ++column) {
            const std::size_t from = PlaceOf(picture, column, row), to = PlaceOf(canvas, column + x, row + y);
            if (!picture.covered[from])
                continue;
            canvas.pixels[to] = picture.pixels[from];
            canvas.covered[to] = true;
        }
}

} // namespace plinket3
