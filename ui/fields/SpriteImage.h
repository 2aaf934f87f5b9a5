#pragma once

#include "patch/Program.h"

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>

#include <string_view>

namespace plinket3 {

/// What shows a frame of a sprite out of the session's WADs.
struct SpriteImage {
    QImage image;       // in the picture's own size; null when there is nothing to draw
    QPoint place;       // of its upper left corner about the spot at which a thing stands
    QString lump;       // that it was made of; empty when there is nothing to draw
    QString missing;    // why there is nothing to draw; empty when there is no reason to tell
    bool turns = false; // it may look otherwise from another side
};

/// On the palette's first colour, from the front. `frame` counts from 0 ("A"), without the lit bit.
SpriteImage PlainSprite(const Session& session, std::string_view sprite, int frame);
/// As in the game: transparent, seen from a side, 1 (the front) to `spriteSides`.
SpriteImage GameSprite(const Session& session, std::string_view sprite, int frame, int side);

/// Where the picture that `PlainSprite` makes lies about the spot; empty when it makes none.
QRect PlaceOfSprite(const Session& session, std::string_view sprite, int frame);

} // namespace plinket3
