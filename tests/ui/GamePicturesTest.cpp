#include "patch/ThingLook.h"
#include "tests/ui/UiTest.h"
#include "tests/wad/WadBytes.h"
#include "ui/editors/frmEditStates.h"
#include "ui/editors/frmEditThings.h"
#include "ui/editors/frmEditWeapons.h"
#include "ui/fields/SpriteView.h"
#include "ui/fields/WeaponScreen.h"
#include "ui/states/StatePlayer.h"
#include "wad/SpriteSides.h"

#include <QAbstractButton>
#include <QBuffer>
#include <QSlider>

#include <array>

namespace plinket3::test {
namespace {

using namespace std::string_literals;

constexpr int imp = 11, impStands = 442, pistol = 1, pistolReady = 10, pistolShoots = 14;
constexpr std::uint8_t green = 120, other = 10;
constexpr std::int32_t shadow = 1 << 18, grey = 1 << 26, red = 3 << 26;
constexpr std::int32_t translucent = std::numeric_limits<std::int32_t>::min();

/// Index i is the only colour with i as its red.
std::string TestPalette() {
    std::string palette;
    for (int i = 0; i < 256; ++i)
        palette += {static_cast<char>(i), static_cast<char>(255 - i), static_cast<char>(i / 2)};
    return palette;
}

/// In row r all colours become r.
std::string TestLights() {
    std::string lights;
    for (int row = 0; row < 34; ++row)
        lights += row == 0 ? [] {
            std::string same;
            for (int i = 0; i < 256; ++i)
                same += static_cast<char>(i);
            return same;
        }()
                           : std::string(256, static_cast<char>(row));
    return lights;
}

/// A column of pixels below one another.
std::string Column(const std::vector<std::uint8_t>& pixels, std::int16_t left = 0, std::int16_t top = 0) {
    const auto count = static_cast<char>(pixels.size());
    std::string lump = PictureBytes(1, static_cast<int>(pixels.size()), {12},
                                    "\0"s + count + '?' + std::string(pixels.begin(), pixels.end()) + "?\xff");
    for (const auto& [at, offset] : {std::pair(4U, left), std::pair(6U, top)}) {
        lump[at] = static_cast<char>(offset & 0xff);
        lump[at + 1] = static_cast<char>(offset >> 8);
    }
    return lump;
}

/// A PNG with its offsets, as ports keep pictures.
std::string Png(const QImage& image, std::uint8_t left, std::uint8_t top) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    std::string chunk = "grAb\0\0\0"s + static_cast<char>(left) + "\0\0\0"s + static_cast<char>(top);
    std::uint32_t check = 0xffffffffU;
    for (const char byte : chunk) {
        check ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit)
            check = (check >> 1) ^ ((check & 1) != 0 ? 0xedb88320U : 0);
    }
    chunk = "\0\0\0\x08"s + chunk;
    for (int shift = 24; shift >= 0; shift -= 8)
        chunk += static_cast<char>(~check >> shift & 0xff);
    constexpr std::size_t behindHead = 8 + 25;
    return bytes.toStdString().insert(behindHead, chunk);
}

class GamePicturesTest : public EditorTest {
protected:
    void UseWad(std::vector<Lump> sprites, std::vector<Lump> others = {}) {
        std::vector<Lump> lumps{{"S_START", ""}};
        lumps.insert(lumps.end(), sprites.begin(), sprites.end());
        lumps.push_back({"S_END", ""});
        lumps.insert(lumps.end(), others.begin(), others.end());
        const std::filesystem::path file = folder / (std::to_string(++files_) + ".wad");
        WriteFile(file, WadBytes(lumps));
        auto wad = std::make_shared<clsWad>();
        wad->OpenWad(file);
        program.wads.ClearWads();
        ASSERT_TRUE(program.wads.RegisterWad(wad));
        program.palette = TestPalette();
    }
    SpriteImage Imp(const GameLook& look = {}, int light = fullLight) const {
        return GameSprite(program, "TROO", 0, 1, look, light);
    }

    TemporaryFolder folder;

private:
    int files_ = 0;
};

