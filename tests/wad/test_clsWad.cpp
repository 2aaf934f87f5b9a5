#include "wad/clsWad.h"

#include "tests/support/TestSupport.h"
#include "tests/wad/WadBytes.h"

#include <gtest/gtest.h>

#include <limits>

namespace plinket3::test {
namespace {

using namespace std::string_literals;

class WadTest : public testing::Test {
protected:
    clsWad& Open(std::string_view bytes) {
        WriteFile(file_, bytes);
        wad_.OpenWad(file_);
        return wad_;
    }

    TemporaryFolder folder_;
    std::filesystem::path file_ = folder_ / "test.wad";
    clsWad wad_;
};

TEST_F(WadTest, ReadsALumpWithAndWithoutTheByteBehindIt) {
    Open(WadBytes({{"FIRST", "0123456789"}, {"MARKER", ""}, {"LAST", "xyz"}}, "IWAD"));
    EXPECT_EQ(wad_.WadType(), 0);
    EXPECT_EQ(wad_.WadLumps(), "2");
    EXPECT_EQ(wad_.WadFileName(), file_);
    EXPECT_EQ(wad_.WadSize(), 12 + 3 * 16 + 13);
    EXPECT_EQ(wad_.ReadLumpString(0), "0123456789");
    EXPECT_EQ(wad_.ReadLump(1), std::vector<std::uint8_t>{'x'});
    EXPECT_EQ(wad_.ReadLump(2), (std::vector<std::uint8_t>{'x', 'y', 'z', 0}));
    EXPECT_EQ(wad_.ReadLumpString(0, 4), "0123");
    EXPECT_EQ(wad_.ReadLump(2, 2), (std::vector<std::uint8_t>{'x', 'y'}));
    for (const int none : {-1, 3}) {
        EXPECT_TRUE(wad_.ReadLump(none).empty());
        EXPECT_EQ(wad_.ReadLumpString(none), "");
        EXPECT_EQ(wad_.lumpName(none), "");
        EXPECT_EQ(wad_.LumpSize(none), 0);
    }
}

TEST_F(WadTest, FindsNamesHoweverTheyArePadded) {
    struct {
        std::string stored;
        std::string name, key;
        bool found;
    } const rows[]{
        {"PLAYPAL\0"s, "PLAYPAL", "playpal ", true},
        {"PLAYPAL "s, "PLAYPAL", " PLAYPAL", true},
        {"playpal"s, "playpal", "playpal", false},
        {"A\0BC\0\0X\0"s, "A BC  X", "a bc  x", true},
        {"\0 \0AB\0\0\0"s, "AB", "AB", true},
        {"\0\0\0\0\0\0\0\0"s, "", "", true},
        {"DSPISTOL"s, "DSPISTOL", "DSPISTOLE", false},
        {"DSPISTOL"s, "DSPISTOL", "DSPISTO", false},
        {"\x80\xFF\x01 \x81"s, "\x80\xFF\x01 \x81", "\x80\xFF\x01 \x81", true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.key + " in " + row.stored);
        Open(WadBytes({{"OTHER", ""}, {row.stored, ""}, {row.stored, ""}}));
        EXPECT_EQ(wad_.lumpName(1), row.name);
        EXPECT_EQ(wad_.NumForName(row.key), row.found ? 1 : -1);
    }
}

TEST_F(WadTest, FindsSpritesOfTheFirstSectionOnly) {
    struct {
        std::vector<std::string> lumps;
        std::string sprite, frame;
        int found;
    } const rows[]{
        {{"TROOA1", "S_START", "TROOA2A8", "TROOA1", "TROOA1", "S_END"}, "TROO", "A1", 3},
        {{"S_START", "TROOA2A8", "S_END"}, "TROO", "A2", 1},
        {{"S_START", "TROOA2A8", "S_END"}, "TROO", "A8", 1},
        {{"S_START", "TROOA2A8", "S_END"}, "TROO", "a8", -1},
        {{"S_START", "TROOA2A8", "S_END"}, "troo", "A8", -1},
        {{"S_START", "TROOA2A8", "S_END"}, "TROO", "2A", -1},
        {{"S_START", "TROOA2A8", "S_END"}, "TRO", "A8", -1},
        {{"SS_START", "TROOA1", "SS_END"}, "TROO", "A1", 1},
        {{"S_START", "S1_START", "TROOA1", "S1_END", "S_END"}, "S1_S", "TA", 1},
        {{"S_START", "S_END", "S_START", "TROOA1"}, "TROO", "A1", -1},
        {{"S_END", "S_START", "TROOA1", "S_END"}, "TROO", "A1", -1},
        {{"S_START", "TROO\\0"}, "TROO", "\\0", 1},
    };
    for (const auto& row : rows) {
        std::vector<Lump> lumps;
        for (const std::string& name : row.lumps)
            lumps.push_back({name, ""});
        EXPECT_EQ(Open(WadBytes(lumps)).NumForSprite(row.sprite, row.frame), row.found) << row.sprite << row.frame;
    }
}

TEST_F(WadTest, CutsTheDirectoryOffWhereTheFileEnds) {
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    struct {
        std::int32_t count, offset;
        std::string lastLump;
    } const rows[]{{0, 12, "-1"},    {1, 12, "0"},    {2, 12, "1"},    {3, 12, "1"},      {most, 12, "1"},
                   {most, 44, "-1"}, {1, most, "-1"}, {-1, 12, "-1"},  {least, 12, "-1"}, {2, -1, "-1"},
                   {2, least, "-1"}, {2, 28, "0"},    {most, 29, "-1"}};
    const std::string entries = WadEntry(0, 4, "A") + WadEntry(0, 4, "B");
    for (const auto& row : rows) {
        Open(WadHeader("PWAD", row.count, row.offset) + entries);
        EXPECT_EQ(wad_.WadFileName(), file_);
        EXPECT_EQ(wad_.WadLumps(), row.lastLump) << row.count << " lumps at " << row.offset;
    }
    EXPECT_EQ(Open("IWAD").WadType(), 0); // a header that ends early
}

TEST_F(WadTest, CutsALumpOffWhereTheFileEnds) {
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    struct {
        std::int32_t offset, size;
        std::size_t withByteBehind, asString;
    } const rows[]{{0, 28, 29, 28},      {0, 29, 28, 28},  {20, most, 8, 8},   {27, 1, 2, 1},
                   {28, 1, 0, 0},        {most, 10, 0, 0}, {most, most, 0, 0}, {-1, 10, 0, 0},
                   {least, least, 0, 0}, {4, -1, 0, 0},    {4, least, 0, 0}};
    for (const auto& row : rows) {
        Open(WadHeader("PWAD", 1, 12) + WadEntry(row.offset, row.size, "A"));
        EXPECT_EQ(wad_.ReadLump(0).size(), row.withByteBehind) << row.size << " bytes at " << row.offset;
        EXPECT_EQ(wad_.ReadLumpString(0).size(), row.asString) << row.size << " bytes at " << row.offset;
    }
}

TEST_F(WadTest, KeepsWhatWasOpenOnlyWhenNothingExistsAtThePath) {
    const std::string valid = WadBytes({{"A", "a"}}, "IWAD");
    WriteFile(folder_ / "lower.wad", "iwad" + valid.substr(4));
    WriteFile(folder_ / "short.wad", "PWA");
    test::MakePipe(folder_ / "pipe.wad");
    for (const std::string_view other : {"lower.wad", "short.wad", "pipe.wad", ""}) {
        SCOPED_TRACE(other);
        Open(valid);
        wad_.OpenWad(folder_ / "missing.wad");
        EXPECT_EQ(wad_.ReadLumpString(0), "a");
        wad_.OpenWad(folder_ / other);
        EXPECT_EQ(wad_.WadFileName(), "");
        EXPECT_EQ(std::tuple(wad_.WadType(), wad_.WadLumps(), wad_.WadSize()), std::tuple(1, "-1", 0));
        EXPECT_EQ(wad_.ReadLumpString(0), "");
    }
}

TEST_F(WadTest, ReadsTheFileAsItIsAtTheMoment) {
    const std::string before = WadBytes({{"A", "before"}}), after = WadBytes({{"A", "after!"}});
    Open(before);
    EXPECT_EQ(wad_.ReadLumpString(0), "before");
    WriteFile(file_, after);
    EXPECT_EQ(wad_.ReadLumpString(0), "after!");
    wad_.OpenWad(wad_.WadFileName()); // its own path again
    EXPECT_EQ(wad_.NumForName("A"), 0);
    std::filesystem::resize_file(file_, before.size() - 4);
    EXPECT_EQ(wad_.ReadLumpString(0), "af");
    EXPECT_EQ(wad_.ReadLump(0).size(), 2U);
    std::filesystem::resize_file(file_, 0);
    EXPECT_EQ(wad_.ReadLump(0).size(), 0U);
    std::filesystem::remove(file_);
    EXPECT_EQ(wad_.lumpName(0), "A");
}

} // namespace
} // namespace plinket3::test
