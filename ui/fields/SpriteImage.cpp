#include "ui/fields/SpriteImage.h"

#include "ui/LatinText.h"
#include "wad/GamePicture.h"
#include "wad/SpriteSides.h"

#include <QCoreApplication>

#include <cstring>
#include <optional>
#include <string>

namespace plinket3 {

namespace {

QString Tr(const char* text) { return QCoreApplication::translate("SpriteImage", text); }

QImage ImageOf(const clsBitmap& bitmap) {
    QImage image(bitmap.Width(), bitmap.Height(), QImage::Format_Indexed8);
    QList<QRgb> colours;
    colours.reserve(static_cast<qsizetype>(bitmap.Palette().size()));
    for (const Colour& colour : bitmap.Palette())
        colours.append(qRgb(colour.red, colour.green, colour.blue));
    image.setColorTable(colours);
    for (int y = 0; y < bitmap.Height(); ++y) // the bitmap's rows run from the bottom to the top
        std::memcpy(image.scanLine(y),
                    bitmap.Pixels().data() +
                        static_cast<std::size_t>(bitmap.Height() - 1 - y) * static_cast<std::size_t>(bitmap.Stride()),
                    static_cast<std::size_t>(bitmap.Width()));
    return image;
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

std::string BytesOf(const LumpResult& lump) { return lump.wad->ReadLumpString(lump.num, longestPictureLump); }

/// Where a picture lump lies about the spot at which a thing stands.
QRect PlaceOf(std::string_view lump) {
    const PictureSize size = ReadPictureSize(lump);
    const PictureOffset offset = ReadPictureOffset(lump);
    return {-offset.left, -offset.top, size.width, size.height};
}

} // namespace

SpriteImage PlainSprite(const Session& session, std::string_view sprite, int frame) {
    SpriteImage made;
    const auto lump = ChooseSpriteFrame(session.wads, sprite, frame);
    const std::string bytes = lump ? BytesOf(*lump) : std::string();
    clsBitmap bitmap;
    if (!lump || !DecodePicture(bytes, session.palette, bitmap))
        return made;
    made.image = ImageOf(bitmap);
    made.place = PlaceOf(bytes).topLeft();
    made.lump = ShownText(lump->name);
    return made;
}

SpriteImage GameSprite(const Session& session, std::string_view sprite, int frame, int side) {
    SpriteImage made;
    const auto found = ChooseSpriteSide(session.wads, sprite, frame, side);
    made.turns = !found || !found->allSides;
    if (!found) {
        const std::string wanted = SpriteLumpName(sprite, frame, side);
        if (session.wads.FindSprite(sprite, wanted.empty() ? wanted : wanted.substr(sprite.size())))
            made.missing = Tr("Frame %1 has one lump for all sides and others for each").arg(ShownText(wanted));
        else if (!wanted.empty())
            made.missing = Tr("%1 is in none of the WADs").arg(ShownText(wanted));
        return made;
    }
    std::optional<GamePicture> picture = ReadGamePicture(BytesOf(found->lump));
    const QString name = ShownText(found->lump.name);
    if (!picture) {
        made.missing = Tr("%1 is no picture").arg(name);
        return made;
    }
    if (found->mirrored)
        picture = Mirrored(*picture);
    made.image = ImageOf(*picture, session.palette);
    made.place = {-picture->left, -picture->top};
    made.lump = name;
    return made;
}

QRect PlaceOfSprite(const Session& session, std::string_view sprite, int frame) {
    const auto lump = ChooseSpriteFrame(session.wads, sprite, frame);
    return lump ? PlaceOf(BytesOf(*lump)) : QRect();
}

} // namespace plinket3