TEST_F(GamePicturesTest, AThingIsDrawnAsItsBitsAndItsLightSay) {
    const struct {
        const char* engine;
        std::int32_t bits, subnumber;
        int light;
        std::array<QRgb, 2> pixels; // red alone stands for the colour of that index
    } rows[]{{"doom19", 0, 0, 255, {green, other}},
             {"doom19", grey, 0, 255, {green - 16, other}},
             {"doom19", red, 0, 255, {green - 80, other}},
             {"doom19", 0, 0, 144, {16, 16}},
             {"doom19", grey, 0x8000, 144, {green - 16, other}},
             {"doom19", translucent, 0, 255, {green, other}},
             {"mbf19", translucent, 0, 144, {qRgba(16, 0, 0, 168), qRgba(16, 0, 0, 168)}},
             {"mbf19", translucent | grey, 0, 255, {green - 16, other}},
             {"mbf19", translucent | shadow | red, 0, 0, {qRgba(0, 0, 0, 150), qRgba(0, 0, 0, 40)}}};
    for (const auto& row : rows) {
        LoadEngine(row.engine);
        UseWad({{"TROOA1", Column({green, other})}}, {{"COLORMAP", TestLights()}});
        edits.Store({RecordKind::Thing, imp, RowOf(&ThingRecord::bits)}, row.bits);
        edits.Store({RecordKind::State, impStands, RowOf(&StateRecord::subnumber)}, row.subnumber);
        auto& things = Open<frmEditThings>();
        auto& states = Open<frmEditStates>();
        things.ShowCell({RecordKind::Thing, imp, existsField});
        states.selectSingleState(impStands, -1, -1);
        for (QWidget* window : std::initializer_list<QWidget*>{&things, &states}) {
            window->findChild<QSlider*>("sldLight")->setValue(row.light);
            const QImage& picture = window->findChild<SpriteView*>()->Picture();
            ASSERT_EQ(picture.size(), QSize(1, 2));
            for (int y = 0; y < 2; ++y) {
                const QRgb expected = row.pixels[static_cast<std::size_t>(y)];
                const int index = qAlpha(expected) == 0 ? static_cast<int>(expected) : qRed(expected);
                EXPECT_EQ(qRed(picture.pixel(0, y)), index) << row.engine << " " << row.bits << " " << row.light;
                EXPECT_EQ(qAlpha(picture.pixel(0, y)), qAlpha(expected) == 0 ? 255 : qAlpha(expected));
            }
            window->grab();
        }
    }
}

TEST_F(GamePicturesTest, GlassIsDrawnByTheMapOfTheWadsOrOneThatIsMade) {
    LoadEngine("mbf19");
    std::string map;
    for (std::size_t i = 0; i < translucencySize; ++i)
        map += static_cast<char>(i % 256 + i / 256 * 3);
    const GameLook look{.translucent = true};
    const auto over = [&](int behind) {
        const auto glass = Imp(look).glass;
        EXPECT_TRUE(glass);
        return qRed(
            GlassOver(program, glass.value_or(GamePicture()), qRgb(behind, 255 - behind, behind / 2)).pixel(0, 0));
    };
    UseWad({{"TROOA1", Column({green})}}, {{"TRANMAP", map}});
    EXPECT_EQ(over(20), green + 60);
    for (const std::string& wrong : {map.substr(1), map + "x", ""s}) {
        UseWad({{"TROOA1", Column({green})}}, {{"TRANMAP", wrong}});
        EXPECT_NEAR(over(20), green * 0.66 + 20 * 0.34, 1);
    }
}

