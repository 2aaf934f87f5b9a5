#include "wad/GamePicture.h"

#include "core/Files.h"
#include "tests/wad/WadBytes.h"
#include "wad/SpriteSides.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace plinket3::test {
namespace {

using namespace std::string_literals;

constexpr const char* freedoom = "/usr/share/games/doom/freedoom2.wad";

TEST(GamePictureTest, CoversWhatPostsDrawAndNothingElse) {
    // "ab" at row 0, of which a is palette index 0, and nothing in the second column.
    std::string lump = PictureBytes(2, 3, {16, 22}, "\0\2?\0b?\xFF"s);
    lump[4] = 5;
    lump[6] = '\xFE';
    lump[7] = '\xFF';
    const auto picture = ReadGamePicture(lump);
    ASSERT_TRUE(picture);
    EXPECT_EQ(*picture, (GamePicture{2, 3, 5, -2, {0, 0, 'b', 0, 0, 0}, {true, false, true, false, false, false}}));
    const GamePicture mirrored = Mirrored(*picture);
    EXPECT_EQ(std::pair(mirrored.left, mirrored.top), std::pair(-3, -2));
    EXPECT_EQ(mirrored.covered, (std::vector<bool>{false, true, false, true, false, false}));
    EXPECT_FALSE(ReadGamePicture("\2\0"));
}

TEST(GamePictureTest, AnyBytesGiveAPictureOfTheirSizeThatTwoMirrorsLeaveAlone) {
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same bytes in each run
    int pictures = 0;
    for (int round = 0; round < 2000; ++round) {
        const int width = static_cast<int>(random() % 6), height = static_cast<int>(random() % 300);
        std::vector<std::int32_t> offsets(static_cast<std::size_t>(width));
        std::ranges::generate(offsets, [&random] { return static_cast<std::int32_t>(random() % 70); });
        std::string posts;
        for (std::size_t i = random() % 60; i > 0; --i)
            posts += static_cast<char>(random());
        std::string lump = PictureBytes(width, height, offsets, posts);
        if (random() % 4 == 0)
            lump.resize(random() % (lump.size() + 1));
        const auto picture = ReadGamePicture(lump);
        ASSERT_EQ(picture.has_value(), ReadPictureSize(lump).width != 0);
        if (!picture)
            continue;
        ++pictures;
        ASSERT_EQ(picture->pixels.size(), static_cast<std::size_t>(width * height));
        for (std::size_t i = 0; i < picture->pixels.size(); ++i)
            ASSERT_TRUE(picture->covered[i] || picture->pixels[i] == 0);
        ASSERT_EQ(Mirrored(Mirrored(*picture)), *picture);
    }
    EXPECT_GT(pictures, 1000);
}

TEST(GamePictureTest, AMonsterOfTheGameStandsOnItsSpotFromEverySide) {
    if (!FileExists(freedoom))
        GTEST_SKIP() << "no IWAD is installed";
    auto wad = std::make_shared<clsWad>();
    wad->OpenWad(freedoom);
    WadList wads;
    ASSERT_TRUE(wads.RegisterWad(wad));
    for (int side = 1; side <= spriteSides; ++side) {
        const auto found = ChooseSpriteSide(wads, "TROO", 0, side);
        ASSERT_TRUE(found) << side;
        const auto picture = ReadGamePicture(wad->ReadLumpString(found->lump.num));
        ASSERT_TRUE(picture) << side;
        EXPECT_TRUE(picture->left > 0 && picture->left < picture->width) << side;
        EXPECT_NEAR(picture->top, picture->height, 10) << side;
        EXPECT_TRUE(std::ranges::count(picture->covered, false) > 0) << side;
    }
}

} // namespace
} // namespace plinket3::test
