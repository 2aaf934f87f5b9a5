#pragma once

#include "patch/Program.h"
#include "wad/GamePicture.h"

#include <QImage>
#include <QRect>

#include <optional>
#include <string_view>

namespace plinket3 {

/// Reads a picture lump, or a PNG in its place, whose colours become those of the session's palette that come next to
/// them. Nullopt when it is neither.
std::optional<GamePicture> ReadLumpPicture(const Session& session, const LumpResult& lump);

/// Where such a picture lies about the spot at which a thing stands; empty when it is none.
QRect PlaceOfPicture(const LumpResult& lump);

/// The lump's bytes, as many as a picture can have.
std::string PictureLump(const LumpResult& lump);

/// What covers nothing is transparent.
QImage ImageOf(const GamePicture& picture, std::string_view palette);

} // namespace plinket3
