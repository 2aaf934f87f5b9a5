#include "ui/fields/WeaponScreen.h"

#include "patch/ThingLook.h"
#include "patch/WeaponView.h"
#include "patch/modTableDef.h"
#include "ui/fields/LumpPicture.h"

namespace plinket3 {

namespace {

constexpr int screenWidth = 320, screenHeight = 200, statusBarHeight = 32;
constexpr int front = 1;
constexpr int lightLevel = 16; // of a sector's light

/// Above the status bar a game sees half of that bar's height less of a weapon.
constexpr int raised = statusBarHeight / 2;

} // namespace

SpriteImage WeaponScreen(const Session& session, std::int32_t weapon, std::int32_t state, int light) {
    constexpr std::size_t pixels = std::size_t{screenWidth} * screenHeight;
    GamePicture screen{screenWidth, screenHeight, 0, 0, std::vector<std::uint8_t>(pixels), std::vector<bool>(pixels)};
    const PatchSet& set = session.patch.current;
    const WeaponView view = ViewOfWeapon(set, session.engine, weapon, state);
    light += view.light * lightLevel;
    SpriteImage made;
    for (const std::int32_t shown : {state, view.flash}) {
        const StateRecord* record = shown == 0 ? nullptr : set.states.Find(shown);
        if (record == nullptr)
            continue;
        const FramePicture found =
            PictureOfFrame(session, set.SpriteName(record->sprite), record->subnumber & ~litBit, front,
                           LookOf(session.engine, nullptr, *record), light, Nearness::Weapon);
        if (found.picture)
            DrawOver(screen, *found.picture, view.x - found.picture->left, view.y - found.picture->top - raised,
                     screenHeight - statusBarHeight);
        if (shown == state) {
            made.lump = found.lump;
            made.missing = found.missing;
        }
    }
    if (!made.missing.isEmpty())
        return made;
    if (const auto bar = session.wads.FindLump("STBAR"))
        if (const auto picture = ReadLumpPicture(session, *bar))
            DrawOver(screen, *picture, -picture->left, screenHeight - statusBarHeight - picture->top, screenHeight);
    made.image = ImageOf(screen, session.palette);
    made.screen = true;
    return made;
}

} // namespace plinket3
