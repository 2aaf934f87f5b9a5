#include "patch/modPatchFiles.h"

#include "core/Text.h"
#include "core/Version.h"
#include "patch/modPatchDiff.h"
#include "patch/modPatchText.h"
#include "tests/support/SmallEngine.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

#include <random>

namespace plinket3::test {
namespace {

const std::string header = std::string("Patch File for DeHackEd v3.0\r\n# Created with ") + programVersion +
                           "\r\n"
                           "\r\n"
                           "# General version information\r\n"
                           "Doom version = 19\r\n"
                           "Patch format = 6\r\n"
                           "\r\n"
                           "# Info for Plinket3\r\n"
                           "Engine config = small.cfg\r\n"
                           "IWAD = doom2.wad\r\n"
                           "\r\n"
                           "\r\n";
// What is written for each kind of record: tests/data/patch/, by PatchCase.
TEST(PatchWriter, KeepsStringsOfBackslashesAndQuotesApart) {
    EngineConfiguration engine = SmallEngine(true);
    engine.strings.clear();
    for (int i = 0; i < 5; ++i)
        engine.strings.push_back({"KEY" + std::to_string(i), "standard"});
    PatchData patch = SmallPatch(engine);
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        std::vector<std::string> expected;
        for (StringRecord& string : patch.current.strings.Dense()) {
            string.text.clear();
            for (std::size_t length = random() % 6; length > 0; --length)
                string.text += std::string_view("\\\\\\\\\"\n\t\r =#nart")[random() % 16];
            // Blanks at its ends are lost, and a backslash before one of three letters is read as an escape.
            expected.emplace_back(Trim(string.text));
            for (const char* escape : {"\\n", "\\r", "\\t"})
                expected.back() = ReplaceAll(expected.back(), escape, modPatchText::UnescapeText(escape));
        }
        PatchSet read;
        const std::string bytes = modPatchFiles::FormatPatch(patch, engine);
        ASSERT_TRUE(modPatchFiles::ParsePatch(bytes, engine, patch.defaults, read).status);
        for (std::size_t i = 0; i < expected.size(); ++i)
            ASSERT_EQ(read.strings[i].text, expected[i]) << bytes;
    }
    for (StringRecord& string : patch.current.strings.Dense())
        string.text = "x\\";
    EXPECT_TRUE(modPatchFiles::FormatPatch(patch, engine).ends_with("KEY3 = x\\\\\r\n\r\nKEY4 = x\\\\\r\n\r\n"))
        << "the empty line behind the section is the last one's";
}

TEST(PatchWriter, PassesOverWhatNoPatchHas) {
    const EngineConfiguration engine = SmallEngine(false);
    PatchData patch = SmallPatch(engine);
    patch.current.states[3].action = patch.current.misc.secondMaxHealth = patch.current.misc.spare1 = 1;
    patch.current.cheats[1].maximumLength = 20;
    EXPECT_EQ(modPatchFiles::FormatPatch(patch, engine), header);
    EXPECT_TRUE(modPatchDiff::Differences(patch.defaults, patch.current, engine).empty());
}

class SaveTest : public testing::Test {
protected:
    SaveTest() {
        program_.engine = SmallEngine(false);
        program_.patch = SmallPatch(program_.engine);
        program_.patch.changed = true;
    }

    TemporaryFolder folder_;
    ExpectingNotifier notifier_;
    Program program_{notifier_};
};

TEST_F(SaveTest, CopiesTheOldFileOverAnOldBackupOnlyWhenAsked) {
    const std::filesystem::path file = folder_ / "a.deh", backup = folder_ / "a.deh.bak";
    ASSERT_TRUE(modPatchFiles::SavePatch(program_, file, true)); // nothing to copy
    EXPECT_FALSE(std::filesystem::exists(backup));
    WriteFile(file, "old");
    WriteFile(backup, "older");
    ASSERT_TRUE(modPatchFiles::SavePatch(program_, file, false));
    EXPECT_EQ(ReadFile(backup), "older");
    WriteFile(file, "old");
    ASSERT_TRUE(modPatchFiles::SavePatch(program_, file, true));
    EXPECT_EQ(ReadFile(backup), "old");
    EXPECT_EQ(ReadFile(file), header);
}

TEST_F(SaveTest, LeavesTheOldFileWhenItCannotBackItUpOrWrite) {
    const std::filesystem::path file = folder_ / "a.deh";
    WriteFile(file, "old");
    std::filesystem::create_directory(folder_ / "a.deh.bak");
    const Status status = modPatchFiles::SavePatch(program_, file, true);
    EXPECT_EQ(status.Reason(), "no backup could be made: is a folder");
    EXPECT_EQ(ReadFile(file), "old");
    EXPECT_FALSE(modPatchFiles::SavePatch(program_, folder_ / "none" / "a.deh", true));
    EXPECT_FALSE(modPatchFiles::SavePatch(program_, folder_.Path(), false));
    EXPECT_TRUE(program_.patch.changed);
}

} // namespace
} // namespace plinket3::test
