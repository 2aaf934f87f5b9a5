#include "ui/fields/LumpPicture.h"

#include "wad/GameColours.h"
#include "wad/PngLump.h"

#include <cstdint>
#include <string>
#include <unordered_map>

namespace plinket3 {

namespace {

std::optional<GamePicture> ReadPng(std::string_view bytes, std::string_view palette) {
    const auto head = ReadPngHead(bytes);
    if (!head) // no memory for what a few bytes claim
        return std::nullopt;
    const QImage image =
        QImage::fromData(reinterpret_cast<const uchar*>(bytes.data()), static_cast<int>(bytes.size()), "PNG")
            .convertToFormat(QImage::Format_ARGB32);
    if (image.width() != head->width || image.height() != head->height)
        return std::nullopt;
    clsBitmap colours;
    colours.setPalette(palette);
    std::unordered_map<QRgb, std::uint8_t> known;
    GamePicture picture{head->width, head->height, head->left, head->top, {}, {}};
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QRgb colour = image.pixel(x, y);
            const bool covered = qAlpha(colour) >= 128;
            std::uint8_t index = 0;
            if (covered) {
                const auto [place, added] = known.try_emplace(colour | 0xff000000U);
                if (added)
                    place->second = NearestColour(colours.Palette(), {static_cast<std::uint8_t>(qRed(colour)),
                                                                      static_cast<std::uint8_t>(qGreen(colour)),
                                                                      static_cast<std::uint8_t>(qBlue(colour))});
                index = place->second;
            }
            picture.pixels.push_back(index);
            picture.covered.push_back(covered);
        }
    return picture;
}

} // namespace

std::string PictureLump(const LumpResult& lump) { return lump.wad->ReadLumpString(lump.num, longestPictureLump); }

std::optional<GamePicture> ReadLumpPicture(const Session& session, const LumpResult& lump) {
    const std::string bytes = PictureLump(lump);
    return IsPng(bytes) ? ReadPng(bytes, session.palette) : ReadGamePicture(bytes);
}

QRect PlaceOfPicture(const LumpResult& lump) {
    const std::string bytes = PictureLump(lump);
    if (const auto png = ReadPngHead(bytes))
        return {-png->left, -png->top, png->width, png->height};
    const PictureSize size = IsPng(bytes) ? PictureSize() : ReadPictureSize(bytes);
    const PictureOffset offset = ReadPictureOffset(bytes);
    return size.width == 0 ? QRect() : QRect(-offset.left, -offset.top, size.width, size.height);
}

QImage ImageOf(const GamePicture& picture, std::string_view palette) {
    clsBitmap colours;
    colours.setPalette(palette);
    QImage image(picture.width, picture.height, QImage::Format_ARGB32);
    std::size_t at = 0;
    for (int y = 0; y < picture.height; ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < picture.width; ++x, ++at) {
            const Colour& colour = colours.Palette()[picture.pixels[at]];
            row[x] = picture.covered[at] ? qRgb(colour.red, colour.green, colour.blue) : qRgba(0, 0, 0, 0);
        }
    }
    return image;
}

} // namespace plinket3
