#include "core/Numbers.h"
#include "patch/Program.h"
#include "patch/ThingLook.h"
#include "patch/modPatchFiles.h"
#include "tests/support/EveryField.h"
#include "tests/support/TestSupport.h"
#include "ui/fields/SpriteView.h"
#include "ui/fields/WeaponScreen.h"
#include "ui/graph/GraphScene.h"

#include <QApplication>
#include <QPainter>

#include <exception>
#include <iostream>
#include <stdexcept>

using namespace plinket3;

namespace {

constexpr const char* usage =
    "usage: game_picture DATA ENGINE IWAD PATCH translucency\n"
    "       game_picture DATA ENGINE IWAD PATCH weapon|thing|glass|graph NUMBER STATE LIGHT SIDE\n";

struct Wanted {
    std::int32_t number, state;
    int light, side;
};

SpriteImage ThingImage(const Session& session, const Wanted& wanted) {
    const PatchSet& set = session.patch.current;
    const StateRecord& record = set.states[wanted.state];
    return GameSprite(session, set.SpriteName(record.sprite), record.subnumber & ~litBit, wanted.side,
                      LookOf(session.engine, set.things.Find(wanted.number), record), wanted.light);
}

/// The box of a state in the graph of a thing, without what stands in it beside the picture.
QImage GraphImage(const Session& session, const Wanted& wanted) {
    QPalette oneColour;
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::Base, QPalette::Window, QPalette::Highlight})
        oneColour.setColor(role, Qt::magenta);
    QFont font;
    font.setPixelSize(24); // wide and high boxes
    Settings settings;
    SpriteView::GamePictures(settings, true);
    GraphScene scene(session, settings, GraphStyle(oneColour, font), nullptr);
    scene.Show(GraphOf(session.patch, session.engine, {}, RecordKind::Thing, wanted.number, 1), false);
    const auto node = scene.Graph().Find({TargetKind::State, wanted.state});
    if (!node)
        throw std::runtime_error("no box");
    const GraphBox& box = *scene.Box(*node);
    const QRectF place = box.Box().translated(box.pos()).toAlignedRect();
    QImage image(place.size().toSize(), QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    scene.render(&painter, image.rect(), place);
    return image;
}

void Write(const QImage& image) {
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            for (const int part : {qRed(pixel), qGreen(pixel), qBlue(pixel), qAlpha(pixel)})
                std::cout << static_cast<char>(part);
        }
}

void WriteSized(const QImage& image) {
    std::cout << image.width() << ' ' << image.height() << '\n';
    Write(image);
}

void WriteGlass(const Session& session, const GamePicture& glass) {
    std::cout << glass.width << ' ' << glass.height << '\n';
    clsBitmap colours;
    colours.setPalette(session.palette);
    for (const Colour& behind : colours.Palette())
        Write(GlassOver(session, glass, qRgb(behind.red, behind.green, behind.blue)));
}

} // namespace

/// Writes pixels, each as red, green, blue and whether it is covered, after width and height as a line of text: those
/// that the state of a thing, seen from a side, or of a weapon is shown by in a sector's light; as glass 256 pictures,
/// over each colour of the palette; or the box that the graph shows. Of translucency it writes the table.
int main(int argc, char** argv) try {
    if (argc != 6 && argc != 10) {
        std::cerr << usage;
        return 2;
    }
    const QApplication application(argc, argv);
    Session session;
    session.patch = test::BuiltEngine(argv[1], argv[2], session.engine);
    const std::string bytes = test::ReadFile(argv[4]);
    const Status status =
        modPatchFiles::ParsePatch(bytes, session.engine, session.patch.defaults, session.patch.current).status;
    if (!status)
        throw std::runtime_error(status.Reason());
    auto wad = std::make_shared<clsWad>();
    wad->OpenWad(argv[3]);
    const auto palette = session.wads.RegisterWad(wad) ? session.wads.FindLump("PLAYPAL") : std::nullopt;
    if (!palette)
        throw std::runtime_error("no palette");
    session.palette = wad->ReadLumpString(palette->num);
    const std::string_view what = argv[5];
    if (what == "translucency") {
        std::cout << TranslucencyOf(session);
        return 0;
    }
    const Wanted wanted{LeadingInt32(argv[6]), LeadingInt32(argv[7]), LeadingInt32(argv[8]), LeadingInt32(argv[9])};
    if (what == "weapon")
        WriteSized(WeaponScreen(session, wanted.number, wanted.state, wanted.light).image);
    else if (what == "graph")
        WriteSized(GraphImage(session, wanted));
    else if (what == "glass")
        WriteGlass(session, ThingImage(session, wanted).glass.value());
    else
        WriteSized(ThingImage(session, wanted).image);
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
}
