#include "core/Numbers.h"
#include "patch/Program.h"
#include "patch/ThingLook.h"
#include "patch/modPatchFiles.h"
#include "tests/support/EveryField.h"
#include "tests/support/TestSupport.h"
#include "ui/fields/WeaponScreen.h"

#include <exception>
#include <iostream>
#include <stdexcept>

using namespace plinket3;

namespace {

constexpr int back = 5; // the side from which one sees what one has thrown

QImage ThingImage(const Session& session, std::int32_t thing, std::int32_t state, int light) {
    const PatchSet& set = session.patch.current;
    const StateRecord& record = set.states[state];
    return GameSprite(session, set.SpriteName(record.sprite), record.subnumber & ~litBit, back,
                      LookOf(session.engine, set.things.Find(thing), record), light)
        .image;
}

} // namespace

/// game_picture DATA IWAD PATCH thing|weapon NUMBER STATE LIGHT: writes width and height as a line of text, and the
/// pixels that the state of a thing, seen from behind, or of a weapon is shown by in a sector's light, each as red,
/// green, blue and whether it is covered.
int main(int argc, char** argv) try {
    if (argc != 8) {
        std::cerr << "usage: game_picture DATA IWAD PATCH thing|weapon NUMBER STATE LIGHT\n";
        return 2;
    }
    Session session;
    session.patch = test::BuiltEngine(argv[1], "doom19", session.engine);
    const std::string bytes = test::ReadFile(argv[3]);
    const Status status =
        modPatchFiles::ParsePatch(bytes, session.engine, session.patch.defaults, session.patch.current).status;
    if (!status)
        throw std::runtime_error(status.Reason());
    auto wad = std::make_shared<clsWad>();
    wad->OpenWad(argv[2]);
    const auto palette = session.wads.RegisterWad(wad) ? session.wads.FindLump("PLAYPAL") : std::nullopt;
    if (!palette) {
        std::cerr << argv[2] << " has no palette\n";
        return 2;
    }
    session.palette = wad->ReadLumpString(palette->num);
    const std::int32_t number = LeadingInt32(argv[5]), state = LeadingInt32(argv[6]), light = LeadingInt32(argv[7]);
    const QImage image = std::string_view(argv[4]) == "thing" ? ThingImage(session, number, state, light)
                                                              : WeaponScreen(session, number, state, light).image;
    std::cout << image.width() << ' ' << image.height() << '\n';
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            for (const int part : {qRed(pixel), qGreen(pixel), qBlue(pixel), qAlpha(pixel)})
                std::cout << static_cast<char>(part);
        }
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
}
