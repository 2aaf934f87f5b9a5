#pragma once

#include "patch/Program.h"
#include "wad/GameColours.h"

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>

#include <optional>
#include <string>
#include <string_view>

namespace plinket3 {

inline constexpr int fullLight = 255; // of a sector

/// What shows a frame of a sprite out of the session's WADs.
struct SpriteImage {
    QImage image;                     // in the picture's own size; null when there is nothing to draw
    QPoint place;                     // of its upper left corner about the spot at which a thing stands
    QString lump;                     // that it was made of; empty when there is nothing to draw
    QString missing;                  // why there is nothing to draw; empty when there is no reason to tell
    bool turns = false;               // it may look otherwise from another side
    bool screen = false;              // it is a weapon on the game's screen, and stands nowhere
    std::optional<GamePicture> glass; // the same, when what is behind shines through
};

/// On the palette's first colour, from the front. `frame` counts from 0 ("A"), without the lit bit.
SpriteImage PlainSprite(const Session& session, std::string_view sprite, int frame);
/// As in the game: transparent, seen from a side, 1 (the front) to `spriteSides`, in a sector's light of 0 to 255. What
/// is translucent, or fuzzy, is drawn as over nothing.
SpriteImage GameSprite(const Session& session, std::string_view sprite, int frame, int side, const GameLook& look = {},
                       int light = fullLight);
/// The lump TRANMAP of the WADs, else one that is made of the palette and stays as long as that does: it takes a
/// moment.
std::string TranslucencyOf(const Session& session);
/// What is translucent as a game draws it over one colour of the palette.
QImage GlassOver(const Session& session, const GamePicture& glass, QRgb behind);

/// The picture of a frame, in the colours that it is drawn in; what is missing is told as in `SpriteImage`.
struct FramePicture {
    std::optional<GamePicture> picture;
    QString lump, missing;
    bool turns = false;
};
FramePicture PictureOfFrame(const Session& session, std::string_view sprite, int frame, int side, const GameLook& look,
                            int light, Nearness nearness);

/// Where the picture of a frame lies about the spot, seen from the front; empty when there is none.
QRect PlaceOfSprite(const Session& session, std::string_view sprite, int frame);

} // namespace plinket3
