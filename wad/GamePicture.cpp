#include "wad/GamePicture.h"

namespace plinket3 {

std::optional<GamePicture> ReadGamePicture(std::string_view lump) {
    const PictureSize size = ReadPictureSize(lump);
    // Drawn over two colours: a pixel that no post covers is another one in each.
    clsBitmap lower, upper;
    if (!lower.Create(size.width, size.height, 0) || !upper.Create(size.width, size.height, 1))
        return std::nullopt;
    lower.renderDoomImage(lump, 0, 0);
    upper.renderDoomImage(lump, 0, 0);
    const PictureOffset offset = ReadPictureOffset(lump);
    GamePicture picture{size.width, size.height, offset.left, offset.top, {}, {}};
    const std::size_t count = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
    picture.pixels.reserve(count);
    picture.covered.reserve(count);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            picture.pixels.push_back(lower.Pixel(x, y));
            picture.covered.push_back(lower.Pixel(x, y) == upper.Pixel(x, y));
        }
    return picture;
}

GamePicture Mirrored(const GamePicture& picture) {
    GamePicture mirrored = picture;
    mirrored.left = picture.width - picture.left;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            const std::size_t row = static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width);
            const std::size_t from = row + static_cast<std::size_t>(picture.width - 1 - x);
            const std::size_t to = row + static_cast<std::size_t>(x);
            mirrored.pixels[to] = picture.pixels[from];
            mirrored.covered[to] = picture.covered[from];
        }
    return mirrored;
}

} // namespace plinket3
