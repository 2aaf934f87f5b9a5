#include "wad/SpriteSides.h"

#include <utility>

namespace plinket3 {

namespace {

constexpr int front = 1;

/// The two characters of a lump's name that say frame and rotation; empty when the frame has no letter.
std::string FrameKey(int frame, int rotation) {
    constexpr int firstLetter = 'A';
    constexpr int lastLetter = 255;
    if (frame < -firstLetter || frame > lastLetter - firstLetter)
        return {};
    return {static_cast<char>(firstLetter + frame), static_cast<char>('0' + rotation)};
}

} // namespace

std::string SpriteLumpName(std::string_view sprite, int frame, int side) {
    const std::string key = FrameKey(frame, side);
    return key.empty() ? key : std::string(sprite) + key;
}

std::optional<SpriteSide> ChooseSpriteSide(const WadList& wads, std::string_view sprite, int frame, int side) {
    const auto allSides = wads.FindSprite(sprite, FrameKey(frame, 0));
    const auto one = wads.FindSprite(sprite, FrameKey(frame, side));
    if (allSides && one && allSides->wadIndex == one->wadIndex)
        return std::nullopt; // kept, see the header
    if (allSides)
        return SpriteSide{*allSides, false, true};
    if (one)
        return SpriteSide{*one, !one->name.starts_with(SpriteLumpName(sprite, frame, side)), false};
    return std::nullopt;
}

bool HasSpriteFrame(const WadList& wads, std::string_view sprite, int frame) {
    return wads.FindSprite(sprite, FrameKey(frame, 0)) || wads.FindSprite(sprite, FrameKey(frame, front));
}

std::optional<LumpResult> ChooseSpriteFrame(const WadList& wads, std::string_view sprite, int frame) {
    auto side = ChooseSpriteSide(wads, sprite, frame, front);
    return side ? std::optional(std::move(side->lump)) : std::nullopt;
}

} // namespace plinket3
