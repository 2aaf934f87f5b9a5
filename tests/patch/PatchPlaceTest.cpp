#include "patch/PatchPlace.h"

#include "tests/support/TestSupport.h"
#include "tests/wad/WadBytes.h"

#include <gtest/gtest.h>

namespace plinket3::test {
namespace {

const std::vector<Lump> lumps{{"DEHACKED", "first"}, {"MAP01", ""},          {"dehacked", "second"},
                              {"OTHER", "Thing 1"},  {"DEHACKED", "third!"}, {"END", "x"}};

class PatchPlaceTest : public testing::Test {
protected:
    PatchPlaceTest() { WriteFile(wad_, WadBytes(lumps)); }

    std::string Read(const std::string& lump) const {
        std::string bytes;
        const Status status = ReadPlace({wad_, lump}, bytes);
        return status ? bytes : "! " + status.Reason();
    }
    /// The reason of a failure, after which nothing has changed; empty when all went well.
    std::string Write(const std::string& lump, std::string_view bytes, MissingLump missing = MissingLump::Fails) {
        const std::string before = ReadFile(wad_);
        const Status status = WritePlace({wad_, lump}, BytePieces(std::string(bytes)), false, missing);
        EXPECT_TRUE(status || ReadFile(wad_) == before);
        return status.Reason();
    }

    TemporaryFolder folder_;
    const std::filesystem::path wad_ = folder_ / "a.wad";
};

TEST_F(PatchPlaceTest, NamesALumpByNameAndNumber) {
    EXPECT_EQ(Read("DEHACKED"), "third!");
    EXPECT_EQ(Read("Dehacked#1"), "first");
    EXPECT_EQ(Read("DEHACKED#2"), "second");
    EXPECT_EQ(Read("other"), "Thing 1");
    EXPECT_EQ(Read("DEHACKED#4"), "! there is no lump DEHACKED#4 in it");
    EXPECT_EQ(Read("DEHACKED#"), "! there is no lump DEHACKED# in it");
    EXPECT_EQ(Read("NONE#99999999999"), "! there is no lump NONE#99999999999 in it");
    std::string told;
    for (const PatchLump& lump : FindPatchLumps(wad_))
        told += lump.lump + " " + std::to_string(lump.index) + " " + std::to_string(lump.size) + "; ";
    EXPECT_EQ(told, "DEHACKED#1 0 5; DEHACKED#2 2 6; DEHACKED#3 4 6; ");
    ASSERT_EQ(FindPatchLumps(wad_, "other").size(), 1U);
    EXPECT_EQ(FindPatchLumps(wad_, "other")[0].lump, "other");
    WriteFile(folder_ / "a.deh", "PWA");
    EXPECT_TRUE(FindPatchLumps(folder_ / "a.deh").empty());
    EXPECT_TRUE(IsWad(wad_));
    EXPECT_FALSE(IsWad(folder_ / "a.deh") || IsWad(folder_.Path()) || IsWad(folder_ / "none"));
}

TEST_F(PatchPlaceTest, WritesTheLumpAndLeavesAllOthers) {
    std::vector<Lump> expected = LumpsOf(ReadFile(wad_));
    const auto expect = [&](std::size_t lump, const std::string& bytes) {
        expected[lump].bytes = bytes;
        EXPECT_EQ(LumpsOf(ReadFile(wad_)), expected);
    };
    EXPECT_EQ(Write("DEHACKED#2", "a longer second one"), "");
    expect(2, "a longer second one");
    EXPECT_EQ(Write("dehacked", ""), "");
    expect(4, "");
    EXPECT_EQ(Write("DEHACKED#4", "x"), "there is no lump DEHACKED#4 in it");
    EXPECT_EQ(Write("DEHACKED#5", "x", MissingLump::IsAdded), "there is no lump DEHACKED#5 in it");
    EXPECT_EQ(Write("mine", "added", MissingLump::IsAdded), "");
    expected.push_back({std::string("MINE\0\0\0\0", 8), ""});
    expect(6, "added");
    EXPECT_EQ(Write("DEHACKED#4", "fourth", MissingLump::IsAdded), "");
    expected.push_back({"DEHACKED", ""});
    expect(7, "fourth");
}

TEST_F(PatchPlaceTest, ReadsWhatItDoesNotWrite) {
    WriteFile(wad_, WadBytes(lumps, "IWAD"));
    EXPECT_EQ(Read("DEHACKED"), "third!");
    EXPECT_TRUE(Write("DEHACKED", "x").starts_with("is an IWAD, which belongs to its game"));
    EXPECT_TRUE(Write("NEW", "x", MissingLump::IsAdded).starts_with("is an IWAD"));
    const std::string overlapping = WadEntry(44, 5, "DEHACKED") + WadEntry(47, 5, "B") + "Thing...";
    WriteFile(wad_, WadHeader("PWAD", 2, 12) + overlapping);
    EXPECT_EQ(Read("DEHACKED"), "Thing");
    EXPECT_EQ(Write("DEHACKED", "x"), "its lump 0 (DEHACKED) and its lump 1 (B) overlap");
    WriteFile(wad_, WadHeader("PWAD", 1, 12) + WadEntry(28, 9, "DEHACKED") + "Thing");
    EXPECT_EQ(Read("DEHACKED"), "! the lump does not lie in the file as a whole");
    WriteFile(wad_, "Thing 1");
    EXPECT_EQ(Read("DEHACKED"), "! is no WAD that can be read");
    EXPECT_EQ(Write("DEHACKED", "x"), "is no WAD that can be read");
}

} // namespace
} // namespace plinket3::test