TEST_F(GamePicturesTest, APngIsAPictureInThePalettesColours) {
    LoadEngine("doom19");
    QImage image(3, 2, QImage::Format_ARGB32);
    image.fill(qRgba(1, 2, 3, 90));
    image.setPixel(2, 1, qRgb(77, 255 - 76, 38)); // nearly colour 77
    const std::string png = Png(image, 2, 9);
    UseWad({{"TROOA2A8", png}});
    for (const int side : {2, 8}) {
        const SpriteImage made = GameSprite(program, "TROO", 0, side);
        ASSERT_EQ(made.image.size(), QSize(3, 2));
        EXPECT_EQ(made.place, QPoint(side == 2 ? -2 : -1, -9));
        EXPECT_EQ(made.image.pixel(side == 2 ? 2 : 0, 1), qRgb(77, 255 - 77, 38));
        EXPECT_EQ(qAlpha(made.image.pixel(1, 1)), 0);
    }
    UseWad({{"TROOA1", png}});
    EXPECT_EQ(PlaceOfSprite(program, "TROO", 0), QRect(-2, -9, 3, 2));
    EXPECT_TRUE(PlainSprite(program, "TROO", 0).image.isNull()) << "on black only the game's own pictures are shown";
    std::string huge = png;
    huge[16] = huge[20] = 1; // 16 million pixels each way
    std::vector<std::string> broken{huge, png.substr(0, 40), png.substr(0, png.size() / 2 + 10)};
    for (std::size_t at = 8; at < png.size() - 16; at += 3) { // the end may be lost without harm
        broken.push_back(png);
        broken.back()[at] = static_cast<char>(broken.back()[at] ^ 0x55);
    }
    int refused = 0;
    for (const std::string& bytes : broken) {
        UseWad({{"TROOA1", bytes}});
        const SpriteImage made = Imp();
        ASSERT_EQ(made.image.isNull(), !made.missing.isEmpty());
        refused += made.missing == "TROOA1 is no picture" ? 1 : 0;
    }
    EXPECT_GE(refused, 3);
    UseWad({{"TROOA1", huge}});
    EXPECT_EQ(Imp().missing, "TROOA1 is no picture");
}

TEST_F(GamePicturesTest, AWeaponIsShownOnTheScreen) {
    LoadEngine("doom19");
    const std::vector<Lump> hand{{"PISGA0", Column({green, other}, -100, -50)},
                                 {"PISGB0", Column({30}, -100, -140)},
                                 {"PISGC0", Column({40}, -100, -50)},
                                 {"PISFA0", Column({50}, -90, -20)}};
    std::string bar = Column(std::vector<std::uint8_t>(32, 60));
    UseWad(hand, {{"COLORMAP", TestLights()}, {"STBAR", bar}});
    const auto index = [](const SpriteImage& screen, int x, int y) {
        const QRgb pixel = screen.image.pixel(x, y);
        return qAlpha(pixel) == 0 ? -1 : qRed(pixel);
    };
    SpriteImage screen = WeaponScreen(program, pistol, pistolReady, fullLight);
    ASSERT_EQ(screen.image.size(), QSize(320, 200));
    EXPECT_EQ(index(screen, 101, 66), green);
    EXPECT_EQ(index(screen, 101, 67), other);
    EXPECT_EQ(index(screen, 101, 68), -1);
    EXPECT_EQ(index(screen, 0, 167), -1);
    EXPECT_EQ(index(screen, 0, 168), 60);
    EXPECT_EQ(index(WeaponScreen(program, pistol, pistolReady, 144), 101, 66), 1);

    edits.Store({RecordKind::State, pistolShoots, RowOf(&StateRecord::unknown1)}, 11);
    edits.Store({RecordKind::State, pistolShoots, RowOf(&StateRecord::unknown2)}, 42);
    screen = WeaponScreen(program, pistol, pistolShoots + 1, 0);
    EXPECT_EQ(screen.lump, "PISGC0");
    EXPECT_EQ(index(screen, 111, 76), 31) << "in the dark, at its own place";
    EXPECT_EQ(index(screen, 101, 46), 50) << "but the flash is lit";
    edits.Store({RecordKind::State, pistolShoots, RowOf(&StateRecord::unknown2)}, 45);
    screen = WeaponScreen(program, pistol, pistolShoots, fullLight);
    EXPECT_EQ(index(screen, 111, 168), -1) << "the status bar is in front";

    auto& weapons = Open<frmEditWeapons>();
    auto& states = Open<frmEditStates>();
    weapons.ShowCell({RecordKind::Weapon, pistol, existsField});
    states.selectSingleState(pistolReady, -1, pistol);
    const SpriteImage ready = WeaponScreen(program, pistol, pistolReady, fullLight);
    for (QWidget* window : std::initializer_list<QWidget*>{&weapons, &states}) {
        EXPECT_EQ(window->findChild<SpriteView*>()->Picture(), ready.image);
        window->grab();
    }
    SpriteView::GamePictures(program.settings, false);
    states.findChild<SpriteView*>()->Redraw();
    EXPECT_EQ(states.findChild<SpriteView*>()->Picture().size(), QSize(1, 2));

    for (const std::string& broken : {"\0\1"s, std::string(5000, '\xff'), bar.substr(0, 20)}) {
        UseWad(hand, {{"COLORMAP", "x"}, {"STBAR", broken}});
        EXPECT_EQ(index(WeaponScreen(program, pistol, pistolReady, 0), 101, 66), green);
    }
    UseWad({{"PISGA0", "x"}});
    screen = WeaponScreen(program, pistol, pistolReady, fullLight);
    EXPECT_TRUE(screen.image.isNull());
    EXPECT_EQ(screen.missing, "PISGA0 is no picture");
}

