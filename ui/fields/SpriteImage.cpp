#include "ui/fields/SpriteImage.h"

#include "ui/LatinText.h"
#include "ui/fields/LumpPicture.h"
#include "wad/SpriteSides.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace plinket3 {

namespace {

constexpr std::int64_t lightsSize = std::int64_t{32} * 256; // of the lump COLORMAP, as far as light goes

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

Palette PaletteOf(const Session& session) {
    clsBitmap colours;
    colours.setPalette(session.palette);
    return colours.Palette();
}

/// Nothing but every other pixel, darkened: a game stirs and darkens what is behind.
void MakeFuzzy(QImage& image) {
    constexpr int strong = 150, weak = 40; // of 255
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) != 0)
                image.setPixel(x, y, qRgba(0, 0, 0, (x + y) % 2 == 0 ? strong : weak));
}

void MakeGlass(QImage& image) {
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (const QRgb colour = image.pixel(x, y); qAlpha(colour) != 0)
                image.setPixel(x, y, qRgba(qRed(colour), qGreen(colour), qBlue(colour), 255 * frontPercent / 100));
}

} // namespace

SpriteImage PlainSprite(const Session& session, std::string_view sprite, int frame) {
    SpriteImage made;
    const auto lump = ChooseSpriteFrame(session.wads, sprite, frame);
    const std::string bytes = lump ? PictureLump(*lump) : std::string();
    clsBitmap bitmap;
    if (!lump || !DecodePicture(bytes, session.palette, bitmap))
        return made;
    made.image = ImageOf(bitmap);
    made.place = PlaceOfPicture(*lump).topLeft();
    made.lump = ShownText(lump->name);
    return made;
}

FramePicture PictureOfFrame(const Session& session, std::string_view sprite, int frame, int side, const GameLook& look,
                            int light, Nearness nearness) {
    FramePicture made;
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
    made.picture = ReadLumpPicture(session, found->lump);
    const QString name = ShownText(found->lump.name);
    if (!made.picture) {
        made.missing = Tr("%1 is no picture").arg(name);
        return made;
    }
    made.lump = name;
    if (found->mirrored)
        made.picture = Mirrored(*made.picture);
    if (look.translation != 0)
        MapColours(*made.picture, PlayerColours(look.translation));
    if (const auto lights = session.wads.FindLump("COLORMAP"); lights && !look.fullBright)
        MapColours(*made.picture, LightColours(lights->wad->ReadLumpString(lights->num, lightsSize), light, nearness));
    return made;
}

SpriteImage GameSprite(const Session& session, std::string_view sprite, int frame, int side, const GameLook& look,
                       int light) {
    FramePicture found = PictureOfFrame(session, sprite, frame, side, look, light, Nearness::Thing);
    SpriteImage made;
    made.turns = found.turns;
    made.lump = found.lump;
    made.missing = found.missing;
    if (!found.picture)
        return made;
    made.image = ImageOf(*found.picture, session.palette);
    made.place = {-found.picture->left, -found.picture->top};
    if (look.fuzzy) {
        MakeFuzzy(made.image);
    } else if (look.translucent) {
        MakeGlass(made.image);
        made.glass = std::move(found.picture);
    }
    return made;
}

std::string TranslucencyOf(const Session& session) {
    if (const auto lump = session.wads.FindLump("TRANMAP"))
        if (std::string map = lump->wad->ReadLumpString(lump->num, translucencySize + 1);
            map.size() == translucencySize)
            return map;
    static std::string madeFor, made;
    if (madeFor != session.palette || made.empty()) {
        made = MakeTranslucency(PaletteOf(session));
        madeFor = session.palette;
    }
    return made;
}

QImage GlassOver(const Session& session, const GamePicture& glass, QRgb behind) {
    const std::size_t row = std::size_t{NearestColour(PaletteOf(session), {static_cast<std::uint8_t>(qRed(behind)),
                                                                           static_cast<std::uint8_t>(qGreen(behind)),
                                                                           static_cast<std::uint8_t>(qBlue(behind))})} *
                            ColourMap().size();
    const std::string map = TranslucencyOf(session);
    ColourMap colours{};
    std::transform(map.begin() + static_cast<std::ptrdiff_t>(row),
                   map.begin() + static_cast<std::ptrdiff_t>(row + colours.size()), colours.begin(),
                   [](char colour) { return static_cast<std::uint8_t>(colour); });
    GamePicture seen = glass;
    MapColours(seen, colours);
    return ImageOf(seen, session.palette);
}

QRect PlaceOfSprite(const Session& session, std::string_view sprite, int frame) {
    const auto lump = ChooseSpriteFrame(session.wads, sprite, frame);
    return lump ? PlaceOfPicture(*lump) : QRect();
}

} // namespace plinket3
