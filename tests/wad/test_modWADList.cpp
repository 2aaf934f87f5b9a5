#include "wad/SpriteSides.h"

#include "tests/support/TestSupport.h"
#include "tests/wad/WadBytes.h"

#include <gtest/gtest.h>

namespace plinket3::test {
namespace {

using Names = std::vector<std::string>;

class WadListTest : public testing::Test {
protected:
    /// Registers a WAD whose sprites, lumps 1 and up, have these names.
    bool Register(const std::string& file, const Names& sprites) {
        std::vector<Lump> lumps{{"S_START", ""}};
        for (const std::string& name : sprites)
            lumps.push_back({name, ""});
        WriteFile(folder_ / file, WadBytes(lumps));
        auto wad = std::make_shared<clsWad>();
        wad->OpenWad(folder_ / file);
        return wads_.RegisterWad(wad);
    }

    TemporaryFolder folder_;
    WadList wads_;
};

TEST_F(WadListTest, SearchesTheLastWadFirst) {
    EXPECT_FALSE(wads_.FindLump("ONE"));
    ASSERT_TRUE(Register("iwad.wad", {"ONE", "TWO"}));
    EXPECT_FALSE(Register("IWAD.wad", {})) << "the same path in another case";
    ASSERT_TRUE(Register("data.wad", {"THREE", "FOUR", "TWO"}));
    const auto one = wads_.FindLump("one"), two = wads_.FindLump("two");
    ASSERT_TRUE(one && two);
    EXPECT_EQ(std::tuple(one->wadIndex, one->num, one->name), std::tuple(0, 1, "one"));
    EXPECT_EQ(std::tuple(two->wadIndex, two->num, two->name), std::tuple(1, 3, "two"));
    EXPECT_EQ(two->wad->lumpName(two->num), "TWO");
    EXPECT_FALSE(wads_.FindLump("FIVE"));
    wads_.ClearWads();
    EXPECT_FALSE(wads_.FindLump("ONE"));
    EXPECT_EQ(two->wad->lumpName(two->num), "TWO"); // a result keeps its WAD
}

TEST_F(WadListTest, CountsTheLumpsOfEachSpriteOnce) {
    ASSERT_TRUE(Register("iwad.wad", {"TROOA1", "TROOB0", "SARGA0", "ODD", ""}));
    ASSERT_TRUE(Register("data.wad", {"TROOA1", "TROOC0", "trooA1"}));
    const std::map<std::string, int, std::less<>> expected{{"", 1}, {"ODD", 1}, {"SARG", 1}, {"TROO", 3}, {"troo", 1}};
    EXPECT_EQ(wads_.SpriteLumps(), expected);
}

TEST_F(WadListTest, ChoosesTheLumpOfASpriteFrame) {
    struct {
        const char* behaviour;
        Names iwad, data;
        std::string lump; // empty: none
        int frame, wadIndex;
    } const rows[]{
        {"only rotation 0", {"TROOA0"}, {}, "TROOA0", 0, 0},
        {"only rotation 1", {"TROOB1B5"}, {}, "TROOB1B5", 1, 0},
        {"neither", {"TROOA2A8"}, {}, "", 0, 0},
        {"both in the IWAD", {"TROOA0", "TROOA1"}, {}, "", 0, 0},
        {"both in the data WAD", {}, {"TROOA1", "TROOA0"}, "", 0, 0},
        {"rotation 1 in the data WAD", {"TROOA0"}, {"TROOA1"}, "TROOA0", 0, 0},
        {"rotation 0 in the data WAD", {"TROOA1"}, {"TROOA0"}, "TROOA0", 0, 1},
        {"both in the IWAD, one replaced", {"TROOA0", "TROOA1"}, {"TROOA1"}, "TROOA0", 0, 0},
        {"the data WAD's lump", {"TROOA1"}, {"TROOA1D1"}, "TROOA1D1", 0, 1},
        {"frame behind Z", {"TROO\\0"}, {}, "TROO\\0", 27, 0},
        {"last character", {"TROO\xFF\x31"}, {}, "TROO\xFF\x31", 190, 0},
        {"no wrapping at 256", {"TROOA1"}, {}, "", 256, 0},
        {"no wrapping below 0", {"TROOA1"}, {}, "", -256, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.behaviour);
        wads_.ClearWads();
        ASSERT_TRUE(Register("iwad.wad", row.iwad) && Register("data.wad", row.data));
        const auto result = ChooseSpriteFrame(wads_, "TROO", row.frame);
        EXPECT_EQ(result ? result->name : "", row.lump);
        EXPECT_EQ(result ? result->wadIndex : 0, row.wadIndex);
    }
}

TEST_F(WadListTest, ChoosesTheLumpThatShowsASide) {
    ASSERT_TRUE(Register("iwad.wad", {"TROOA1", "TROOA2A8", "TROOA6A4", "TROOB0", "TROOC0", "TROOD1C1", "TROOE0"}));
    ASSERT_TRUE(Register("data.wad", {"TROOE3", "TROOA7"}));
    struct {
        int frame, side;
        std::string lump; // empty: none
        bool mirrored, allSides;
    } const rows[]{
        {0, 1, "TROOA1", false, false},   {0, 2, "TROOA2A8", false, false}, {0, 8, "TROOA2A8", true, false},
        {0, 6, "TROOA6A4", false, false}, {0, 4, "TROOA6A4", true, false},  {0, 7, "TROOA7", false, false},
        {0, 3, "", false, false},         {1, 5, "TROOB0", false, true},    {2, 1, "", false, false},
        {2, 2, "TROOC0", false, true},    {3, 1, "TROOD1C1", false, false}, {4, 3, "TROOE0", false, true},
        {999, 1, "", false, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(SpriteLumpName("TROO", row.frame, row.side));
        const auto found = ChooseSpriteSide(wads_, "TROO", row.frame, row.side);
        ASSERT_EQ(found ? found->lump.name : "", row.lump);
        EXPECT_EQ(found && found->mirrored, row.mirrored);
        EXPECT_EQ(found && found->allSides, row.allSides);
    }
}

} // namespace
} // namespace plinket3::test
