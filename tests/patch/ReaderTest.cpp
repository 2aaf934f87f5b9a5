#include "patch/modPatchFiles.h"

#include "tests/support/SmallEngine.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

namespace plinket3::test {
namespace {

using modPatchFiles::Header;
using modPatchFiles::ParsePatch;

const std::string start = "Patch File for DeHackEd v3.0\nDoom version = 19\nPatch format = 6\n";

// What becomes of the lines of a patch: tests/data/patch/, by PatchCase.
TEST(PatchReader, TakesLinesOfAnyLength) {
    const EngineConfiguration engine = SmallEngine(false);
    PatchSet expected = SmallDefaults(engine), set;
    expected.things[1].name.assign(200000, 'x');
    expected.things[1].mass = INT32_MAX;
    const std::string patch = start + "Thing 2 (" + std::string(200000, 'x') + ")\n" + std::string(200000, ' ') +
                              "Mass = 1" + std::string(200000, '0') + "\n";
    EXPECT_TRUE(ParsePatch(patch, engine, SmallDefaults(engine), set).status);
    EXPECT_EQ(set, expected);
}

class ReadPatchTest : public testing::Test {
protected:
    ReadPatchTest() {
        program_.engine = SmallEngine(false);
        program_.patch = SmallPatch(program_.engine);
        program_.patch.current.things[0].mass = 9;
        program_.patch.changed = true;
    }
    bool Read(const std::string& patch) {
        WriteFile(folder_ / "a.deh", patch);
        return modPatchFiles::ReadPatch(notifier_, folder_ / "a.deh", program_);
    }

    TemporaryFolder folder_;
    ExpectingNotifier notifier_;
    Program program_{notifier_};
};

TEST_F(ReadPatchTest, StartsFromTheDefaultsAndWarnsOfWhatASaveLoses) {
    notifier_.Expect(MessageKind::Exclamation,
                     "Unsupported entries were found in the patch file. Those entries will be ignored. This means that "
                     "Plinket3 will not save those entries again either!");
    ASSERT_TRUE(Read(start + "Hit points = 3\nSprite 1\n"));
    EXPECT_EQ(program_.patch.current.things[0].mass, 0);
    EXPECT_EQ(program_.patch.current.things[0].hitPoints, 3);
    EXPECT_EQ(program_.patch.fileName, folder_ / "a.deh");
    EXPECT_TRUE(program_.patch.named);
    EXPECT_FALSE(program_.patch.changed);
}

TEST(HeaderScan, FindsTheHeaderLinesAnywhere) {
    Header header;
    ASSERT_TRUE(modPatchFiles::ScanHeader(
        std::string_view(
            "# IWAD = no.wad\r\n  doom VERSION = 19 # old\r\nIWAD=a=b.wad\r\nData  WAD = x\r\nIWAD 2 = y\r\n"
            "Thing 1\r\nEngine config =\r\nPatch format = 6"),
        header));
    EXPECT_EQ(header,
              (Header{{"engineversion", "19"}, {"iwad", "a=b.wad"}, {"engineconfig", ""}, {"patchversion", "6"}}));
}

} // namespace
} // namespace plinket3::test
