#include "patch/modPatchFiles.h"

#include "core/Text.h"
#include "patch/modPatchText.h"
#include "tests/support/SmallEngine.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

#include <random>

namespace plinket3::test {
namespace {

constexpr std::string_view header = "Patch File for DeHackEd v3.0\r\n"
                                    "# Created with Plinket3 0.99 build 245 beta\r\n"
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
// Kept: a string whose default holds an escape is written to every extended patch. docs/kept-behaviour.md
constexpr std::string_view strings = "\r\n\r\n[STRINGS]\r\nE1TEXT = one\\ntwo\r\n\r\n";

/// What is written behind the header; lines of `expected` end with a line feed.
std::string Lines(std::string_view expected) { return ReplaceAll(expected, "\n", "\r\n"); }

struct WriterRow {
    const char* name;
    void (*edit)(PatchSet&);
    const char* normal;   // expected behind the header; null: not written in this mode
    const char* extended; // expected between the header and the strings
};
void PrintTo(const WriterRow& row, std::ostream* out) { *out << row.name; }

const WriterRow writerRows[]{
    {"Nothing", [](PatchSet&) {}, "", ""},
    {"ThingInRecordOrder",
     [](PatchSet& set) {
         set.things[1].respawnState = 5;
         set.things[1].bits = INT32_MIN | 6;
         set.things[1].hitPoints = -20;
     },
     "Thing 2 (Zombie Man)\nHit points = -20\nBits = 2147483654\nRespawn frame = 5\n\n\n\n",
     "Thing 2 (Zombie Man)\nHit points = -20\nBits = SOLID + FLOAT\nRespawn frame = 5\n\n\n\n"},
    {"AllBits", [](PatchSet& set) { set.things[0].bits = -1; }, "Thing 1 (Player)\nBits = 4294967295\n\n\n\n",
     "Thing 1 (Player)\nBits = SPECIAL + SOLID + FLOAT + INFLOAT\n\n\n\n"},
    {"NamesAlone",
     [](PatchSet& set) { set.things[0].name = "Hero", set.weapons[1].name = "Gun", set.ammo[0].name = ""; },
     "Thing 1 (Hero)\n\n\n\nWeapon 1 (Gun)\n\n\n\nAmmo 0 ()\n\n\n\n",
     "Thing 1 (Hero)\n\n\n\nWeapon 1 (Gun)\n\n\n\nAmmo 0 ()\n\n\n\n"},
    {"StatesAndSoundsInRecordOrder",
     [](PatchSet& set) {
         set.states[0] = {{1, litBit, -1, 0, 2, 3, 4}, 0};
         set.states[5].duration = 7;
         set.states[3].action = 1; // never written
         set.sounds[0] = {{1, 2, 3, 4, 5, 6, 7, 8, 9}, {}};
     },
     "Frame 0\nSprite number = 1\nSprite subnumber = 32768\nDuration = -1\nNext frame = 2\nUnknown 1 = 3\n"
     "Unknown 2 = 4\n\nFrame 5\nDuration = 7\n\n\n\n"
     "Sound 1\nOffset = 1\nZero/One = 2\nValue = 3\nZero 1 = 4\nNeg. One 1 = 5\nNeg. One 2 = 6\nZero 2 = 7\n"
     "Zero 3 = 8\nZero 4 = 9\n\n\n\n",
     "Frame 0\nSprite number = 1\nSprite subnumber = 32768\nDuration = -1\nNext frame = 2\nUnknown 1 = 3\n"
     "Unknown 2 = 4\n\nFrame 5\nDuration = 7\n\n\n\n"
     "Sound 1\nOffset = 1\nZero/One = 2\nValue = 3\nZero 1 = 4\nNeg. One 1 = 5\nNeg. One 2 = 6\nZero 2 = 7\n"
     "Zero 3 = 8\nZero 4 = 9\n\n\n\n"},
    {"CodePointers",
     [](PatchSet& set) {
         set.states[1].codePointer = 2, set.states[2].codePointer = 0, set.states[3].codePointer = 1,
         set.states[5].codePointer = 2;
     },
     "Pointer 0 (Frame 1)\nCodep Frame = 2\n\nPointer 1 (Frame 2)\nCodep Frame = 0\n\n"
     "Pointer 2 (Frame 3)\nCodep Frame = 1\n\nPointer 3 (Frame 5)\nCodep Frame = 2\n\n\n\n",
     "[CODEPTR]\nFrame 1 = Fire\nFrame 2 = NULL\nFrame 3 = Light0\nFrame 5 = Fire\n\n\n\n"},
    // Kept: the last state is no source, the number of states stands for none, and the number of pointers for a frame
    // that has none. docs/kept-behaviour.md
    {"ACodePointerOfTheLastStateOnly", [](PatchSet& set) { set.states[1].codePointer = 3; }, "",
     "[CODEPTR]\nFrame 1 = Last\n\n\n\n"},
    {"ACodePointerOfNoState", [](PatchSet& set) { set.states[1].codePointer = 4; },
     "Pointer 0 (Frame 1)\nCodep Frame = 6\n\n\n\n", "[CODEPTR]\nFrame 1 = Spare\n\n\n\n"},
    {"ACodePointerForAFrameWithout", [](PatchSet& set) { set.states[4].codePointer = 2; },
     "Pointer 4 (Frame 4)\nCodep Frame = 2\n\n\n\n", "[CODEPTR]\nFrame 4 = Fire\n\n\n\n"},
    {"WeaponsAndAmmo",
     [](PatchSet& set) {
         set.weapons[0] = {{1, 2, 3, 4, 5, 6}, "Fist"};
         set.ammo[1] = {{99, 9}, "Shells"};
     },
     "Weapon 0 (Fist)\nAmmo type = 1\nDeselect frame = 2\nSelect frame = 3\nBobbing frame = 4\nShooting frame = 5\n"
     "Firing frame = 6\n\n\n\nAmmo 1 (Shells)\nMax ammo = 99\nPer ammo = 9\n\n\n\n",
     "Weapon 0 (Fist)\nAmmo type = 1\nDeselect frame = 2\nSelect frame = 3\nBobbing frame = 4\nShooting frame = 5\n"
     "Firing frame = 6\n\n\n\nAmmo 1 (Shells)\nMax ammo = 99\nPer ammo = 9\n\n\n\n"},
    {"CheatsPaddedAndTheirLengthsNot",
     [](PatchSet& set) {
         set.cheats[0].text = "id";
         set.cheats[1].maximumLength = 20;
         set.cheats[16].text = "map";
     },
     "\n\nCheat 0\nChange music = id\xff\xff\xff\xff\nMap cheat = map\n\n",
     "\n\nCheat 0\nChange music = id\xff\xff\xff\xff\nMap cheat = map\n\n"},
    {"MiscWithoutWhatIsDerived",
     [](PatchSet& set) {
         set.misc.maxHealth = 300;
         set.misc.secondMaxHealth = 300;
         set.misc.spare1 = 40;
         set.misc.spare2 = 255;
         set.misc.bfgCells = 255;
         set.misc.monstersInfight = monstersFight;
     },
     "\n\nMisc 0\nMax Health = 300\nBFG Cells/Shot = 255\nMonsters Infight = 221\n\n",
     "\n\nMisc 0\nMax Health = 300\nBFG Cells/Shot = 255\nMonsters Infight = 221\n\n"},
    {"ParsInListOrder",
     [](PatchSet& set) {
         set.pars = {{2, 9, 30}, {0, 12, 100}, {0, 12, -1}};
     },
     "[PARS]\npar 2 9 30\npar 12 100\npar 12 -1\n\n\n\n", "[PARS]\npar 2 9 30\npar 12 100\npar 12 -1\n\n\n\n"},
    {"Texts",
     [](PatchSet& set) {
         set.strings[1] = {0, 3, "a\nb"};
         set.strings[3] = {0, 0, ""};
     },
     // The second of two texts alike comes back as the first: the format cannot tell them apart.
     "Text 7 3\none\ntwoa\nb\n\nText 5 0\ntwice\n\n", nullptr},
};

class Writer : public testing::TestWithParam<WriterRow> {};
INSTANTIATE_TEST_SUITE_P(Writes, Writer, testing::ValuesIn(writerRows), [](const auto& row) { return row.param.name; });

TEST_P(Writer, WritesExactlyWhatDiffers) {
    const WriterRow& row = GetParam();
    for (const bool extended : {false, true}) {
        const char* expected = extended ? row.extended : row.normal;
        if (expected == nullptr)
            continue;
        const EngineConfiguration engine = SmallEngine(extended);
        PatchData patch = SmallPatch(engine);
        row.edit(patch.current);
        std::string lines = Lines(expected);
        if (std::string_view(row.name) == "Texts") // line feeds inside texts stay as they are
            lines = "Text 7 3\r\none\ntwoa\nb\r\n\r\nText 5 0\r\ntwice\r\n\r\n";
        EXPECT_EQ(modPatchFiles::FormatPatch(patch, engine),
                  std::string(header) + lines + std::string(extended ? strings : ""));
    }
}

TEST(PatchWriter, EscapesStringsInTheListsOrder) {
    const EngineConfiguration engine = SmallEngine(true);
    PatchData patch = SmallPatch(engine);
    patch.current.strings[2].text = "say \"y\"\t\\";
    patch.current.strings[0].text.clear();
    EXPECT_EQ(modPatchFiles::FormatPatch(patch, engine),
              std::string(header) + "\r\n\r\n[STRINGS]\r\nGOTARMOR = \r\nE1TEXT = one\\ntwo\r\n"
                                    "QUIT = say \\\"y\\\"\\t\\\\\r\n\r\n");
}

TEST(PatchWriter, KeepsStringsOfBackslashesAndQuotesApart) {
    EngineConfiguration engine = SmallEngine(true);
    engine.strings.clear();
    for (int i = 0; i < 5; ++i)
        engine.strings.push_back({"KEY" + std::to_string(i), "standard"});
    PatchData patch = SmallPatch(engine);
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        std::vector<std::string> expected;
        for (StringRecord& string : patch.current.strings) {
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
    for (StringRecord& string : patch.current.strings)
        string.text = "x\\";
    EXPECT_TRUE(modPatchFiles::FormatPatch(patch, engine).ends_with("KEY3 = x\\\\\r\n\r\nKEY4 = x\\\\\r\n\r\n"))
        << "the empty line behind the section is the last one's";
}

TEST(PatchWriter, NamesTheDataWadBeforeTheIwad) {
    const EngineConfiguration engine = SmallEngine(false);
    PatchData patch = SmallPatch(engine);
    patch.dataWadPath = "/wads/my.wad";
    EXPECT_NE(
        modPatchFiles::FormatPatch(patch, engine).find("small.cfg\r\nData WAD = /wads/my.wad\r\nIWAD = doom2.wad\r\n"),
        std::string::npos);
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