/// The lowest row in which a view draws anything.
int LowestRow(QWidget& view) {
    const QImage image = view.grab().toImage();
    for (int y = image.height() - 1; y >= 0; --y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != image.pixel(0, 0))
                return y;
    return -1;
}

TEST_F(GamePicturesTest, PlayingKeepsOneScaleAndOneFloor) {
    LoadEngine("doom19");
    auto& states = Open<frmEditStates>();
    states.resize(900, 700);
    if (!HasWad())
        GTEST_SKIP() << "no IWAD is installed";
    SpriteView::GamePictures(program.settings, false); // nothing but the picture is drawn
    const std::int32_t falling = Current().things[imp].deathState;
    states.selectSingleState(falling, imp, -1);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&states));
    auto& view = *states.findChild<SpriteView*>(QStringLiteral("picSprite"));
    auto& player = *states.findChild<StatePlayer*>();
    std::vector<int> floors;
    QObject::connect(&player, &StatePlayer::StateShown, &states, [&] { floors.push_back(LowestRow(view)); });
    Click("cmdPlay");
    for (int tic = 0; player.IsPlaying() && tic < 100; ++tic)
        player.Advance();
    ASSERT_GE(floors.size(), 4U);
    for (const int floor : floors)
        EXPECT_NEAR(floor, floors.front(), 3) << "a pixel or two of a picture may hang below";
    EXPECT_LT(view.Picture().height() * 2, states.findChild<SpriteView*>()->height()) << "the last one lies flat";
}

TEST_F(GamePicturesTest, StatesAreShownFromAllSides) {
    LoadEngine("doom19");
    auto& states = Open<frmEditStates>();
    states.resize(900, 700);
    if (!HasWad())
        GTEST_SKIP() << "no IWAD is installed";
    states.selectSingleState(442, imp, -1);
    auto& view = *states.findChild<SpriteView*>(QStringLiteral("picSprite"));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&states));
    EXPECT_EQ(Text("lblPreview"), "442: TROOA1");
    EXPECT_EQ(qAlpha(view.Picture().pixel(0, 0)), 0) << "nothing is drawn in the corner";
    const QImage front = view.Picture();
    view.setFocus();
    std::vector<QImage> sides;
    for (int turn = 0; turn < spriteSides; ++turn) {
        QTest::keyClick(&view, Qt::Key_Less, Qt::ShiftModifier);
        sides.push_back(view.Picture());
    }
    EXPECT_EQ(sides.back(), front) << "all around";
    EXPECT_NE(sides[0], front);
    Click("cmdTurnRight");
    EXPECT_EQ(view.Side(), spriteSides);
    EXPECT_EQ(view.Picture(), sides[spriteSides - 2]);
    EXPECT_TRUE(Text("lblPreview").endsWith("8")) << "one lump for two sides";
    EXPECT_EQ(view.Picture(), sides[0].mirrored(true, false));
    QTest::keyClick(&view, Qt::Key_Greater, Qt::ShiftModifier);
    EXPECT_EQ(view.Side(), spriteSides - 1);

    edits.Store({RecordKind::State, 442, RowOf(&StateRecord::subnumber)}, 25);
    EXPECT_TRUE(view.Picture().isNull());
    EXPECT_EQ(view.Missing(), "TROOZ7 is in none of the WADs");
    SpriteView::GamePictures(program.settings, false);
    edits.Undo();
    EXPECT_EQ(Text("lblPreview"), "442: TROOA1");
    EXPECT_EQ(view.Picture().pixel(0, 0), qRgb(0, 0, 0)) << "on black";
    EXPECT_FALSE(states.findChild<QAbstractButton*>("cmdTurnLeft")->isVisible());
}

} // namespace
} // namespace plinket3::test
