#include "wad/GameColours.h"

#include "wad/PngLump.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <random>

namespace plinket3::test {
namespace {

using namespace std::string_literals;

TEST(GameColoursTest, PlayersWearTheirColoursInPlaceOfGreen) {
    const int firsts[]{112, 96, 64, 32, 112};
    for (int translation = 0; translation < 5; ++translation) {
        const ColourMap colours = PlayerColours(translation);
        for (int i = 0; i < 256; ++i)
            EXPECT_EQ(colours[static_cast<std::size_t>(i)], i >= 112 && i < 128 ? firsts[translation] + i - 112 : i)
                << translation;
    }
}

TEST(GameColoursTest, LightChoosesTheRowThatAGameDoes) {
    std::string lump;
    for (int row = 0; row < 34; ++row)
        lump += std::string(256, static_cast<char>(row));
    const struct {
        int light;
        Nearness nearness;
        int row;
    } rows[]{{255, Nearness::Thing, 0},  {INT_MAX, Nearness::Thing, 0}, {160, Nearness::Thing, 12},
             {159, Nearness::Thing, 16}, {144, Nearness::Thing, 16},    {144, Nearness::Weapon, 1},
             {0, Nearness::Weapon, 31},  {0, Nearness::Thing, 31},      {INT_MIN, Nearness::Thing, 31}};
    for (const auto& row : rows) {
        ColourMap expected{};
        expected.fill(static_cast<std::uint8_t>(row.row));
        EXPECT_EQ(LightColours(lump, row.light, row.nearness), expected) << row.light;
    }
    EXPECT_EQ(LightColours(lump.substr(0, 17 * 256 - 1), 144, Nearness::Thing), PlayerColours(0)) << "cut off";
    EXPECT_EQ(LightColours("", 0, Nearness::Weapon), PlayerColours(0));
}

TEST(GameColoursTest, GlassIsTheColourNextToTwoThirdsOfIt) {
    Palette grey{}, random{};
    std::mt19937 numbers(3); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same colours in each run
    for (std::size_t i = 0; i < grey.size(); ++i) {
        grey[i] = {static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i)};
        random[i] = {static_cast<std::uint8_t>(numbers()), static_cast<std::uint8_t>(numbers()),
                     static_cast<std::uint8_t>(numbers())};
    }
    const auto at = [](const std::string& map, std::size_t behind, std::size_t front) {
        return static_cast<std::uint8_t>(map[256 * behind + front]);
    };
    const std::string greys = MakeTranslucency(grey), colours = MakeTranslucency(random);
    ASSERT_EQ(greys.size(), translucencySize);
    EXPECT_EQ(at(greys, 0, 255), 168);
    EXPECT_EQ(at(greys, 255, 0), 87);
    EXPECT_EQ(at(greys, 0, 25), 16) << "no whole 66 %";
    for (std::size_t i = 0; i < random.size(); ++i)
        EXPECT_EQ(random[at(colours, i, i)], random[i]) << "over itself nothing changes";
    EXPECT_EQ(NearestColour(Palette{}, {1, 2, 3}), 255) << "of equals the last, as in Boom";
}

TEST(GameColoursTest, WhatHangsOverTheEdgesIsCutOff) {
    const GamePicture stamp{2, 2, 0, 0, {1, 2, 3, 4}, {true, true, false, true}};
    const GamePicture empty{3, 3, 0, 0, std::vector<std::uint8_t>(9), std::vector<bool>(9)};
    for (const int x : {-40000, -2, -1, 0, 2, 3, 40000})
        for (const int y : {-40000, -1, 0, 1, 2, 40000}) {
            GamePicture canvas = empty;
            DrawOver(canvas, stamp, x, y, 2);
            std::size_t place = 0;
            for (int row = 0; row < 3; ++row)
                for (int column = 0; column < 3; ++column, ++place) {
                    const bool drawn = row < 2 && column >= x && column < x + 2 && row >= y && row < y + 2 &&
                                       !(column == x && row == y + 1);
                    EXPECT_EQ(canvas.covered[place], drawn) << x << " " << y;
                    EXPECT_EQ(canvas.pixels[place], drawn ? 1 + column - x + 2 * (row - y) : 0);
                }
        }
}

TEST(PngLumpTest, TheHeadTellsSizeAndOffsets) {
    const std::string start = "\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR"s, rest = "\x08\6\0\0\0crc!"s;
    const std::string offsets = "\0\0\0\x08grAb\0\0\0\5\xff\xff\xff\xfe"s + "crc!";
    const auto head = [&](const std::string& size, const std::string& more) {
        return ReadPngHead(start + size + rest + more);
    };
    const std::string size = "\0\0\0\2\0\0\3\xe8"s;
    EXPECT_EQ(head(size, ""), (PngHead{2, 1000, 0, 0}));
    EXPECT_EQ(head(size, offsets), (PngHead{2, 1000, 5, -2}));
    EXPECT_EQ(head(size, "\0\0\0\0IDATcrc!"s + offsets), (PngHead{2, 1000, 0, 0})) << "too late";
    EXPECT_EQ(head(size, "\0\0\0\x08grAb\x7f\xff\xff\xff\x80\0\0\0"s), (PngHead{2, 1000, 32768, -32768}));
    for (const std::string& wrong : {"\0\0\0\0\0\0\0\1"s, "\0\0\4\1\0\0\0\1"s, "\0\0\0\1\xff\xff\xff\xff"s})
        EXPECT_FALSE(head(wrong, "")) << "0, 1025 and many a pixel";
    const std::string whole = start + size + rest + offsets;
    std::mt19937 random(4); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same bytes in each run
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(ReadPngHead(whole.substr(0, length)).has_value(), length >= start.size() + 13) << length;
        std::string damaged = whole;
        for (int i = 0; i < 3; ++i)
            damaged[8 + random() % (damaged.size() - 8)] = static_cast<char>(random());
        const PngHead any = ReadPngHead(damaged).value_or(PngHead());
        EXPECT_TRUE(any.width <= largestPngSide && any.height <= largestPngSide);
    }
}

} // namespace
} // namespace plinket3::test
